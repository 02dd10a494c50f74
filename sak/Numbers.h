// Numbers as people read them: byte counts with a unit, digits in groups; and the three-way
// compares that sorts use. What a locale or a catalog decides is asked of locale:: or stands in
// SizeUnits.
#pragma once

#include "sak/Text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace solvane {

// The unit texts of BytesToUnit.
struct SizeUnitTexts {
    Text<10> B = "B";
    Text<10> KB = "KB";
    Text<10> MB = "MB";
    Text<10> GB = "GB";
    Text<10> TB = "TB";
};

// --- State ---

extern SizeUnitTexts SizeUnits; // English until the catalog is open; written where the catalog is opened

// --- Functions ---

// "512 B", "1.50 MB": below 1024 the plain count, else two rounded decimals behind the locale's
// decimal point. Rounding may show "1024.00 KB"; intended.
[[nodiscard]] Text<15> BytesToUnit(std::uint64_t bytes);

// The sort key of such a text. It compares the leading digits within a unit, not the magnitudes: "1.50 MB"
// gives 150000, "12.34 MB" 123400, and plain bytes lose their trailing zeros. Intended; virtual locations
// sort by it.
[[nodiscard]] std::uint64_t UnitToSortBytes(std::string_view text);

// The value with the locale's group separator (its first character) between groups of three digits:
// "-1,234,567"; "," before the locale is open.
[[nodiscard]] std::string SAK_LocalizeNumber(std::int64_t value);
// The same with a given separator.
[[nodiscard]] std::string SAK_LocalizeNumber(std::int64_t value, std::string_view separator);

// 1 when a is larger, -1 when a is smaller, 0 when equal.
[[nodiscard]] constexpr int SAK_CompareValues32(std::int32_t a, std::int32_t b) {
    return (a > b) - (a < b);
}
[[nodiscard]] constexpr int SAK_CompareValues64(std::int64_t a, std::int64_t b) {
    return (a > b) - (a < b);
}
[[nodiscard]] constexpr float SAK_CompareValuesFloat(float a, float b) {
    return static_cast<float>((a > b) - (a < b));
}

} // namespace solvane
