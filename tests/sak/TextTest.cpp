#include "sak/Text.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace solvane {
namespace {

struct CutCase {
    std::string_view Name, Given;
    std::string_view Kept; // by a Text<6>, so at most five bytes
};

TEST(Text, IsCutAtAWholeCharacterHoweverItArrives) {
    for (const CutCase& row :
         {CutCase{"Fits", "abcde", "abcde"}, CutCase{"Ascii", "abcdef", "abcde"},
          CutCase{"TwoByteFits", "abc\xC3\xA4", "abc\xC3\xA4"}, CutCase{"TwoByteCut", "abcd\xC3\xA4", "abcd"},
          CutCase{"ThreeByteCut", "abc\xE2\x82\xAC", "abc"},
          CutCase{"FourByteCut", "ab\xF0\x9F\x98\x80", "ab"},
          CutCase{"OnlyFourByte", "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
          CutCase{"InvalidBytesCountSingly", "\xFF\xFE\xFF\xFE\xFF\xFE", "\xFF\xFE\xFF\xFE\xFF"},
          CutCase{"StopsAtTerminator", std::string_view("ab\0cd", 5), "ab"}, CutCase{"Empty", "", ""}}) {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(Text<6>(row.Given).View(), row.Kept);
        Text<6> assigned = "x";
        assigned = row.Given;
        EXPECT_EQ(assigned.View(), row.Kept);
        EXPECT_EQ(Text<6>(Text<100>(row.Given)).View(), row.Kept);
        Text<6> appended;
        EXPECT_EQ(appended.Append(row.Given).View(), row.Kept);
        EXPECT_EQ(std::string(appended.CStr()), row.Kept);
    }
}

TEST(Text, AppendCutsACharacterThatStraddlesTheLimit) {
    Text<6> text = "abcd";
    EXPECT_EQ(text.Append("\xC3\xA4").View(), "abcd");
    EXPECT_EQ(text.Append("efg").View(), "abcde");
}

TEST(Text, ComparesWithoutCaseAndTellsExactTextsApart) {
    const Text<20> name = "ReadMe.\xC3\x84";
    EXPECT_TRUE(name == Text<128>("README.\xC3\xA4"));
    EXPECT_TRUE(name == "readme.\xC3\xA4");
    EXPECT_FALSE(name.SameBytes("readme.\xC3\xA4"));
    EXPECT_TRUE(name.SameBytes("ReadMe.\xC3\x84"));
    EXPECT_TRUE(Text<9>("abc") < Text<5>("ABD"));
    EXPECT_TRUE(Text<9>("b") > "A");
    EXPECT_TRUE(Text<9>() < "a");
}

TEST(Text, SharesOneBlockAmongCopiesThatFit) {
    const Text<128> name = "Workbench";
    const Text<128> copy = name;
    Text<1024> wider;
    wider = name;
    EXPECT_EQ(copy.CStr(), name.CStr());
    EXPECT_EQ(wider.CStr(), name.CStr());
    const Text<5> narrower = name;
    EXPECT_EQ(narrower.View(), "Work");
    EXPECT_EQ(name.View(), "Workbench");
}

TEST(Text, ACopyDoesNotFollowItsOriginal) {
    Text<20> original = "abc";
    const Text<20> copy = original;
    original.Append("def");
    EXPECT_EQ(copy.View(), "abc");
    original = {};
    EXPECT_TRUE(original.Empty());
    EXPECT_EQ(copy.View(), "abc");
}

TEST(Text, TakesPartsOfItself) {
    Text<20> text = "Work:a/b";
    text = text.View().substr(5);
    EXPECT_EQ(text.View(), "a/b");
    text.Append(text.View());
    EXPECT_EQ(text.View(), "a/ba/b");
    Text<20>& same = text;
    text = same;
    EXPECT_EQ(text.View(), "a/ba/b");
}

// Fails under a sanitizer, or by a broken text, when the count of users is not safe among threads.
TEST(Text, CopiesMayBeDroppedOnDifferentThreads) {
    for (int round = 0; round < 50; ++round) {
        Text<64> shared = "shared among threads";
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([copy = shared] {
                for (int turn = 0; turn < 500; ++turn) {
                    const Text<32> another = copy;
                    ASSERT_EQ(another.Size(), 20U);
                }
            });
        }
        shared.Clear();
    }
}

} // namespace
} // namespace solvane
