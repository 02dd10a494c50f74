#include "locations/Navigation.h"

#include "interface/MainLayout.h"
#include "locations/Assigns.h"
#include "locations/Devices.h"
#include "locations/EnterDrawer.h"
#include "sak/FilenameSupport.h"
#include "tests/content/DrawerTest.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace solvane {
namespace {

using testing::ElementsAre;

class NavigationTest : public DrawerTest {
protected:
    NavigationTest() {
        Prefs.DetermineDatatype = 2;
        EXPECT_TRUE(GetDevices() && CopyDevicesToNavDevices() && GetAssigns());
        SortMasterAssignsList();
    }

    static void Type(std::string_view path) { HandlePathGadget(path); }
    [[nodiscard]] std::string DeviceRoot() const {
        const DevicesNode* node = FindMasterDevicesNode(Volume);
        return std::string(node != nullptr ? node->DeviceName.View() : "none:");
    }
};

TEST_F(NavigationTest, DeviceNameIsRewrittenToItsVolume) {
    File("d/file");
    Type(DeviceRoot() + "d");
    EXPECT_EQ(CurrentPath.View(), Path("d"));
    EXPECT_EQ(PathUndoBuffer.View(), Path("d"));
    EXPECT_THAT(Rows(), ElementsAre("file"));
    EXPECT_EQ(StatusBarBuffer1.View(), "0/1 Selected | 0 B / 0 B");
    Type(DeviceRoot());
    EXPECT_EQ(CurrentPath.View(), Volume);
    EXPECT_TRUE(Requests.empty());
}

TEST_F(NavigationTest, HostPathIsTakenToo) {
    File("d e/file");
    Type(Host("d e").string());
    EXPECT_EQ(CurrentPath.View(), Path("d e"));
    Type("file://" + Host("d%20e").string());
    EXPECT_EQ(CurrentPath.View(), Path("d e"));
}

TEST_F(NavigationTest, PathThatLeadsNowhereComesBack) {
    File("d/file");
    Type(Path("d"));
    const struct {
        std::string Typed;
        bool Told;
    } rows[] = {{Path("gone"), true},
                {Path("d/file"), true},
                {"NoSuchVolume:", true},
                {"NIL:", true},
                {"no colon", false},
                {"", false},
                {Path(std::string(1010, 'x')), true}};
    for (const auto& row : rows) {
        Requests.clear();
        Type(row.Typed);
        EXPECT_EQ(CurrentPath.View(), Path("d")) << row.Typed;
        EXPECT_EQ(Requests.size(), row.Told ? 1U : 0U) << row.Typed;
        EXPECT_THAT(Rows(), ElementsAre("file")) << row.Typed;
        const bool onlyNoted =
            row.Typed == "no colon"; // the field has its path back: the status bar says why
        EXPECT_EQ(StatusBarBuffer1 == "Drawer does not exist.", onlyNoted) << row.Typed;
        SetStatusBar("", "");
    }
}

TEST_F(NavigationTest, UnknownDeviceLeavesThePathOnShow) {
    File("d/file");
    PopulateContent2("d", Path("d"));
    EXPECT_FALSE(ScanDrawerOther("NoSuchVolume:"));
    EXPECT_THAT(Requests, ElementsAre("Could not find device in list."));
    EXPECT_EQ(CurrentPath.View(), Path("d"));
    EXPECT_EQ(PathUndoBuffer.View(), Path("d"));
}

TEST_F(NavigationTest, PlacesAreKnownByBothTheirNames) {
    EXPECT_EQ(NavigationWordOf("computer"), "Computer");
    EXPECT_EQ(NavigationWordOf("ftp sites"), "FTPSites");
    EXPECT_EQ(NavigationWordOf("FTPSITES"), "FTPSites");
    EXPECT_EQ(NavigationWordOf("Aminet Recent"), "AminetRecent");
    EXPECT_EQ(NavigationWordOf("Comp"), "");
    EXPECT_EQ(NavigationWordOf(""), "");
}

TEST_F(NavigationTest, AssignIsShownUnderItsOwnName) {
    Plant({"one/a", "two/b"});
    const std::string name = "Both" + Volume;
    ASSERT_TRUE(dos::SetAssign(name.substr(0, name.size() - 1), dos::AssignKind::Directory,
                               {Path("one"), Path("two")}));
    ASSERT_TRUE(GetAssigns());
    EXPECT_EQ(FindMasterAssignsNode(name)->MultiAssign, 1);
    PopulateContent2(name, name);
    EXPECT_EQ(PathUndoBuffer.View(), name);
    EXPECT_THAT(Rows(), ElementsAre("a", "b"));
    Prefs.ShowFullPathForAssigns = 1;
    PopulateContent2(name, name);
    EXPECT_EQ(PathUndoBuffer.View(), Path("one"));
}

TEST_F(NavigationTest, AssignsStandInTheOrderOfTheirNames) {
    ASSERT_TRUE(dos::SetAssign("zz" + Volume.substr(0, 5), dos::AssignKind::NonBinding, {Volume}));
    ASSERT_TRUE(dos::SetAssign("AA" + Volume.substr(0, 5), dos::AssignKind::NonBinding, {Volume}));
    ASSERT_TRUE(GetAssigns());
    SortMasterAssignsList();
    std::vector<Text<128>> names;
    for (const AssignsNode& node : *MasterAssignsList)
        names.push_back(node.Name);
    EXPECT_GE(names.size(), 2U);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
}

TEST_F(NavigationTest, DevicesStandInTheOrderThatTheUserWants) {
    const std::string number = Volume.substr(4, Volume.size() - 5);
    ASSERT_TRUE(
        dos::AddVolume({.Device = "AA" + number, .Volume = "Zz" + number, .HostRoot = HostRoot.string()}));
    const auto isOrdered = [](const Text<128> DevicesNode::*name) {
        return std::is_sorted(
            MasterDevicesList->begin(), MasterDevicesList->end(),
            [name](const DevicesNode& a, const DevicesNode& b) { return a.*name < b.*name; });
    };
    Prefs.SortDevices = 0;
    ASSERT_TRUE(GetDevices());
    EXPECT_TRUE(isOrdered(&DevicesNode::DeviceName));
    EXPECT_FALSE(isOrdered(&DevicesNode::VolumeName));
    Prefs.SortDevices = 1;
    SortMasterDevicesList();
    EXPECT_TRUE(isOrdered(&DevicesNode::VolumeName));
}

TEST_F(NavigationTest, DiskThatCameLaterIsFound) {
    File("inside/file");
    const std::string number = Volume.substr(4, Volume.size() - 5);
    ASSERT_TRUE(dos::AddVolume(
        {.Device = "LATE" + number, .Volume = "Late" + number, .HostRoot = Host("inside").string()}));
    Type("LATE" + number + ":");
    EXPECT_EQ(CurrentPath.View(), "Late" + number + ":");
    EXPECT_THAT(Rows(), ElementsAre("file"));
}

TEST_F(NavigationTest, ParentClimbsToTheRootAndThenToTheListThatHasIt) {
    File("a/b/file");
    PopulateContent2("b", Path("a/b"));
    EXPECT_EQ(StatusBarBuffer1.View(), "0/1 Selected | 0 B / 0 B");
    for (const std::string& path : {Path("a"), Volume, std::string("Computer"), std::string("Computer")}) {
        GoToParent();
        EXPECT_EQ(PathUndoBuffer.View(), path);
    }
    const std::string assign = "As" + Volume;
    ASSERT_TRUE(dos::SetAssign(assign.substr(0, assign.size() - 1), dos::AssignKind::Directory, {Path("a")}));
    ASSERT_TRUE(GetAssigns());
    PopulateContent2(assign, assign);
    GoToParent();
    EXPECT_EQ(LBLocation, LocationKind::Assigns);
}

TEST_F(NavigationTest, DrawersAndLinksToThemAreEntered) {
    File("d/file", "123");
    SoftLink("link", "d");
    SoftLink("up and down", Host("d/../d").string());
    SoftLink("dangling", "gone");
    for (const char* name : {"d", "link", "up and down"}) {
        ASSERT_TRUE(Scan());
        OpenEntry(Entry(name));
        EXPECT_EQ(PathUndoBuffer.View(), Path("d")) << name;
        EXPECT_EQ(StatusBarBuffer1.View(), "0/1 Selected | 0 B / 3 B") << name;
    }
    PopulateContent2(Volume, Volume);
    OpenEntry(Entry("dangling"));
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist."));
    EXPECT_EQ(PathUndoBuffer.View(), Volume);
    EXPECT_EQ(Rows().size(), 4U);
}

TEST_F(NavigationTest, PathThatDoesNotFitIsRefusedAndNotActedOn) {
    File("d/file");
    PopulateContent2("d", Path("d"));
    PopulateContent2("x", PathTooLong);
    PopulateContent2("x", Path(std::string(1100, 'x')));
    EXPECT_THAT(Requests, ElementsAre("Path is too long.", "Path is too long."));
    EXPECT_EQ(PathUndoBuffer.View(), Path("d"));
}

TEST_F(NavigationTest, FilesAndBlankRowsOpenNothing) {
    File("file");
    ASSERT_TRUE(Scan());
    OpenEntry(Entry("file"));
    OpenEntry(ContentNode());
    EXPECT_EQ(CurrentPath.View(), Volume);
    EXPECT_TRUE(Requests.empty());
}

} // namespace
} // namespace solvane
