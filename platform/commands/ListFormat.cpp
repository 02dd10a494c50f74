#include "platform/commands/ListFormat.h"

#include "platform/dos/CommandLine.h"
#include "platform/dos/Dates.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace commands {

namespace {

constexpr std::size_t WidestField = 1024; // characters
constexpr std::uint32_t DaysOfNames = 7;

// "%-20.8n" without its "%".
struct Code {
    char Letter = 0;
    bool IsLeft = false;
    std::size_t Width = 0;
    std::optional<std::size_t> Most;
};

std::size_t ReadNumber(std::string_view format, std::size_t& at) {
    std::size_t number = 0;
    const char* end = format.data() + format.size();
    const auto result = std::from_chars(format.data() + at, end, number);
    at = static_cast<std::size_t>(result.ptr - format.data());
    return result.ec == std::errc() ? std::min(number, WidestField) : 0;
}

// Reads a code behind its "%"; at is moved behind it. A letter of 0: the format ends before.
Code ReadCode(std::string_view format, std::size_t& at) {
    Code code;
    if (at < format.size() && format[at] == '-') {
        code.IsLeft = true;
        ++at;
    }
    code.Width = ReadNumber(format, at);
    if (at < format.size() && format[at] == '.') {
        ++at;
        code.Most = ReadNumber(format, at);
    }
    if (at < format.size())
        code.Letter = static_cast<char>(utility::ToLower(static_cast<unsigned char>(format[at++])));
    return code;
}

std::size_t CountNames(std::string_view format) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < format.size();)
        if (format[at++] == '%' && ReadCode(format, at).Letter == 's')
            ++count;
    return count;
}

// Whether the %s of that number, from 0, is the path.
bool IsPath(std::size_t number, std::size_t count) {
    return count > 1 && (number == 0 || (number == 2 && count > 3));
}

std::size_t ExtensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? name.size() : dot;
}

std::optional<std::string> ValueOf(char letter, const ListedObject& object, bool isPath) {
    const dos::ExamineData& data = object.Data;
    const std::size_t dot = ExtensionOf(data.Name);
    switch (letter) {
    case 's':
        return isPath ? std::string(object.Drawer) : data.Name;
    case 'n':
        return data.Name;
    case 'm':
        return data.Name.substr(0, dot);
    case 'e':
        return data.Name.substr(std::min(dot + 1, data.Name.size()));
    case 'p':
        return std::string(object.Drawer);
    case 'f':
        return std::string(object.FullDrawer);
    case 'l':
        return std::to_string(data.Size);
    case 'b':
        return std::to_string(BlocksOf(data.Size));
    case 'a':
        return ProtectionText(data.Protection);
    case 'c':
        return data.Comment;
    case 'd':
        return DayText(data.Date, DayForm::Plain, 0);
    case 't':
        return TimeText(data.Date);
    case '%':
        return std::string("%");
    default:
        return {};
    }
}

std::string CutTo(std::string_view text, std::size_t characters) {
    std::size_t at = 0;
    for (; at < text.size() && characters > 0; --characters)
        at += utility::Decode(text, at).Length;
    return std::string(text.substr(0, at));
}

std::string Fit(std::string value, const Code& code) {
    if (code.Most)
        value = CutTo(value, *code.Most);
    return code.IsLeft ? PadRight(value, code.Width) : PadLeft(value, code.Width);
}

} // namespace

std::string FormatListLine(const Context& context, std::string_view format, const ListedObject& object) {
    const std::size_t count = CountNames(format);
    std::size_t number = 0;
    bool isQuoted = false;
    std::string line;
    for (std::size_t at = 0; at < format.size();) {
        const char character = format[at++];
        if (character != '%') {
            isQuoted = isQuoted != (character == '"');
            line += character;
            continue;
        }
        const std::size_t from = at;
        const Code code = ReadCode(format, at);
        auto value = ValueOf(code.Letter, object, code.Letter == 's' && IsPath(number, count));
        number += code.Letter == 's' ? 1 : 0;
        if (!value) { // no code: as it stands
            line.append(format.substr(from - 1, at - from + 1));
            continue;
        }
        *value = Fit(Shown(context, *value), code);
        line += isQuoted ? dos::EscapeArgument(*value) : *value;
    }
    return line;
}

std::string DayText(std::uint32_t date, DayForm form, std::uint32_t now) {
    const std::uint32_t day = date / dos::SecondsPerDay;
    const std::uint32_t today = now / dos::SecondsPerDay;
    if (form == DayForm::Relative) {
        if (day == today)
            return "Today";
        if (day + 1 == today)
            return "Yesterday";
        if (day == today + 1)
            return "Tomorrow";
        if (day > today)
            return "Future";
        if (today - day < DaysOfNames)
            return locale::FormatDate("%A", date);
    }
    return locale::FormatDate("%d-%b-%y", date);
}

std::string TimeText(std::uint32_t date) {
    return locale::FormatDate("%H:%M:%S", date);
}

std::string ProtectionText(std::uint32_t bits) {
    constexpr std::string_view allLetters = "hsparwed";
    const std::uint32_t shown =
        bits ^ (dos::ProtectRead | dos::ProtectWrite | dos::ProtectExecute | dos::ProtectDelete);
    std::string text;
    for (std::size_t i = 0; i < allLetters.size(); ++i)
        text += (shown & (dos::ProtectHold >> i)) != 0 ? allLetters[i] : '-';
    return text;
}

std::uint64_t BlocksOf(std::uint64_t bytes) noexcept {
    return bytes / BlockSize + (bytes % BlockSize != 0 ? 1 : 0);
}

} // namespace commands
