#include "content/BuildLists.h"
#include "content/ListContents.h"
#include "content/SortLists.h"
#include "platform/dos/Dates.h"
#include "tests/content/DrawerTest.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>

namespace solvane {
namespace {

using testing::ElementsAre, testing::UnorderedElementsAre;

class ScanTest : public DrawerTest {
protected:
    ScanTest() { Prefs.DetermineDatatype = 2; }

    bool Note(std::string_view path, std::string_view note) const {
        return setxattr(Host(path).c_str(), "user.xdg.comment", note.data(), note.size(), 0) == 0;
    }
};

TEST_F(ScanTest, FileKnowsAllItsTexts) {
    File("d/Read me.txt", std::string(1536, 'x'));
    chmod(Host("d/Read me.txt").c_str(), 0640);
    const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    utimensat(AT_FDCWD, Host("d/Read me.txt").c_str(), times, 0);
    ASSERT_TRUE(Scan("d"));
    const ContentNode& file = Entry("Read me.txt");
    EXPECT_EQ(file.ObjectKind, EntryKind::File);
    EXPECT_EQ(file.EntryPath.View(), Path("d/Read me.txt"));
    EXPECT_EQ(file.EntryDisplayName.View(), "Read me.txt");
    EXPECT_EQ(file.SortPrefix, '1');
    EXPECT_EQ(file.EntrySize, 1536U);
    EXPECT_EQ(file.EntrySizeText.View(), "1.50 KB");
    EXPECT_EQ(file.ProtectionText.View().substr(4), "rw-d");
    EXPECT_EQ(file.DateSeconds, dos::AmigaSecondsFromUnix(1'000'000'000));
    EXPECT_NE(file.DateText.View().find("Sep-01"), std::string_view::npos) << file.DateText.View();
    EXPECT_EQ(file.DatatypeName.View(), "File");
    EXPECT_EQ(file.DefaultIconName.View(), "def_project.info");
    EXPECT_EQ(TotalBytes, 1536U);
    EXPECT_EQ(TotalBytesBuffer.View(), "1.50 KB");
}

TEST_F(ScanTest, EveryKindOfObjectIsWhatItLeadsTo) {
    Plant({"d/sub/in it/", "file"});
    SoftLink("d/to drawer", "sub");
    SoftLink("d/to drawer by its path", Host("d/sub").string());
    SoftLink("d/to file", "../file");
    SoftLink("d/to nothing", "gone");
    SoftLink("d/to itself", "to itself");
    std::filesystem::create_hard_link(Host("file"), Host("d/second name"));
    ASSERT_TRUE(Scan("d"));
    const struct {
        const char* Name;
        EntryKind Kind;
        const char* Type;
    } expected[] = {
        {"sub", EntryKind::Drawer, "Drawer"},
        {"second name", EntryKind::File, "File"},
        {"to drawer", EntryKind::SoftLinkToDrawer, "Soft link"},
        {"to file", EntryKind::SoftLinkToFile, "Soft link"},
        {"to nothing", EntryKind::SoftLinkToDrawer, "Soft link"},
        {"to itself", EntryKind::SoftLinkToDrawer, "Soft link"},
    };
    for (const auto& row : expected) {
        EXPECT_EQ(Entry(row.Name).ObjectKind, row.Kind) << row.Name;
        EXPECT_EQ(Entry(row.Name).DatatypeName.View(), row.Type) << row.Name;
        EXPECT_EQ(Entry(row.Name).VersionNumber, IsDrawerKind(row.Kind) ? -1.0F : 0.0F) << row.Name;
    }
    EXPECT_EQ(Entry("to drawer").EntryPath.View(), Path("d/sub"));
    EXPECT_EQ(Entry("to drawer by its path").EntryPath.View(), Path("d/sub"));
    EXPECT_EQ(SAK_GenericListCount(*LinksList), 5U);
    EXPECT_NE(FindLinksNode(EntryKind::SoftLinkToDrawer, Path("d/sub")), nullptr);
    EXPECT_EQ(FindLinksNode(EntryKind::SoftLinkToFile, Path("d/sub")), nullptr);
}

TEST_F(ScanTest, ObjectsThatAreNeitherFileNorDrawerAreBlankRows) {
    ASSERT_EQ(mkfifo(Host("pipe").c_str(), 0600), 0);
    Tree.Socket("socket");
    File("plain");
    ASSERT_TRUE(Scan());
    EXPECT_THAT(Rows(), UnorderedElementsAre("", "", "plain"));
    const ContentNode& blank = Entry("");
    EXPECT_EQ(blank.ProtectionText.View(), "--------");
    EXPECT_EQ(blank.DatatypeGroupName.View(), "System");
    EXPECT_TRUE(blank.DatatypeName.Empty());
    EXPECT_TRUE(blank.DateText.Empty());
    EXPECT_TRUE(blank.EntryPath.Empty());
}

TEST_F(ScanTest, FilenotesOfMoreThanOneCharacterAreKept) {
    const struct {
        const char* Name;
        std::string Note, Kept;
    } notes[] = {{"none", "", ""},
                 {"one", "x", ""},
                 {"two", "xy", "xy"},
                 {"long", std::string(79, 'n'), std::string(79, 'n')}};
    for (const auto& row : notes) {
        File(row.Name);
        if (!row.Note.empty() && !Note(row.Name, row.Note))
            GTEST_SKIP() << "no attributes on this file system";
    }
    ASSERT_TRUE(Scan());
    for (const auto& row : notes) {
        EXPECT_EQ(Entry(row.Name).Comment.View(), row.Kept) << row.Name;
        EXPECT_EQ(Entry(row.Name).CommentSize, row.Kept.empty() ? 0 : row.Kept.size() + 1) << row.Name;
    }
}

TEST_F(ScanTest, NotesOfLinksAreNotKept) {
    Drawer("d");
    SoftLink("d/link", "../noted");
    File("noted");
    if (!Note("noted", "a note"))
        GTEST_SKIP() << "no attributes on this file system";
    ASSERT_TRUE(Scan());
    EXPECT_EQ(Entry("noted").Comment.View(), "a note");
    ASSERT_TRUE(Scan("d"));
    EXPECT_TRUE(Entry("link").Comment.Empty());
}

TEST_F(ScanTest, NamesAreDataWhateverIsInThem) {
    const std::vector<std::string> names = {"a\" ;rm -rf *", "two\nlines", "tab\there", "100%s %n",
                                            "&amp; <b>",     "'single'",   "-rf",       "b\xff\xfeu",
                                            "Größe",         "trailing ",  " leading",  "#?.c"};
    for (const std::string& name : names)
        File(name, "12");
    ASSERT_TRUE(Scan());
    EXPECT_THAT(Records(), testing::UnorderedElementsAreArray(names));
    EXPECT_EQ(TotalBytes, 2 * names.size());
    for (const std::string& name : names)
        EXPECT_EQ(Entry(name).EntryPath.View(), Path(name));
}

TEST_F(ScanTest, NamesThatDoNotFitStandUnderDifferentAliases) {
    File(std::string(250, 'n') + "A.txt");
    File(std::string(250, 'n') + "B.txt");
    File("colon:name");
    ASSERT_TRUE(Scan());
    ASSERT_EQ(Records().size(), 3U);
    EXPECT_NE(Records()[1], Records()[2]);
    for (const ContentNode& node : *ContentList) {
        EXPECT_LE(node.EntryName.Size(), 127U);
        EXPECT_EQ(node.EntryName.View().find(':'), std::string_view::npos);
        EXPECT_EQ(node.EntryPath.View(), Path(node.EntryName.View()));
    }
}

// A cut path could name another object: the entry is shown, but its path leads nowhere.
TEST_F(ScanTest, PathThatDoesNotFitIsNeverCut) {
    std::string deep;
    while (deep.size() < 900)
        deep += std::string(100, 'd') + "/";
    const int old = open(".", O_RDONLY | O_DIRECTORY);
    Drawer(deep);
    std::ofstream(Host(deep) / std::string(120, 'f')) << "1";
    close(old);
    ASSERT_TRUE(Scan(deep));
    EXPECT_EQ(Entry(std::string(120, 'f')).EntryPath.View(), PathTooLong);
}

TEST_F(ScanTest, InfoAndDotFilesHaveNoRowButCount) {
    File("note", "12345");
    File("note.info", "123");
    File("CAPITAL.INFO", "1");
    File(".hidden", "12");
    File(".hidden.info", "1");
    ASSERT_TRUE(Scan());
    EXPECT_THAT(Rows(), ElementsAre("note"));
    EXPECT_EQ(Records().size(), 5U);
    EXPECT_EQ(TotalNodes, 1U);
    EXPECT_EQ(TotalBytes, 12U);
    Prefs.ProcessInfoFiles = 0;
    BuildContentList();
    EXPECT_THAT(Rows(), ElementsAre("CAPITAL.INFO", "note", "note.info"));
    Prefs.ShowHiddenEntries = 1;
    BuildContentList();
    EXPECT_THAT(Rows(), ElementsAre(".hidden", ".hidden.info", "CAPITAL.INFO", "note", "note.info"));
}

TEST_F(ScanTest, EntriesWithoutARowLoseTheirSelection) {
    Plant({"note.info", ".dot"});
    ASSERT_TRUE(Scan());
    for (ContentNode& node : *ContentList)
        node.Selected = 1;
    BuildContentList();
    EXPECT_EQ(FindFirstSelectedContentNode(), nullptr);
}

TEST_F(ScanTest, DrawerWithNothingToShowHasOneEmptyRow) {
    Plant({"empty/", "only hidden/.dot"});
    for (const char* drawer : {"empty", "only hidden"}) {
        ASSERT_TRUE(Scan(drawer));
        EXPECT_THAT(Rows(), ElementsAre("(empty row)")) << drawer;
        EXPECT_EQ(TotalNodes, 0U);
        EXPECT_EQ(ActuallyZero, 1U);
        EXPECT_EQ(TotalBytesBuffer.View(), "0 B");
    }
    File("other/file");
    ASSERT_TRUE(Scan("other"));
    EXPECT_THAT(Records(), ElementsAre("file")) << "nothing of the drawer before is left";
    EXPECT_EQ(ActuallyZero, 0U);
}

TEST_F(ScanTest, DrawersStandWhereTheOrderWantsThem) {
    Plant({"b file", "c drawer/", "D file", "a Drawer/"});
    SoftLink("e link", "c drawer");
    const struct {
        std::int32_t Order;
        std::vector<std::string> Rows;
    } orders[] = {
        {0, {"a Drawer", "c drawer", "e link", "b file", "D file"}},
        {1, {"a Drawer", "b file", "c drawer", "D file", "e link"}},
        {2, {"b file", "D file", "a Drawer", "c drawer", "e link"}},
    };
    for (const auto& row : orders) {
        Prefs.DrawersOrder = row.Order;
        ASSERT_TRUE(Scan());
        EXPECT_EQ(Rows(), row.Rows) << row.Order;
    }
}

TEST_F(ScanTest, ReversalKeepsDrawersOnTopUntilTheNextScan) {
    Plant({"file a", "file b", "drawer/"});
    ASSERT_TRUE(Scan());
    SortBy(SameColumn);
    EXPECT_THAT(Rows(), ElementsAre("drawer", "file b", "file a"));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_THAT(Rows(), ElementsAre("file b", "file a", "drawer"));
}

TEST_F(ScanTest, OtherOrderOfDrawersShowsAtOnceAndKeepsTheSelection) {
    Plant({"a file", "b drawer/"});
    ASSERT_TRUE(Scan());
    SortDirection = 0;
    FindContentNode("a file", AnyKind)->Selected = 1;
    const struct {
        std::int32_t Order;
        std::vector<std::string> Rows;
    } orders[] = {{2, {"a file", "b drawer"}}, {0, {"b drawer", "a file"}}, {1, {"a file", "b drawer"}}};
    for (const auto& row : orders) {
        Prefs.DrawersOrder = row.Order;
        DrawersOrder();
        EXPECT_EQ(Rows(), row.Rows) << row.Order;
        EXPECT_EQ(Entry("a file").Selected, 1) << row.Order;
        EXPECT_EQ(NumSelected, 1) << row.Order;
    }
    Prefs.DrawersOrder = 0;
    LBLocation = LocationKind::Computer;
    DrawersOrder();
    EXPECT_THAT(Rows(), ElementsAre("a file", "b drawer")) << "no drawer is on show";
}

TEST_F(ScanTest, SortColumnCountsInDetailsViewsOnly) {
    File("a", "333");
    File("b", "1");
    Drawer("z drawer");
    Prefs.ContentDetailsCISortColumn = 2;
    ASSERT_TRUE(Scan());
    EXPECT_THAT(Rows(), ElementsAre("z drawer", "b", "a"));
    Prefs.ContentViewStyle = ViewList;
    Prefs.DrawersOrder = 1;
    ASSERT_TRUE(Scan());
    EXPECT_THAT(Rows(), ElementsAre("a", "b", "z drawer"));
}

TEST_F(ScanTest, OtherColumnIsChosenWithoutTurningTheDirection) {
    File("a", "22");
    File("b", "1");
    ASSERT_TRUE(Scan());
    SortBy(2);
    EXPECT_THAT(Rows(), ElementsAre("b", "a"));
    EXPECT_EQ(Prefs.ContentSortDirection, 0);
    SortBy(2);
    EXPECT_THAT(Rows(), ElementsAre("a", "b"));
    EXPECT_EQ(Prefs.ContentSortDirection, 1);
    SortBy(77);
    EXPECT_EQ(Prefs.ContentDetailsCISortColumn, 2) << "there is no such column";
    LBLocation = LocationKind::Computer;
    Prefs.ComputerDetailsCISortColumn = 1;
    Prefs.ComputerViewStyle = ViewDetails;
    SortBy(6);
    EXPECT_EQ(Prefs.ComputerDetailsCISortColumn, 1) << "drawers have such a column, this list has none";
    SortDirection = 1;
    LBLocation = LocationKind::Workbench;
    SortBy(1);
    EXPECT_EQ(SortDirection, Prefs.WorkbenchSortDirection) << "is taken with another column, too";
    EXPECT_THAT(Rows(), ElementsAre("a", "b"));
}

TEST_F(ScanTest, FoundObjectsSortByPathWithoutRegardToCase) {
    DOSList = SAK_CreateGenericList<DOSNode>();
    for (const char* path : {"T:b", "T:A/c", "T:a", "T:B"})
        SAK_AddGenericListNode(*DOSList, SAK_CreateGenericListNode<DOSNode>())->EntryPath = path;
    SortDOSList();
    const auto paths = TextsOf(*DOSList, [](const DOSNode& node) { return node.EntryPath.View(); });
    DOSList.reset();
    EXPECT_THAT(paths, ElementsAre("T:a", "T:A/c", "T:b", "T:B"));
}

TEST_F(ScanTest, SelectionAndPlaceSurviveAReload) {
    for (const char* name : {"a", "b", "c", "B"})
        File(name, "123");
    ASSERT_TRUE(Scan());
    FindContentNode("B", AnyKind)->Selected = 1;
    NumSelected = 1;
    LBTop = 2;
    File("0 new");
    std::filesystem::remove(Host("c"));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_EQ(LBTop, 2U);
    EXPECT_EQ(Entry("B").Selected, 1);
    EXPECT_EQ(Entry("b").Selected, 0);
    EXPECT_EQ(NumSelected, 1);
    EXPECT_EQ(SelectedBytes, 3U);
    Drawer("other");
    ASSERT_TRUE(Scan("other"));
    EXPECT_EQ(LBTop, 0U);
    EXPECT_EQ(NumSelected, 0);
}

TEST_F(ScanTest, DrawerThatIsNotThereLeavesEverythingAsItIs) {
    File("file");
    ASSERT_TRUE(Scan());
    EXPECT_FALSE(Scan("gone"));
    EXPECT_FALSE(Scan("file"));
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist.", "Drawer does not exist."));
    EXPECT_THAT(Rows(), ElementsAre("file"));
    EXPECT_EQ(LBLocation, LocationKind::Drawer);
}

TEST_F(ScanTest, DrawerThatMayNotBeReadLeavesEverythingAsItIs) {
    Plant({"file", "closed/"});
    chmod(Host("closed").c_str(), 0);
    ASSERT_TRUE(Scan());
    const PlainUser user(HostRoot);
    EXPECT_FALSE(Scan("closed"));
    EXPECT_THAT(Requests, ElementsAre(testing::HasSubstr("DOS error message:")));
    EXPECT_THAT(Rows(), ElementsAre("closed", "file"));
}

TEST_F(ScanTest, MultiAssignIsRefusedOnlyWhenNoneOfItsDrawersCanBeRead) {
    File("one/sub", "a file under the drawer's name");
    File("two/sub/closed");
    File("three/sub/open", "12");
    const std::string name = "Parts" + Volume.substr(0, Volume.size() - 1);
    ASSERT_TRUE(dos::SetAssign(name, dos::AssignKind::Directory, {Path("one"), Path("two"), Path("three")}));
    CurrentPath = name + ":sub";
    for (const char* closed : {"two/sub", "three/sub"}) {
        chmod(Host(closed).c_str(), 0);
        const PlainUser user(HostRoot);
        EXPECT_EQ(ScanDrawer(), std::string_view(closed) == "two/sub") << closed;
        EXPECT_THAT(Rows(), ElementsAre("open")) << closed;
    }
    EXPECT_THAT(Requests, ElementsAre(testing::HasSubstr("DOS error message:")));
    chmod(Host("two/sub").c_str(), 0700);
    chmod(Host("three/sub").c_str(), 0700);
}

TEST_F(ScanTest, EntriesOfOneNameKeepTheirOwnSelection) {
    File("one/same", "1");
    File("one/other", "22");
    File("two/same", "4444");
    const std::string name = "Twins" + Volume.substr(0, Volume.size() - 1);
    ASSERT_TRUE(dos::SetAssign(name, dos::AssignKind::Directory, {Path("one"), Path("two")}));
    CurrentPath = name + ":";
    ASSERT_TRUE(ScanDrawer());
    ASSERT_THAT(Rows(), ElementsAre("other", "same", "same"));
    lblist2[2].Record->Selected = 1;
    NumSelected = 1;
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_EQ(lblist2[1].Record->Selected, 0);
    EXPECT_EQ(lblist2[2].Record->Selected, 1);
    EXPECT_EQ(NumSelected, 1);
    EXPECT_EQ(SelectedBytes, 4U);
    EXPECT_EQ(SelectedBytesBuffer.View(), "4 B");
    EXPECT_EQ(TotalBytes, 4U) << "the totals are those of the last drawer";
}

TEST_F(ScanTest, SelectionIsNotCarriedIntoAnotherDrawer) {
    Plant({"one/same", "two/same"});
    ASSERT_TRUE(Scan("one"));
    lblist2[0].Record->Selected = 1;
    NumSelected = 1;
    DoReload = 1;
    ASSERT_TRUE(Scan("two"));
    EXPECT_EQ(lblist2[0].Record->Selected, 0);
    EXPECT_EQ(NumSelected, 0);
}

// A process that has ended and was not asked for yet: its links are there and have no target.
TEST_F(ScanTest, LinkWithoutAReadableTargetLeadsNowhere) {
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    siginfo_t info;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(ended), &info, WEXITED | WNOWAIT), 0);
    ASSERT_TRUE(
        dos::AddVolume({.Device = "ENDED", .Volume = "Ended", .HostRoot = "/proc/" + std::to_string(ended)}));
    CurrentPath = "Ended:";
    EXPECT_TRUE(ScanDrawer());
    for (const char* name : {"cwd", "exe", "root"}) {
        EXPECT_EQ(Entry(name).ObjectKind, EntryKind::SoftLinkToDrawer) << name;
        EXPECT_EQ(Entry(name).EntryPath.View(), PathTooLong) << name;
    }
    FreeContentList(1);
    EXPECT_EQ(waitpid(ended, nullptr, 0), ended);
    Drawer("d");
    SoftLink("d/here", ".");
    ASSERT_TRUE(Scan("d"));
    EXPECT_EQ(Entry("here").EntryPath.View(), Path("d/")) << "no text, yet a target";
}

TEST_F(ScanTest, MultiAssignListsAllItsDrawersInOrderWithTheTotalsOfTheLast) {
    File("one/sub/same", "1");
    File("one/sub/first", "22");
    File("two/without it");
    File("three/sub/same", "4444");
    const std::string name = "Multi" + Volume.substr(0, Volume.size() - 1);
    ASSERT_TRUE(dos::SetAssign(name, dos::AssignKind::Directory, {Path("one"), Path("two"), Path("three")}));
    std::vector<std::string> seen;
    ASSERT_TRUE(DoAllAssigns(name + ":sub", [&](const dos::FileLock& lock) {
        seen.push_back(dos::NameFromLock(lock));
        return true;
    }));
    EXPECT_THAT(seen, ElementsAre(Path("one/sub"), Path("three/sub")));
    seen.clear();
    EXPECT_FALSE(DoAllAssigns(name + ":sub", [&](const dos::FileLock& lock) {
        seen.push_back(dos::NameFromLock(lock));
        return false;
    }));
    EXPECT_EQ(seen.size(), 1U);
    Prefs.ContentDetailsCISortColumn = 2;
    CurrentPath = name + ":sub";
    ASSERT_TRUE(ScanDrawer());
    EXPECT_THAT(Rows(), ElementsAre("same", "first", "same"));
    EXPECT_EQ(TotalBytes, 4U);
}

TEST_F(ScanTest, PathOnShowHasNoFinalSlash) {
    File("a/x");
    for (const char* path : {"a", "a/"}) {
        ASSERT_TRUE(Scan(path));
        EXPECT_EQ(CurrentPath.View(), Path("a"));
        EXPECT_EQ(Entry("x").EntryPath.View(), Path("a/x"));
    }
    static_cast<void>(ReloadDrawer());
    EXPECT_EQ(CurrentPath.View(), Path("a"));
    ASSERT_TRUE(Scan());
    EXPECT_EQ(CurrentPath.View(), Volume);
}

// Each look into a file would be a transfer, and the icons there belong to nobody here.
TEST_F(ScanTest, NothingOnAnFtpMountIsOpenedOrHidden) {
    File("page.html", "<html></html>");
    File("page.html.info");
    const bool noted = Note("page.html", "a note");
    ASSERT_TRUE(dos::AddVolume({.Device = "FTP0", .Volume = "fTpMount", .HostRoot = HostRoot.string()}));
    Prefs.DetermineDatatype = 0;
    CurrentPath = "fTpMount:";
    ASSERT_TRUE(ScanDrawer());
    EXPECT_EQ(AtFTPMount, 1);
    EXPECT_THAT(Rows(), ElementsAre("page.html", "page.html.info"));
    EXPECT_EQ(Entry("page.html").DatatypeName.View(), "File");
    EXPECT_TRUE(Entry("page.html").Comment.Empty());
    ASSERT_TRUE(Scan());
    EXPECT_EQ(AtFTPMount, 0);
    EXPECT_EQ(Entry("page.html").Comment.View(), noted ? "a note" : "");
    EXPECT_NE(Entry("page.html").DatatypeName.View(), "File");
}

TEST_F(ScanTest, EmptyGamesDrawerIsNoPlace) {
    Drawer("Games/One");
    ASSERT_TRUE(Scan("Games/One"));
    EXPECT_EQ(AtWHDLoadGamesRootDrawer, 0);
    Prefs.WHDLoadGamesRootDrawer = Path("Games");
    ASSERT_TRUE(Scan("Games/One"));
    EXPECT_EQ(AtWHDLoadGamesRootDrawer, 1);
    ASSERT_TRUE(Scan());
    EXPECT_EQ(AtWHDLoadGamesRootDrawer, 0);
}

} // namespace
} // namespace solvane
