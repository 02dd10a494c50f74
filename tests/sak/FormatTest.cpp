#include "sak/Format.h"

#include "sak/Text.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace solvane {
namespace {

TEST(Format, WritesEachConversionByTheValueOfItsArgument) {
    EXPECT_EQ(FormatText("%s items", std::uint32_t{3} == 3 ? "three" : ""), "three items");
    EXPECT_EQ(FormatText("Solvane_%lu.port", 7), "Solvane_7.port");
    EXPECT_EQ(FormatText("%ld %lld", -5, std::numeric_limits<std::int64_t>::min()),
              "-5 -9223372036854775808");
    EXPECT_EQ(FormatText("%llu", std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(FormatText("%lu", std::int16_t{-1}), "-1") << "a value is never reinterpreted";
    EXPECT_EQ(FormatText("%02lu:%02u", 5, std::uint16_t{12}), "05:12");
    EXPECT_EQ(FormatText("%02X%x", std::uint8_t{10}, 0xBEEFU), "0Abeef");
    EXPECT_EQ(FormatText("%c%lc%c", 'a', U'\u20AC', 66), "a€B");
    EXPECT_EQ(FormatText("100%% of %s", Text<10>("it")), "100% of it");
}

TEST(Format, PadsAndCutsByWholeCharacters) {
    EXPECT_EQ(FormatText("[%5s][%-5s]", "\xC3\xA4", "b"), "[    \xC3\xA4][b    ]");
    EXPECT_EQ(FormatText("%.3s|", "ab\xC3\xA4"), "ab|");
    EXPECT_EQ(FormatText("%05d|%-5d|%5d|%.3d", -42, -42, -42, -42), "-0042|-42  |  -42|-042");
}

TEST(Format, CatalogsMayReorderArguments) {
    EXPECT_EQ(FormatCatalogText("%2$s: %1$lu", "%lu %s", 3, "Dateien"), "Dateien: 3");
    EXPECT_EQ(FormatCatalogText("%1$s %1$s", "%s", "twice"), "twice twice");
}

TEST(Format, TextsWithConversionsInThemAreData) {
    EXPECT_EQ(FormatText("Delete \"%s\"?", "%s%n%lu"), "Delete \"%s%n%lu\"?");
}

TEST(Format, ABrokenFormatOfACatalogGivesWayToTheBuiltInOne) {
    for (const char* format : {"%lu: %s",    // exchanged
                               "%s: %lu %s", // one too many
                               "%s: %s",     // wrong type
                               "%s: %n",     // writes, in other formatters
                               "%3$s",        "%0$s",         "%99999999999999999999$s", // no such argument
                               "%1$s %s",     "%s %2$lu",                                // mixed forms
                               "%",           "%s %",         "%l",
                               "%-08",        "%1$",          "%.",
                               "%s %5", // cut short
                               "%999999999s", "%.999999999s", "%*s",
                               "%1$*2$s", // sizes
                               "%f",          "%p",           "%S",
                               "%\xC3\xA4"})
        EXPECT_EQ(FormatCatalogText(format, "%s: %lu", "name", 7), "name: 7") << format;
}

TEST(Format, OwnFormatsKeepWhatCannotBeServed) {
    EXPECT_EQ(FormatText("%s and %s"), "%s and %s");
    EXPECT_EQ(FormatText("%lu %s %q%", "text", "more"), "%lu more %q%");
}

// Any bytes at all may come from a catalog file.
TEST(Format, RandomFormatsEndAndStayBounded) {
    std::mt19937 random(4711);
    const std::string_view alphabet = "%%%%sdluxXc$-0123.*hzl \xC3\xA4\xFF";
    for (int round = 0; round < 20000; ++round) {
        std::string format;
        for (auto length = random() % 24; length > 0; --length)
            format += alphabet[random() % alphabet.size()];
        const std::string text = FormatText(format, "argument", 1, U'\x10FFFF', -1);
        EXPECT_LE(text.size(), 24 * (MaximumFieldWidth + 1)) << format;
    }
}

} // namespace
} // namespace solvane
