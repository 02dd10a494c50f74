#include "sak/Format.h"

#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace solvane {

namespace {

// One conversion as a format writes it.
struct Conversion {
    std::size_t Argument = 0; // one-based; 0: the next one
    bool Left = false;
    bool Zeros = false;
    std::size_t Width = 0; // characters
    std::optional<std::size_t> Precision;
    char Letter = 0;
};

// Reads a format from its front.
class FormatReader {
public:
    explicit FormatReader(std::string_view format) : Rest(format) {}

    [[nodiscard]] bool AtEnd() const { return Rest.empty(); }
    [[nodiscard]] std::size_t Left() const { return Rest.size(); }

    // The text up to the next "%" or the end.
    std::string_view Plain() { return Take(std::min(Rest.find('%'), Rest.size())); }

    // What follows a "%"; nothing when it is no conversion.
    std::optional<Conversion> Next() {
        Conversion conversion;
        Take(1);
        if (!ReadArgumentNumber(conversion)) {
            return std::nullopt;
        }
        for (; Starts('-') || Starts('0'); Take(1)) {
            (Starts('-') ? conversion.Left : conversion.Zeros) = true;
        }
        const std::optional<std::size_t> width = Number();
        bool good = width.has_value();
        conversion.Width = width.value_or(0);
        if (good && Starts('.')) {
            Take(1);
            conversion.Precision = Number();
            good = conversion.Precision.has_value();
        }
        Take(std::min(Rest.find_first_not_of("hlzjq"), Rest.size()));
        if (!good || Rest.empty()) {
            return std::nullopt;
        }
        conversion.Letter = Take(1).front();
        return conversion;
    }

private:
    std::string_view Take(std::size_t length) {
        const std::string_view taken = Rest.substr(0, length);
        Rest.remove_prefix(length);
        return taken;
    }
    [[nodiscard]] bool Starts(char character) const { return Rest.starts_with(character); }

    // The digits at the front, 0 when there are none; nothing when the number is too large.
    std::optional<std::size_t> Number() {
        const std::string_view digits = Take(std::min(Rest.find_first_not_of("0123456789"), Rest.size()));
        std::size_t value = 0;
        for (const char digit : digits) {
            value = value * 10 + static_cast<std::size_t>(digit - '0');
            if (value > MaximumFieldWidth) {
                return std::nullopt;
            }
        }
        return value;
    }

    // "2$" in front of the flags. False when the number is 0 or absurd.
    bool ReadArgumentNumber(Conversion& conversion) {
        const std::size_t digits = std::min(Rest.find_first_not_of("0123456789"), Rest.size());
        if (digits == 0 || digits == Rest.size() || Rest[digits] != '$') {
            return true;
        }
        const std::optional<std::size_t> number = Number();
        Take(1);
        conversion.Argument = number.value_or(0);
        return conversion.Argument > 0;
    }

    std::string_view Rest;
};

std::size_t CharacterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        at += utility::Decode(text, at).Length;
    }
    return count;
}

void Pad(std::string& out, const Conversion& conversion, std::string_view body) {
    const std::size_t size = CharacterCount(body);
    const std::size_t padding = conversion.Width > size ? conversion.Width - size : 0;
    out.append(conversion.Left ? 0 : padding, ' ').append(body);
    out.append(conversion.Left ? padding : 0, ' ');
}

void PutNumber(std::string& out, const Conversion& conversion, const FormatArg& argument) {
    const bool hexadecimal = conversion.Letter == 'x' || conversion.Letter == 'X';
    const bool negative = argument.What == FormatArg::Kind::Signed && !hexadecimal &&
                          static_cast<std::int64_t>(argument.Number) < 0;
    const std::uint64_t magnitude = negative ? 0 - argument.Number : argument.Number;
    std::array<char, 24> buffer{};
    char* end = std::to_chars(buffer.begin(), buffer.end(), magnitude, hexadecimal ? 16 : 10).ptr;
    std::string digits(buffer.data(), end);
    if (conversion.Letter == 'X') {
        std::transform(digits.begin(), digits.end(), digits.begin(),
                       [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    std::size_t wanted = conversion.Precision.value_or(1);
    if (conversion.Zeros && !conversion.Left && !conversion.Precision) {
        wanted = conversion.Width - std::min<std::size_t>(conversion.Width, negative ? 1 : 0);
    }
    digits.insert(0, wanted > digits.size() ? wanted - digits.size() : 0, '0');
    Pad(out, conversion, negative ? "-" + digits : digits);
}

void PutCharacter(std::string& out, const Conversion& conversion, std::uint64_t character) {
    std::string bytes;
    utility::AppendUtf8(bytes, static_cast<char32_t>(std::min<std::uint64_t>(character, UINT32_MAX)));
    Pad(out, conversion, bytes);
}

void PutText(std::string& out, const Conversion& conversion, std::string_view text) {
    if (conversion.Precision && *conversion.Precision < text.size()) {
        text = text.substr(0, utility::CutLength(text, *conversion.Precision));
    }
    Pad(out, conversion, text);
}

// False when the argument is not of the type that the conversion takes.
bool Put(std::string& out, const Conversion& conversion, const FormatArg& argument) {
    const bool text = argument.What == FormatArg::Kind::Text;
    switch (conversion.Letter) {
    case 's':
        if (text) {
            PutText(out, conversion, argument.AsText);
        }
        return text;
    case 'c':
        if (!text) {
            PutCharacter(out, conversion, argument.Number);
        }
        return !text;
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
        if (!text) {
            PutNumber(out, conversion, argument);
        }
        return !text;
    default:
        return false;
    }
}

// Picks the arguments of conversions; counted and numbered ones do not mix.
class ArgumentPicker {
public:
    explicit ArgumentPicker(std::span<const FormatArg> arguments) : All(arguments) {}

    const FormatArg* Pick(const Conversion& conversion) {
        const bool numbered = conversion.Argument > 0;
        if (Picked && numbered != Numbered) {
            return nullptr;
        }
        Numbered = numbered;
        Picked = true;
        const std::size_t index = numbered ? conversion.Argument - 1 : NextIndex++;
        return index < All.size() ? &All[index] : nullptr;
    }

private:
    std::span<const FormatArg> All;
    std::size_t NextIndex = 0;
    bool Picked = false;
    bool Numbered = false;
};

// Returns whether every conversion could be served; one that could not stands in `out` as it is
// written.
bool Run(std::string& out, std::string_view format, std::span<const FormatArg> arguments) {
    FormatReader reader(format);
    ArgumentPicker picker(arguments);
    bool good = true;
    for (out.append(reader.Plain()); !reader.AtEnd(); out.append(reader.Plain())) {
        const std::size_t start = format.size() - reader.Left();
        const std::optional<Conversion> conversion = reader.Next();
        const std::string_view written = format.substr(start, format.size() - reader.Left() - start);
        if (written == "%%") {
            out += '%';
            continue;
        }
        const FormatArg* argument = conversion ? picker.Pick(*conversion) : nullptr;
        if (!argument || !Put(out, *conversion, *argument)) {
            out.append(written);
            good = false;
        }
    }
    return good;
}

} // namespace

std::optional<std::string> TryFormat(std::string_view format, std::span<const FormatArg> arguments) {
    std::string text;
    if (!Run(text, format, arguments)) {
        return std::nullopt;
    }
    return text;
}

std::string FormatPlain(std::string_view format, std::span<const FormatArg> arguments) {
    std::string text;
    Run(text, format, arguments);
    return text;
}

} // namespace solvane
