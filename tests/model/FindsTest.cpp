#include "model/Content.h"
#include "model/Devices.h"
#include "sak/Memory.h"

#include <gtest/gtest.h>

namespace solvane {
namespace {

class FindsTest : public testing::Test {
protected:
    FindsTest() {
        EXPECT_TRUE(SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize));
        ContentList = SAK_CreateGenericList<ContentNode>();
        MasterDevicesList = SAK_CreateGenericList<DevicesNode>();
        MasterAssignsList = SAK_CreateGenericList<AssignsNode>();
    }
    ~FindsTest() override {
        ContentList.reset();
        MasterDevicesList.reset();
        MasterAssignsList.reset();
    }

    static ContentNode* Add(const char* name, EntryKind kind) {
        ContentNode* node = SAK_AddGenericListNode(*ContentList, SAK_CreateGenericListNode<ContentNode>());
        node->EntryName = name;
        node->ObjectKind = kind;
        return node;
    }
    static void AddDevice(const char* device, const char* volume, std::uint16_t mounted) {
        DevicesNode* node =
            SAK_AddGenericListNode(*MasterDevicesList, SAK_CreateGenericListNode<DevicesNode>());
        node->DeviceName = device;
        node->VolumeName = volume;
        node->Mounted = mounted;
    }
};

constexpr std::uint32_t Kind(EntryKind kind) {
    return static_cast<std::uint32_t>(kind);
}

TEST_F(FindsTest, ExactNameIsPreferredToOneThatDiffersInCase) {
    ContentNode* upper = Add("README", EntryKind::File);
    ContentNode* mixed = Add("Readme", EntryKind::File);
    EXPECT_EQ(FindContentNode("Readme", AnyKind), mixed);
    EXPECT_EQ(FindContentNode("README", AnyKind), upper);
    EXPECT_EQ(FindContentNode("readme", AnyKind), upper);
    EXPECT_EQ(FindContentNode("readm", AnyKind), nullptr);
}

TEST_F(FindsTest, KindsOfDrawersAndFilesAreNotMixedUp) {
    ContentNode* file = Add("x", EntryKind::SoftLinkToFile);
    ContentNode* drawer = Add("X", EntryKind::HardLinkToDrawer);
    for (const EntryKind kind : {EntryKind::Drawer, EntryKind::SoftLinkToDrawer, EntryKind::HardLinkToDrawer})
        EXPECT_EQ(FindContentNode("x", Kind(kind)), drawer) << Kind(kind);
    for (const EntryKind kind : {EntryKind::File, EntryKind::SoftLinkToFile, EntryKind::HardLinkToFile})
        EXPECT_EQ(FindContentNode("X", Kind(kind)), file) << Kind(kind);
}

TEST_F(FindsTest, FirstSelectedFilePassesOverDrawers) {
    Add("a", EntryKind::File);
    ContentNode* drawer = Add("b", EntryKind::Drawer);
    ContentNode* file = Add("c", EntryKind::HardLinkToFile);
    EXPECT_EQ(FindFirstSelectedContentNode(), nullptr);
    drawer->Selected = 1;
    file->Selected = 1;
    EXPECT_EQ(FindFirstSelectedContentNode(), drawer);
    EXPECT_EQ(FindFirstSelectedFileContentNode(), file);
}

TEST_F(FindsTest, DeviceIsFoundByEitherNameInAnyCase) {
    AddDevice("DH0:", "Workbench:", 1);
    AddDevice("DH1:", "DH0:", 1); // a volume called like another device
    EXPECT_EQ(FindMasterDevicesNode("dh0:")->VolumeName.View(), "Workbench:");
    EXPECT_EQ(FindMasterDevicesNode("WORKBENCH:")->DeviceName.View(), "DH0:");
    EXPECT_EQ(FindMasterDevicesNode("DH2:"), nullptr);
}

TEST_F(FindsTest, MountsAndSharesAreKnownByTheirKind) {
    AddDevice("DH0:", "Work:", 1);
    AddDevice("SMB0:", "Share:", 1);
    SAK_LastGenericListNode(*MasterDevicesList)->Type = DeviceNetworkShare;
    AddDevice("FTP0:", "Site:", 1);
    SAK_LastGenericListNode(*MasterDevicesList)->Type = DeviceFTPMount;
    const struct {
        const char* Name;
        bool IsMount, IsShare;
    } rows[] = {{"ftpmount:", true, true}, {"Site:", true, true},   {"FTP0:", true, true},
                {"share:", false, true},   {"Work:", false, false}, {"Gone:", false, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(IsDeviceFTPMount(row.Name), row.IsMount) << row.Name;
        EXPECT_EQ(IsDeviceNetworkShare(row.Name), row.IsShare) << row.Name;
    }
}

TEST_F(FindsTest, DeviceNamesBecomeVolumeNames) {
    AddDevice("DH0:", "Workbench:", 1);
    AddDevice("DF0:", "DF0:", 0);
    const struct {
        const char *Path, *Renamed;
    } rows[] = {
        {"DH0:a/b", "Workbench:a/b"},
        {"dh0:", "Workbench:"},
        {"DF0:a", "DF0:a"},
        {"RAM:a", "RAM:a"},
        {"a/DH0:", "a/DH0:"},
        {"no colon", "no colon"},
        {"Workbench:DH0:", "Workbench:DH0:"},
        {"", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(DeviceNameToVolumeName(Text<1024>(std::string_view(row.Path))).View(), row.Renamed);
    const std::string longest = "DH0:" + std::string(1019, 'x');
    EXPECT_EQ(DeviceNameToVolumeName(Text<1024>(longest)).View(), longest) << "never cut";
}

TEST_F(FindsTest, WithoutListsNothingIsFound) {
    ContentList.reset();
    MasterDevicesList.reset();
    MasterAssignsList.reset();
    EXPECT_EQ(FindContentNode("x", AnyKind), nullptr);
    EXPECT_EQ(FindLinksNode(EntryKind::SoftLinkToFile, "x"), nullptr);
    EXPECT_EQ(FindMasterDevicesNode("x:"), nullptr);
    EXPECT_EQ(FindMasterAssignsNode("x:"), nullptr);
    EXPECT_EQ(DeviceNameToVolumeName(Text<1024>("DH0:x")).View(), "DH0:x");
}

} // namespace
} // namespace solvane
