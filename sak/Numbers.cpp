#include "sak/Numbers.h"

#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"
#include "sak/Format.h"
#include "sak/Locale.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace solvane {

SizeUnitTexts SizeUnits;

namespace {

// A unit with the least number of digits that a sort key of it has.
struct UnitWidth {
    const Text<10>& Unit;
    std::size_t Digits;
};

bool RemoveFirst(std::string& text, std::string_view part) {
    const std::size_t at = part.empty() ? std::string::npos : text.find(part);
    if (at == std::string::npos) {
        return false;
    }
    text.erase(at, part.size());
    return true;
}

std::uint64_t LeadingNumber(std::string_view text) {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Takes the unit out of the text and says how many digits its key has.
std::size_t TakeUnit(std::string& text) {
    const std::array<UnitWidth, 4> units{
        {{SizeUnits.TB, 8}, {SizeUnits.GB, 7}, {SizeUnits.MB, 6}, {SizeUnits.KB, 5}}};
    for (const UnitWidth& unit : units) {
        if (RemoveFirst(text, unit.Unit)) {
            return unit.Digits;
        }
    }
    RemoveFirst(text, SizeUnits.B);
    return 1;
}

} // namespace

Text<15> BytesToUnit(std::uint64_t bytes) {
    if (bytes < 1024) {
        return FormatText("%llu %s", bytes, SizeUnits.B);
    }
    const auto text = [](std::uint64_t hundredths, std::string_view unit) {
        return FormatText("%llu%s%02llu %s", hundredths / 100, locale::DecimalPoint(), hundredths % 100,
                          unit);
    };
    if (bytes < std::uint64_t{1} << 20U) {
        return text((bytes * 100 + 512) >> 10U, SizeUnits.KB);
    }
    if (bytes < std::uint64_t{1} << 30U) {
        return text((bytes * 100 + (std::uint64_t{1} << 19U)) >> 20U, SizeUnits.MB);
    }
    if (bytes < std::uint64_t{1} << 40U) {
        return text((bytes * 100 + (std::uint64_t{1} << 29U)) >> 30U, SizeUnits.GB);
    }
    // The product of a larger count has no room in 64 bits: its low 32 bits, and their carry, are
    // left out.
    return text(((bytes >> 32U) * 100 + (1U << 7U)) >> 8U, SizeUnits.TB);
}

std::uint64_t UnitToSortBytes(std::string_view text) {
    std::string digits(text.substr(0, utility::CutLength(text, 19)));
    RemoveFirst(digits, locale::DecimalPoint());
    const std::size_t width = TakeUnit(digits);
    RemoveFirst(digits, " ");
    std::reverse(digits.begin(), digits.end());
    std::string key = FormatText("%llu", LeadingNumber(digits));
    key.insert(0, width > key.size() ? width - key.size() : 0, '0');
    std::reverse(key.begin(), key.end());
    return LeadingNumber(key) & UINT32_MAX;
}

std::string SAK_LocalizeNumber(std::int64_t value) {
    return SAK_LocalizeNumber(value, SAK_LocaleIsOpen() ? locale::GroupSeparator() : ",");
}

std::string SAK_LocalizeNumber(std::int64_t value, std::string_view separator) {
    if (!separator.empty()) {
        separator = separator.substr(0, utility::Decode(separator, 0).Length);
    }
    std::string text = FormatText("%lld", value);
    const std::size_t firstDigit = value < 0 ? 1 : 0;
    for (std::size_t at = text.size(); at > firstDigit + 3;) {
        at -= 3;
        text.insert(at, separator);
    }
    return text;
}

} // namespace solvane
