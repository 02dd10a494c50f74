#include "platform/dos/Sidecar.h"

#include "platform/dos/Dates.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>

namespace dos {

namespace {

constexpr std::string_view Letters = "hsparwed"; // bits 7 to 0
constexpr std::uint32_t InvertedBits = 15;       // set when not allowed
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
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
    if (!HasShape(text, "0000-00-00 00:00:00.00"))
        return {};
    return CheckDate({.Second = Number(text.substr(17, 2)),
                      .Minute = Number(text.substr(14, 2)),
                      .Hour = Number(text.substr(11, 2)),
                      .Day = Number(text.substr(8, 2)),
                      .Month = Number(text.substr(5, 2)),
                      .Year = Number(text.substr(0, 4)),
                      .WeekDay = 0});
}

unsigned HexDigit(char c) {
    if (IsDigit(c))
        return static_cast<unsigned>(c - '0');
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 0;
}

// "%xx" is a Latin-1 character. What is above ASCII without that escape is UTF-8 from one writer
// and Latin-1 from the other.
std::string ParseComment(std::string_view text) {
    std::string out;
    const bool isUtf8 = utility::IsValidUtf8(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
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

} // namespace

std::optional<std::uint32_t> ProtectionFromLetters(std::string_view letters) noexcept {
    if (letters.size() != Letters.size())
        return {};
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < Letters.size(); ++i) {
        if (letters[i] != '-' && letters[i] != Letters[i])
            return {};
        if (letters[i] == Letters[i])
            bits |= 1u << (Letters.size() - 1 - i);
    }
    return bits ^ InvertedBits;
}

SidecarFacts ParseSidecar(std::string_view text) {
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    text = text.substr(0, text.find_first_of("\r\n"));
    SidecarFacts facts;
    facts.Protection = ProtectionFromLetters(text.substr(0, Letters.size()));
    if (!facts.Protection)
        return facts;
    if (text.size() >= TimeEnd)
        facts.Date = ParseDate(text.substr(DateColumn, TimeEnd - DateColumn));
    if (text.size() > CommentColumn)
        facts.Comment = ParseComment(text.substr(CommentColumn));
    return facts;
}

} // namespace dos
