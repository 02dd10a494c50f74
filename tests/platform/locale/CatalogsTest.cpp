#include "platform/locale/Catalogs.h"

#include "tests/platform/dos/DosTest.h"
#include "tests/platform/locale/ScopedLocale.h"
#include "tests/support/Bytes.h"

namespace {

using namespace std::string_literals;
using locale::CatalogOutcome;

std::string TextOf(const locale::CatalogFile& file, std::int32_t id) {
    return std::string(locale::Catalog(file).Find(id).value_or("none"));
}

TEST(CatalogFileTest, RealCatalogsAreRead) {
    struct Row {
        const char* Name;
        locale::CatalogVersion Version;
        std::string_view Language;
        std::size_t Texts;
        std::int32_t Id;
        std::string_view Text;
        bool IsDamaged = false;
    };
    const Row rows[] = {
        {"Horny_deutsch.catalog", {1, 2}, "deutsch", 257, 256, "Löschen"},
        {"Horny_deutsch.catalog",
         {1, 2},
         "deutsch",
         257,
         0,
         "Es gab keine passenden Controller-Events\nin den markierten Sequenzen"},
        {"SoundFX_deutsch.catalog", {43, 0}, "deutsch", 259, 130, "Bis zum Ende löschen"},
        {"SoundFX_deutsch.catalog", {43, 0}, "deutsch", 259, 265, "Bearbeiten"},
        {"Tips_hrvatski.catalog", {1, 0}, "hrvatski", 44, 22, ""},
        {"gen_utf8.catalog", {2, 4}, "deutsch", 5, 1502, "%s Einträge"},
        {"gen_lengths_without_nul.catalog", {1, 12}, "deutsch", 4, 3, "1234"},
        {"gen_lengths_without_nul.catalog", {1, 12}, "deutsch", 4, 4, "12345"},
        {"gen_lengths_without_nul.catalog", {1, 12}, "deutsch", 4, 5, "none"},
        {"gen_bad_length.catalog", {2, 4}, "deutsch", 2, 1, "Öffnen", true},
    };
    for (const Row& row : rows) {
        const auto file =
            locale::ParseCatalog(BytesOf(SOLVANE_TEST_DATA "/catalogs/" + std::string(row.Name)));
        ASSERT_TRUE(file) << row.Name;
        EXPECT_TRUE(locale::VersionOf(file->VersionText) == row.Version) << row.Name;
        EXPECT_EQ(file->Language, row.Language) << row.Name;
        EXPECT_EQ(file->Texts.size(), row.Texts) << row.Name;
        EXPECT_EQ(TextOf(*file, row.Id), row.Text) << row.Name;
        EXPECT_EQ(file->IsDamaged, row.IsDamaged) << row.Name;
    }
}

TEST(CatalogFileTest, OddCatalogsAreReadAsFarAsTheyGo) {
    const std::string head = "FORM\0\0\0\x54"
                             "CTLG"s;
    const std::string texts =
        "STRS\0\0\0\x21\0\0\0\5\0\0\0\2\xC3\xA4\0\0\0\0\0\5\0\0\0\1b\0\0\0\0\0\0\1\0\0\0\1c"s;
    const auto file = locale::ParseCatalog(head + texts);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->IsDamaged);      // the last text lacks its padding, the form its end
    EXPECT_EQ(TextOf(*file, 5), "Ã¤"); // the first of two, and not in UTF-8
    EXPECT_EQ(TextOf(*file, 1), "c");
    for (const std::string& other : {""s, head.substr(0, 8), "FORM\0\0\0\4ILBM"s, "LIST\0\0\0\4CTLG"s})
        EXPECT_FALSE(locale::ParseCatalog(other));
}

TEST(CatalogFileTest, TextsAreReadByTheCodeSetThatTheCatalogNames) {
    const std::pair<std::uint16_t, std::string_view> rows[] = {
        {0, "¤æÑ"},
        {2, "¤ćŃ"},
        {4, "¤æÑ"},
        {5, "¤ćŃ"},
        {8, "Єцб"},
        {10, "€ζΡ"},
        {15, "€æÑ"},
        {111, "€æÑ"},
        {2084, "╓Фя"},
        {2104, "¤жС"},
        {2250, "¤ćŃ"},
        {2251, "¤жС"},
        {2253, "¤ζΡ"},
        {3, "\uFFFD\uFFFD\uFFFD"},
        {106, "\uFFFD\uFFFD\uFFFD"},
        {9999, "¤æÑ"},
    };
    for (const auto& [codeSet, text] : rows) {
        const std::string number = {static_cast<char>(codeSet >> 8), static_cast<char>(codeSet)};
        const auto file = locale::ParseCatalog("FORM\0\0\0\x24"
                                               "CTLGSTRS\0\0\0\x0C\0\0\0\1\0\0\0\3\xA4\xE6\xD1x"
                                               "CSET\0\0\0\4\0\0"s +
                                               number);
        ASSERT_TRUE(file);
        EXPECT_FALSE(file->IsDamaged);
        EXPECT_EQ(TextOf(*file, 1), text) << codeSet << ": and what pads it is no part of it";
    }
}

TEST(CatalogFileTest, VersionIsTheThirdWord) {
    const std::pair<std::string_view, locale::CatalogVersion> rows[] = {
        {"$VER: x.catalog 43.7 (22.02.04)", {43, 7}},
        {"$VER:  x   2", {2, 0}},
        {"$VER: x v2.0", {0, 0}},
        {"$VER: x 99999999999.1", {0, 0}},
        {"$VER: x", {0, 0}},
        {"", {0, 0}},
    };
    for (const auto& [text, version] : rows)
        EXPECT_TRUE(locale::VersionOf(text) == version) << text;
}

TEST(CatalogFileTest, WhatIsWrittenIsReadBack) {
    for (const std::uint32_t codeSet : {locale::CodeSetDefault, locale::CodeSetUtf8}) {
        locale::CatalogFile file;
        file.VersionText = "$VER: solvane.catalog 2.4 (21.11.2026)";
        file.Language = "français";
        file.CodeSet = codeSet;
        for (std::int32_t id = 9; id >= 0; --id)
            file.Texts.push_back({id, std::string(static_cast<std::size_t>(id), 'x') + "é"});
        file.Texts.push_back({100, ""});
        const auto bytes = locale::WriteCatalog(file);
        ASSERT_TRUE(bytes);
        const auto back = locale::ParseCatalog(*bytes);
        ASSERT_TRUE(back);
        EXPECT_FALSE(back->IsDamaged);
        EXPECT_EQ(back->VersionText, file.VersionText);
        EXPECT_EQ(back->Language, "français");
        EXPECT_EQ(back->CodeSet, codeSet);
        EXPECT_EQ(back->Texts.size(), 11U);
        for (const locale::CatalogText& text : file.Texts)
            EXPECT_EQ(TextOf(*back, text.Id), text.Text);
    }
}

TEST(CatalogFileTest, WhatTheCodeSetLacksIsNotWritten) {
    struct Row {
        std::uint32_t CodeSet;
        std::vector<locale::CatalogText> Texts;
        bool IsWritten;
    };
    const Row rows[] = {
        {0, {{1, "ÿ"}}, true},
        {0, {{1, "ł"}}, false},
        {106, {{1, "ł"}}, true},
        {106, {{1, "\xFF"}}, false},
        {106, {{1, "a\0b"s}}, false},
        {5, {{1, "a"}}, false},
        {0, {{1, "a"}, {2, "b"}, {1, "c"}}, false},
    };
    for (const Row& row : rows) {
        locale::CatalogFile file;
        file.CodeSet = row.CodeSet;
        file.Texts = row.Texts;
        EXPECT_EQ(locale::WriteCatalog(file).has_value(), row.IsWritten) << row.Texts.front().Text;
    }
}

// PROGDIR: and LOCALE: are drawers of the test's tree.
class CatalogsTest : public DosTest {
protected:
    CatalogsTest() {
        Tree.Plant({"prog/", "locale/"});
        dos::SetProgramDrawer("Test:prog");
    }
    void AddLocaleDrawer() { EXPECT_TRUE(dos::SetAssign("LOCALE", dos::AssignKind::Late, {"Test:locale"})); }
    // A catalog of one text, which is the path.
    void Add(const std::string& path, std::uint32_t version = 2) {
        locale::CatalogFile file;
        file.VersionText = "$VER: x.catalog " + std::to_string(version) + ".9 (1.1.2026)";
        file.CodeSet = locale::CodeSetUtf8;
        file.Texts = {{1, path}, {2, ""}};
        Tree.Write(path, locale::WriteCatalog(file).value());
    }
    std::string Language; // of what was opened last
    // The text 1, or why there is none: outcome and IoErr.
    std::string Open(std::vector<std::string> languages, std::uint32_t minimum = 0,
                     const std::string& builtIn = "english") {
        const locale::OpenedCatalog opened =
            locale::OpenCatalog({"x.catalog", std::move(languages), builtIn, minimum});
        EXPECT_EQ(opened.Texts != nullptr, opened.Outcome == CatalogOutcome::Opened);
        Language = opened.Language;
        if (opened.Texts != nullptr)
            return std::string(locale::GetCatalogStr(opened.Texts.get(), 1, "none"));
        constexpr std::string_view names[] = {"opened", "not needed", "not found", "too old", "no catalog"};
        return std::string(names[static_cast<std::size_t>(opened.Outcome)]) + ' ' +
               std::to_string(dos::IoErr());
    }
};

TEST_F(CatalogsTest, TheFirstThatFitsIsOpened) {
    AddLocaleDrawer();
    Add("prog/Catalogs/german/x.catalog");
    Add("locale/Catalogs/german/x.catalog");
    Add("locale/Catalogs/nederlands/x.catalog");
    Add("locale/Catalogs/français/x.catalog");
    struct Row {
        std::vector<std::string> Languages;
        std::string_view Expected;
    };
    const Row rows[] = {
        {{"german"}, "prog/Catalogs/german/x.catalog"},
        {{"German.language"}, "prog/Catalogs/german/x.catalog"},
        {{"Deutsch"}, "prog/Catalogs/german/x.catalog"},
        {{"dutch"}, "locale/Catalogs/nederlands/x.catalog"},
        {{"FRANCAIS"}, "locale/Catalogs/français/x.catalog"},
        {{"greek", "dutch", "german"}, "locale/Catalogs/nederlands/x.catalog"},
        {{"greek", "english", "german"}, "not needed 0"},
        {{"English.Language"}, "not needed 0"},
        {{"greek"}, "not found 205"},
        {{"", ".language", "../locale/Catalogs/german", "Test:locale/Catalogs/german"}, "not found 205"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Open(row.Languages), row.Expected) << row.Languages.front();
    EXPECT_EQ(Open({"german"}, 0, "deutsch"), "not needed 0");
    for (const auto& [wanted, language] :
         {std::pair("Deutsch.language", "german"), {"FRANCAIS", "french"}, {"greek", "english"}}) {
        static_cast<void>(Open({wanted}));
        EXPECT_EQ(Language, language) << wanted;
    }
}

TEST_F(CatalogsTest, OldAndBrokenOnesArePassedOver) {
    AddLocaleDrawer();
    Add("prog/Catalogs/german/x.catalog", 1);
    EXPECT_EQ(Open({"german"}, 1), "prog/Catalogs/german/x.catalog");
    EXPECT_EQ(Open({"german"}, 2), "too old 0");
    Add("locale/Catalogs/german/x.catalog", 10);
    EXPECT_EQ(Open({"german"}, 2), "locale/Catalogs/german/x.catalog");
    Tree.Write("prog/Catalogs/spanish/x.catalog", "not a catalog");
    EXPECT_EQ(Open({"spanish"}), "no catalog 212");
    Tree.Drawer("prog/Catalogs/greek/x.catalog");
    EXPECT_EQ(Open({"greek"}), "no catalog 212");
}

TEST_F(CatalogsTest, AMissingLocaleDrawerAsksNobody) {
    bool hasAsked = false;
    dos::SetVolumeRequest([&hasAsked](std::string_view) {
        hasAsked = true;
        return false;
    });
    EXPECT_EQ(Open({"german"}), "not found 205");
    EXPECT_FALSE(hasAsked);
    EXPECT_TRUE(dos::SetRequesters(true)); // as it was before
    dos::SetVolumeRequest(nullptr);
}

TEST_F(CatalogsTest, WithoutAWishTheUsersLanguageCounts) {
    Add("prog/Catalogs/italian/x.catalog");
    const ScopedLocale italian("it_IT.UTF-8");
    EXPECT_EQ(Open({}), "prog/Catalogs/italian/x.catalog");
}

TEST_F(CatalogsTest, MissingTextsAreTheBuiltInOnes) {
    EXPECT_EQ(locale::GetCatalogStr(nullptr, 1, "built in"), "built in");
    Add("prog/Catalogs/german/x.catalog");
    const auto opened = locale::OpenCatalog({.Name = "x.catalog", .Languages = {"german"}});
    EXPECT_EQ(locale::GetCatalogStr(opened.Texts.get(), 3, "built in"), "built in");
    EXPECT_EQ(locale::GetCatalogStr(opened.Texts.get(), -1, "built in"), "built in");
    EXPECT_EQ(locale::GetCatalogStr(opened.Texts.get(), 2, "built in"), "");
}

} // namespace
