#include "platform/utility/Text.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using namespace std::string_view_literals;

int Sign(int order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

TEST(TextTest, ComparesFoldedCharacters) {
    struct Row {
        std::string_view A, B;
        int Order;
    };
    const Row rows[] = {
        {"", "", 0},
        {"", "a", -1},
        {"ReadMe.Info", "README.INFO", 0},
        {"drawer of long name", "DRAWER OF LONG NAMES", -1},
        {"[", "a", -1}, // between upper and lower case: letters count as lower case
        {"_", "Z", -1},
        {"@", "`", -1}, // 0x40 and 0x60 are no case pair, nor are "[" and "{"
        {"abcdefg[", "abcdefg{", -1},
        {"Ärger", "äRGER", 0},
        {"×", "÷", -1}, // the two signs among the Latin-1 letters are no pair
        {"Ÿ", "ÿ", 0},
        {"Žižek", "žIŽEK", 0},
        {"ΣΊΣΥΦΟΣ", "σίσυφος", 0},
        {"Ёлка", "ёЛКА", 0},
        {"ẠẾ", "ạế", 0},
        {"STRAẞE", "straße", 0},
        {"ıI", "iI", 1}, // no language rules: the dotless i is another letter
        {"日本", "日本", 0},
        {"z", "é", -1},
        {"\xC3", "\U0010FFFF", 1},
        {"\x80", "\xFF", -1},
        {"abcdefghi\xFF", "ABCDEFGHI\xFF", 0},
        {"\xE9", "\xC9", 1}, // bytes that are no characters have no case
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Sign(utility::Stricmp(row.A, row.B)), row.Order) << row.A << " : " << row.B;
        EXPECT_EQ(Sign(utility::Stricmp(row.B, row.A)), -row.Order) << row.B << " : " << row.A;
    }
}

TEST(TextTest, StrnicmpLooksOnlyAtTheFirstBytes) {
    EXPECT_EQ(utility::Strnicmp("FileName", "filetype", 4), 0);
    EXPECT_LT(utility::Strnicmp("FileName", "filetype", 5), 0);
    EXPECT_LT(utility::Strnicmp("file", "filetype", 20), 0);
    EXPECT_EQ(utility::Strnicmp("a", "b", 0), 0);
}

// Names that meet in every place where compare and keys could differ.
std::vector<std::string> MixedNames() {
    constexpr std::array pieces = {"a"sv, "B"sv, "["sv,  "_"sv,    "É"sv,    "é"sv,  "ß"sv,   "ẞ"sv,
                                   "Σ"sv, "ς"sv, "日"sv, "\xFF"sv, "\xC3"sv, "\0"sv, "Zz8"sv, "\U0001F600"sv};
    std::mt19937 random(7);
    std::vector<std::string> names(400);
    for (std::string& name : names)
        for (auto left = random() % 8; left > 0; --left)
            name += pieces[random() % pieces.size()];
    return names;
}

TEST(TextTest, KeysOrderLikeStricmp) {
    const std::vector<std::string> names = MixedNames();
    for (const std::string& a : names)
        for (const std::string& b : names) {
            const int order = Sign(utility::Stricmp(a, b));
            ASSERT_EQ(Sign(utility::Fold(a).compare(utility::Fold(b))), order) << a << " : " << b;
            const auto prefixA = utility::FoldPrefix(a);
            const auto prefixB = utility::FoldPrefix(b);
            if (prefixA != prefixB) {
                ASSERT_EQ(prefixA < prefixB ? -1 : 1, order) << a << " : " << b;
            }
        }
}

TEST(TextTest, CaseMappingGoesThereAndBackForLetterPairs) {
    for (char32_t c = 0; c < 0x2000; ++c) {
        const char32_t lower = utility::ToLower(c);
        if (lower != c && utility::ToUpper(c) == c && c != 0x1E9E) {
            EXPECT_EQ(utility::ToUpper(lower), c) << std::hex << static_cast<unsigned>(c);
        }
        EXPECT_EQ(utility::ToLower(lower), lower) << std::hex << static_cast<unsigned>(c);
    }
    EXPECT_EQ(utility::ToUpper(0x1F600), char32_t{0x1F600});
}

TEST(TextTest, CutsOnlyBetweenCharacters) {
    struct Row {
        std::string_view Text;
        std::size_t Limit, Length;
    };
    const Row rows[] = {
        {"abc", 5, 3},
        {"abc", 2, 2},
        {"abc", 0, 0},
        {"aé", 2, 1},
        {"aé", 3, 3},
        {"日本", 5, 3},
        {"\U0001F600", 3, 0},
        {"x\U0001F600", 4, 1},
        {"\xC3\xC3\xA9", 2, 1},
        {"\xFF\xFF\xFF", 2, 2},
        {"a\x80\x80\x80\x80", 3, 3},
        {"\xF0\x9F\x98", 2, 2},
    };
    for (const Row& row : rows)
        EXPECT_EQ(utility::CutLength(row.Text, row.Limit), row.Length) << row.Text;
}

TEST(TextTest, ReplacesEachInvalidByte) {
    struct Row {
        std::string_view Text, Shown;
    };
    const Row rows[] = {
        {"plain é 日 \U0001F600", "plain é 日 \U0001F600"},
        {"a\xFF", "a\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"}, // overlong
        {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // above the last code point
        {"\xE6\x97x", "\uFFFD\uFFFDx"},                   // cut short
    };
    for (const Row& row : rows) {
        EXPECT_EQ(utility::ReplaceInvalidUtf8(row.Text), row.Shown);
        EXPECT_EQ(utility::IsValidUtf8(row.Text), row.Text == row.Shown);
    }
}

TEST(TextTest, Latin1BytesBecomeCharacters) {
    EXPECT_EQ(utility::Utf8FromLatin1("\xBB Gr\xFC\xDF"), "» Grüß");
}

} // namespace
