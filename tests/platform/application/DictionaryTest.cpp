#include "platform/application/Dictionary.h"

#include <gtest/gtest.h>

namespace application {
namespace {

Dictionary Read(const std::string& body) {
    const auto read = Dictionary::FromXml("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + body +
                                          "</dict></plist>");
    EXPECT_TRUE(read.has_value());
    return read.value_or(Dictionary());
}

TEST(Dictionary, ValuesOfEveryKindSurviveBeingWrittenAndReadBack) {
    Dictionary written;
    written.Set("number", {std::int64_t{-4000000000}});
    written.Set("yes", {true});
    written.Set("text", {std::string("a <b> & \"c\"\n\xC3\xA9 \x01")});
    written.Set("blank", {std::string(" ")});
    written.Set("list", {PrefsArray{{PrefsArray{{std::int64_t{1}}, {std::string("x")}}}, {false}}});

    const auto read = Dictionary::FromXml(written.ToXml());

    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->Number("number", 0), -4000000000);
    EXPECT_TRUE(read->Boolean("yes", false));
    EXPECT_EQ(read->String("text", ""), "a <b> & \"c\"\n\xC3\xA9 \x01");
    EXPECT_EQ(read->String("blank", "lost"), " ");
    const PrefsArray* list = read->Array("list");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->size(), 2U);
    ASSERT_NE((*list)[0].Array(), nullptr);
    EXPECT_EQ(*(*(*list)[0].Array())[1].String(), "x");
    EXPECT_EQ((*list)[1].Number(), 0);
}

TEST(Dictionary, AKeyOfAnotherKindGivesTheFallback) {
    const Dictionary read =
        Read("<key>n</key><string>12</string><key>s</key><integer>3</integer>"
             "<key>big</key><integer>99999999999999999999</integer><key>odd</key><date>2020</date>");
    EXPECT_EQ(read.Number("n", 7), 7);
    EXPECT_EQ(read.String("s", "none"), "none");
    EXPECT_EQ(read.Number("big", 7), 7);
    EXPECT_EQ(read.Number("odd", 7), 7);
    EXPECT_EQ(read.Array("s"), nullptr);
    EXPECT_TRUE(read.Has("s") && read.Has("odd"));
    EXPECT_FALSE(read.Has("none"));
}

TEST(Dictionary, TextIsReadWhateverItIsSplitBy) {
    const Dictionary read =
        Read("<key>n</key><integer>\n\t-1<!-- x -->2 </integer><key>s</key>"
             "<string>a<!-- x --> b<![CDATA[<c>]]>d&amp;</string><key>no</key><integer> </integer>"
             "<key>two</key><integer>1 2</integer>");
    EXPECT_EQ(read.Number("n", 7), -12);
    EXPECT_EQ(read.String("s", ""), "a b<c>d&");
    EXPECT_EQ(read.Number("no", 7), 7);
    EXPECT_EQ(read.Number("two", 7), 7);
}

TEST(Dictionary, WhatIsNoPropertyListIsRefused) {
    for (const char* bad : {"", "hello", "<plist>", "<plist></plist>", "<dict></dict>", "\xFF\xFE\x01"})
        EXPECT_FALSE(Dictionary::FromXml(bad).has_value()) << bad;
}

TEST(Dictionary, ArraysDeeperThanTheLimitAreLeftOut) {
    std::string body = "<key>deep</key>";
    constexpr int Levels = 20000;
    for (int i = 0; i < Levels; ++i)
        body += "<array>";
    for (int i = 0; i < Levels; ++i)
        body += "</array>";
    const Dictionary read = Read(body);
    int depth = 0;
    for (const PrefsArray* array = read.Array("deep"); array != nullptr;
         array = array->empty() ? nullptr : array->front().Array())
        ++depth;
    EXPECT_EQ(depth, DeepestArray + 1);
}

TEST(Dictionary, TheLaterOfTwoEqualKeysCounts) {
    const Dictionary read = Read("<key>k</key><integer>1</integer><key>k</key><integer>2</integer>");
    EXPECT_EQ(read.Number("k", 0), 2);
}

} // namespace
} // namespace application
