#include "fileops/RenameFiles.h"

#include "content/SortLists.h"
#include "interface/DetailsGadgets.h"
#include "tests/locations/OpenWindow.h"
#include "tests/platform/dos/HostFaults.h"

#include <gmock/gmock.h>
#include <utility>

namespace solvane {
namespace {

using testing::ElementsAre;

using RenameFilesTest = OpenWindow;

TEST_F(RenameFilesTest, RenamedEntryTakesItsIconAlongAndNeverReplaces) {
    Plant({"ab.txt", "Ac.txt", "b.txt", "z", "b.txt.info"});
    Plant({"d1/", "d2/"});
    Prefs.ProcessInfoFiles = 1;
    ASSERT_TRUE(Scan());
    EXPECT_FALSE(RenameFiles("b.txt", ""));
    EXPECT_FALSE(RenameFiles("gone", "x"));
    EXPECT_TRUE(Requests.empty());
    EXPECT_FALSE(RenameFiles("b.txt", "z"));
    EXPECT_EQ(std::exchange(Requests, {}).size(), 1U);
    for (const char* path : {"d1/b", "d1/", "RAM:b"})
        EXPECT_FALSE(RenameFiles("b.txt", path)) << path;
    EXPECT_EQ(std::exchange(Requests, {}).size(), 3U);
    EXPECT_TRUE(RenameFiles("b.txt", "new"));
    EXPECT_TRUE(std::filesystem::exists(Host("new.info")));
    EXPECT_TRUE(std::filesystem::exists(Host("new")));
    EXPECT_EQ(FindContentNode("new", AnyKind)->EntryPath.View(), Path("new"));
    EXPECT_THAT(Rows(), ElementsAre("d1", "d2", "ab.txt", "Ac.txt", "new", "z")) << "sorted anew";
}

TEST_F(RenameFilesTest, NameThatTwoDrawersOfAnAssignHaveIsNotRenamed) {
    File("one/same", "1");
    File("two/same", "2");
    File("two/alone", "3");
    const std::string assign = "Twins" + Volume.substr(0, Volume.size() - 1);
    ASSERT_TRUE(dos::SetAssign(assign, dos::AssignKind::Directory, {Path("one"), Path("two")}));
    CurrentPath = assign + ":";
    ASSERT_TRUE(ScanDrawer());
    EXPECT_FALSE(RenameFiles("same", "other"));
    EXPECT_EQ(Requests.size(), 1U);
    EXPECT_TRUE(std::filesystem::exists(Host("one/same")));
    EXPECT_TRUE(RenameFiles("alone", "other"));
    EXPECT_TRUE(std::filesystem::exists(Host("two/other")));
}

TEST_F(RenameFilesTest, WhenTheDiskRefusesHalfWayTheListSaysWhatIsThere) {
    Prefs.ProcessInfoFiles = 1;
    std::string ends; // of the sweep, a letter each: refused, without its icon, done
    for (int call = 0; !ends.ends_with('d') && call < 9; ++call) {
        const std::string name = std::to_string(call), newName = "new " + name;
        File(name, "bytes");
        File(name + ".info", "icon");
        ASSERT_TRUE(Scan());
        Requests.clear();
        FailWith = EACCES;
        FailingCall = call;
        CallsSeen = 0;
        dos::Host().Renameat2 = FaultyRename;
        const bool renamed = RenameFiles(name, newName);
        dos::Host() = dos::RealHost();
        const bool iconCame = std::filesystem::exists(Host(newName + ".info"));
        ends += !renamed ? 'r' : iconCame ? 'd' : 'i';
        EXPECT_EQ(Requests.size(), CallsSeen > call ? 1U : 0U) << call;
        EXPECT_TRUE(std::filesystem::exists(Host(renamed ? newName : name))) << call;
        EXPECT_TRUE(iconCame || std::filesystem::exists(Host(name + ".info"))) << call;
        for (const std::string& record : Records())
            EXPECT_TRUE(std::filesystem::exists(Host(record))) << record;
    }
    EXPECT_EQ(ends, "rid");
}

TEST_F(RenameFilesTest, SelectionStaysButForTheRenamedEntry) {
    for (const char* name : {"a", "b", "c"}) {
        File(name, "12");
    }
    ASSERT_TRUE(Scan());
    Objects.ContentList->SelectRows({0, 1});
    const struct {
        const char *From, *To;
        std::vector<std::size_t> Selected;
        std::string_view Told;
    } rows[] = {{"b", "d", {0}, "a"}, {"c", "0", {1}, "a"}, {"a", "e", {}, ""}};
    for (const auto& row : rows) {
        ASSERT_TRUE(RenameFiles(row.From, row.To));
        EXPECT_EQ(Objects.ContentList->SelectedRows(), row.Selected) << row.From;
        EXPECT_EQ(NumSelected, static_cast<std::int32_t>(row.Selected.size())) << row.From;
        EXPECT_EQ(SelectedBytes, 2 * row.Selected.size()) << row.From;
        EXPECT_EQ(Details1Buffer.View(), row.Told.empty() ? Volume : row.Told) << row.From;
    }
}

} // namespace
} // namespace solvane
