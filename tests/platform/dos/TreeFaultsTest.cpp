// Trees copied and deleted, and files moved, with each host call failing, with the process killed at each,
// and on full and read-only disks: a file is the old or the new one as a whole, and what is moved is
// somewhere.
#include "platform/dos/CopyTree.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/dos/HostFaults.h"

#include <functional>
#include <optional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <sys/xattr.h>

namespace {

namespace fs = std::filesystem;

// Files by their path, with contents; links and drawers with what they are.
using Picture = std::map<std::string, std::string>;

// In one piece: big files are looked at again and again.
std::string TextOf(const fs::directory_entry& entry) {
    std::string text(entry.file_size(), '\0');
    std::ifstream(entry.path(), std::ios::binary).read(text.data(), std::ssize(text));
    return text;
}

Picture Look(const TempTree& tree, std::string_view below = "") {
    Picture picture;
    for (const auto& entry : fs::recursive_directory_iterator(tree.Path(below))) {
        const std::string path = entry.path().string().substr(tree.Root().size() + 1);
        picture[path] = entry.is_symlink()     ? "-> " + fs::read_symlink(entry.path()).string()
                        : entry.is_directory() ? "drawer"
                                               : TextOf(entry);
    }
    return picture;
}

// A small disk that only this process sees.
class SmallDisk {
public:
    explicit SmallDisk(std::string point, const char* size = "size=64k") : Point(std::move(point)) {
        static const bool hasOwnMounts =
            ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        IsMounted = hasOwnMounts && ::mount("solvane", Point.c_str(), "tmpfs", 0, size) == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() { ::umount2(Point.c_str(), MNT_DETACH); }

    bool IsMounted = false;
    std::string Point;
};

enum class To { SameDisk, OtherName, OtherDisk }; // OtherName: renames fail as between disks

constexpr std::size_t BigSize = 132'000; // more than a copy takes in one piece

struct Deed {
    std::string_view Name;
    std::function<bool()> Run;
    std::string_view Untouched;    // a drawer
    std::string_view Moved = {};   // what is never neither here
    std::string_view MovedTo = {}; // nor there
    To Where = To::SameDisk;
};

// On which kind of volume, and how calls fail there.
struct Round {
    int Error; // 0: none does, but writes are short
    dos::NameRule Names;
    dos::MetadataRule Metadata;
};
constexpr Round Plain{EIO, dos::NameRule::Exact, dos::MetadataRule::Xattr};

// Every deed meets three of them.
std::vector<Round> RoundsOf(std::size_t deed) {
    const Round rare[] = {{EINTR, dos::NameRule::Fold, dos::MetadataRule::Xattr},
                          {ENOSPC, dos::NameRule::Exact, dos::MetadataRule::Uaem},
                          {EACCES, dos::NameRule::Fold, dos::MetadataRule::Uaem}};
    return {Plain, {0, dos::NameRule::Exact, dos::MetadataRule::Xattr}, rare[deed % 3]};
}

// A tree with "from" and "to", the latter on a disk of its own if it is to be.
struct Place {
    explicit Place(const Deed& deed, const Round& round = Plain);
    TempTree Tree;
    std::optional<SmallDisk> Disk;
};

enum class Disks { One, Two };

// Those within a disk, or those from disk to disk.
std::vector<Deed> Deeds(Disks disks) {
    const auto copies = [](std::string_view to) {
        return
            [to] { return static_cast<bool>(dos::CopyTree("Test:from", to, {.Copy = {.Replaces = true}})); };
    };
    const auto moves = [](std::string_view from, std::string_view to) {
        return
            [from, to] { return static_cast<bool>(dos::Copy(from, to, {.Replaces = true, .Moves = true})); };
    };
    const auto over = moves("Test:from/noted", "Test:to/file");
    if (disks == Disks::Two)
        return {{"copy across", copies("Test:to"), "from", "", "", To::OtherDisk},
                {"move across", over, "from/d", "from/noted", "to/file", To::OtherDisk}};
    return {
        {"copy", copies("Test:new"), "from"},
        {"merge", copies("Test:to"), "from"},
        {"delete", [] { return static_cast<bool>(dos::DeleteTree("Test:from")); }, "to"},
        {"move", moves("Test:from/file", "Test:to/moved"), "from/d", "from/file", "to/moved"},
        {"move over", over, "from/d", "from/noted", "to/file"},
        {"move as if across", over, "from/d", "from/noted", "to/file", To::OtherName},
    };
}

bool CanMountADisk() {
    const TempTree tree;
    return SmallDisk(tree.Root()).IsMounted;
}

Place::Place(const Deed& deed, const Round& round) {
    dos::ResetVolumeTable();
    AddDisk("TD0", "Test", Tree.Root(), round.Names, round.Metadata);
    Tree.Drawer("to");
    if (deed.Where == To::OtherDisk)
        Disk.emplace(Tree.Path("to"), "size=1m");
    for (const char* name : {"from/file", "from/noted", "from/d/e/last", "from/d/guarded"})
        Tree.Write(name, "NEW " + std::string(name));
    for (const char* name : {"to/file", "to/d/other"})
        Tree.Write(name, "OLD " + std::string(name));
    Tree.Write("from/noted.uaem", "----rwed 2001-02-03 04:05:06.08 old\n");
    Tree.Link("from/link", "nowhere");
    if (deed.Name.starts_with("copy")) {
        Tree.Write("from/d/big", std::string(BigSize, 'b') + "end");
        Tree.Write("from/d/holes", "begin");
        fs::resize_file(Tree.Path("from/d/holes"), BigSize);
    }
    ::setxattr(Tree.Path("from/d/guarded").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
}

class TreeFaultsTest : public testing::Test {
protected:
    ~TreeFaultsTest() override {
        dos::Host() = dos::RealHost();
        IsAcross = false;
        HasNamelessFiles = true;
        dos::ResetVolumeTable();
    }
    // What the deed does when nothing fails.
    static Picture Wanted(const Deed& deed, const Round& round = Plain) {
        const Place place(deed, round);
        IsAcross = deed.Where == To::OtherName;
        BeginFaults(-1);
        static_cast<void>(deed.Run());
        dos::Host() = dos::RealHost();
        return Look(place.Tree);
    }
    // A process that was killed leaves files that go when their drawer is listed.
    static void ListAll(const TempTree& tree) {
        std::vector<std::string> drawers{""};
        for (const auto& [path, text] : Look(tree))
            if (text == "drawer")
                drawers.push_back(path);
        for (const std::string& drawer : drawers)
            NamesIn("Test:" + drawer);
    }
    // Runs the deed with that call failing; true when the sweep is over.
    static bool RunOne(const Deed& deed, const Round& round, int number, const Picture& wanted);
    static void FailEachCall(const std::vector<Deed>& deeds);
    static void BeKilledAtEachCall(const std::vector<Deed>& deeds);
    static void Judge(const Deed& deed, const Picture& before, const Picture& wanted, const Picture& after);
};

void TreeFaultsTest::Judge(const Deed& deed, const Picture& before, const Picture& wanted,
                           const Picture& after) {
    const auto at = [](const Picture& picture, std::string_view path) {
        const auto found = picture.find(std::string(path));
        return found == picture.end() ? std::string() : found->second;
    };
    for (const auto& [path, text] : after) {
        EXPECT_EQ(path.find(".solvane-"), std::string::npos) << path;
        EXPECT_TRUE(path.ends_with(".uaem") || // it follows its file a moment later
                    text == at(before, path) || text == at(wanted, path))
            << path << " " << text;
    }
    for (const auto& [path, text] : before) {
        EXPECT_TRUE(after.contains(path) || path.ends_with(".uaem") || !wanted.contains(path)) << path;
        EXPECT_TRUE(at(after, path) == text || !path.starts_with(deed.Untouched)) << path;
    }
    EXPECT_TRUE(deed.Moved.empty() || at(after, deed.Moved) == at(before, deed.Moved) ||
                at(after, deed.MovedTo) == at(before, deed.Moved));
}

bool TreeFaultsTest::RunOne(const Deed& deed, const Round& round, int number, const Picture& wanted) {
    const Place place(deed, round);
    const Picture before = Look(place.Tree);
    const std::size_t descriptors = OpenDescriptors();
    BeginFaults(number);
    dos::SetIoErr(0);
    const bool done = deed.Run();
    const long reason = dos::IoErr();
    const bool isOver = CallsSeen <= number;
    dos::Host() = dos::RealHost();
    SCOPED_TRACE(std::string(deed.Name) + ", call " + std::to_string(number) + ", errno " +
                 std::to_string(round.Error));
    EXPECT_EQ(OpenDescriptors(), descriptors);
    const Picture after = Look(place.Tree);
    Judge(deed, before, wanted, after);
    EXPECT_TRUE(done || reason != 0);
    for (const auto& [path, text] : wanted)
        EXPECT_TRUE(!done || path.ends_with(".uaem") || after.contains(path)) << path;
    EXPECT_TRUE(!isOver || after.size() == wanted.size());
    return isOver;
}

void TreeFaultsTest::FailEachCall(const std::vector<Deed>& deeds) {
    for (std::size_t i = 0; i < deeds.size(); ++i)
        for (const Round& round : RoundsOf(i)) {
            const Picture wanted = Wanted(deeds[i], round);
            Kind = round.Error == 0 ? Fault::ShortWrite : Fault::Error;
            FailWith = round.Error;
            int number = round.Error == 0 ? 100'000 : 0;
            while (!RunOne(deeds[i], round, number, wanted) && !HasFailure())
                ++number;
            EXPECT_GT(number, 10) << deeds[i].Name;
        }
}

TEST_F(TreeFaultsTest, WhicheverCallFailsFilesAreWhole) {
    FailEachCall(Deeds(Disks::One));
}

TEST_F(TreeFaultsTest, WhicheverCallFailsFilesAreWholeOnTwoDisks) {
    if (!CanMountADisk())
        GTEST_SKIP() << "mounting is not allowed here";
    FailEachCall(Deeds(Disks::Two));
}

void TreeFaultsTest::BeKilledAtEachCall(const std::vector<Deed>& deeds) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer's allocator may be locked in a child of a process with threads";
#endif
    Kind = Fault::Kill;
    for (const Deed& deed : deeds) {
        const Picture wanted = Wanted(deed);
        bool isOver = false;
        for (int number = 0; !isOver && !HasFailure(); ++number) {
            HasNamelessFiles = number % 2 == 0;
            const Place place(deed);
            const TempTree& tree = place.Tree;
            const Picture before = Look(tree);
            const pid_t child = ::fork();
            if (child == 0) {
                BeginFaults(number);
                static_cast<void>(deed.Run());
                ::_exit(0);
            }
            int status = 0;
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            SCOPED_TRACE(std::string(deed.Name) + ", killed at call " + std::to_string(number));
            ListAll(tree);
            Judge(deed, before, wanted, Look(tree));
            isOver = WIFEXITED(status);
        }
    }
}

TEST_F(TreeFaultsTest, AKilledProcessLeavesWholeFiles) {
    BeKilledAtEachCall(Deeds(Disks::One));
}

TEST_F(TreeFaultsTest, AKilledProcessLeavesWholeFilesOnTwoDisks) {
    if (!CanMountADisk())
        GTEST_SKIP() << "mounting is not allowed here";
    BeKilledAtEachCall(Deeds(Disks::Two));
}

TEST_F(DosTest, FullAndReadOnlyDisksAreToldOfAndHoldNothingHalf) {
    Tree.Drawer("disk");
    SmallDisk disk(Tree.Path("disk"));
    if (!disk.IsMounted)
        GTEST_SKIP() << "mounting is not allowed here";
    Tree.Write("from/a/small", ""); // has room even while the big one fills the disk
    Tree.Write("from/big", std::string(200'000, 'x'));
    Tree.Write("disk/old", "OLD");
    ASSERT_TRUE(dos::AddVolume({.Device = "SM0", .Volume = "Small", .HostRoot = disk.Point}));
    const Picture source = Look(Tree, "from");
    const dos::CopyOptions moving{.Replaces = true, .Moves = true};
    EXPECT_EQ(Refusal(dos::Copy("Test:from/big", "Small:old", moving)), dos::ErrorDiskFull);
    const dos::TreeResult result = dos::CopyTree("Test:from", "Small:to");
    EXPECT_EQ(result.FirstError, dos::ErrorDiskFull);
    EXPECT_EQ(result.Skipped, 1u);
    const Picture full{
        {"disk/old", "OLD"}, {"disk/to", "drawer"}, {"disk/to/a", "drawer"}, {"disk/to/a/small", ""}};
    EXPECT_EQ(Look(Tree, "disk"), full);
    ASSERT_EQ(::mount("solvane", disk.Point.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    for (const char* to : {"Small:old", "Small:new"})
        EXPECT_EQ(Refusal(dos::Copy("Test:from/a/small", to, moving)), dos::ErrorDiskWriteProtected) << to;
    EXPECT_EQ(dos::CopyTree("Test:from", "Small:2").FirstError, dos::ErrorDiskWriteProtected);
    EXPECT_EQ(dos::CopyTree("Test:from", "Small:to", {.Copy = {.Replaces = true}}).FirstError,
              dos::ErrorDiskWriteProtected);
    EXPECT_EQ(dos::DeleteTree("Small:to").FirstError, dos::ErrorDiskWriteProtected);
    EXPECT_EQ(Look(Tree, "disk"), full);
    EXPECT_EQ(Look(Tree, "from"), source);
}

} // namespace
