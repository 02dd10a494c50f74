#include "platform/dos/DiskEvents.h"

#include "platform/dos/Changes.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Info.h"
#include "platform/exec/Timer.h"
#include "tests/platform/dos/DosTest.h"

#include <chrono>
#include <cstdio>
#include <mutex>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

// A mount table that the test writes. Every descriptor on it learns of a change once, as from the kernel.
struct ScriptedTable {
    std::mutex Guard;
    std::string Path;
    int Generation = 0;
    std::map<int, int> Seen; // generation by descriptor

    void Opened(int descriptor) {
        const std::lock_guard hold(Guard);
        Seen[descriptor] = Generation;
    }
    void Change() {
        const std::lock_guard hold(Guard);
        ++Generation;
    }
    bool TakeChange(int descriptor) {
        const std::lock_guard hold(Guard);
        const auto known = Seen.find(descriptor);
        return known != Seen.end() && std::exchange(known->second, Generation) != Generation;
    }
};
ScriptedTable Table;

int OpenScripted(int drawer, const char* name, int flags, unsigned mode) {
    if (std::string_view(name) != "/proc/self/mountinfo")
        return dos::RealHost().Openat(drawer, name, flags, mode);
    const int descriptor = dos::RealHost().Openat(drawer, Table.Path.c_str(), flags, mode);
    Table.Opened(descriptor);
    return descriptor;
}

// The first descriptor is the table; the others are asked of the host, a little at a time.
int PollScripted(struct pollfd* descriptors, unsigned long count, int timeout) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
    while (true) {
        if ((descriptors[0].events & POLLPRI) == 0) // not one of the table
            return dos::RealHost().Poll(descriptors, count, timeout);
        for (unsigned long i = 0; i < count; ++i)
            descriptors[i].revents = 0;
        if (Table.TakeChange(descriptors[0].fd)) {
            descriptors[0].revents = POLLPRI;
            return 1;
        }
        if (count > 1 && dos::RealHost().Poll(descriptors + 1, count - 1, 2) > 0)
            return 1;
        if (timeout >= 0 && std::chrono::steady_clock::now() >= end)
            return 0;
    }
}

class DiskEventsTest : public testing::Test {
protected:
    DiskEventsTest() {
        Table.Path = Tree.Path("mountinfo");
        const std::string none = Tree.Path("none");
        dos::Places() = {.Numbers = none, .Blocks = none, .Labels = none, .Records = none, .Release = none};
        Tree.Write("Amiga/file", "");
        Mount("");
        dos::Host().Openat = OpenScripted;
        dos::Host().Poll = PollScripted;
        EXPECT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
        Disk = Row(2, "/dev/loop9", "Amiga");
    }
    ~DiskEventsTest() override {
        Watch.End();
        exec::FreeSignal(Signal);
        dos::Host() = dos::RealHost();
        dos::Places() = {};
        dos::ResetVolumeTable();
    }

    [[nodiscard]] std::string Row(int id, const std::string& source, const std::string& drawer) const {
        Tree.Drawer(drawer);
        return std::to_string(id) + " 1 7:" + std::to_string(id) + " / " + Tree.Path(drawer) + " rw - ext4 " +
               source + " rw\n";
    }
    // Puts lines behind the root's in the table.
    void Mount(const std::string& lines) const {
        Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n" + lines);
        Table.Change();
    }
    [[nodiscard]] exec::SignalMask Mask() const { return exec::SignalMask{1} << Signal; }
    [[nodiscard]] static std::string LastVolume() { return dos::Volumes().back().Volume; }

    TempTree Tree;
    std::string Disk; // the row of the volume "Amiga:"
    int Signal = exec::AllocSignal();
    dos::DiskNotification Watch;
};

TEST_F(DiskEventsTest, DiskThatComesOrGoesSendsASignal) {
    ASSERT_TRUE(Watch.Start(exec::FindTask(), Signal));
    Mount(Disk);
    EXPECT_EQ(exec::Wait(Mask()), Mask());
    EXPECT_EQ(LastVolume(), "Amiga");
    Mount("");
    EXPECT_EQ(exec::Wait(Mask()), Mask());
    EXPECT_EQ(LastVolume(), "Host");
    EXPECT_EQ(Find("Amiga:file"), "error 218");
}

TEST_F(DiskEventsTest, WhatIsDeclaredOfADiskCountsWheneverItIsMounted) {
    Tree.Write("mounts.toml", "[[volume]]\nname = \"AMIGA\"\npath = \"" + Tree.Path("Amiga") +
                                  "/\"\nnames = \"fold\"\n[[volume]]\nname = \"Stick\"\n"
                                  "path = \"/media/not there\"\n");
    Mount(Disk);
    ASSERT_EQ(LastVolume(), "Amiga");
    dos::ReadMountFile(Tree.Path("mounts.toml"), "");
    EXPECT_EQ(dos::SetUpProblem(), "");
    EXPECT_EQ(Find("Amiga:FILE"), "AMIGA:file");
    Mount("");
    EXPECT_EQ(Find("Amiga:FILE"), "error 218");
    Mount(Disk);
    EXPECT_EQ(Find("Amiga:FILE"), "AMIGA:file");
    EXPECT_EQ(dos::Volumes().size(), 2u);
}

TEST_F(DiskEventsTest, DeclarationIsThatOfItsPlaceAndNotOfItsName) {
    const std::string absent = Row(3, "/dev/loop8", "place"), other = Row(4, "/dev/loop7", "other/Data");
    const std::string declared = "[[volume]]\nname = \"Data\"\npath = \"" + Tree.Path("place") + "\"\n";
    Tree.Write("mounts.toml", declared);
    Tree.Write("place/file", "");
    const auto start = [&](const std::string& mounted) {
        Mount(mounted);
        dos::ReadVolumeLabels(Tree.Path("mounts.toml"));
        dos::ReadMountFile(Tree.Path("mounts.toml"), "");
    };
    start(absent);
    Mount(other + Disk);
    EXPECT_FALSE(dos::Relabel("Data", "Host"));
    ASSERT_TRUE(dos::Relabel("Data", "Mine"));
    EXPECT_EQ(Tree.Read("mounts.toml"), declared + "\n[[label]]\nvolume = \"Data\"\nname = \"Mine\"\n");
    Mount(other + absent);
    EXPECT_EQ(Find("Data:file"), "Data:file");
    dos::ResetVolumeTable();
    start(other + absent);
    EXPECT_EQ(Find("Data:file"), "Data:file");
    EXPECT_EQ(Find("Mine:"), "Mine:");
    EXPECT_EQ(dos::SetUpProblem(), "");
    ASSERT_TRUE(dos::Relabel("Data", "New"));
    Tree.Write("mounts.toml", declared);
    dos::ResetVolumeTable();
    start(other + absent);
    EXPECT_EQ(Find("Data:file"), "error 205") << "the other disk came first";
    EXPECT_EQ(dos::SetUpProblem(),
              "mounts.toml: " + Tree.Path("place") + ": there is already a volume or assign \"Data\"");
}

TEST_F(DiskEventsTest, RelabelledDiskIsToldAndKeepsItsNameWhenItComesBack) {
    dos::SetVolumeLabels({}, Tree.Path("mounts.toml"));
    Mount(Disk);
    ASSERT_TRUE(Watch.Start(exec::FindTask(), Signal));
    ASSERT_TRUE(dos::SetAssign("Games", dos::AssignKind::Late, {"Amiga:"}));
    ASSERT_TRUE(dos::Relabel("amiga:", "Old disk"));
    EXPECT_EQ(exec::Wait(Mask()), Mask());
    EXPECT_EQ(Tree.Read("mounts.toml"), "[[label]]\nvolume = \"Amiga\"\nname = \"Old disk\"\n");
    EXPECT_EQ(Find("Games:file"), "Old disk:file");
    Mount("");
    EXPECT_EQ(Find("Old disk:"), "error 218");
    Mount(Disk);
    EXPECT_EQ(LastVolume(), "Old disk");
    dos::ResetVolumeTable(); // as at the next start
    dos::ReadVolumeLabels(Tree.Path("mounts.toml"));
    EXPECT_EQ(LastVolume(), "Old disk");
    std::string readOnly = Disk;
    Mount(readOnly.replace(readOnly.find(" rw"), 3, " ro"));
    EXPECT_EQ(Refusal(dos::Relabel("Old disk", "x")), dos::ErrorDiskWriteProtected);
}

TEST_F(DiskEventsTest, NamesThatAnotherProcessGivesAreTakenWhenTheyAreAskedFor) {
    const auto label = [](const std::string& volume, const std::string& name) {
        return "[[label]]\nvolume = \"" + volume + "\"\nname = \"" + name + "\"\n";
    };
    Tree.Drawer("mine");
    ASSERT_TRUE(dos::AddVolume({.Device = "DH5", .Volume = "Mine", .HostRoot = Tree.Path("mine")}));
    dos::SetVolumeLabels({}, Tree.Path("mounts.toml"));
    Mount(Disk + Row(3, "/dev/loop8", "Other") + Row(4, "/dev/loop7", "twin") +
          Row(5, "/dev/loop6", "a/twin"));
    ASSERT_TRUE(dos::SetAssign("Games", dos::AssignKind::Late, {"Amiga:"}));
    ASSERT_TRUE(Watch.Start(exec::FindTask(), Signal));
    Tree.Write("mounts.toml", "[[volume]]\nname = \"Yours\"\npath = \"" + Tree.Path("mine") + "\"\n" +
                                  label("Amiga", "New") + label("Other", "Host") + label("twin", "One"));
    EXPECT_EQ(exec::Wait(Mask()), Mask());
    EXPECT_EQ(Find("Amiga:file"), "Amiga:file") << "work under way goes on";
    const auto taken = TextsOf(dos::TakeNewNames(),
                               [](const dos::VolumeRename& each) { return each.Before + " " + each.Now; });
    EXPECT_EQ(taken, (Names{"Mine Yours", "Amiga New"})) << "no name that is taken";
    EXPECT_EQ(Find("Games:file"), "New:file");
    EXPECT_EQ(Find("Yours:"), "Yours:");
    EXPECT_TRUE(dos::TakeNewNames().empty());
    Tree.Write("mounts.toml", label("Amiga", "New") + label("Other", "Foo"));
    ASSERT_EQ(dos::TakeNewNames().size(), 1u);
    EXPECT_EQ(Find("Host:"), "Host:") << "a label that was refused is not that of who has the name";
    EXPECT_EQ(Find("Foo:"), "Foo:");
    Tree.Write("mounts.toml", "[[label]");
    EXPECT_TRUE(dos::TakeNewNames().empty()) << "a broken file takes no name away";
    EXPECT_EQ(Find("New:file"), "New:file");
    Mount("");
    Tree.Write("mounts.toml", label("Amiga", "Newer"));
    EXPECT_TRUE(dos::TakeNewNames().empty());
    Mount(Disk);
    EXPECT_EQ(Find("IDF0:file"), "Newer:file") << "edited while it was away";
}

TEST_F(DiskEventsTest, BurstIsOneSignalAndMountsOfTheSystemAreNone) {
    ASSERT_TRUE(Watch.Start(exec::FindTask(), Signal));
    Mount("9 1 0:9 / /proc rw - proc proc rw\n");
    Mount(Disk);
    Mount(Disk + Row(3, "/dev/sr0", "Cover"));
    EXPECT_EQ(exec::Wait(Mask()), Mask());
    EXPECT_EQ(LastVolume(), "Cover");
    Mount(Row(3, "/dev/sr0", "Cover") + Disk); // the same in another order
    exec::Delay(20);
    EXPECT_EQ(exec::CheckSignal(Mask()), 0u);
}

TEST_F(DiskEventsTest, NothingIsSentAfterTheEnd) {
    ASSERT_TRUE(Watch.Start(exec::FindTask(), Signal));
    Watch.End();
    Watch.End();
    Mount(Disk);
    exec::Delay(20);
    EXPECT_EQ(exec::CheckSignal(Mask()), 0u);
    EXPECT_FALSE(Watch.Start(nullptr, Signal));
}

TEST_F(DiskEventsTest, HostWithoutAListOfMountsIsTold) {
    dos::Host().Openat = Failing<ENOENT>();
    EXPECT_EQ(Refusal(Watch.Start(exec::FindTask(), Signal)), 205);
}

TEST_F(DiskEventsTest, DisksOfOneNameAreToldApartAndKeepTheirNames) {
    const std::string twin = Row(3, "/dev/loop8", "twin/Amiga");
    Tree.Write("twin/Amiga/second", "");
    Mount(Disk + twin);
    EXPECT_EQ(Find("Amiga:file"), "Amiga:file");
    EXPECT_EQ(Find("IDF1:second"), "Amiga_IDF1:second");
    EXPECT_EQ(Find("Amiga_IDF1:second"), "Amiga_IDF1:second");
    EXPECT_EQ(dos::FromHostPath(Tree.Path("twin/Amiga/second")), "Amiga_IDF1:second");
    Mount(twin); // the first one goes, and comes back last
    EXPECT_EQ(Find("Amiga_IDF1:second"), "Amiga_IDF1:second");
    EXPECT_EQ(Find("Amiga:file"), "error 218");
    Mount("");
    EXPECT_EQ(Find("Amiga_IDF1:second"), "error 218");
    Mount(twin);
    EXPECT_EQ(Find("IDF1:second"), "Amiga_IDF1:second");
    Mount(twin + Disk);
    EXPECT_EQ(Find("Amiga:file"), "Amiga:file");
}

TEST_F(DiskEventsTest, LabelThatMeansSomethingElseIsNotTaken) {
    ASSERT_TRUE(dos::SetAssign("Music", dos::AssignKind::Late, {"Host:tmp"}));
    Tree.Write("mounts.toml", "[[assign]]\nname = \"Later\"\npath = \"Host:tmp\"\n");
    dos::ReadVolumeLabels(Tree.Path("mounts.toml")); // its assigns are made when there are volumes
    Mount(Row(2, "/dev/sr0", "music") + Row(3, "/dev/sr1", "HOST") + Row(4, "/dev/sr2", "nil") +
          Row(5, "/dev/sr3", "later"));
    const auto names = TextsOf(dos::Volumes(), [](const dos::VolumeInfo& volume) { return volume.Volume; });
    EXPECT_EQ(names, (Names{"Host", "music_CD0", "HOST_CD1", "nil_CD2", "later_CD3"}));
}

TEST_F(DiskEventsTest, AssignsOnADiskLeadToItAgainWhenItIsBack) {
    Mount(Disk);
    ASSERT_TRUE(dos::SetAssign("Games", dos::AssignKind::Directory, {"IDF0:"}));
    ASSERT_TRUE(dos::SetAssign("Later", dos::AssignKind::Late, {"Amiga:"}));
    EXPECT_EQ(Find("Games:file"), "Amiga:file");
    EXPECT_EQ(Find("Later:file"), "Amiga:file");
    const auto held = dos::FindAssign("Games");
    EXPECT_FALSE(held->front().Bound); // the host could not let the disk go
    Mount("");
    EXPECT_EQ(Find("Games:file"), "error 218");
    EXPECT_EQ(Find("Later:file"), "error 218");
    Mount(Disk);
    EXPECT_EQ(Find("Games:file"), "Amiga:file");
    EXPECT_EQ(Find("Later:file"), "Amiga:file");
}

TEST_F(DiskEventsTest, NetworkMountedOverAVolumeIsAskedWithCare) {
    ASSERT_TRUE(dos::AddVolume({.Device = "DH3", .Volume = "Share", .HostRoot = Tree.Path("Amiga")}));
    EXPECT_EQ(dos::FindVolume("Share")->SlowMount, "");
    Mount("2 1 0:9 / " + Tree.Path("Amiga") + " rw - nfs4 nas:/x rw\n");
    EXPECT_EQ(dos::FindVolume("Share")->SlowMount, Tree.Path("Amiga"));
    Mount("");
    EXPECT_EQ(dos::FindVolume("Share")->SlowMount, "");
}

// May this process mount disks of its own, unseen by others?
bool CanMount() {
    const int child = ::fork();
    if (child == 0)
        ::_exit(::unshare(CLONE_NEWNS) == 0 &&
                        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                        ::mount("probe", "/mnt", "tmpfs", 0, nullptr) == 0
                    ? 0
                    : 1);
    int status = 1;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

#define REQUIRE(what)                                                                                        \
    if (!(what)) {                                                                                           \
        std::fputs("failed: " #what "\n", stderr);                                                           \
        ::_exit(1);                                                                                          \
    }

// Below /mnt, by a name that no other disk has, in a view of the disks that is this process's alone.
std::string MakeOwnMountPoint() {
    REQUIRE(::unshare(CLONE_NEWNS) == 0);
    REQUIRE(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0);
    std::string point = "/mnt/solvane-test-XXXXXX";
    REQUIRE(::mkdtemp(point.data()) != nullptr);
    return point.substr(5);
}

// In a process of its own, since its mounts are.
void MeetARealDisk() {
    const std::string name = MakeOwnMountPoint(), point = "/mnt/" + name;
    const int signal = exec::AllocSignal();
    const exec::SignalMask mask = exec::SignalMask{1} << signal;
    dos::DiskNotification watch;
    REQUIRE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    REQUIRE(watch.Start(exec::FindTask(), signal));
    REQUIRE(::mount("solvane", point.c_str(), "tmpfs", 0, nullptr) == 0);
    REQUIRE(exec::Wait(mask) == mask);
    REQUIRE(dos::Volumes().back().Volume == name && dos::Volumes().back().FileSystem.starts_with("tmpfs "));
    REQUIRE(::mkdir((point + "/Games").c_str(), 0777) == 0);
    REQUIRE(dos::SetAssign("G", dos::AssignKind::Directory, {name + ":Games"}));
    REQUIRE(Find("G:") == name + ":Games");
    REQUIRE(::umount2(point.c_str(), 0) == 0); // nothing of ours holds it
    REQUIRE(exec::Wait(mask) == mask);
    REQUIRE(Find(name + ":") == "error 218" && Find("G:") == "error 218");
    ::rmdir(point.c_str());
    ::_exit(0);
}

// The same of a disk that goes while it is in use, which the host hides from who holds it.
void LoseARealDisk() {
    const std::string name = MakeOwnMountPoint(), point = "/mnt/" + name;
    REQUIRE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    REQUIRE(::mount("solvane", point.c_str(), "tmpfs", 0, nullptr) == 0);
    REQUIRE(dos::WriteWhole(name + ":file", "text"));
    const dos::FileLock root = dos::Lock(name + ":");
    const dos::FileLock file = dos::Lock(name + ":file");
    const auto refuses = [](bool result) { return !result && dos::IoErr() == dos::ErrorDeviceNotMounted; };
    REQUIRE(!refuses(dos::ExamineObject(file).has_value()));
    REQUIRE(::umount2(point.c_str(), MNT_DETACH) == 0);
    REQUIRE(refuses(dos::ExamineObject(file).has_value()));
    REQUIRE(refuses(!dos::NameFromLock(file).empty()));
    REQUIRE(refuses(static_cast<bool>(dos::ParentDir(file))));
    REQUIRE(refuses(dos::Info(root).has_value()));
    REQUIRE(refuses(static_cast<bool>(dos::ObtainDirContext(root))));
    dos::CurrentDir(root);
    REQUIRE(refuses(static_cast<bool>(dos::Lock("file"))));
    REQUIRE(refuses(dos::WriteWhole("file", "new")));
    REQUIRE(refuses(dos::Rename("file", "Host:mnt/" + name + "/moved")));
    REQUIRE(refuses(dos::Delete("file")));
    ::rmdir(point.c_str());
    ::_exit(0);
}

TEST(RealDiskTest, MountIsSeenUsedAndLetGo) {
    if (!CanMount())
        GTEST_SKIP() << "mounting is not allowed here";
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(MeetARealDisk(), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(LoseARealDisk(), testing::ExitedWithCode(0), "");
}

} // namespace
