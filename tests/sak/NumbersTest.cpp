#include "sak/Numbers.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

// The tests run in the C locale, whose decimal point is ".".
namespace solvane {
namespace {

struct UnitCase {
    std::uint64_t Bytes;
    std::string_view Text;
    std::uint64_t SortKey;
};

constexpr std::uint64_t Kilo = 1024;
constexpr std::uint64_t Mega = Kilo * Kilo;
constexpr std::uint64_t Giga = Mega * Kilo;
constexpr std::uint64_t Tera = Giga * Kilo;

TEST(Numbers, ByteCountsReadAsTextAndSortByTheirLeadingDigits) {
    for (const UnitCase& row :
         {UnitCase{0, "0 B", 0}, UnitCase{120, "120 B", 12}, UnitCase{1023, "1023 B", 1023},
          UnitCase{Kilo, "1.00 KB", 10000}, UnitCase{1536, "1.50 KB", 15000},
          UnitCase{Mega - 1, "1024.00 KB", 10240}, UnitCase{Mega, "1.00 MB", 100000},
          UnitCase{Mega * 3 / 2, "1.50 MB", 150000}, UnitCase{12939428, "12.34 MB", 123400},
          UnitCase{Giga * 10, "10.00 GB", 1000000}, UnitCase{Tera - 1, "1024.00 GB", 1024000},
          UnitCase{Tera, "1.00 TB", 10000000},
          // Above, the low 32 bits are left out of the rounding: 2^40 + 2^32 - 1 is 1.00 still.
          UnitCase{Tera + (Tera / 200), "1.00 TB", 10000000},
          UnitCase{std::numeric_limits<std::uint64_t>::max(), "16777216.00 TB", 16777216}}) {
        EXPECT_EQ(BytesToUnit(row.Bytes).View(), row.Text);
        EXPECT_EQ(UnitToSortBytes(row.Text), row.SortKey) << row.Text;
    }
}

TEST(Numbers, SortKeysOfForeignTextsAreHarmless) {
    EXPECT_EQ(UnitToSortBytes(""), 0U);
    EXPECT_EQ(UnitToSortBytes("no number at all, but long"), 0U);
    EXPECT_LE(UnitToSortBytes("99999999999999999999999999"), std::uint64_t{UINT32_MAX});
}

TEST(Numbers, UnitsOfACatalogServeBothWays) {
    const SizeUnitTexts english = SizeUnits;
    SizeUnits = {"o", "Ko", "Mo", "Go", "To"};
    EXPECT_EQ(BytesToUnit(Mega * 3 / 2).View(), "1.50 Mo");
    EXPECT_EQ(UnitToSortBytes("1.50 Mo"), 150000U);
    EXPECT_EQ(UnitToSortBytes("12 o"), 12U);
    SizeUnits = english;
}

TEST(Numbers, GroupsDigitsByThree) {
    EXPECT_EQ(SAK_LocalizeNumber(0, ","), "0");
    EXPECT_EQ(SAK_LocalizeNumber(999, ","), "999");
    EXPECT_EQ(SAK_LocalizeNumber(1000, ","), "1,000");
    EXPECT_EQ(SAK_LocalizeNumber(-999, ","), "-999");
    EXPECT_EQ(SAK_LocalizeNumber(-1234567, ","), "-1,234,567");
    EXPECT_EQ(SAK_LocalizeNumber(123456, "\xE2\x80\xAF..."), "123\xE2\x80\xAF"
                                                             "456");
    EXPECT_EQ(SAK_LocalizeNumber(std::numeric_limits<std::int64_t>::min(), "."),
              "-9.223.372.036.854.775.808");
    EXPECT_EQ(SAK_LocalizeNumber(1000, ""), "1000");
}

TEST(Numbers, ComparesWithoutOverflow) {
    EXPECT_EQ(SAK_CompareValues32(INT32_MIN, INT32_MAX), -1);
    EXPECT_EQ(SAK_CompareValues64(INT64_MAX, INT64_MIN), 1);
    EXPECT_EQ(SAK_CompareValues64(5, 5), 0);
    EXPECT_EQ(SAK_CompareValuesFloat(-1.0F, 0.5F), -1.0F);
}

} // namespace
} // namespace solvane
