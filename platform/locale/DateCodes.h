// What the codes of date formats have in common for writing and reading: the flag between "%" and
// the letter, and the codes that stand for others. Private to platform/locale.
#pragma once

#include <string_view>

namespace locale {

// Between "%" and the code letter.
enum class DateFlag { None, Minus, Plus, Upper, LoneLower, LonePlus };

[[nodiscard]] constexpr DateFlag DateFlagOf(char c) noexcept {
    switch (c) {
    case '-':
        return DateFlag::Minus;
    case '+':
        return DateFlag::Plus;
    case '^':
        return DateFlag::Upper;
    case '<':
        return DateFlag::LoneLower;
    case '>':
        return DateFlag::LonePlus;
    default:
        return DateFlag::None;
    }
}

// The format that a code stands for, empty for a code with a value of its own.
[[nodiscard]] constexpr std::string_view CompoundOf(char code) noexcept {
    switch (code) {
    case 'c':
        return "%a %b %d %H:%M:%S %Y";
    case 'D':
    case 'x':
        return "%m/%d/%y";
    case 'F':
        return "%Y-%m-%d";
    case 'r':
        return "%I:%M:%S %p";
    case 'R':
        return "%H:%M";
    case 'T':
    case 'X':
        return "%H:%M:%S";
    default:
        return {};
    }
}

} // namespace locale
