#include "platform/dos/Changes.h"
#include "platform/dos/CommandSearch.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Limits.h"
#include "platform/dos/Relay.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/dos/HostFaults.h"
#include "tests/platform/utility/ScopedVariable.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <sys/stat.h>

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

void PassDoorIf(bool isDead) {
    if (isDead)
        std::shared_ptr(TheDoor)->Pass();
}

// Until the last hanging question about the disk is answered and it is asked again.
void AwaitAnswers(const std::string& key) {
    while (!dos::RunWithLimit(key, [](dos::Progress&) {})) {
    }
}

std::string MountList; // host path of a text that stands for the host's list
std::string DeadRoot;

// The volume "Dead:" lies on what the host's list calls a FUSE mount.
class SlowMountsTest : public testing::Test {
protected:
    SlowMountsTest() {
        TheDoor = std::make_shared<Door>();
        MountList = Tree.Path("mountinfo");
        DeadRoot = Tree.Path("dead");
        Tree.Drawer("here");
        Tree.Write("dead/file", "text");
        Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / " + DeadRoot +
                                    " rw - fuse.sshfs machine: rw\n");
        dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
            const std::string_view path = name;
            if (path == "/proc/self/mountinfo")
                return dos::RealHost().Openat(drawer, MountList.c_str(), flags, mode);
            PassDoorIf(path.starts_with(DeadRoot));
            return dos::RealHost().Openat(drawer, name, flags, mode);
        };
    }
    ~SlowMountsTest() override {
        TheDoor->Open();
        AwaitAnswers(DeadRoot);
        dos::Host() = dos::RealHost();
        dos::ResetVolumeTable();
    }

    void AddDisks() const {
        ASSERT_TRUE(dos::AddVolume({.Device = "NET0", .Volume = "Dead", .HostRoot = DeadRoot}));
        ASSERT_TRUE(dos::AddVolume({.Device = "DH3", .Volume = "Here", .HostRoot = Tree.Path("here")}));
    }

    TempTree Tree;
};

TEST_F(SlowMountsTest, DeadDiskIsGivenUpOnceAndAnswersAgainWhenItComesBack) {
    AddDisks();
    EXPECT_EQ(Find("Dead:file"), "error 226");
    for (int i = 0; i < 100; ++i) // at once: nobody waits for it a second time
        EXPECT_EQ(Refusal(dos::ExamineObject("Dead:file")), dos::ErrorNoDisk);
    EXPECT_EQ(dos::FromHostPath(DeadRoot + "/../dead/a:b").substr(0, 5), "Dead:");
    TheDoor->Open();
    AwaitAnswers(DeadRoot);
    EXPECT_EQ(Find("Dead:file"), "Dead:file");
    EXPECT_EQ(dos::ReadWhole("Dead:file", 10), "text");
    EXPECT_TRUE(dos::WriteWhole("Dead:new", "x"));
    EXPECT_EQ(NamesIn("Dead:"), (Names{"file", "new"}));
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
}

int DeadFile = dos::NoDescriptor; // of what was opened last to be read

// A disk that dies with a file open: how the file ends is its to tell, and it wants to hear of closing.
TEST_F(SlowMountsTest, FileOpenOnADeadDiskHoldsUpNobody) {
    TheDoor->Open();
    AddDisks();
    Tree.Write("beside", "text");
    ASSERT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    static const auto openLocal = dos::Host().Openat;
    dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        const int file = openLocal(drawer, name, flags, mode);
        if (std::string_view(name).starts_with("/proc/self/fd/"))
            DeadFile = file;
        return file;
    };
    auto file = std::make_optional(dos::OpenOld("Dead:file"));
    const dos::FileLock root = dos::Lock("Dead:");
    ASSERT_TRUE(*file && root);
    TheDoor = std::make_shared<Door>();
    dos::Host().Lseek = [](int descriptor, std::int64_t offset, int origin) -> std::int64_t {
        PassDoorIf(descriptor == DeadFile);
        return dos::RealHost().Lseek(descriptor, offset, origin);
    };
    dos::Host().Close = [](int descriptor) {
        PassDoorIf(descriptor == DeadFile);
        return dos::RealHost().Close(descriptor);
    };
    dos::Host().Openat2 = [](int drawer, const char* name, int flags, std::uint64_t resolve) {
        PassDoorIf(std::string_view(name) == "moved");
        return dos::RealHost().Openat2(drawer, name, flags, resolve);
    };
    EXPECT_EQ(dos::Seek(*file, 0, dos::SeekFrom::End), -1);
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoDisk);
    file.reset();
    dos::CurrentDir(root);
    EXPECT_EQ(Refusal(dos::Rename("Host:" + Tree.Path("beside").substr(1), "moved")), dos::ErrorNoDisk);
    dos::CurrentDir(dos::FileLock());
}

TEST_F(SlowMountsTest, WayIntoAnotherDiskIsKnownBeforeItIsTaken) {
    Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / /proc rw - fuse.dead dead rw\n");
    ASSERT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
    Tree.Link("link", "/proc/version");
    static const auto openLocal = dos::Host().Openat;
    dos::Host().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        PassDoorIf(std::string_view(name) == "proc");
        return openLocal(drawer, name, flags, mode);
    };
    DeadRoot = "/proc"; // the key under which it hangs
    EXPECT_EQ(Find("Host:" + Tree.Path("link").substr(1)), "error 226");
    EXPECT_EQ(Find("Host:proc/version"), "error 226");
    EXPECT_EQ(Find("Host:dev"), "Host:dev"); // other disks are not held up
    EXPECT_EQ(Find("Host:dev//proc//dev"), "error 226");
    TheDoor->Open();
    AwaitAnswers(DeadRoot);
    EXPECT_EQ(Find("Host:proc/version"), "Host:proc/version");
    EXPECT_EQ(Find("Host:proc//dev"), "Host:dev");
    const std::string link = "Host:" + Tree.Path("up").substr(1);
    const std::string steps(static_cast<std::size_t>(std::ranges::count(Tree.Root(), '/')), '/');
    EXPECT_TRUE(dos::MakeLink(link, steps + "proc/version")) << dos::IoErr();
    EXPECT_EQ(Find(link), "Host:proc/version");
}

std::string DeadEntries; // host path, as it is said, under which nothing answers when it is looked at

// What does not answer on the host's path is passed over, and not waited for again.
TEST_F(SlowMountsTest, ProgramsAreFoundBehindDeadDrawersOfThePath) {
    for (const char* name : {"dead/tool", "dead/other", "here/tool"}) {
        Tree.Write(name, "");
        ASSERT_EQ(::chmod(Tree.Path(name).c_str(), 0755), 0);
    }
    Tree.Link("link", DeadRoot);
    const std::string here = Tree.Path("here");
    for (const std::string& dead : {DeadRoot, Tree.Path("link")}) {
        TheDoor = std::make_shared<Door>();
        DeadEntries = dead + "/";
        dos::Host().Statx = [](int drawer, const char* name, int flags, unsigned mask, struct statx* about) {
            PassDoorIf(std::string_view(name).starts_with(DeadEntries));
            return dos::RealHost().Statx(drawer, name, flags, mask, about);
        };
        const ScopedVariable path("PATH", dead + ":" + here);
        const auto found = dos::FindHostProgram("tool");
        EXPECT_EQ(found ? found->HostPath : "none", here + "/tool");
        for (const std::string& word : {DeadEntries + "other", std::string("other")}) {
            EXPECT_EQ(Refusal(dos::FindProgram(word)), dos::ErrorNoDisk) << word;
        }
        TheDoor->Open();
        AwaitAnswers(dead);
        EXPECT_TRUE(dos::FindProgram("other"));
    }
}

const char* HangingName = "";

int OpenBehindTheDoor(int drawer, const char* name, int flags, unsigned mode) {
    if (std::string_view(name) == "/proc/self/mountinfo")
        return dos::RealHost().Openat(drawer, MountList.c_str(), flags, mode);
    PassDoorIf(std::string_view(name) == HangingName);
    return dos::RealHost().Openat(drawer, name, flags, mode);
}

int UnlinkBehindTheDoor(int drawer, const char* name, int flags) {
    PassDoorIf(std::string_view(name) == HangingName);
    return dos::RealHost().Unlinkat(drawer, name, flags);
}

// What hangs when the disk dies, or is cancelled, does no more when the disk comes back.
TEST_F(SlowMountsTest, TreesOnADyingDiskEndAndAreCancelled) {
    for (const char* name : {"dead/tree/a/file", "dead/tree/b/stuck", "here/old"})
        Tree.Write(name, "text");
    dos::Host().Openat = OpenBehindTheDoor;
    dos::Host().Unlinkat = UnlinkBehindTheDoor;
    AddDisks();
    struct Row {
        const char* Name;
        const char* Hanging; // what the dead disk is asked for
        bool IsCancelled;
        long Error;
        std::function<dos::TreeResult(const dos::TreeControl&)> Deed;
    };
    const auto copies = [](const char* to) {
        return [to](const dos::TreeControl& control) { return dos::CopyTree("Dead:tree", to, {}, control); };
    };
    const auto deletes = [](const dos::TreeControl& control) {
        return dos::DeleteTree("Dead:tree", dos::Protected::Respected, control);
    };
    for (const Row& row : {Row{"copy", "stuck", false, dos::ErrorNoDisk, copies("Here:1")},
                           {"cancelled copy", "stuck", true, dos::ErrorBreak, copies("Here:2")},
                           {"file", "stuck.uaem", false, dos::ErrorNoDisk,
                            [](const dos::TreeControl& control) {
                                return dos::CopyTree("Dead:tree/b/stuck", "Here:3", {}, control);
                            }},
                           {"delete", "stuck", false, dos::ErrorNoDisk, deletes}}) {
        TheDoor = std::make_shared<Door>();
        HangingName = row.Hanging;
        const auto caller = std::this_thread::get_id();
        const std::size_t descriptors = OpenDescriptors();
        std::vector<long> troubles;
        dos::TreeControl control;
        control.Progress = [&](const dos::TreeProgress&) {
            EXPECT_TRUE(std::this_thread::get_id() == caller);
            return !row.IsCancelled;
        };
        control.Trouble = [&](const dos::TreeTrouble& trouble) {
            troubles.push_back(trouble.Error);
            return dos::TroubleAnswer::Skip;
        };
        const dos::TreeResult result = row.Deed(control);
        EXPECT_EQ(dos::IoErr(), row.Error) << row.Name;
        EXPECT_EQ(result.IsCancelled, row.IsCancelled) << row.Name;
        TheDoor->Open();
        while (OpenDescriptors() > descriptors) // until the work that was left behind has ended
            std::this_thread::yield();
        EXPECT_EQ(troubles, row.IsCancelled || row.Hanging[5] ? std::vector<long>{} : std::vector{row.Error});
    }
    EXPECT_TRUE(Tree.Exists("dead/tree/b"));
    EXPECT_FALSE(Tree.Exists("here/1/b/stuck") || Tree.Exists("here/2/b/stuck"));
}

// A disk that only sleeps is woken by the time it takes to ask.
TEST_F(SlowMountsTest, ATreeGoesOnWhenItsDiskIsWaitedFor) {
    for (const char* name : {"dead/tree/a", "dead/tree/stuck", "here/old"})
        Tree.Write(name, name);
    dos::Host().Openat = OpenBehindTheDoor;
    dos::Host().Unlinkat = UnlinkBehindTheDoor;
    AddDisks();
    HangingName = "stuck";
    int asked = 0;
    dos::TreeControl control;
    control.Trouble = [&](const dos::TreeTrouble& trouble) {
        EXPECT_TRUE(trouble.Error == dos::ErrorNoDisk && trouble.Path.empty());
        if (++asked == 2)
            TheDoor->Open();
        return dos::TroubleAnswer::Retry;
    };
    EXPECT_TRUE(dos::CopyTree("Dead:tree", "Here:tree", {}, control));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(Tree.Read("here/tree/stuck"), "dead/tree/stuck");
    TheDoor = std::make_shared<Door>();
    const std::size_t descriptors = OpenDescriptors();
    control.Trouble = [&](const dos::TreeTrouble&) { return dos::TroubleAnswer::Abort; };
    EXPECT_TRUE(dos::DeleteTree("Dead:tree", dos::Protected::Respected, control).IsCancelled);
    EXPECT_EQ(dos::IoErr(), dos::ErrorBreak);
    TheDoor->Open();
    while (OpenDescriptors() > descriptors)
        std::this_thread::yield();
}

enum class Hang { None, Rename, Link, Attribute };
std::atomic<Hang> Hanging; // what is done, but not answered

void HangIf(Hang call) {
    const int error = errno;
    PassDoorIf(Hanging == call);
    errno = error;
}

// Each deed has a second step, which nobody waits for any more.
TEST_F(SlowMountsTest, ADeedOfTwoStepsThatIsLeftBehindBeginsNoSecondOne) {
    const std::string line = "----r-ed 2001-02-03 04:05:06.08 A note\n";
    for (const char* name : {"dead/from", "dead/to", "dead/tree/file", "here/tree/file"})
        Tree.Write(name, name);
    for (const char* name : {"dead/from.uaem", "dead/tree/file.uaem"})
        Tree.Write(name, line);
    Tree.Link("dead/link", "new");
    Tree.Link("dead/old", "old");
    dos::Host().Openat = OpenBehindTheDoor;
    HangingName = "";
    dos::Host().Renameat2 = [](int from, const char* name, int to, const char* as, unsigned flags) {
        const int result = dos::RealHost().Renameat2(from, name, to, as, flags);
        HangIf(Hang::Rename);
        return result;
    };
    dos::Host().Symlinkat = [](const char* text, int drawer, const char* name) {
        const int result = dos::RealHost().Symlinkat(text, drawer, name);
        HangIf(Hang::Link);
        return result;
    };
    dos::Host().Getxattr = [](int drawer, const char* name, const char* attribute, void* into,
                              std::size_t size) {
        const long result = dos::RealHost().Getxattr(drawer, name, attribute, into, size);
        HangIf(Hang::Attribute);
        return result;
    };
    AddDisks();
    const auto force = [] {
        dos::TreeControl control;
        control.Trouble = [](const dos::TreeTrouble& trouble) {
            Hanging = Hang::Attribute;
            return trouble.Error == 223 ? dos::TroubleAnswer::Force : dos::TroubleAnswer::Skip;
        };
        return static_cast<bool>(
            dos::CopyTree("Here:tree", "Dead:tree", {.Copy = {.Replaces = true}}, control));
    };
    using Deed = std::function<bool()>;
    for (const auto& [call, deed] :
         {std::pair<Hang, Deed>{Hang::Rename,
                                [] {
                                    return static_cast<bool>(
                                        dos::Copy("Dead:from", "Dead:to", {.Replaces = true, .Moves = true}));
                                }},
          {Hang::Link,
           [] { return static_cast<bool>(dos::Copy("Dead:link", "Dead:old", {.Replaces = true})); }},
          {Hang::None, force}}) {
        TheDoor = std::make_shared<Door>();
        Hanging = call;
        const std::size_t descriptors = OpenDescriptors();
        EXPECT_EQ(Refusal(deed()), dos::ErrorNoDisk);
        TheDoor->Open();
        while (OpenDescriptors() > descriptors) // until the work that was left behind has ended
            std::this_thread::yield();
    }
    EXPECT_EQ(Tree.Read("dead/to"), "dead/from"); // by the step that hung
    EXPECT_TRUE(Tree.Exists("dead/from.uaem") && !Tree.Exists("dead/to.uaem"));
    EXPECT_EQ(std::filesystem::read_symlink(DeadRoot + "/old"), "old");
    EXPECT_EQ(Tree.Read("dead/tree/file.uaem"), line);
    EXPECT_EQ(Tree.Read("dead/tree/file"), "dead/tree/file");
}

TEST(RelayTest, WorkThatKeepsAskingHearsOfTheEnd) {
    bool hasHeard = false;
    const auto end = dos::Relay::Run(
        [&](dos::Relay& relay) {
            for (int i = 0; i < 1'000'000 && relay.GoesOn(); ++i)
                static_cast<void>(relay.Ask([] {}));
            hasHeard = !relay.GoesOn();
        },
        [] { return false; });
    EXPECT_EQ(end, dos::RelayEnd::Done);
    EXPECT_TRUE(hasHeard);
}

TEST(RelayTest, ADeedThatThrowsLetsTheWorkGo) {
    auto answer = std::make_shared<std::promise<bool>>();
    const auto run = [&] {
        return dos::Relay::Run(
            [answer](dos::Relay& relay) {
                answer->set_value(relay.Ask([] { throw std::runtime_error("deed"); }));
            },
            [] { return true; });
    };
    EXPECT_THROW(static_cast<void>(run()), std::runtime_error);
    EXPECT_FALSE(answer->get_future().get());
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
    AwaitAnswers("key");
    EXPECT_EQ(*mayChange, false);
}

} // namespace
