#include "platform/dos/NameEscapes.h"

#include "platform/dos/Sidecar.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace dos {

namespace {

// Names that a path could not hold.
bool IsNoName(std::string_view name) {
    return name == "." || name == ".." || name.find_first_of(std::string_view("/\0", 2)) != name.npos;
}

} // namespace

std::optional<std::string> DecodePercents(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out.push_back(text[i]);
            continue;
        }
        const int high = i + 2 < text.size() ? HexDigitValue(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? HexDigitValue(text[i + 2]) : -1;
        if (high < 0 || low < 0)
            return {};
        out.push_back(static_cast<char>(high * 16 + low));
        i += 2;
    }
    return out;
}

int HexDigitValue(char c) noexcept {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool IsAlwaysEscaped(unsigned char c) noexcept {
    constexpr std::string_view Special = "%\\*?\"/|<>";
    return c < 32 || Special.find(static_cast<char>(c)) != std::string_view::npos;
}

bool HidesLast(std::string_view text) noexcept {
    return text.ends_with('.') || text.ends_with(' ') || text.ends_with(SidecarSuffix);
}

bool HidesThird(std::string_view text) noexcept {
    constexpr std::string_view Words[] = {"AUX", "CON", "PRN", "NUL"};
    constexpr std::string_view Numbered[] = {"COM", "LPT"};
    const std::string_view word = text.substr(0, text.find('.'));
    const auto is = [word](std::string_view one) { return utility::Stricmp(word.substr(0, 3), one) == 0; };
    if (word.size() == 3)
        return std::ranges::any_of(Words, is);
    return word.size() == 4 && word[3] >= '0' && word[3] <= '9' && std::ranges::any_of(Numbered, is);
}

void AppendEscape(std::string& text, unsigned char c) {
    constexpr std::string_view Digits = "0123456789abcdef";
    text.append({'%', Digits[c >> 4], Digits[c & 15]});
}

bool NeedsEscape(std::string_view name) noexcept {
    return HidesLast(name) || HidesThird(name) ||
           std::ranges::any_of(name, [](char c) { return IsAlwaysEscaped(static_cast<unsigned char>(c)); });
}

std::string EscapedName(std::string_view name) {
    const bool hidesLast = HidesLast(name);
    const bool hidesThird = HidesThird(name);
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (IsAlwaysEscaped(c) || (hidesLast && i + 1 == name.size()) || (hidesThird && i == 2))
            AppendEscape(out, c);
        else
            out.push_back(name[i]);
    }
    return out;
}

std::string UnescapedName(std::string_view hostName) {
    if (hostName.find('%') == hostName.npos)
        return std::string(hostName);
    const auto name = DecodePercents(hostName);
    const bool isEscape = name && !IsNoName(*name) && EscapedName(*name) == hostName;
    return isEscape ? *name : std::string(hostName);
}

bool IsEscape(std::string_view hostName) {
    return hostName.find('%') != hostName.npos && UnescapedName(hostName) != hostName;
}

std::string HostNameFor(MetadataRule rule, std::string_view name) {
    return rule == MetadataRule::Uaem ? EscapedName(name) : std::string(name);
}

std::string OwnNameOf(MetadataRule rule, std::string_view hostName) {
    return rule == MetadataRule::Uaem ? UnescapedName(hostName) : std::string(hostName);
}

} // namespace dos
