#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountInfo.h"
#include "tests/platform/dos/DosTest.h"

#include <condition_variable>
#include <fcntl.h>
#include <mutex>

namespace {

// A door before the host: calls on a dead disk wait there until the test lets them go.
struct Door {
    std::mutex Guard;
    std::condition_variable Opened;
    bool IsOpen = false;

    void Pass() {
        std::unique_lock hold(Guard);
        Opened.wait(hold, [this] { return IsOpen; });
    }
    void Open() {
        const std::lock_guard hold(Guard);
        IsOpen = true;
        Opened.notify_all();
    }
};

std::shared_ptr<Door> TheDoor;
std::string MountList; // host path of a text that stands for the host's list
std::string DeadRoot;

// The volume "Dead:" lies on what the host's list calls a FUSE mount.
class SlowMountsTest : public testing::Test {
protected:
    SlowMountsTest() {
        TheDoor = std::make_shared<Door>();
        MountList = Tree.Path("mountinfo");
        DeadRoot = Tree.Path("dead");
        Tree.Write("dead/file", "text");
        Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / " + DeadRoot +
                                    " rw - fuse.sshfs machine: rw\n");
        dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
            const std::string_view path = name;
            if (path == "/proc/self/mountinfo")
                return dos::RealHost().Openat(drawer, MountList.c_str(), flags, mode);
            if (path.starts_with(DeadRoot))
                std::shared_ptr(TheDoor)->Pass();
            return dos::RealHost().Openat(drawer, name, flags, mode);
        };
    }
    ~SlowMountsTest() override {
        TheDoor->Open();
        // Once the last hanging question is answered, the disk is asked again.
        while (!dos::RunWithLimit(DeadRoot, [](dos::Progress&) {})) {
        }
        dos::Host() = dos::RealHost();
        dos::ResetVolumeTable();
    }

    TempTree Tree;
};

TEST_F(SlowMountsTest, DeadDiskIsGivenUpOnceAndAnswersAgainWhenItComesBack) {
    ASSERT_TRUE(dos::AddVolume({.Device = "NET0", .Volume = "Dead", .HostRoot = DeadRoot}));
    EXPECT_EQ(Find("Dead:file"), "error 226");
    for (int i = 0; i < 100; ++i) // at once: nobody waits for it a second time
        EXPECT_FALSE(dos::ExamineObject("Dead:file"));
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoDisk);
    EXPECT_EQ(dos::FromHostPath(DeadRoot + "/../dead/a:b").substr(0, 5), "Dead:");
    TheDoor->Open();
    while (!dos::RunWithLimit(DeadRoot, [](dos::Progress&) {})) {
    }
    EXPECT_EQ(Find("Dead:file"), "Dead:file");
    EXPECT_EQ(dos::ReadWhole("Dead:file", 10), "text");
    EXPECT_TRUE(dos::WriteWhole("Dead:new", "x"));
    EXPECT_EQ(NamesIn("Dead:"), (std::vector<std::string>{"file", "new"}));
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
}

TEST_F(SlowMountsTest, WayIntoAnotherDiskIsKnownBeforeItIsTaken) {
    Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / /proc rw - fuse.dead dead rw\n");
    ASSERT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    Tree.Link("link", "/proc/version");
    static const auto openLocal = dos::Host().Openat;
    dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        if (std::string_view(name) == "proc")
            std::shared_ptr(TheDoor)->Pass();
        return openLocal(drawer, name, flags, mode);
    };
    DeadRoot = "/proc"; // the key under which it hangs
    EXPECT_EQ(Find("Host:" + Tree.Path("link").substr(1)), "error 226");
    EXPECT_EQ(Find("Host:proc/version"), "error 226");
    EXPECT_EQ(Find("Host:dev"), "Host:dev"); // other disks are not held up
    EXPECT_EQ(Find("Host:dev//proc//dev"), "error 226");
    TheDoor->Open();
    while (!dos::RunWithLimit(DeadRoot, [](dos::Progress&) {})) {
    }
    EXPECT_EQ(Find("Host:proc/version"), "Host:proc/version");
    EXPECT_EQ(Find("Host:proc//dev"), "Host:dev");
}

TEST(LimitsTest, WorkThatGoesOnIsWaitedFor) {
    EXPECT_TRUE(dos::RunWithLimit("key", [](dos::Progress& progress) {
        for (int i = 0; i < 25; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            progress.Beat();
        }
    }));
}

TEST(LimitsTest, WorkThatWasGivenUpChangesNothingAnyMore) {
    auto door = std::make_shared<Door>();
    auto mayChange = std::make_shared<std::optional<bool>>();
    EXPECT_FALSE(dos::RunWithLimit("key", [door, mayChange](dos::Progress& progress) {
        door->Pass();
        *mayChange = progress.Commit();
    }));
    door->Open();
    while (!dos::RunWithLimit("key", [](dos::Progress&) {})) {
    }
    EXPECT_EQ(*mayChange, false);
}

TEST(MountInfoTest, RowsAreReadWithTheirEscapes) {
    const auto rows =
        dos::ParseMountInfo("1 0 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                            "2 1 8:2 / /media/u/My\\040Disk rw - vfat /dev/sdb1 rw\n"
                            "3 1 0:3 / /mnt/net rw master:2 propagate_from:1 - nfs4 host:/x rw\n"
                            "rubbish\n4 1 0:4 / relative rw - ext4 x rw\n5 1 0:4 / /cut rw");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1].Point, "/media/u/My Disk");
    EXPECT_TRUE(rows[2].Slow);
    EXPECT_FALSE(rows[0].Slow);
    EXPECT_EQ(dos::MountOf(rows, "/mnt/network/x"), &rows[0]);
    EXPECT_EQ(dos::MountOf(rows, "/mnt/net"), &rows[2]);
}

TEST(MountInfoTest, DisksAreNamedByKind) {
    const auto disks =
        dos::DisksOf(dos::ParseMountInfo("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                         "2 1 0:5 / /proc rw - proc proc rw\n"
                                         "3 1 0:6 / /run/user/1000 rw - tmpfs tmpfs rw\n"
                                         "4 1 7:0 / /run/media/u/WB31 rw - ext4 /dev/loop0 rw\n"
                                         "5 1 7:1 / /mnt/iso rw - iso9660 /dev/loop1 rw\n"
                                         "6 1 11:0 / /media/u/Cover\\040CD ro - iso9660 /dev/sr0 ro\n"
                                         "7 1 0:7 / /mnt/share rw - cifs //server/Share rw\n"
                                         "8 1 8:17 / /data rw - ext4 /dev/sdb1 rw\n"
                                         "9 1 8:17 /sub /data/bind rw - ext4 /dev/sdb1 rw\n"
                                         "10 1 8:1 / /boot/efi rw - vfat /dev/sda2 rw\n"
                                         "11 1 179:1 / /media/u/a:b rw - vfat /dev/mmcblk0p1 rw\n"));
    std::vector<std::string> found;
    for (const dos::VolumeInfo& disk : disks)
        found.push_back(disk.Device + " " + disk.Volume + " " + disk.ExecDevice + " " + disk.HandlerName);
    EXPECT_EQ(found, (std::vector<std::string>{"IDF0 WB31 diskimage.device ext4",
                                               "ICD0 iso diskimage.device iso9660", "CD0 Cover CD  iso9660",
                                               "SMB0 Share  smbfs", "HD0 data  ext4", "CF0 a_b  vfat"}));
}

} // namespace
