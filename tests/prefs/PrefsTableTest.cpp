#include "prefs/PrefsTable.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace solvane {
namespace {

using application::Dictionary;

void Load(const Dictionary& from, PrefsRecord& into) {
    for (const PrefsKey& key : PrefsKeys()) {
        key.Load(from, key.Key, PrefsRecord(), into);
    }
}

TEST(PrefsTable, AMissingDocumentGivesTheDefaults) {
    PrefsRecord prefs;
    prefs.WindowWidth = 1;
    prefs.ProcessInfoFiles = 0;
    prefs.DefaultOpenAtPath = "x";
    Load(Dictionary(), prefs);
    EXPECT_EQ(prefs.WindowWidth, 700);
    EXPECT_EQ(prefs.ProcessInfoFiles, 1);
    EXPECT_TRUE(prefs.DefaultOpenAtPath.SameBytes("Computer"));
}

TEST(PrefsTable, WhatIsSavedLoadsAgain) {
    PrefsRecord prefs;
    prefs.WindowX = -5;
    prefs.MonitorDrawer = 0;
    prefs.CustomDateFormat = "%d.%m.%Y";
    prefs.FilesColor = "A0B1C2";
    Dictionary dictionary;
    for (const PrefsKey& key : PrefsKeys()) {
        key.Save(prefs, key.Key, dictionary);
    }
    PrefsRecord loaded;
    Load(dictionary, loaded);
    EXPECT_EQ(loaded.WindowX, -5);
    EXPECT_EQ(loaded.MonitorDrawer, 0);
    EXPECT_TRUE(loaded.CustomDateFormat.SameBytes("%d.%m.%Y"));
    EXPECT_TRUE(loaded.FilesColor.SameBytes("A0B1C2"));
}

TEST(PrefsTable, AColourCountsWithExactlySixCharacters) {
    struct Row {
        const char* Stored;
        const char* Loaded;
    };
    for (const Row& row : {Row{"12345", "000000"}, Row{"1234567", "000000"}, Row{"", "000000"},
                           Row{"GGGGGG", "GGGGGG"}, Row{"ff8800", "ff8800"}}) {
        Dictionary dictionary;
        dictionary.Set("DrawersColor", {std::string(row.Stored)});
        PrefsRecord prefs;
        Load(dictionary, prefs);
        EXPECT_TRUE(prefs.DrawersColor.SameBytes(row.Loaded)) << row.Stored;
    }
}

TEST(PrefsTable, NoKeyStandsTwice) {
    std::set<std::string_view> keys;
    for (const PrefsKey& key : PrefsKeys()) {
        EXPECT_TRUE(keys.insert(key.Key).second) << key.Key;
    }
}

} // namespace
} // namespace solvane
