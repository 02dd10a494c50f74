#include "prefs/PrefsTable.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace solvane {
namespace {

using application::Dictionary, application::PrefsValue;

// What a document with that one value says after it went through the record.
Dictionary Through(const PrefsKey& key, const PrefsValue& stored) {
    Dictionary document;
    document.Set(key.Key, stored);
    PrefsRecord prefs;
    key.Load(document, key.Key, PrefsRecord(), prefs);
    Dictionary again;
    key.Save(prefs, key.Key, again);
    return again;
}

std::int64_t NumberThrough(const PrefsKey& key, const PrefsValue& stored) {
    return Through(key, stored).Number(key.Key, -77);
}

std::string TextThrough(const PrefsKey& key, const PrefsValue& stored) {
    return std::string(Through(key, stored).String(key.Key, "(none)"));
}

// Whatever a document says, what the record makes of it is a value that it keeps.
void CheckNumber(const PrefsKey& key, std::int64_t usual) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    for (const std::int64_t stored :
         {lowest, std::int64_t{-1}, std::int64_t{0}, std::int64_t{5}, -lowest - 1}) {
        const std::int64_t taken = NumberThrough(key, {stored});
        EXPECT_EQ(NumberThrough(key, {taken}), taken) << stored;
    }
    EXPECT_EQ(NumberThrough(key, {usual}), usual);
    EXPECT_EQ(NumberThrough(key, {true}), NumberThrough(key, {std::int64_t{1}}));
    const std::int64_t beyond = NumberThrough(key, {std::int64_t{1} << 40U});
    EXPECT_TRUE(beyond == usual || beyond == 1) << beyond;
    EXPECT_EQ(NumberThrough(key, {std::string("9")}), usual) << "of another kind";
}

void CheckColour(const PrefsKey& key, std::string_view usual) {
    for (const char* taken : {"GGGGGG", "ff8800"})
        EXPECT_EQ(TextThrough(key, {std::string(taken)}), taken);
    for (const std::size_t length : {0U, 1U, 5U, 7U, 9U, 10U, 11U, 5000U})
        EXPECT_EQ(TextThrough(key, {std::string(length, 'A')}), usual) << length;
}

void CheckText(const PrefsKey& key, std::string_view usual) {
    // Bytes; what is not named here is a path.
    static const std::map<std::string_view, std::size_t> limits = {
        {"HotKey", 129},           {"CustomDateFormat", 34},      {"TextFont", 129},
        {"MonoTextFont", 127},     {"LhAAddOptions", 49},         {"DefaultOpenAtName", 127},
        {"PreferredLanguage", 49}, {"ExtractArchiveOptions", 49},
    };
    const auto limit = limits.find(key.Key);
    if (limit != limits.end()) {
        EXPECT_EQ(TextThrough(key, {std::string(5000, 'x')}).size(), limit->second);
    } else {
        EXPECT_EQ(TextThrough(key, {std::string(1023, 'x')}).size(), 1023U);
        EXPECT_EQ(TextThrough(key, {std::string(1024, 'x')}), usual) << "cut it would lead elsewhere";
    }
    EXPECT_EQ(TextThrough(key, {std::string("x <y>\r")}), "x <y>\r");
    EXPECT_EQ(TextThrough(key, {std::int64_t{3}}), usual) << "of another kind";
}

TEST(PrefsTable, EveryKeyLoadsWhatItHasSavedWithinItsLimitAndElseItsDefault) {
    std::set<std::string_view> seen;
    for (const PrefsKey& key : PrefsKeys()) {
        SCOPED_TRACE(key.Key);
        EXPECT_TRUE(seen.insert(key.Key).second) << "stands twice";
        Dictionary usual;
        key.Save(PrefsRecord(), key.Key, usual);
        const std::string_view text = usual.String(key.Key, "(number)");
        if (text == "(number)")
            CheckNumber(key, usual.Number(key.Key, -77));
        else if (key.Key.ends_with("Color"))
            CheckColour(key, text);
        else
            CheckText(key, text);
    }
    EXPECT_EQ(seen.size(), 211U);
}

TEST(PrefsTable, NumbersThatWouldBreakTheWindowAreNotTaken) {
    const struct {
        std::string_view Key;
        std::int64_t Stored, Taken;
    } rows[] = {
        {"ContentViewStyle", 6, 6},
        {"ContentViewStyle", 7, 7},
        {"AssignsViewStyle", 4, 1},
        {"AssignsViewStyle", 8, 1},
        {"DrawersOrder", 3, 0},
        {"PreviewStyle", -1, 0},
        {"ContentDetailsCISortColumn", 24, 24},
        {"SoundVolume", 65, 64},
        {"DetailsHeight", 0, 1},
        {"ContentDetailsCISortColumn", 25, 1},
        {"WindowWidth", -5, 50},
        {"WindowX", -40000, -32767},
        {"FTPSites_3Width", 1 << 20, 4096},
        {"Content_0Width", 99, 40},
        {"ThumbnailSize", 9, 9},
        {"ShowVolumeLabelAs", 4, 0},
        {"TilesIconSize", 100, 100},
        {"MonoTextFontSize", 0, 4},
        {"NavigationWidth", 250, 99},
    };
    for (const auto& row : rows) {
        const auto keys = PrefsKeys();
        const auto key = std::ranges::find(keys, row.Key, &PrefsKey::Key);
        ASSERT_NE(key, keys.end()) << row.Key;
        EXPECT_EQ(NumberThrough(*key, {row.Stored}), row.Taken) << row.Key << ' ' << row.Stored;
    }
}

} // namespace
} // namespace solvane
