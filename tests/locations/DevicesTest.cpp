#include "locations/Devices.h"

#include "content/ContentRows.h"
#include "content/PlaceRows.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "locations/Assigns.h"
#include "locations/DeviceUsage.h"
#include "locations/DiskEvents.h"
#include "locations/DiskOperations.h"
#include "locations/IdentifyDevice.h"
#include "locations/Navigation.h"
#include "locations/PlaceLists.h"
#include "model/Program.h"
#include "platform/dos/HostCalls.h"
#include "platform/dos/MediumInfo.h"
#include "platform/dos/MountInfo.h"
#include "platform/intuition/FormRequesters.h"
#include "tests/content/DrawerTest.h"

#include <algorithm>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace solvane {
namespace {

using testing::Contains, testing::ElementsAre, testing::Not;

struct Identified {
    std::string_view Case, Device, Driver, Handler, FileSystem;
    std::uint64_t Blocks, BlockSize;
    std::uint32_t Type;
    std::string_view TypeName;
};

TEST(IdentifyDeviceTest, KindFollowsDriverHandlerNameAndGeometry) {
    const Identified rows[] = {
        {"stick", "USB0:", "usbdisk.device", "vfat", "vfat 6.1", 2880, 512, 16, "USB Device"},
        {"image of a floppy", "IDF3:", "diskimage.device", "affs", "affs 6.1", 1758, 512, 18,
         "DiskImage Floppy Disk"},
        {"image of a disc", "icd1:", "diskimage.device", "iso9660", "", 0, 0, 19, "DiskImage CD Disc"},
        {"image of a hard disk", "IHD0:", "diskimage.device", "ext4", "ext4", 9, 512, 1, "Hard Disk"},
        {"cloud", "X:", "", "google-drive-handler 1.2", "x", 0, 0, 9, "Google Drive"},
        {"share", "SMB0:", "", "smbfs", "cifs 6.1", 77, 4096, 15, "Network Share"},
        {"card", "CF0:", "", "ext4", "ext4 6.1", 77, 512, 9, "Compact Flash"},
        {"memory", "ram:", "", "tmpfs", "tmpfs", 9, 4096, 0, "RAM Disk"},
        {"floppy", "DF0:", "", "affs", "affs 6.1", 1758, 512, 2, "DD Floppy Disk"},
        {"DVD in a CD drive", "CD0:", "", "udf", "udf 6.1", 2298496, 2048, 13, "DVD Disc"},
        {"no DVD", "CD0:", "", "udf", "udf 6.1", 2298496, 512, 3, "CD Disc"},
        {"name that only begins so", "DF0x:", "", "ext4", "ext4 6.1", 9, 512, 1, "Hard Disk"},
        {"silent file system", "DH9:", "", "", "", 9, 512, 99, "Unknown Device"},
    };
    for (const Identified& row : rows) {
        DevicesNode device;
        device.Mounted = 1;
        device.DeviceName = row.Device;
        device.DeviceDriver = row.Driver;
        device.HandlerName = row.Handler;
        device.FileSystem = row.FileSystem;
        device.MediumBlocks = row.Blocks;
        device.MediumBlockSize = static_cast<std::uint32_t>(row.BlockSize);
        for (int times = 0; times < 2; ++times) { // a later answer has it decided anew
            IdentifyDevice(device);
            EXPECT_EQ(device.Type, row.Type) << row.Case;
            EXPECT_EQ(device.TypeName.View(), row.TypeName) << row.Case;
        }
    }
}

TEST(IdentifyDeviceTest, ShareIsCalledByWhatWasMounted) {
    DevicesNode device;
    device.Mounted = 1;
    device.HandlerName = "smbfs";
    device.ShareName = "smbfs //server/games%b";
    IdentifyDevice(device);
    EXPECT_EQ(device.ShareName.View(), "//server/games");
    EXPECT_EQ(device.DosType.View(), "DOS\\00");
}

TEST(DeviceUsageTest, FiguresComeFromTheAnswer) {
    constexpr std::uint64_t Most = UINT64_MAX;
    const struct {
        std::string_view Case;
        std::uint32_t Type;
        std::optional<dos::InfoData> Info;
        bool Result;
        std::uint32_t Percent;
        std::string_view Free, Total;
    } rows[] = {
        {"half full", 1, dos::InfoData{.Blocks = 2048, .BlocksUsed = 1024, .BytesPerBlock = 1024}, true, 50,
         "1.00 MB", "2.00 MB"},
        {"no blocks", 1, dos::InfoData{}, true, 100, "0 B", "0 B"},
        {"lies", 1, dos::InfoData{.Blocks = Most, .BlocksUsed = Most - 1, .BytesPerBlock = Most}, true, 100,
         "16777216.00 TB", "16777216.00 TB"},
        {"unknown kind", 99, dos::InfoData{.Blocks = 8, .BlocksUsed = 1, .BytesPerBlock = 512}, false, 0,
         "0 B", "0 B"},
        {"FTP", 17, dos::InfoData{.Blocks = 8}, true, 0, "", ""},
        {"does not answer", 1, std::nullopt, false, 0, "Unknown", "Unknown"},
    };
    for (const auto& row : rows) {
        DevicesNode device;
        device.Mounted = 1;
        device.Type = row.Type;
        EXPECT_EQ(SetDeviceUsage(device, row.Info), row.Result) << row.Case;
        EXPECT_EQ(device.PercentUsed, row.Percent) << row.Case;
        EXPECT_EQ(device.FreeText.View(), row.Free.substr(0, 14)) << row.Case;
        EXPECT_EQ(device.TotalText.View(), row.Total.substr(0, 14)) << row.Case;
    }
    DevicesNode empty;
    EXPECT_FALSE(SetDeviceUsage(empty, dos::InfoData{.Blocks = 8}));
    EXPECT_EQ(empty.TotalBlocks, 0U);
}

// Devices over a mount table of the test's own.
class DevicesTest : public DrawerTest {
protected:
    DevicesTest() {
        ShowComputerColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
        EXPECT_TRUE(CreateColumnInfoAll());
        MountTable = Host("mountinfo").string();
        const std::string none = Host("none").string(); // the machine's own disks are not looked at
        dos::Places() = {.Numbers = none, .Blocks = none, .Labels = none, .Records = none, .Release = none};
        dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
            const bool isTable = std::string_view(name) == "/proc/self/mountinfo";
            return dos::RealHost().Openat(drawer, isTable ? MountTable.c_str() : name, flags, mode);
        };
        Prefs.ShowVolumeLabelAs = 1;
        Mount({});
    }
    ~DevicesTest() override {
        intuition::SetFormHandler({});
        dos::Host() = dos::RealHost();
        dos::Places() = {};
        dos::ForgetMounts();
        static_cast<void>(dos::Volumes());
        RemovedDevicesList.reset();
        MultiAssignList.reset();
        ShowComputerColumnsList.reset();
        LBLocation = LocationKind::None;
        SYSDevice.Clear();
    }

    // Has the host mount a disk on each of these drawers, and nothing else.
    void Mount(const std::vector<std::string>& drawers) const {
        struct statx real {}; // locks are looked up by the mount that they are really on
        ASSERT_EQ(statx(AT_FDCWD, HostRoot.c_str(), 0, STATX_MNT_ID, &real), 0);
        const std::string id = std::to_string(real.stx_mnt_id);
        std::string rows = id + " 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
        for (std::size_t at = 0; at < drawers.size(); ++at) {
            Drawer(drawers[at]);
            rows += id + " 1 7:" + std::to_string(at + 2) + " / " + Host(drawers[at]).string() +
                    " rw - ext4 /dev/none" + drawers[at] + " rw\n";
        }
        File("mountinfo", rows);
        dos::ForgetMounts();
    }
    void MountAndList(const std::vector<std::string>& drawers) const {
        Mount(drawers);
        ASSERT_TRUE(GetDevices());
    }
    [[nodiscard]] static const DevicesNode& Device(std::string_view volume) {
        static const DevicesNode None;
        const DevicesNode* node = FindMasterDevicesNode(volume);
        EXPECT_NE(node, nullptr) << volume;
        return node != nullptr ? *node : None;
    }
    static void Select(std::string_view label) {
        for (ContentNode& entry : *ContentList) {
            entry.Selected = entry.EntryName == label ? 1 : 0;
            NumSelected += entry.Selected;
        }
    }
    static inline std::string MountTable;
};

TEST_F(DevicesTest, LabelsHaveFourForms) {
    Mount({"Amiga"});
    const std::string volume = "Amiga:";
    for (const auto& [form, expected] :
         {std::pair{0, "Amiga: (HD0:)"}, {1, "Amiga:"}, {2, "HD0: (Amiga:)"}, {3, "HD0:"}}) {
        Prefs.ShowVolumeLabelAs = form;
        ASSERT_TRUE(GetDevices() && CopyDevicesToNavDevices());
        EXPECT_EQ(Device(volume).Label.View(), expected);
    }
    EXPECT_EQ(Device(volume).Key.View(), "[Dev]HD0:");
    EXPECT_TRUE(std::ranges::any_of(*NavDevicesList, [](const auto& node) { return node.Label == "HD0:"; }));
}

TEST_F(DevicesTest, ComputerShowsEveryDeviceWithItsUsage) {
    Mount({"Amiga", "Work", std::string(200, 'x')});
    Prefs.ComputerViewStyle = ViewDetails;
    ASSERT_TRUE(GetDevices());
    HandleNavigationListBrowser("Computer");
    EXPECT_EQ(LBLocation, LocationKind::Computer);
    EXPECT_EQ(CurrentPath.View(), "Computer");
    EXPECT_EQ(StatusBarBuffer1.View(), "0/" + std::to_string(lblist2.size()) + " Selected");
    EXPECT_EQ(lblist2.size(), SAK_GenericListCount(*MasterDevicesList));
    EXPECT_THAT(Rows(), Contains("Amiga:"));
    EXPECT_THAT(Rows(), Contains(std::string(100, 'x') + ":")) << "cut where names end";
    const DevicesNode& device = *DeviceOf(Entry("Work:"));
    EXPECT_GT(device.TotalBytes, 0U);
    const auto cell = [](DeviceColumn column) {
        return PlaceCellTexts(Entry("Work:"), static_cast<DetailsColumn>(column), ViewDetails);
    };
    EXPECT_EQ(cell(DeviceColumn::Free).Text, device.FreeText.View());
    EXPECT_EQ(cell(DeviceColumn::Total).Text, device.TotalText.View());
    EXPECT_EQ(cell(DeviceColumn::Bar).Gauge, static_cast<int>(device.PercentUsed));
    EXPECT_TRUE(Details2Buffer.View().starts_with("Free RAM: ")) << Details2Buffer.View();
    OpenEntry(Entry("Work:"));
    EXPECT_EQ(CurrentPath.View(), "Work:");
}

TEST_F(DevicesTest, DevicesSortByTheirFigures) {
    Mount({"a", "b", "c"});
    Prefs.ComputerViewStyle = ViewDetails;
    ASSERT_TRUE(GetDevices());
    SAK_ClearGenericList(*ContentList);
    CopyFromMasterDevicesList();
    const auto order = [](std::int32_t column, std::int32_t direction) {
        std::uint64_t bytes = 12 * 1024;
        for (const char* name : {"b:", "c:", "a:"})
            DeviceOf(*FindContentNode(name, AnyKind))->TotalBytes = bytes *= 1000;
        Prefs.ComputerDetailsCISortColumn = column;
        SortDevicesList(direction);
        std::string names;
        for (const std::string& name : Records())
            names += name.size() == 2 ? name.substr(0, 1) : "";
        return names;
    };
    EXPECT_EQ(order(static_cast<std::int32_t>(DeviceColumn::Name), 0), "abc");
    EXPECT_EQ(order(static_cast<std::int32_t>(DeviceColumn::Name), 1), "cba");
    EXPECT_EQ(order(static_cast<std::int32_t>(DeviceColumn::Total), 0), "bca");
    EXPECT_EQ(order(static_cast<std::int32_t>(DeviceColumn::Total), 1), "acb");
}

TEST_F(DevicesTest, DisksThatComeAndGoAreSeenAndLeft) {
    std::vector<std::string> ten;
    for (int at = 0; at < 10; ++at)
        ten.push_back("disk" + std::to_string(at));
    MountAndList(ten);
    File("disk3/file");
    DisksChanged();
    PopulateContent2("disk3", Device("disk3:").DeviceName);
    EXPECT_THAT(Rows(), ElementsAre("file"));
    Mount({"disk4", "new"});
    ASSERT_TRUE(GetDevices()); // a look at the devices for another reason comes first
    DisksChanged();
    EXPECT_EQ(LBLocation, LocationKind::Computer) << "the disk on show has gone with others";
    EXPECT_THAT(Rows(), Contains("new:"));
    EXPECT_THAT(Rows(), Contains("disk4:"));
    EXPECT_THAT(Rows(), Not(Contains("disk3:")));
    EXPECT_TRUE(Requests.empty());
}

TEST_F(DevicesTest, DeviceThatWentBetweenClickAndScanIsTold) {
    MountAndList({"Amiga"});
    HandleNavigationListBrowser("Computer");
    Mount({});
    OpenEntry(Entry("Amiga:"));
    EXPECT_THAT(Requests, ElementsAre("Drawer does not exist."));
    EXPECT_EQ(CurrentPath.View(), "Computer");
    EXPECT_THAT(Rows(), Contains("Amiga:"));
    HandleNavigationListBrowser("[Dev]Nowhere:");
    EXPECT_EQ(Requests.back(), "Could not find device in list.");
}

TEST_F(DevicesTest, FreeSpaceOfAPathIsThatOfItsVolume) {
    EXPECT_TRUE(GetDeviceFreeSpace(Volume));
    EXPECT_GT(DevFreeBytes, 0U);
    EXPECT_FALSE(GetDeviceFreeSpace("Nowhere:"));
    EXPECT_EQ(DevFreeBytes, 0U);
    EXPECT_TRUE(GetDeviceFreeSpace("RAM disk:")) << "the machine's memory, whether it is mounted or not";
}

TEST_F(DevicesTest, AllRemovedVolumesAreFound) {
    const auto set = [](std::unique_ptr<GenericList<DevicesNode>>& list,
                        std::initializer_list<std::pair<const char*, const char*>> devices) {
        list = SAK_CreateGenericList<DevicesNode>();
        for (const auto& [device, volume] : devices) {
            DevicesNode* node = SAK_AddGenericListNode(*list, SAK_CreateGenericListNode<DevicesNode>());
            node->Mounted = 1;
            node->DeviceName = device;
            node->VolumeName = volume;
        }
    };
    set(MasterDevicesList, {{"CD0:", "Disc:"}, {"USB0:", "Stick:"}, {"DH0:", "Workbench:"}});
    FigureOutDiskRemoved_1();
    set(MasterDevicesList, {{"CD0:", "Other:"}, {"DH0:", "Workbench:"}});
    const auto removed = FigureOutDiskRemoved_2();
    ASSERT_EQ(removed.size(), 2U);
    EXPECT_EQ(removed[0].Volume.View(), "Disc:");
    EXPECT_EQ(removed[1].Device.View(), "USB0:");
}

TEST_F(DevicesTest, MultiAssignLetsTheUserChoose) {
    Plant({"one/a", "two/b"});
    const std::string name = "Pick" + Volume;
    ASSERT_TRUE(dos::SetAssign(name.substr(0, name.size() - 1), dos::AssignKind::Directory,
                               {Path("one"), Path("two")}));
    HandleNavigationListBrowser("Assigns");
    EXPECT_EQ(LBLocation, LocationKind::Assigns);
    intuition::FormSpec asked;
    intuition::SetFormHandler([&asked](const intuition::FormSpec& spec) {
        asked = spec;
        return intuition::FormAnswer{.Gadget = 0, .Texts = {}};
    });
    OpenEntry(Entry(name));
    EXPECT_EQ(asked.Title, "Select multi-assign path for " + name);
    EXPECT_THAT(asked.Choices, ElementsAre(Path("one"), Path("two")));
    EXPECT_EQ(LBLocation, LocationKind::Assigns) << "nothing was chosen";
    HandlePathGadget(name);
    EXPECT_EQ(CurrentPath.View(), "Assigns") << "nor for a typed one";
    intuition::SetFormHandler([](const intuition::FormSpec&) {
        return intuition::FormAnswer{.Gadget = 1, .Texts = {}, .Choice = 1};
    });
    OpenEntry(Entry(name));
    EXPECT_EQ(PathUndoBuffer.View(), Path("two"));
    EXPECT_THAT(Rows(), ElementsAre("b"));
}

TEST_F(DevicesTest, FormatRefusesTheSystemAndTellsWhatItCannotDo) {
    MountAndList({"Amiga"});
    FormatDisk(); // not at the Computer list
    HandleNavigationListBrowser("Computer");
    FormatDisk(); // nothing selected
    EXPECT_TRUE(Requests.empty());
    Select("Amiga:");
    SYSDevice = "hd0";
    FormatDisk();
    EXPECT_THAT(Requests, ElementsAre("You can not format this volume!"));
    SYSDevice = "DH0";
    FormatDisk();
    EXPECT_TRUE(Requests.back().starts_with("There is no program for formatting")) << Requests.back();
}

TEST_F(DevicesTest, RelabelAsksAndTellsOfFailure) {
    MountAndList({"Amiga"});
    HandleNavigationListBrowser("Computer");
    Select("Amiga:");
    std::string offered;
    intuition::SetFormHandler([&offered](const intuition::FormSpec& spec) {
        offered = spec.Fields.at(0).Text;
        return intuition::FormAnswer{.Gadget = 1, .Texts = {":a/b:"}};
    });
    RelabelDisk();
    EXPECT_EQ(offered, "Amiga");
    ASSERT_EQ(Requests.size(), 1U);
    EXPECT_TRUE(Requests[0].starts_with("Could not relabel volume.")) << Requests[0];
    EXPECT_THAT(Rows(), Contains("Amiga:"));
}

} // namespace
} // namespace solvane
