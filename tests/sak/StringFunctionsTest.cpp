#include "sak/StringFunctions.h"

#include <gtest/gtest.h>
#include <vector>

namespace solvane {
namespace {

TEST(StringFunctions, TitleAndCamelCase) {
    struct Row {
        std::string_view Given, Title, Camel;
    };
    for (const Row& row : {Row{"", "", ""}, Row{"the quick FOX", "The Quick Fox", "TheQuickFox"},
                           Row{"read.me", "Read.Me", "Read.Me"}, Row{"a..b", "A..b", "A..b"},
                           Row{"a. b", "A. b", "A.b"}, Row{".info", ".Info", ".Info"},
                           Row{"ärger ÜBER", "Ärger Über", "ÄrgerÜber"}, Row{"a\xFFK", "A\xFFk", "A\xFFk"}}) {
        EXPECT_EQ(SAK_ConvertToTitleCase(row.Given), row.Title);
        EXPECT_EQ(SAK_ConvertToCamelCase(row.Given), row.Camel);
    }
}

TEST(StringFunctions, WholeTextsChangeCase) {
    EXPECT_EQ(SAK_StringToLower("ABC \xC3\x84"), "abc \xC3\xA4");
    EXPECT_EQ(SAK_StringToUpper("abc \xC3\xA4"), "ABC \xC3\x84");
}

TEST(StringFunctions, CharactersMoveWhole) {
    EXPECT_EQ(SAK_ReverseString("a\xC3\xA4\xE2\x82\xAC"), "€äa");
    EXPECT_EQ(SAK_swap("aäc", 0, 1), "äac");
    EXPECT_EQ(SAK_swap("abc", 0, 3), "abc");
    EXPECT_EQ(SAK_CountChars("aäbä", "\xC3\xA4x"), 2U);
    EXPECT_EQ(SAK_CountChars("aaa", ""), 0U);
}

TEST(StringFunctions, FindsPlaces) {
    EXPECT_EQ(SAK_strrchr("a/b/c", '/'), 3U);
    EXPECT_EQ(SAK_strrchr("abc", '\0'), 3U);
    EXPECT_EQ(SAK_strrchr("abc", 'x'), NotFound);
    EXPECT_EQ(SAK_strcasestr("The FTPMount:", "ftpmount:"), 4U);
    EXPECT_EQ(SAK_strcasestr("straße Ä", "\xC3\xA4"), 8U);
    EXPECT_EQ(SAK_strcasestr("abc", ""), 0U);
    EXPECT_EQ(SAK_strcasestr("", "a"), NotFound);
    EXPECT_EQ(SAK_strcasestr("abc", "abcd"), NotFound);
    EXPECT_EQ(SAK_strrstr("abcABCabc", "abc"), 6U);
    EXPECT_EQ(SAK_strrstr("ab", "abc"), NotFound);
}

TEST(StringFunctions, FindLooksOnlyIntoTheLengthGiven) {
    struct Row {
        std::string_view Text;
        std::size_t Length;
        std::string_view Find;
        std::ptrdiff_t Fold, Keep;
    };
    for (const Row& row : {Row{"Hello World", 11, "WORLD", 6, -1}, Row{"Hello World", 11, "World", 6, 6},
                           Row{"Hello World", 10, "World", -1, -1}, Row{"Hello", 99, "lo", 3, 3},
                           Row{"ab", 2, "abc", -1, -1}, Row{"", 5, "a", -1, -1}, Row{"abc", 3, "", -1, -1},
                           Row{"abc", 0, "a", -1, -1}, Row{"aAa", 3, "A", 0, 1}}) {
        EXPECT_EQ(SAK_Find(row.Text, row.Length, row.Find, FindMode::FoldCase), row.Fold) << row.Text;
        EXPECT_EQ(SAK_Find(row.Text, row.Length, row.Find, FindMode::KeepCase), row.Keep) << row.Text;
    }
}

TEST(StringFunctions, Replaces) {
    struct Row {
        std::string_view Text, Find, Replace;
        FindMode Mode;
        ReplaceScope Scope;
        std::string_view Result;
        std::uint32_t Count;
    };
    constexpr FindMode Fold = FindMode::FoldCase;
    constexpr FindMode Keep = FindMode::KeepCase;
    constexpr ReplaceScope First = ReplaceScope::First;
    constexpr ReplaceScope All = ReplaceScope::All;
    for (const Row& row :
         {Row{"", "a", "b", Fold, All, "", 0}, Row{"abc", "", "b", Fold, All, "abc", 0},
          Row{"aaa", "a", "b", Keep, All, "bbb", 3}, Row{"aaa", "a", "b", Keep, First, "baa", 1},
          Row{"aaa", "a", "aa", Fold, All, "aaaaaa", 3},
          Row{"Photo.JPG", "jpg", "jpeg", Fold, First, "Photo.jpeg", 1},
          Row{"Photo.JPG", "jpg", "jpeg", Keep, First, "Photo.JPG", 0},
          Row{"a-b-c", "-", "", Keep, All, "abc", 2}, Row{"ab", "abc", "x", Fold, All, "ab", 0},
          Row{"x\xC3\x84y", "\xC3\xA4", "ae", Fold, All, "xaey", 1}}) {
        Text<1024> text = row.Text;
        EXPECT_EQ(SAK_FindAndReplace(text, row.Find, row.Replace, row.Mode, row.Scope), row.Count)
            << row.Text;
        EXPECT_EQ(text.View(), row.Result);
    }
}

TEST(StringFunctions, ReplacingKeepsToItsLimitAtAWholeCharacter) {
    const Replaced done =
        SAK_FindAndReplace(std::string(1000, 'a'), "a", "\xC3\xA4", FindMode::KeepCase, ReplaceScope::All);
    EXPECT_EQ(done.Count, 1000U);
    EXPECT_EQ(done.Result.size(), 1022U);
}

TEST(StringFunctions, RemovesOccurences) {
    EXPECT_EQ(SAK_RemoveAllOccurences("a.b.c", "."), "abc");
    EXPECT_EQ(SAK_RemoveAllOccurences("aabb", "ab"), "ab");
    EXPECT_EQ(SAK_RemoveAllOccurences("abc", ""), "abc");
    EXPECT_EQ(SAK_RemoveFirstOccurence("a.b.c", "."), "ab.c");
    EXPECT_EQ(SAK_RemoveLastOccurence("a.b.c", "."), "a.bc");
    EXPECT_EQ(SAK_RemoveLastOccurence("abc", "B"), "abc");
    EXPECT_EQ(SAK_RemoveFirstOccurence("", "x"), "");
}

TEST(StringFunctions, TrimsAndInserts) {
    EXPECT_EQ(SAK_TrimWhitespace("\t a b \n"), "a b");
    EXPECT_EQ(SAK_TrimWhitespace(" a ", TrimSide::Left), "a ");
    EXPECT_EQ(SAK_TrimWhitespace(" a ", TrimSide::Right), " a");
    EXPECT_EQ(SAK_TrimWhitespace("  \n"), "");
    EXPECT_EQ(SAK_strins("path", "[Arc]"), "[Arc]path");
}

TEST(StringFunctions, MeasuresLabelsInCharactersWithoutKeyMarks) {
    EXPECT_EQ(SAK_GadToolsStrlen("_Continue"), 8U);
    EXPECT_EQ(SAK_GadToolsStrlen("_\xC3\x84ndern"), 6U);
    const std::vector<std::string_view> labels = {"_OK", "Abbre_chen", "", "\xC3\x84\xC3\x84"};
    EXPECT_EQ(SAK_GadToolsLongestString(labels), 9U);
    EXPECT_EQ(SAK_LongestStrLenCharacters(labels), 10U);
}

} // namespace
} // namespace solvane
