// Every changing call with each of its host calls failing, and with the process killed at each of them: each
// file is the old or the new one as a whole, no temporary file stays and no descriptor is lost.
#include "platform/dos/Changes.h"
#include "platform/dos/Copy.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"
#include "tests/platform/dos/HostFaults.h"

#include <functional>
#include <sys/wait.h>
#include <sys/xattr.h>

namespace {

constexpr std::string_view OldLine = "----rwed 2001-02-03 04:05:06.08 old\n";

struct Change {
    std::string_view Name;
    std::function<bool()> Deed;
    bool SidecarMayLag = false; // false can stand for a deed that only the sidecar could not follow
    bool Writes = false;        // SidecarMayLag on a volume where each file has one
    bool MayLose = false;       // true can stand for new contents without bits, comment or date
};

constexpr std::size_t BigSize = 200'000; // more than a copy takes in one piece

bool IsBig(const Change& change) {
    return change.Name.starts_with("copy big");
}

bool WriteThrough(std::string_view path, dos::OpenMode mode) {
    const std::string_view text = "NEW";
    dos::FileHandle file = dos::Open(path, mode);
    if (!file || dos::Write(file, std::as_bytes(std::span(text.data(), text.size()))) != 3)
        return false;
    if (mode != dos::OpenMode::New && dos::SetFileSize(file, 3, dos::SeekFrom::Beginning) != 3)
        return false;
    return dos::Close(file);
}

std::vector<Change> Changes(std::string_view volume) {
    const std::string at(volume);
    return {
        {"delete", [=] { return dos::Delete(at + "file"); }},
        {"delete noted", [=] { return dos::Delete(at + "noted"); }, true},
        {"delete drawer", [=] { return dos::Delete(at + "empty"); }},
        {"rename", [=] { return dos::Rename(at + "file", at + "drawer/moved."); }},
        {"rename noted", [=] { return dos::Rename(at + "noted", at + "drawer/moved."); }},
        {"change case", [=] { return dos::Rename(at + "noted", at + "NOTED"); }},
        {"create drawers", [=] { return dos::CreateDirs(at + "drawer/made?"); }},
        {"create drawer", [=] { return dos::CreateDir(at + "made?"); }},
        {"soft link", [=] { return dos::MakeLink(at + "made?", "file"); }},
        {"hard link", [=] { return dos::MakeLink(at + "made?", dos::Lock(at + "file")); }},
        {"write whole", [=] { return dos::WriteWhole(at + "file", "NEW"); }, false, true},
        {"write whole noted", [=] { return dos::WriteWhole(at + "noted", "NEW"); }, true},
        {"write new", [=] { return WriteThrough(at + "made?", dos::OpenMode::New); }, false, true},
        {"write over", [=] { return WriteThrough(at + "file", dos::OpenMode::New); }, false, true},
        {"write noted", [=] { return WriteThrough(at + "noted", dos::OpenMode::New); }, true},
        {"change old", [=] { return WriteThrough(at + "file", dos::OpenMode::Old); }, false, true},
        {"read and write", [=] { return WriteThrough(at + "made?", dos::OpenMode::ReadWrite); }, false, true},
        {"copy", [=] { return static_cast<bool>(dos::Copy(at + "file", at + "made?")); }, false, false, true},
        {"copy over",
         [=] { return static_cast<bool>(dos::Copy(at + "file", at + "noted", {.Replaces = true})); }, false,
         false, true},
        {"copy noted", [=] { return static_cast<bool>(dos::Copy(at + "noted", at + "drawer/made.")); }, false,
         false, true},
        {"copy big", [=] { return static_cast<bool>(dos::Copy(at + "big", at + "made?")); }, false, false,
         true},
        {"copy big over",
         [=] { return static_cast<bool>(dos::Copy(at + "big", at + "noted", {.Replaces = true})); }, false,
         false, true},
        {"copy big holes", [=] { return static_cast<bool>(dos::Copy(at + "holes", at + "made?")); }, false,
         false, true},
        {"copy drawer", [=] { return static_cast<bool>(dos::Copy(at + "empty", at + "made?")); }, false,
         false, true},
        {"protect", [=] { return dos::SetProtection(at + "file", 0x42); }},
        {"change protection", [=] { return dos::ChangeProtection(at + "file", 0x42, 0); }},
        {"protect noted", [=] { return dos::SetProtection(at + "noted", 0x42); }},
        {"comment", [=] { return dos::SetComment(at + "file", "new"); }},
        {"clear comment", [=] { return dos::SetComment(at + "noted", ""); }},
        {"date", [=] { return dos::SetDate(at + "file", 238464000); }},
        {"date noted", [=] { return dos::SetDate(at + "noted", 238464000); }},
    };
}

// A picture of a tree: what a user would miss if it changed.
using Picture = std::map<std::string, std::string>;

Picture Look(const std::string& root) {
    Picture picture;
    namespace fs = std::filesystem;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::string text;
        if (entry.is_symlink())
            text = "-> " + fs::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            text = *dos::ReadWhole("Host:" + entry.path().string().substr(1), 2 * BigSize);
        if (text.size() > 1000)
            text = "BIG" + std::to_string(text.size()) + "#" + std::to_string(std::hash<std::string>()(text));
        if (entry.path().extension() == ".uaem") // the hour of the test is no part of it
            text = text.starts_with(OldLine.substr(0, 31)) ? "old date " + text.substr(31)
                                                           : text.substr(0, 8) + text.substr(31);
        const auto object = dos::ExamineObject("Host:" + entry.path().string().substr(1));
        if (object && !entry.is_symlink())
            text += " " + std::to_string(object->Protection) + " " + object->Comment;
        picture[entry.path().string().substr(root.size())] = text;
    }
    return picture;
}

struct Rules {
    std::string_view Name;
    dos::NameRule Names;
    dos::MetadataRule Metadata;
    int ErrorOfBig; // big files are copied with this one
};

void PrintTo(const Rules& rules, std::ostream* out) {
    *out << rules.Name;
}

class FaultSweepTest : public testing::TestWithParam<Rules> {
protected:
    ~FaultSweepTest() override {
        dos::Host() = dos::RealHost();
        CopiesRanges = true;
        dos::ResetVolumeTable();
    }
    // Ranges are copied by the host on volumes that know case, and block by block on the others.
    void Plant(TempTree& tree, const Change& change) {
        dos::ResetVolumeTable();
        CopiesRanges = GetParam().Names == dos::NameRule::Exact;
        if (IsBig(change)) {
            std::string text;
            while (text.size() < BigSize)
                text += std::to_string(text.size()) + " ";
            tree.Write("big", text);
            tree.Write("holes", "begin");
            std::filesystem::resize_file(tree.Path("holes"), BigSize);
        }
        EXPECT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
        AddDisk("TD0", "Test", tree.Root(), GetParam().Names, GetParam().Metadata);
        tree.Write("file", "OLD CONTENTS");
        tree.Write("noted", "OLD");
        tree.Write("noted.uaem", OldLine);
        tree.Drawer("empty");
        tree.Drawer("drawer");
        ::setxattr(tree.Path("file").c_str(), "user.amiga.protection", "h--arwed", 8, 0);
        ::setxattr(tree.Path("noted").c_str(), "user.xdg.comment", "hidden", 6, 0);
    }
    // The tree after the deed when nothing fails.
    Picture Wanted(const Change& change) {
        TempTree tree;
        Plant(tree, change);
        EXPECT_TRUE(change.Deed()) << change.Name << " " << dos::IoErr();
        return Look(tree.Root());
    }
    // Runs the deed with that call failing; true when the sweep is over.
    bool RunOne(const Change& change, int number, const Picture& wanted);
    // Runs the deed in a process that is killed at that call; true when the sweep is over.
    bool KillOne(const Change& change, int number, const Picture& wanted);
};

// The names, and how contents begin, or what is told of big ones: without sidecars, bits and comments.
Picture Bare(const Picture& picture) {
    Picture bare;
    for (const auto& [name, text] : picture)
        if (!name.ends_with(".uaem"))
            bare[name] = text.starts_with("BIG") ? text.substr(0, text.find(' '))
                         : text.starts_with(' ') ? "" // a drawer has none
                                                 : text.substr(0, 3);
    return bare;
}

bool FaultSweepTest::RunOne(const Change& change, int number, const Picture& wanted) {
    TempTree tree;
    Plant(tree, change);
    const Picture before = Look(tree.Root());
    const std::size_t descriptors = OpenDescriptors();
    BeginFaults(number);
    const bool done = change.Deed();
    const bool isOver = CallsSeen <= number;
    dos::Host() = dos::RealHost();
    const Picture after = Look(tree.Root());
    SCOPED_TRACE(std::string(change.Name) + ", call " + std::to_string(number) + ", errno " +
                 std::to_string(FailWith));
    EXPECT_EQ(OpenDescriptors(), descriptors);
    for (const auto& [name, text] : after)
        EXPECT_EQ(name.find(".solvane-"), std::string::npos) << name;
    const bool writesAll = GetParam().Metadata == dos::MetadataRule::Uaem;
    if (!done && (change.SidecarMayLag || (writesAll && change.Writes)) && after != before) {
        EXPECT_EQ(Bare(after), Bare(wanted)); // all is new but the sidecar
    } else if (change.MayLose && done) {
        EXPECT_EQ(Bare(after), Bare(wanted));
    } else {
        EXPECT_EQ(after, done ? wanted : before);
    }
    EXPECT_TRUE(done || !isOver);
    return isOver;
}

TEST_P(FaultSweepTest, WhicheverCallFailsOldOrNewIsWhole) {
    for (const Change& change : Changes("Test:")) {
        const Picture wanted = Wanted(change);
        Kind = Fault::ShortWrite;
        EXPECT_TRUE(RunOne(change, 1000, wanted));
        Kind = Fault::Error;
        for (const int error : {EIO, ENOSPC, EACCES, EINTR}) {
            if (IsBig(change) && error != GetParam().ErrorOfBig)
                continue;
            FailWith = error;
            int number = 0;
            while (!RunOne(change, number, wanted) && !HasFailure())
                ++number;
            if (HasFailure())
                return;
            EXPECT_GT(number, 2) << change.Name;
        }
    }
}

bool FaultSweepTest::KillOne(const Change& change, int number, const Picture& wanted) {
    TempTree tree;
    Plant(tree, change);
    const Picture before = Look(tree.Root());
    const pid_t child = ::fork();
    if (child == 0) {
        BeginFaults(number);
        ::_exit(change.Deed() ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    SCOPED_TRACE(std::string(change.Name) + ", killed at call " + std::to_string(number));
    // Listing shows nothing of what was left, and clears it away.
    for (const char* drawer : {"Test:", "Test:drawer"})
        for (const std::string& name : NamesIn(drawer))
            EXPECT_FALSE(name.starts_with(".solvane-")) << name;
    const Picture after = Look(tree.Root());
    for (const auto& [name, text] : after)
        EXPECT_EQ(name.find(".solvane-"), std::string::npos) << name;
    EXPECT_TRUE(Bare(after) == Bare(before) || Bare(after) == Bare(wanted)) << testing::PrintToString(after);
    if (!WIFEXITED(status))
        return false;
    EXPECT_EQ(WEXITSTATUS(status), 0);
    return true;
}

TEST_P(FaultSweepTest, AKilledProcessLeavesOldOrNew) {
    for (const Change& change : Changes("Test:")) {
        const Picture wanted = Wanted(change);
        Kind = Fault::Kill;
        for (const bool nameless : {true, false}) {
            if (IsBig(change) && !nameless)
                continue;
            HasNamelessFiles = nameless;
            for (int number = 0; !KillOne(change, number, wanted); ++number)
                if (HasFailure())
                    return;
        }
        HasNamelessFiles = true;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Volumes, FaultSweepTest,
    testing::Values(Rules{"Exact", dos::NameRule::Exact, dos::MetadataRule::Xattr, ENOSPC},
                    Rules{"Fold", dos::NameRule::Fold, dos::MetadataRule::Xattr, EIO},
                    Rules{"Sidecars", dos::NameRule::Exact, dos::MetadataRule::Uaem, EACCES}),
    testing::PrintToStringParamName());

constexpr std::string_view OldMounts = "# mine\n";

struct RelabelPlace {
    RelabelPlace() {
        Tree.Drawer("disk");
        Tree.Write("conf/mounts.toml", OldMounts);
        dos::ResetVolumeTable();
        EXPECT_TRUE(dos::AddVolume({.Device = "TD0", .Volume = "Test", .HostRoot = Tree.Path("disk")}));
        EXPECT_TRUE(dos::AddVolume({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}));
        dos::SetVolumeLabels({}, Tree.Path("conf/mounts.toml"));
    }
    ~RelabelPlace() {
        dos::Host() = dos::RealHost();
        dos::ResetVolumeTable();
    }
    // Whether the file has the new name; it is whole and alone.
    [[nodiscard]] bool IsRenamed() const {
        const std::string text = Tree.Read("conf/mounts.toml");
        EXPECT_TRUE(text.starts_with(OldMounts)) << text;
        EXPECT_TRUE(text == OldMounts || text.ends_with("name = \"New\"\n")) << text;
        const std::filesystem::directory_iterator files(Tree.Path("conf"));
        EXPECT_EQ(std::distance(begin(files), end(files)), 1);
        return text != OldMounts;
    }
    TempTree Tree;
};

TEST(RelabelFaultTest, VolumeAndFileHaveTheOldOrTheNewName) {
    for (const int error : {0, EIO, ENOSPC, EACCES, EINTR}) { // 0: short writes
        Kind = error == 0 ? Fault::ShortWrite : Fault::Error;
        FailWith = error;
        bool isOver = false;
        for (int number = error == 0 ? 1000 : 0; !isOver && !testing::Test::HasFailure(); ++number) {
            const RelabelPlace place;
            BeginFaults(number);
            const bool done = dos::Relabel("Test:", "New");
            isOver = CallsSeen <= number;
            dos::Host() = dos::RealHost();
            SCOPED_TRACE("call " + std::to_string(number) + ", errno " + std::to_string(error));
            EXPECT_TRUE(done || !isOver);
            EXPECT_EQ(dos::FindVolume("New") != nullptr, done);
            EXPECT_EQ(dos::FindVolume("Test") == nullptr, done);
            EXPECT_EQ(place.IsRenamed(), done);
        }
    }
}

TEST(RelabelFaultTest, AKilledProcessLeavesTheOldOrTheNewFile) {
    Kind = Fault::Kill;
    int status = SIGKILL;
    for (int number = 0; !WIFEXITED(status) && !testing::Test::HasFailure(); ++number) {
        HasNamelessFiles = number % 2 == 0;
        const RelabelPlace place;
        const pid_t child = ::fork();
        if (child == 0) {
            BeginFaults(number);
            ::_exit(dos::Relabel("Test:", "New") ? 0 : 1);
        }
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        SCOPED_TRACE("killed at call " + std::to_string(number));
        NamesIn("Host:" + place.Tree.Path("conf").substr(1)); // what was left is cleared away
        const bool isRenamed = place.IsRenamed();
        EXPECT_TRUE(!WIFEXITED(status) || (WEXITSTATUS(status) == 0 && isRenamed));
    }
    HasNamelessFiles = true;
}

} // namespace
