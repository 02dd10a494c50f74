#include "sak/Locale.h"

#include "platform/locale/CatalogFile.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/locale/ScopedLocale.h"

#include <array>

namespace solvane {
namespace {

// PROGDIR: is a drawer of the test's tree; the user's language is German.
class SakLocale : public DosTest {
protected:
    SakLocale() {
        Tree.Drawer("prog");
        dos::SetProgramDrawer("Test:prog");
    }
    ~SakLocale() override { SAK_LocaleClose(); }

    void AddCatalog(std::vector<locale::CatalogText> texts, std::string_view language = "german") {
        locale::CatalogFile file;
        file.VersionText = "$VER: x.catalog 2.4 (1.1.2026)";
        file.CodeSet = locale::CodeSetUtf8;
        file.Texts = std::move(texts);
        Tree.Write("prog/Catalogs/" + std::string(language) + "/x.catalog",
                   locale::WriteCatalog(file).value());
    }
    static bool Open(std::string_view language = "", std::uint32_t version = 2) {
        return SAK_LocaleOpen("x.catalog", language, "english", version);
    }

    ScopedLocale German{"de_DE.UTF-8"};
};

TEST_F(SakLocale, ACatalogThatIsOpenedAgainIsKeptOnce) {
    AddCatalog({{1, "_Weiter"}});
    ASSERT_TRUE(Open());
    const std::string_view text = SAK_LocaleString(1);
    SAK_LocaleClose();
    ASSERT_TRUE(Open());
    EXPECT_EQ(SAK_LocaleString(1), "_Weiter");
    EXPECT_EQ(SAK_LocaleString(1).data(), text.data());
}

TEST_F(SakLocale, TheTableHoldsEveryNumberOnceInOrder) {
    ASSERT_EQ(CatCompArray.size(), SAK_NumAppStrings);
    for (std::size_t at = 0; at < CatCompArray.size(); ++at)
        ASSERT_EQ(CatCompArray[at].Id, static_cast<std::int32_t>(at) + 1);
    EXPECT_EQ(SAK_LocaleString(MSG_CONTINUE_GAD), "_Continue");
    EXPECT_EQ(SAK_LocaleString(1502), "");
}

TEST_F(SakLocale, TheCatalogStandsOverTheTableAndLeavesItWhereItIsEmpty) {
    AddCatalog({{MSG_FILE, "Datei"}, {MSG_DRAWER, ""}, {2000, "nirgends"}});
    EXPECT_TRUE(Open());
    const std::string_view kept = SAK_LocaleString(MSG_FILE);
    EXPECT_EQ(kept, "Datei");
    EXPECT_EQ(SAK_LocaleString(MSG_DRAWER), "Drawer");
    EXPECT_EQ(SAK_LocaleString(MSG_NAME), "Name");
    for (const std::int32_t id : {0, -1, 1503, 100000})
        EXPECT_EQ(SAK_LocaleString(id), "") << id;
    SAK_LocaleClose();
    SAK_LocaleClose();
    EXPECT_EQ(SAK_LocaleString(MSG_FILE), "File");
    EXPECT_EQ(kept, "Datei"); // who holds a text need not know
}

TEST_F(SakLocale, OnlyAnOldCatalogIsAFailure) {
    AddCatalog({{MSG_FILE, "Datei"}});
    AddCatalog({{MSG_FILE, "Bestand"}}, "dutch");
    Tree.Write("prog/Catalogs/greek/x.catalog", "rubbish");
    struct Row {
        std::string_view Language;
        std::uint32_t Version;
        bool Result;
        std::string_view Text, TextLanguage;
    };
    const Row rows[] = {{"", 2, true, "Datei", "german"},        {"", 3, false, "File", "english"},
                        {"dutch", 2, true, "Bestand", "dutch"},  {"english", 2, true, "File", "english"},
                        {"klingon", 2, true, "File", "english"}, {"greek", 2, true, "File", "english"}};
    for (const Row& row : rows) {
        SAK_LocaleClose();
        EXPECT_EQ(Open(row.Language, row.Version), row.Result) << row.Language;
        EXPECT_EQ(SAK_LocaleString(MSG_FILE), row.Text) << row.Language;
        EXPECT_EQ(SAK_TextLanguage, row.TextLanguage) << row.Language;
    }
}

TEST_F(SakLocale, ABrokenFormatGivesWayToTheBuiltInOne) {
    AddCatalog({{MSG_ALREADY_RUNNING, "%lu laufen"}, {MSG_NO_PORT, "Port %2$lu von %1$s"}});
    EXPECT_TRUE(Open());
    EXPECT_EQ(FormatMessage(MSG_ALREADY_RUNNING, "Solvane"), "Solvane is already running.");
    EXPECT_EQ(FormatMessage(MSG_NO_PORT, "Solvane", 3U), "Port 3 von Solvane");
}

TEST_F(SakLocale, TheEnglishFlagMeansTheOpposite) {
    SAK_LanguageCheck();
    EXPECT_EQ(SAK_English, 1);
    EXPECT_EQ(SAK_LanguageName, "");
    EXPECT_TRUE(Open());
    SAK_LanguageCheck();
    EXPECT_EQ(SAK_English, 1);
    EXPECT_EQ(SAK_LanguageName, "german");
    const ScopedLocale english("en_GB.UTF-8");
    AddCatalog({{MSG_FILE, "Bestand"}}, "dutch");
    EXPECT_TRUE(Open());
    SAK_LanguageCheck();
    EXPECT_EQ(SAK_English, 1); // no catalog
    EXPECT_TRUE(Open("dutch"));
    SAK_LanguageCheck();
    EXPECT_EQ(SAK_English, 0);
    EXPECT_EQ(SAK_LanguageName, "english");
}

TEST_F(SakLocale, NumbersFollowTheLocaleOnceItIsOpen) {
    EXPECT_EQ(SAK_LocalizeNumber(-1234567), "-1,234,567");
    EXPECT_TRUE(Open());
    EXPECT_EQ(SAK_LocalizeNumber(-1234567), "-1.234.567");
}

TEST_F(SakLocale, TablesAreFilledOnce) {
    std::array<std::string_view, 4> table;
    SAK_LocalizeStringTable(table, std::array{std::int32_t{MSG_FILE}, std::int32_t{MSG_NAME}, -1, 1});
    EXPECT_EQ(table, (std::array<std::string_view, 4>{"File", "Name", "", ""}));
    SAK_LocalizeStringTable(table, std::array{std::int32_t{MSG_SIZE}, -1});
    EXPECT_EQ(table[0], "File");

    std::array<std::string_view, 4> range = {"", "kept"};
    SAK_LocalizeString(range, MSG_UNIT_B, MSG_UNIT_MB);
    EXPECT_EQ(range, (std::array<std::string_view, 4>{"B", "kept", "MB", ""}));
    EXPECT_EQ(SAK_GadToolsLongestString(MSG_CONTINUE_GAD, MSG_CANCEL_GAD), 9U); // "_Terminate"
}

} // namespace
} // namespace solvane
