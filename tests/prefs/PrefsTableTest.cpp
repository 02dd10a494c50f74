#include "prefs/PrefsTable.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace solvane {
namespace {

using application::Dictionary;
using application::PrefsValue;

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

void CheckNumber(const PrefsKey& key, std::int64_t usual) {
    const bool isFixed = key.Key.ends_with("_0Width");
    const std::int64_t taken = NumberThrough(key, {std::int64_t{5}});
    EXPECT_TRUE(isFixed ? taken == usual : taken == 5 || taken == 1) << taken;
    for (const bool flag : {false, true}) {
        EXPECT_EQ(NumberThrough(key, {flag}), isFixed ? usual : flag);
    }
    const std::int64_t beyond = NumberThrough(key, {std::int64_t{1} << 40U});
    EXPECT_TRUE(beyond == usual || (taken == 1 && beyond == 1)) << beyond;
    EXPECT_EQ(NumberThrough(key, {std::string("9")}), usual) << "of another kind";
}

void CheckColour(const PrefsKey& key, std::string_view usual) {
    for (const char* taken : {"GGGGGG", "ff8800"}) {
        EXPECT_EQ(TextThrough(key, {std::string(taken)}), taken);
    }
    for (const char* refused : {"12345", "1234567", ""}) {
        EXPECT_EQ(TextThrough(key, {std::string(refused)}), usual) << refused;
    }
}

void CheckText(const PrefsKey& key, std::string_view usual) {
    // Bytes; what is not named here is a path.
    static const std::map<std::string_view, std::size_t> limits = {
        {"HotKey", 129},           {"CustomDateFormat", 34},      {"TextFont", 129},
        {"MonoTextFont", 127},     {"LhAAddOptions", 49},         {"DefaultOpenAtName", 127},
        {"PreferredLanguage", 49}, {"ExtractArchiveOptions", 49},
    };
    const auto limit = limits.find(key.Key);
    EXPECT_EQ(TextThrough(key, {std::string(5000, 'x')}).size(),
              limit != limits.end() ? limit->second : 1023);
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
        if (text == "(number)") {
            CheckNumber(key, usual.Number(key.Key, -77));
        } else if (key.Key.ends_with("Color")) {
            CheckColour(key, text);
        } else {
            CheckText(key, text);
        }
    }
    EXPECT_EQ(seen.size(), 209U);
}

} // namespace
} // namespace solvane
