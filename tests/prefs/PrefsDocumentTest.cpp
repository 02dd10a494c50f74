// Loading and saving the document: lists, broken documents, crashes, full disks, two instances.
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/application/Dictionary.h"
#include "platform/intuition/Requesters.h"
#include "prefs/LoadSavePrefs.h"
#include "prefs/PrefsLists.h"
#include "sak/Memory.h"
#include "sak/Requesters.h"
#include "tests/platform/dos/DosTest.h"

#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>

namespace solvane {
namespace {

using application::Dictionary, testing::ElementsAre, testing::IsEmpty;

const std::string Document = "Solvane/Solvane.xml"; // in the tree

std::string Plist(const std::string& body) {
    return "<plist version=\"1.0\"><dict>" + body + "</dict></plist>";
}

class PrefsDocument : public DosTest {
protected:
    PrefsDocument() {
        Tree.Drawer("Solvane");
        EXPECT_TRUE(dos::SetAssign("ENVARC", dos::AssignKind::Directory, {"Test:"}));
        EXPECT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
        EXPECT_TRUE(CreatePrefsLists());
        EXPECT_TRUE(DefaultPrefs());
        ProgramPrefsFile = DefaultPrefsFile;
        QuitNoSave = 0;
        appShowInAmiDock = 1;
        intuition::SetRequestHandler([this](const intuition::EasyRequestSpec& spec) {
            Requests.push_back(spec.Text.substr(0, spec.Text.find('\n')));
            return 0;
        });
    }
    ~PrefsDocument() override {
        intuition::SetRequestHandler({});
        FreePrefsLists();
        FreePrefs();
    }

    bool Load(const std::string& document) {
        Tree.Write(Document, document);
        return LoadPrefs();
    }
    [[nodiscard]] std::string Saved() {
        EXPECT_TRUE(SavePrefs(1));
        return Tree.Read(Document);
    }

    std::vector<std::string> Requests;
};

// The value of a key as the document has it, without the white space between elements.
std::string ValueIn(const std::string& document, const std::string& key) {
    const std::size_t start = document.find("<key>" + key + "</key>") + key.size() + 11;
    std::string value;
    for (const char c : document.substr(start, document.find("<key>", start) - start))
        value += c == '\n' || c == '\t' ? "" : std::string(1, c);
    return value.substr(0, value.find("</dict>"));
}

std::string Column(int number, int shown, int width) {
    const auto integer = [](int value) { return "<integer>" + std::to_string(value) + "</integer>"; };
    return "<array>" + integer(number) + integer(shown) + integer(width) + "</array>";
}

std::string Columns(int from, int to) {
    std::string columns;
    for (int number = from; number <= to; ++number)
        columns += Column(number, 1, number == 0 ? 26 : 90);
    return columns;
}

TEST_F(PrefsDocument, ListsLoadWithTheirRepairsAndSaveAgain) {
    const std::string longPath = "<string>" + std::string(1024, 'p') + "</string>";
    const std::string sevens = "<integer>7</integer><integer>0</integer><integer>-1</integer>";
    const std::string ones = "<integer>1</integer><integer>0</integer><integer>1</integer>";
    const std::string button = "<integer>4</integer><string>N</string><string>echo {F}</string>"
                               "<string>H</string><string>I</string>";
    struct Row {
        const char* Key;
        std::string Stored, Kept;
    };
    const Row rows[] = {
        {"Locations", "<array><string>Music</string><integer>4</integer></array><array/>",
         "<array><string>Music</string><integer>4</integer></array>"},
        {"Locations",
         "<array><string>x</string><integer>8</integer></array><array><string/><integer>2</integer></array>",
         "<array><string>x</string><integer>1</integer></array>"},
        {"StartupTabs", "<array><integer>13</integer><string>a\r&amp;</string></array><integer>4</integer>",
         "<array><integer>13</integer><string>a\r&amp;</string></array>"},
        {"StartupTabs", "<array><integer>13</integer>" + longPath + "</array>", ""},
        {"Bookmarks", "<array><string>x</string><integer>3</integer><string>DH0:</string></array>",
         "<array><integer>13</integer><string></string><string>DH0:</string></array>"},
        {"Bookmarks", "<array><integer/><date>2001</date><string>DH0:</string></array>",
         "<array><integer>13</integer><string></string><string>DH0:</string></array>"},
        {"Favorites", "<array><integer>4</integer><string>WORKBENCH</string><string>x</string></array>",
         "<array><integer>4</integer><string>WORKBENCH</string><string>Workbench</string></array>"},
        {"ToolbarList", "<integer>24</integer><string>x</string><integer>70000</integer><integer>0</integer>",
         "<integer>24</integer><integer>0</integer>"},
        {"UserButtons", "<array>" + button + sevens + sevens + "</array>",
         "<array>" + button + ones + ones + "</array>"},
        {"ShowComputerColumns", Columns(0, 4), Columns(0, 4) + Column(5, 1, 150)},
        {"ShowArchiveColumns", Column(1, 0, 0) + Column(0, 0, 99) + Column(1, 1, 50) + Column(8, 1, 50),
         Column(1, 1, 0) + Column(0, 1, 26)},
        {"ShowDetailsColumns", Columns(0, 22), Columns(0, 22)},
        {"ShowDetailsColumns", Columns(0, 23), Columns(0, 23) + Column(24, 1, 100)},
        {"ShowDetailsColumns", Columns(0, 24), Columns(0, 24)},
        {"ShowDetailsColumns", Column(2, 3, 100000) + Column(3, 0, 1), Column(2, 1, 4096) + Column(3, 0, 8)},
        {"FTPSites", "<array><string>S</string><string>host</string></array>",
         "<array><string>S</string><string>host</string><string></string><integer>21</integer>"
         "<integer>120</integer><integer>0</integer><string></string><string></string></array>"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Key + (": " + row.Stored));
        ASSERT_TRUE(Load(Plist("<key>" + std::string(row.Key) + "</key><array>" + row.Stored + "</array>")));
        const std::string kept = row.Kept.empty() ? "<array/>" : "<array>" + row.Kept + "</array>";
        const auto unspaced = [](std::string text) {
            for (std::size_t at = 0; (at = text.find(" />", at)) != std::string::npos;)
                text.erase(at, 1);
            return text;
        };
        EXPECT_EQ(unspaced(ValueIn(Saved(), row.Key)), kept);
        ASSERT_TRUE(LoadPrefs());
        EXPECT_EQ(unspaced(ValueIn(Saved(), row.Key)), kept) << "a second time";
    }
}

TEST_F(PrefsDocument, RecordsOfListsGetTheirKeys) {
    ASSERT_TRUE(RestoreDefaultFavorites());
    const auto keys =
        TextsOf(*MasterFavoritesList, [](const FavoritesNode& node) { return node.Key.View(); });
    EXPECT_THAT(keys, ElementsAre("Workbench", "[Fav]SYS:Utilities", "[Fav]SYS:System"));
    const std::string name(127, 'n');
    ASSERT_TRUE(Load(Plist("<key>Bookmarks</key><array><array><integer>13</integer><string>" + name +
                           "</string></array></array><key>FTPSites</key><array><array><string>" + name +
                           "</string></array></array>")));
    EXPECT_EQ(MasterBookmarksList->begin()->Key.View(), "[Bkm]" + name.substr(5));
    EXPECT_EQ(FTPSitesList->begin()->Key.View(), "[FTP]" + name);
}

TEST_F(PrefsDocument, BrokenDocumentsGiveTheDefaultsAndAreKept) {
    Prefs.VerifyQuit = 1;
    const std::string whole = Saved();
    const std::size_t end = whole.rfind('>') + 1;
    for (std::size_t size = 1; size < end; size += size < 40 ? 1 : 397)
        ASSERT_FALSE(Dictionary::FromXml(whole.substr(0, size))) << size;
    for (const std::string& broken :
         {whole.substr(0, whole.size() / 2), std::string(200, '\0'), std::string("<plist>")}) {
        ASSERT_TRUE(Load(broken));
        EXPECT_EQ(Prefs.VerifyQuit, 0);
        EXPECT_TRUE(SavePrefs(1));
    }
    EXPECT_EQ(Tree.Read(Document + ".broken"), whole.substr(0, whole.size() / 2));
    EXPECT_EQ(Tree.Read(Document + ".broken3"), "<plist>");
    const std::string longPath = "<string>" + std::string(1024, 'p') + "</string>";
    int copy = 4;
    for (const std::string& passed :
         {"<key>Bookmarks</key><array><array><integer>13</integer><string>x</string>" + longPath +
              "</array></array>",
          std::string("<key>ShowComputerColumns</key><array><array><integer>0</integer>"
                      "<integer>50</integer></array><array/></array>"),
          std::string("<key>Bookmarks</key><string>x</string>"),
          std::string("<key>FTPSites</key><dict><key>x</key></dict>"),
          "<key>DownloadPath</key>" + longPath}) {
        ASSERT_TRUE(Load(Plist(passed)));
        EXPECT_EQ(Tree.Read(Document + ".broken" + std::to_string(copy)), Plist(passed))
            << "the next save would have none of it";
        ++copy;
    }
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(PrefsDocument, WhatCannotBeReadIsNeverReplaced) {
    Tree.Drawer(Document);
    EXPECT_TRUE(LoadPrefs());
    EXPECT_EQ(Prefs.WindowWidth, 700);
    TakeBackQuitNoSave();
    EXPECT_EQ(QuitNoSave, 1);
    EXPECT_FALSE(SavePrefs(1));
    EXPECT_THAT(Requests, ElementsAre("Error loading prefs file.", "Error saving prefs file."));
    ProgramPrefsFile = "ENVARC:Solvane/Other.xml";
    EXPECT_TRUE(SavePrefs(1)) << "another document may be written";
    ProgramPrefsFile = DefaultPrefsFile;
    std::filesystem::remove(Tree.Path(Document));
    EXPECT_TRUE(LoadPrefs());
    EXPECT_EQ(QuitNoSave, 0) << "nothing stands in the way any more";
    EXPECT_TRUE(SavePrefs(1));
}

TEST_F(PrefsDocument, AFullDiskLeavesTheOldDocument) {
    const std::string old = Saved();
    std::filesystem::remove(Tree.Path("Solvane/prefs"));
    Prefs.VerifyQuit = 1;
    Calls().Write = Failing<ENOSPC>();
    EXPECT_FALSE(SavePrefs(1));
    EXPECT_EQ(SAK_IOErr, dos::ErrorDiskFull);
    EXPECT_THAT(Requests, ElementsAre("Error saving prefs file."));
    EXPECT_EQ(Tree.Read(Document), old);
    EXPECT_FALSE(Tree.Exists("Solvane/prefs")) << "it would name a document that was not saved";
}

// Children that save different documents without an end, until they are killed in the midst of it.
TEST_F(PrefsDocument, InstancesThatSaveAtOnceAndAreKilledLeaveOneWholeDocument) {
    Prefs.WindowX = Prefs.WindowY = 3;
    static_cast<void>(Saved());
    std::vector<pid_t> children;
    for (std::int32_t child = 1; child <= 2; ++child) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            Prefs.WindowX = child;
            Prefs.WindowY = child;
            Prefs.DefaultOpenAtPath = std::string(static_cast<std::size_t>(child) * 400, 'x');
            while (SavePrefs(1)) {
            }
            ::_exit(1);
        }
        children.push_back(pid);
    }
    for (int look = 0; look < 200; ++look) {
        const auto seen = Dictionary::FromXml(Tree.Read(Document));
        ASSERT_TRUE(seen) << look;
        EXPECT_EQ(seen->Number("WindowX", -1), seen->Number("WindowY", -2));
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    for (const pid_t pid : children) {
        int status = 0;
        EXPECT_EQ(::kill(pid, SIGKILL), 0);
        EXPECT_EQ(::waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it could not save";
    }
    EXPECT_TRUE(LoadPrefs());
    EXPECT_GE(Prefs.WindowX, 1);
    EXPECT_EQ(Prefs.WindowX, Prefs.WindowY);
}

TEST_F(PrefsDocument, BringingTheRecordUpToDateWritesNoFile) {
    EXPECT_TRUE(SavePrefs(0));
    EXPECT_FALSE(Tree.Exists(Document));
    EXPECT_FALSE(Tree.Exists("Solvane/application"));
}

TEST_F(PrefsDocument, SmallFilesCountByTheirFirstLineThatIsNotEmpty) {
    struct Row {
        const char *Which, *Application, *Document;
        int InDock;
    };
    for (const Row& row : {Row{"\n\nMine.xml\nx", "\n0\n", "ENVARC:Solvane/Mine.xml", 0},
                           Row{"../x", "1", "(as it was)", 1}, Row{"DH0:x", "no", "(as it was)", 0},
                           Row{"", "", "(as it was)", 1}, Row{"\n", "12345", "(as it was)", 1234}}) {
        Tree.Write("Solvane/prefs", row.Which);
        Tree.Write("Solvane/application", row.Application);
        ProgramPrefsFile = "(as it was)";
        appShowInAmiDock = 1;
        LoadWhichPrefs();
        LoadApplicationPrefs();
        EXPECT_EQ(ProgramPrefsFile.View(), row.Document);
        EXPECT_EQ(appShowInAmiDock, row.InDock) << row.Application;
    }
    Prefs.ShowInAmiDock = 0;
    ProgramPrefsFile = "ENVARC:Solvane/Mine.xml";
    EXPECT_TRUE(SavePrefs(1));
    EXPECT_EQ(Tree.Read("Solvane/prefs"), "Mine.xml");
    EXPECT_EQ(Tree.Read("Solvane/application"), "0\n");
}

TEST_F(PrefsDocument, AListThatCannotBeFilledIsTold) {
    SAK_MemoryCleanup();
    EXPECT_FALSE(Load(Plist("<key>VerifyQuit</key><true/><key>ToolbarList</key>"
                            "<array><integer>1</integer></array>")));
    EXPECT_EQ(Prefs.VerifyQuit, 1);
    EXPECT_THAT(Requests, ElementsAre("Could not create Exec list node.", "Error loading prefs file."));
}

TEST_F(PrefsDocument, DatesFollowTheFormatThatIsChosen) {
    const std::string localeFormat(Prefs.CustomDateFormat.View());
    for (const auto& [choice, custom, inForce] : {std::tuple{0, "%Y", "%d-%b-%y %T"},
                                                  {1, "%Y", localeFormat.c_str()},
                                                  {2, "%Y", "%Y"},
                                                  {2, "", ""}}) {
        Prefs.DateFormat = choice;
        Prefs.CustomDateFormat = custom;
        SetDateFormatInForce();
        EXPECT_EQ(Prefs.EffectiveDateFormat.View(), inForce);
    }
}

} // namespace
} // namespace solvane
