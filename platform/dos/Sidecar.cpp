#include "platform/dos/Sidecar.h"

#include "platform/dos/Dates.h"
#include "platform/dos/NameEscapes.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace dos {

namespace {

constexpr std::string_view Letters = "hsparwed"; // bits 7 to 0
constexpr std::uint32_t InvertedBits = 15;       // set when not allowed
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view DateShape = "0000-00-00 00:00:00.00";
constexpr std::size_t DateColumn = 9;
constexpr std::size_t TimeEnd = 31;
constexpr std::size_t CommentColumn = 32;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Does the text have a digit for each "0" of the pattern and its other characters as they are?
bool HasShape(std::string_view text, std::string_view pattern) {
    return text.size() == pattern.size() && std::ranges::equal(text, pattern, [](char c, char wanted) {
               return wanted == '0' ? IsDigit(c) : c == wanted;
           });
}

std::uint16_t Number(std::string_view digits) {
    std::uint16_t value = 0;
    for (const char c : digits)
        value = static_cast<std::uint16_t>(value * 10 + (c - '0'));
    return value;
}

// "2013-02-12 21:20:52.02"
std::optional<std::uint32_t> ParseDate(std::string_view text) {
    if (!HasShape(text, DateShape))
        return {};
    return CheckDate({.Second = Number(text.substr(17, 2)),
                      .Minute = Number(text.substr(14, 2)),
                      .Hour = Number(text.substr(11, 2)),
                      .Day = Number(text.substr(8, 2)),
                      .Month = Number(text.substr(5, 2)),
                      .Year = Number(text.substr(0, 4)),
                      .WeekDay = 0});
}

// A bad digit counts as 0.
unsigned HexDigit(char c) {
    return static_cast<unsigned>(std::max(HexDigitValue(c), 0));
}

// "%xx" is a Latin-1 character. What is above ASCII without that escape is UTF-8 from one writer
// and Latin-1 from the other.
bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

std::string ParseComment(std::string_view text) {
    std::string out;
    const bool isUtf8 = utility::IsValidUtf8(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        // An escape that would eat a part of a UTF-8 character is none.
        if (text[i] == '%' && i + 2 < text.size() && IsAscii(text[i + 1]) && IsAscii(text[i + 2])) {
            utility::AppendUtf8(out, HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
            i += 2;
        } else if (isUtf8) {
            out.push_back(text[i]);
        } else {
            utility::AppendUtf8(out, static_cast<unsigned char>(text[i]));
        }
    }
    return out;
}

bool IsInPlace(std::string_view letters) {
    for (std::size_t i = 0; i < letters.size(); ++i)
        if (letters[i] != '-' && letters[i] != Letters[i])
            return false;
    return true;
}

// Another character than its own in a column counts as an absent letter.
std::uint32_t BitsOf(std::string_view letters) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < letters.size(); ++i)
        if (letters[i] == Letters[i])
            bits |= 1u << (Letters.size() - 1 - i);
    return bits ^ InvertedBits;
}

bool HasDate(std::string_view line) {
    return line.size() >= TimeEnd && line[DateColumn - 1] == ' ' &&
           HasShape(line.substr(DateColumn, TimeEnd - DateColumn), DateShape);
}

// Somebody's own text must not be taken for a line of ours, and be hidden and replaced: without a date, each
// letter must be in its place. One that was cut off within the letters has default bits.
std::optional<std::uint32_t> ProtectionOf(std::string_view line, bool isAll) {
    const std::string_view letters = line.substr(0, Letters.size());
    if (HasDate(line))
        return BitsOf(letters);
    if (line.size() < Letters.size())
        return isAll && IsInPlace(line) ? std::optional<std::uint32_t>(0) : std::nullopt;
    // A ruler of dashes is none: behind the letters there is a blank or nothing.
    const bool isApart = line.size() == Letters.size() || line[Letters.size()] == ' ';
    return isApart ? ProtectionFromLetters(letters) : std::nullopt;
}

void AppendDigits(std::string& out, unsigned value, std::size_t digits) {
    const std::string text = std::to_string(value);
    out.append(digits - std::min(digits, text.size()), '0').append(text);
}

std::string DateText(std::uint32_t date, std::uint8_t hundredths) {
    const ClockData clock = Amiga2Date(date);
    std::string text;
    AppendDigits(text, clock.Year, 4);
    AppendDigits(text += '-', clock.Month, 2);
    AppendDigits(text += '-', clock.Day, 2);
    AppendDigits(text += ' ', clock.Hour, 2);
    AppendDigits(text += ':', clock.Minute, 2);
    AppendDigits(text += ':', clock.Second, 2);
    AppendDigits(text += '.', hundredths, 2);
    return text;
}

// A comment as the Amiga's characters; what Latin-1 has not stays UTF-8, byte by byte, and is told
// apart by IsPlain.
struct CommentUnit {
    unsigned char Byte;
    bool IsPlain; // to be written as it stands
};

std::vector<CommentUnit> UnitsOf(std::string_view comment) {
    const bool isUtf8 = utility::IsValidUtf8(comment);
    std::vector<CommentUnit> units;
    for (std::size_t i = 0; i < comment.size();) {
        const utility::Character c = isUtf8 ? utility::Decode(comment, i)
                                            : utility::Character{static_cast<unsigned char>(comment[i]), 1};
        if (c.Code <= 0xFF)
            units.push_back({static_cast<unsigned char>(c.Code), false});
        else
            for (std::size_t k = 0; k < c.Length; ++k)
                units.push_back({static_cast<unsigned char>(comment[i + k]), true});
        i += c.Length;
    }
    return units;
}

std::string CommentText(std::string_view comment) {
    const std::vector<CommentUnit> units = UnitsOf(comment);
    const std::size_t last = units.size() - 1;
    const bool hidesLast = HidesLast(comment);
    const bool hidesThird = HidesThird(comment);
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const unsigned char c = units[i].Byte;
        const bool escapes =
            IsAlwaysEscaped(c) || c > 127 || (i == last && hidesLast) || (i == 2 && hidesThird);
        if (units[i].IsPlain || !escapes)
            text.push_back(static_cast<char>(c));
        else
            AppendEscape(text, c);
    }
    return text;
}

} // namespace

std::size_t SidecarCommentLength(std::string_view comment) {
    return UnitsOf(comment).size();
}

std::string LettersFromProtection(std::uint32_t bits) {
    std::string letters(Letters);
    for (std::size_t i = 0; i < letters.size(); ++i)
        if (((bits ^ InvertedBits) & (1u << (letters.size() - 1 - i))) == 0)
            letters[i] = '-';
    return letters;
}

std::string FormatSidecar(const SidecarFacts& facts) {
    return LettersFromProtection(facts.Protection.value_or(0)) + ' ' +
           DateText(facts.Date.value_or(0), facts.Hundredths) + ' ' + CommentText(facts.Comment) + '\n';
}

std::optional<std::uint32_t> ProtectionFromLetters(std::string_view letters) noexcept {
    if (letters.size() != Letters.size() || !IsInPlace(letters))
        return {};
    return BitsOf(letters);
}

SidecarFacts ParseSidecar(std::string_view text) {
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    const std::string_view all = text;
    text = text.substr(0, text.find_first_of("\r\n"));
    SidecarFacts facts;
    facts.Protection =
        ProtectionOf(text, all.find_first_not_of("\r\n", text.size()) == std::string_view::npos);
    if (!facts.Protection)
        return facts;
    if (text.size() >= TimeEnd)
        facts.Date = ParseDate(text.substr(DateColumn, TimeEnd - DateColumn));
    if (facts.Date)
        facts.Hundredths = static_cast<std::uint8_t>(Number(text.substr(TimeEnd - 2, 2)));
    if (text.size() > CommentColumn)
        facts.Comment = ParseComment(text.substr(CommentColumn));
    return facts;
}

} // namespace dos
