// Disks that are really mounted, taken away and renamed, in a view of the host's disks that ends with this
// process. Implemented in locations/DiskEvents, Devices, DiskOperations and RenamedVolume.
#include "content/DrawerMonitor.h"
#include "content/PlaceRows.h"
#include "locations/DeviceUsage.h"
#include "locations/Devices.h"
#include "locations/DiskEvents.h"
#include "locations/DiskOperations.h"
#include "locations/EnterDrawer.h"
#include "locations/History.h"
#include "locations/KeptPlaces.h"
#include "locations/NavigationList.h"
#include "locations/PlaceLists.h"
#include "locations/PlaceRouter.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/dos/VolumeTable.h"
#include "prefs/PrefsLists.h"
#include "sak/Notify.h"
#include "tests/locations/OpenWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <thread>

namespace solvane {
namespace {

using testing::Contains, testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::IsSupersetOf,
    testing::Not;

// A disk in memory, mounted as long as it lives.
class RealDisk {
public:
    explicit RealDisk(std::string point) : Point(std::move(point)) {
        std::filesystem::create_directories(Point);
        EXPECT_EQ(::mount("solvane-test", Point.c_str(), "tmpfs", 0, "size=1m"), 0) << strerror(errno);
    }
    RealDisk(const RealDisk&) = delete;
    RealDisk& operator=(const RealDisk&) = delete;
    ~RealDisk() { ::umount2(Point.c_str(), MNT_DETACH); }

    void Write(const std::string& name, std::size_t bytes = 0) const {
        std::filesystem::create_directories(std::filesystem::path(Point + "/" + name).parent_path());
        std::ofstream(Point + "/" + name) << std::string(bytes, 'x');
    }
    // As the host's user does it; a question that is under way may hold the disk for a moment.
    [[nodiscard]] bool Unmount() const {
        while (::umount2(Point.c_str(), 0) != 0) {
            if (errno != EBUSY)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return true;
    }
    [[nodiscard]] bool MakeReadOnly() const {
        return ::mount("", Point.c_str(), "", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

private:
    std::string Point;
};

class MountsTest : public OpenWindow {
protected:
    // Before any thread of the program: those that run already would not follow.
    static void SetUpTestSuite() {
        CanMount = ::unshare(CLONE_NEWNS) == 0 &&
                   ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   ::mount("solvane-test", "/media", "ramfs", 0, nullptr) == 0 &&
                   ::mount("solvane-test", "/mnt", "ramfs", 0, nullptr) == 0;
    }
    void SetUp() override {
        if (!CanMount)
            GTEST_SKIP() << "mounting is not allowed here";
        ASSERT_TRUE(StartDiskEvents());
    }

    MountsTest() {
        StartupTabsList = SAK_CreateGenericList<TabsNode>();
        CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
        EXPECT_TRUE(CreatePrefsLists());
        ReopenTabs = AtPreferences = TabClosed = 0;
        Prefs.MonitorDrawer = 1;
        Prefs.ShowVolumeLabelAs = 1;
        Prefs.ComputerViewStyle = ViewDetails;
        EXPECT_TRUE(SetUpTabs());
        SetFirstTab();
        dos::SetVolumeLabels({}, Host("mounts.toml").string());
        Drawer("Solvane");
        EXPECT_TRUE(dos::SetAssign("ENVARC", dos::AssignKind::Directory, {Volume}));
        ProgramPrefsFile = "ENVARC:Solvane/Solvane.xml";
        EXPECT_TRUE(GetDevices() && CopyDevicesToNavDevices());
        HandleNavigationListBrowser("Computer");
    }
    ~MountsTest() override {
        EndDiskEvents();
        FreeAllTabs();
        SAK_ShutDownNotify();
        FreePrefsLists();
        CommandLineTabsList.reset();
        ProgramPrefsFile.Clear();
        static_cast<void>(dos::SetAssign("ENVARC", dos::AssignKind::Directory, {}));
    }

    // The volumes that are disks of these tests.
    static std::vector<std::string> Disks() {
        std::vector<std::string> names;
        for (const DevicesNode& device : *MasterDevicesList)
            if (device.DeviceName.View().starts_with("VD"))
                names.emplace_back(device.VolumeName.View());
        std::ranges::sort(names);
        return names;
    }
    // Serves disk events, as the loop does, until the list of devices says so.
    static void ServeUntil(const std::vector<std::string>& expected) {
        while (Disks() != expected) {
            ASSERT_NE(exec::Wait(DiskEventSignal), 0U);
            DisksChanged();
        }
    }
    // What a column of the Computer list says of a device, once its file system has answered.
    static auto CellOf(std::string_view volume, DeviceColumn column) {
        while (DeviceOf(Entry(volume))->Usage != UsageState::Known) {
            exec::Wait(DeviceUsageSignal);
            static_cast<void>(TakeDeviceUsage());
        }
        return PlaceCellTexts(Entry(volume), static_cast<DetailsColumn>(column), ViewDetails);
    }
    static std::vector<std::string> Labels() {
        return TextsOf(*tabslist, [](const ClickTabNode& tab) { return tab.Label.View(); });
    }
    static void OpenInTab(std::string_view path) {
        OpenNewTab(1);
        EXPECT_TRUE(PopulateContent2(NameOfPath(path), path));
    }
    // Types a name into the dialog, which must be that of relabelling, and presses a button of it.
    static void Relabel(std::string_view volume, std::string_view name, std::string_view button = "OK") {
        SelectAlone(volume);
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible())
                return;
            poll.stop();
            EXPECT_EQ(dialog->windowTitle().toStdString(), "Relabel device");
            auto* field = dialog->findChild<QLineEdit*>();
            EXPECT_EQ(field->text().toStdString() + ":", volume);
            field->setText(QString::fromStdString(std::string(name)));
            for (QAbstractButton* each : dialog->findChildren<QAbstractButton*>()) {
                if (each->text().remove(QLatin1Char('&')).toStdString() == button) {
                    each->click();
                    return;
                }
            }
            ADD_FAILURE() << "no button " << button;
            dialog->reject();
        });
        poll.start(1);
        RelabelDisk();
    }

    static inline bool CanMount = false;
};

TEST_F(MountsTest, TenDisksThatComeAndGoQuicklyEndInTheRightList) {
    std::vector<std::unique_ptr<RealDisk>> disks(10);
    for (const int round : {0, 1, 2}) {
        for (std::size_t at = 0; at < disks.size(); ++at)
            disks[at] = std::make_unique<RealDisk>("/media/Disk" + std::to_string(at));
        for (std::size_t at = round == 1 ? 0 : 1; at < disks.size(); at += 2)
            disks[at].reset();
    }
    disks[0]->Write("half", 512 * 1024);
    ServeUntil({"Disk0:", "Disk2:", "Disk4:", "Disk6:", "Disk8:"});
    EXPECT_THAT(Rows(), IsSupersetOf({"Disk0:", "Disk4:", "Disk8:"})) << "the Computer list on show";
    EXPECT_THAT(Rows(), Not(Contains("Disk1:")));
    EXPECT_EQ(CellOf("Disk0:", DeviceColumn::Total).Text, "1.00 MB");
    EXPECT_EQ(CellOf("Disk0:", DeviceColumn::Free).Text, "512.00 KB");
    EXPECT_EQ(CellOf("Disk0:", DeviceColumn::Bar).Gauge, 50);
    EXPECT_EQ(CellOf("Disk8:", DeviceColumn::Bar).Gauge, 0);
    disks.clear();
    ServeUntil({});
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(MountsTest, DiskOnShowCanBeUnmountedAndItsTabsClose) {
    const RealDisk games("/media/Games"), work("/mnt/Work");
    games.Write("Levels/One/map");
    ServeUntil({"Games:", "Work:"});
    OpenInTab("Games:");
    OpenInTab("Work:");
    OpenInTab("Games:Levels/One");
    EXPECT_THAT(Rows(), ElementsAre("map"));
    ASSERT_TRUE(games.Unmount()) << "a tab, its list and its watch let the disk go";
    DrawerChanged(); // of the drawer this may be told first
    EXPECT_THAT(Requests, IsEmpty());
    ServeUntil({"Work:"});
    EXPECT_THAT(Labels(), ElementsAre("Computer", "Work:", "New tab"));
    EXPECT_EQ(CurrentPath.View(), "Work:");
    ASSERT_TRUE(work.Unmount());
    ServeUntil({});
    EXPECT_THAT(Labels(), ElementsAre("Computer", "New tab"));
    EXPECT_EQ(LBLocation, LocationKind::Computer);
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(MountsTest, TwoDisksOfOneNameAreToldApart) {
    const RealDisk first("/media/Amiga");
    ServeUntil({"Amiga:"});
    const RealDisk second("/mnt/Amiga");
    first.Write("one");
    second.Write("two");
    ServeUntil({"Amiga:", "Amiga_VD1:"});
    OpenInTab("Amiga:");
    EXPECT_THAT(Rows(), ElementsAre("one"));
    OpenInTab("Amiga_VD1:");
    EXPECT_THAT(Rows(), ElementsAre("two"));
    ASSERT_TRUE(first.Unmount());
    ServeUntil({"Amiga_VD1:"});
    EXPECT_THAT(Labels(), ElementsAre("Computer", "Amiga_VD1:", "New tab"));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_THAT(Rows(), ElementsAre("two"));
}

TEST_F(MountsTest, WhatNamesAVolumeFollowsItsNewName) {
    const RealDisk disk("/media/Old");
    disk.Write("d/file");
    ServeUntil({"Old:"});
    Prefs.DefaultOpenAt = static_cast<std::int32_t>(LocationKind::Drawer);
    Prefs.DefaultOpenAtPath = "old:d";
    Prefs.DownloadPath = "Older:";
    TabsNode* startup = SAK_AddGenericListNode(*StartupTabsList, SAK_CreateGenericListNode<TabsNode>());
    startup->Location = LocationKind::Drawer;
    startup->Path = "Old:d";
    OpenInTab("Old:");
    AddCurrentLocationToBookmarks(AskFirst::No);
    OpenInTab("Old:d");
    AddCurrentLocationToFavorites(AskFirst::No);
    OpenInTab(Volume);
    HandleNavigationListBrowser("Computer");
    Relabel("Old:", "New name");
    EXPECT_THAT(Labels(), ElementsAre("Computer", "New name:", "d", "Computer", "New tab"));
    const BookmarksNode& bookmark = *SAK_FirstGenericListNode(*MasterBookmarksList);
    EXPECT_EQ(bookmark.Name.View(), "New name:");
    EXPECT_EQ(bookmark.Path.View(), "New name:");
    EXPECT_EQ(bookmark.Key.View(), "[Bkm]New name:");
    ASSERT_NE(FindMasterFavoritesNode("New name:d"), nullptr);
    EXPECT_EQ(SAK_FirstGenericListNode(*StartupTabsList)->Path.View(), "New name:d");
    EXPECT_EQ(Prefs.DefaultOpenAtPath.View(), "New name:d");
    EXPECT_EQ(Prefs.DownloadPath.View(), "Older:") << "another volume";
    std::ifstream document(Host("Solvane/Solvane.xml"));
    const std::string kept{std::istreambuf_iterator<char>(document), {}};
    EXPECT_THAT(kept, HasSubstr("New name:d"));
    EXPECT_THAT(kept, Not(HasSubstr("Old:")));
    GoToKeptPlace(LocationKind::Drawer, bookmark.Name, bookmark.Path);
    EXPECT_THAT(Rows(), ElementsAre("d"));
    ASSERT_NE(exec::Wait(DiskEventSignal), 0U); // the watch tells of the new name
    DisksChanged();
    EXPECT_EQ(Disks(), std::vector<std::string>{"New name:"});
    EXPECT_EQ(SAK_GenericListCount(*tabslist), 5U) << "nothing has left";
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(MountsTest, NameThatAnotherWindowGaveIsFollowed) {
    const RealDisk disk("/media/Ours");
    disk.Write("d/file");
    ServeUntil({"Ours:"});
    OpenInTab("VD0:");
    OpenInTab("Ours:d");
    AddCurrentLocationToFavorites(AskFirst::No);
    File("mounts.toml", "[[label]]\nvolume = \"Ours\"\nname = \"Theirs\"\n");
    ServeUntil({"Theirs:"});
    EXPECT_THAT(Labels(), ElementsAre("Computer", "VD0:", "d", "New tab")) << "the disk has not left";
    EXPECT_EQ(CurrentPath.View(), "Theirs:d");
    EXPECT_THAT(Rows(), ElementsAre("file"));
    EXPECT_NE(FindMasterFavoritesNode("Theirs:d"), nullptr);
    EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(MountsTest, NamesThatAVolumeCannotHaveAreRefusedAndTold) {
    const RealDisk disk("/media/Disk"), other("/media/Other"), locked("/media/Locked");
    ASSERT_TRUE(locked.MakeReadOnly());
    ServeUntil({"Disk:", "Locked:", "Other:"});
    const struct {
        const char *Volume, *Typed, *Button, *Told, *Then;
    } rows[] = {
        {"Disk:", "Unwanted", "Cancel", nullptr, "Disk:"},
        {"Disk:", "a/b", "OK", "Could not relabel volume.", "Disk:"},
        {"Disk:", ":::", "OK", "Could not relabel volume.", "Disk:"},
        {"Disk:", "oTHER", "OK", "Could not relabel volume.", "Disk:"},
        {"Locked:", "Free", "OK", "Could not relabel volume.", "Locked:"},
        {"Disk:", "DISK", "OK", nullptr, "DISK:"},
        {"DISK:", ":Co:lons:", "OK", nullptr, "Colons:"},
    };
    for (const auto& row : rows) {
        Requests.clear();
        Relabel(row.Volume, row.Typed, row.Button);
        EXPECT_EQ(Requests.size(), row.Told == nullptr ? 0U : 1U) << row.Typed;
        if (row.Told != nullptr && !Requests.empty()) {
            EXPECT_THAT(Requests[0], testing::StartsWith(row.Told)) << row.Typed;
        }
        EXPECT_THAT(Rows(), Contains(row.Then)) << row.Typed;
    }
}

} // namespace
} // namespace solvane
