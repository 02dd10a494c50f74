#include "platform/dos/Copy.h"

#include "platform/dos/Changes.h"
#include "platform/dos/CopyTree.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

std::string Attribute(const std::string& path, const char* name) {
    std::string value(256, '\0');
    const auto size = ::getxattr(path.c_str(), name, value.data(), value.size());
    value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return value;
}

struct stat StatusOf(const std::string& path) {
    struct stat about {};
    EXPECT_EQ(::lstat(path.c_str(), &about), 0) << path;
    return about;
}

void SetTime(const std::string& path, time_t seconds, long nanoseconds) {
    const timespec times[2] = {{seconds, 1}, {seconds, nanoseconds}};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

class CopyTest : public DosTest {};

TEST_F(CopyTest, FileKeepsAllThatBelongsToIt) {
    Tree.Write("from", std::string(300'000, 'x') + "end");
    const std::string from = Tree.Path("from");
    ::setxattr(from.c_str(), "user.amiga.protection", "hs-arwed", 8, 0);
    ::setxattr(from.c_str(), "user.xdg.comment", "A note", 6, 0);
    ::setxattr(from.c_str(), "user.other", "theirs", 6, 0);
    // An access list: the owner and user 12345 may read and write, others may not.
    const std::string list("\2\0\0\0\1\0\6\0\377\377\377\377\2\0\6\0\71\60\0\0\4\0\4\0\377\377\377\377"
                           "\20\0\6\0\377\377\377\377\40\0\0\0\377\377\377\377",
                           44);
    EXPECT_EQ(::setxattr(from.c_str(), "system.posix_acl_access", list.data(), list.size(), 0), 0);
    SetTime(from, 1'000'000'000, 123'456'789);
    std::uint64_t told = 0;
    const dos::CopyResult result = dos::Copy("Test:from", "Test:to", {}, [&](std::uint64_t bytes) {
        told += bytes;
        return true;
    });
    ASSERT_TRUE(result) << dos::IoErr();
    EXPECT_EQ(result.Lost, 0u);
    EXPECT_EQ(told, 300'003u);
    const std::string to = Tree.Path("to");
    EXPECT_EQ(Tree.Read("to"), Tree.Read("from"));
    for (const char* name :
         {"user.amiga.protection", "user.xdg.comment", "user.other", "system.posix_acl_access"})
        EXPECT_EQ(Attribute(to, name), Attribute(from, name)) << name;
    EXPECT_EQ(StatusOf(to).st_mode, StatusOf(from).st_mode);
    EXPECT_EQ(StatusOf(to).st_mtim.tv_sec, 1'000'000'000);
    EXPECT_EQ(StatusOf(to).st_mtim.tv_nsec, 123'456'789);
}

TEST_F(CopyTest, OptionsSayWhatIsKept) {
    Tree.Write("from", "NEW");
    Tree.Write("old", "OLD");
    for (const auto& [name, letters, note] :
         {std::tuple{"from", "-s--rwed", "new"}, {"old", "--p-rwed", "old"}}) {
        ::setxattr(Tree.Path(name).c_str(), "user.amiga.protection", letters, 8, 0);
        ::setxattr(Tree.Path(name).c_str(), "user.xdg.comment", note, 3, 0);
        SetTime(Tree.Path(name), 1'000'000'000, 0);
    }
    ::chmod(Tree.Path("old").c_str(), 0640);
    EXPECT_EQ(Refusal(dos::Copy("Test:from", "Test:old")), dos::ErrorObjectExists);
    const dos::CopyOptions bare{.Date = false, .Protection = false, .Comment = false, .Replaces = true};
    ASSERT_TRUE(dos::Copy("Test:from", "Test:old", bare)) << dos::IoErr();
    EXPECT_EQ(Tree.Read("old"), "NEW");
    EXPECT_EQ(Attribute(Tree.Path("old"), "user.amiga.protection"), "--p-rwed");
    EXPECT_EQ(Attribute(Tree.Path("old"), "user.xdg.comment"), "old");
    EXPECT_EQ(StatusOf(Tree.Path("old")).st_mode & 07777, 0640u);
    EXPECT_GT(StatusOf(Tree.Path("old")).st_mtim.tv_sec, 1'500'000'000);
    ASSERT_TRUE(dos::Copy("Test:from", "Test:old", {.Replaces = true})) << dos::IoErr();
    EXPECT_EQ(Attribute(Tree.Path("old"), "user.amiga.protection"), "-s--rwed");
    EXPECT_EQ(StatusOf(Tree.Path("old")).st_mode & 07777, StatusOf(Tree.Path("from")).st_mode & 07777);
}

TEST_F(CopyTest, TheNoteOfASourceWithoutOneIsNone) {
    Tree.Write("from", "NEW");
    Tree.Write("old", "OLD");
    ::setxattr(Tree.Path("old").c_str(), "user.xdg.comment", "old", 3, 0);
    ASSERT_TRUE(dos::Copy("Test:from", "Test:old", {.Protection = false, .Replaces = true}));
    EXPECT_EQ(Attribute(Tree.Path("old"), "user.xdg.comment"), "");
}

// A sidecar that may not be read itself forbids nothing but deleting, and what it tells is lost.
TEST_F(CopyTest, WhatMayNotBeReadIsNotCopied) {
    for (const char* name : {"from/closed", "from/shut", "from/open"}) {
        Tree.Write(name, name);
        Tree.Write(std::string(name) + ".uaem", "-----wed 2001-02-03 04:05:06.08 x\n");
    }
    Tree.Write("from/open.uaem", "----r--- 2001-02-03 04:05:06.08 x\n");
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        errno = EACCES;
        return std::string_view(name).ends_with("shut.uaem") && !(flags & O_PATH)
                   ? -1
                   : dos::RealHost().Openat(drawer, name, flags, mode);
    };
    EXPECT_EQ(dos::Copy("Test:from/closed", "Test:copy").End, dos::CopyEnd::SourceRefused);
    EXPECT_EQ(dos::IoErr(), dos::ErrorReadProtected);
    EXPECT_EQ(dos::ReadWhole("Test:from/shut", 100), "from/shut");
    EXPECT_FALSE(dos::Delete("Test:from/shut"));
    EXPECT_FALSE(dos::WriteWhole("Test:from/shut", "new"));
    const dos::CopyResult copied = dos::Copy("Test:from/shut", "Test:copy");
    EXPECT_TRUE(copied) << dos::IoErr();
    EXPECT_EQ(copied.Lost, dos::LostProtection | dos::LostComment | dos::LostDate);
    EXPECT_TRUE(dos::Delete("Test:copy"));
    std::map<std::string, long> troubles;
    dos::TreeControl control;
    control.Trouble = [&](const dos::TreeTrouble& trouble) {
        troubles[trouble.Path] = trouble.Error;
        return dos::TroubleAnswer::Force; // what is at the other end is not to be unprotected for it
    };
    EXPECT_FALSE(dos::CopyTree("Test:from", "Test:to", {}, control));
    EXPECT_EQ(troubles, (std::map<std::string, long>{{"closed", 224}}));
    EXPECT_EQ(NamesIn("Test:to"), (Names{"open", "shut"}));
    EXPECT_EQ(NamesIn("Test:"), (Names{"from", "to"}));
}

// Which way bits, note and date are kept on both sides must not matter to who looks.
TEST_F(CopyTest, MetadataGoesBetweenAllKeepings) {
    TempTree uaem;
    ASSERT_TRUE(dos::AddVolume(
        {.Device = "TU0", .Volume = "Uaem", .HostRoot = uaem.Root(), .Metadata = dos::MetadataRule::Uaem}));
    Tree.Write("noted", "N");
    Tree.Write("noted.uaem", "-s-arwed 2001-02-03 04:05:06.08 A note\n");
    Tree.Write("kept", "K");
    ::setxattr(Tree.Path("kept").c_str(), "user.amiga.protection", "h---rwed", 8, 0);
    ::setxattr(Tree.Path("kept").c_str(), "user.xdg.comment", "Kept", 4, 0);
    for (const auto& [from, to] : {std::pair{"Test:noted", "Test:noted 2"},
                                   {"Test:noted", "Uaem:noted"},
                                   {"Uaem:noted", "Test:noted 3"},
                                   {"Test:kept", "Uaem:kept"},
                                   {"Uaem:kept", "Test:kept 2"}}) {
        const dos::CopyResult result = dos::Copy(from, to);
        ASSERT_TRUE(result) << from << " " << to << dos::IoErr();
        EXPECT_EQ(result.Lost, 0u) << to;
        const auto old = dos::ExamineObject(from);
        const auto copy = dos::ExamineObject(to);
        ASSERT_TRUE(old && copy);
        EXPECT_EQ(copy->Protection & 0xFF, old->Protection & 0xFF) << to;
        EXPECT_EQ(copy->Comment, old->Comment) << to;
        EXPECT_EQ(copy->Date, old->Date) << to;
    }
    EXPECT_EQ(Tree.Read("noted 2.uaem"), Tree.Read("noted.uaem"));
    EXPECT_EQ(uaem.Read("kept.uaem").substr(0, 8), "h---rw-d");
}

TEST_F(CopyTest, WhatTheTargetCannotKeepIsTold) {
    Tree.Write("from", "X");
    ::setxattr(Tree.Path("from").c_str(), "user.amiga.protection", "hs-arwed", 8, 0);
    ::setxattr(Tree.Path("from").c_str(), "user.xdg.comment", "A note", 6, 0);
    ::setxattr(Tree.Path("from").c_str(), "user.other", "theirs", 6, 0);
    Calls().Fsetxattr = Failing<ENOTSUP>();
    Calls().SetTimes = Failing<EPERM>();
    const dos::CopyResult result = dos::Copy("Test:from", "Test:to");
    EXPECT_TRUE(result);
    EXPECT_EQ(result.Lost, dos::LostProtection | dos::LostComment | dos::LostAttributes | dos::LostDate);
    EXPECT_EQ(Tree.Read("to"), "X");
}

TEST_F(CopyTest, HolesStayHoles) {
    Tree.Write("from", "begin");
    ASSERT_EQ(::truncate(Tree.Path("from").c_str(), 64 << 20), 0);
    const int file = ::open(Tree.Path("from").c_str(), O_WRONLY);
    EXPECT_EQ(::pwrite(file, "middle", 6, 20 << 20), 6);
    ::close(file);
    for (const bool canCopyRange : {true, false}) {
        Calls().Clone = Failing<ENOTSUP>();
        if (!canCopyRange)
            Calls().CopyRange = Failing<EXDEV>();
        ASSERT_TRUE(dos::Copy("Test:from", "Test:to", {.Replaces = true}));
        EXPECT_EQ(Tree.Read("to"), Tree.Read("from"));
        EXPECT_LT(StatusOf(Tree.Path("to")).st_blocks * 512, 1 << 20);
    }
}

TEST_F(CopyTest, LinksAndDrawersAreCopiedAsSuch) {
    Tree.Link("link", "nowhere/at all");
    Tree.Write("drawer/inside", "X");
    SetTime(Tree.Path("link"), 1'000'000'000, 5);
    ASSERT_EQ(::chmod(Tree.Path("drawer").c_str(), 0750), 0);
    SetTime(Tree.Path("drawer"), 1'000'000'000, 6);
    ASSERT_TRUE(dos::Copy("Test:link", "Test:link 2"));
    EXPECT_EQ(std::filesystem::read_symlink(Tree.Path("link 2")), "nowhere/at all");
    EXPECT_EQ(StatusOf(Tree.Path("link 2")).st_mtim.tv_nsec, 5);
    ASSERT_TRUE(dos::Copy("Test:drawer", "Test:drawer 2"));
    EXPECT_EQ(StatusOf(Tree.Path("drawer 2")).st_mode & 07777, 0750u);
    EXPECT_EQ(StatusOf(Tree.Path("drawer 2")).st_mtim.tv_nsec, 6);
    EXPECT_FALSE(Tree.Exists("drawer 2/inside"));
    Tree.Link("good", "drawer/inside");
    ASSERT_TRUE(dos::Copy("Test:good", "Test:plain", {.FollowsLink = true}));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(Tree.Path("plain"))));
    // A link in the way of a link goes, in the way of a file it leads on.
    ASSERT_TRUE(dos::Copy("Test:link", "Test:good", {.Replaces = true})) << dos::IoErr();
    EXPECT_EQ(std::filesystem::read_symlink(Tree.Path("good")), "nowhere/at all");
    EXPECT_EQ(Tree.Read("drawer/inside"), "X");
}

struct RefusedCopy {
    const char *Name, *From, *To;
    dos::CopyEnd End;
    long Error;
};

TEST_F(CopyTest, RefusalsTouchNothing) {
    for (const char* name : {"file", "drawer/inside", "kept", "other"})
        Tree.Write(name, name);
    ::link(Tree.Path("file").c_str(), Tree.Path("twin").c_str());
    ::setxattr(Tree.Path("kept").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
    ::mkfifo(Tree.Path("pipe").c_str(), 0600);
    const auto before = NamesIn("Test:");
    using enum dos::CopyEnd;
    for (const RefusedCopy& row : {RefusedCopy{"onto itself", "Test:file", "Test:file", TargetRefused, 202},
                                   {"onto its hard link", "Test:file", "Test:twin", TargetRefused, 202},
                                   {"into itself", "Test:drawer", "Test:drawer/copy", TargetRefused, 202},
                                   {"protected", "Test:file", "Test:kept", TargetRefused, 222},
                                   {"over a drawer", "Test:file", "Test:drawer", TargetRefused, 212},
                                   {"drawer over a file", "Test:drawer", "Test:file", TargetRefused, 212},
                                   {"missing", "Test:nothing", "Test:new", SourceRefused, 205},
                                   {"no drawer for it", "Test:file", "Test:none/new", TargetRefused, 205},
                                   {"pipe", "Test:pipe", "Test:new", SourceRefused, 212}}) {
        const dos::CopyResult result = dos::Copy(row.From, row.To, {.Replaces = true});
        EXPECT_EQ(result.End, row.End) << row.Name;
        EXPECT_EQ(dos::IoErr(), row.Error) << row.Name;
    }
    EXPECT_EQ(NamesIn("Test:"), before);
    EXPECT_EQ(NamesIn("Test:drawer"), Names{"inside"});
    EXPECT_EQ(Tree.Read("kept"), "kept");
}

TEST_F(CopyTest, CancelAndGrowthLeaveWhatWasThere) {
    Tree.Write("from", std::string(3 << 20, 'x'));
    Tree.Write("to", "OLD");
    EXPECT_EQ(dos::Copy("Test:from", "Test:to", {.Replaces = true}, [](std::uint64_t) { return false; }).End,
              dos::CopyEnd::Cancelled);
    const std::string from = Tree.Path("from");
    const dos::CopyProgress grow = [&](std::uint64_t) {
        std::ofstream(from, std::ios::app) << "more";
        return true;
    };
    EXPECT_EQ(dos::Copy("Test:from", "Test:to", {.Replaces = true}, grow).End, dos::CopyEnd::SourceChanged);
    EXPECT_EQ(Tree.Read("to"), "OLD");
    EXPECT_EQ(NamesIn("Test:"), (Names{"from", "to"}));
}

TEST_F(CopyTest, AnAliasKeepsTheRealName) {
    const std::string name = std::string(250, 'n') + ":x";
    Tree.Write(name, "long");
    Tree.Drawer("drawer");
    const std::string alias = NamesIn("Test:").back();
    ASSERT_TRUE(dos::Copy("Test:" + alias, "Test:drawer/" + alias)) << dos::IoErr();
    EXPECT_EQ(Tree.Read("drawer/" + name), "long");
    EXPECT_EQ(Refusal(dos::Copy("Test:" + alias, "Test:drawer/" + alias)), 203);
    ASSERT_TRUE(dos::Copy("Test:" + alias, "Test:drawer/short"));
    EXPECT_EQ(Tree.Read("drawer/short"), "long");
}

TEST_F(CopyTest, AMoveRenamesOrCopiesAndDeletes) {
    for (const char* name : {"one", "two", "three", "old"})
        Tree.Write(name, name);
    Tree.Write("two.uaem", "-s-arwed 2001-02-03 04:05:06.08 A note\n");
    Tree.Write("old.uaem", "----rwed 2011-02-03 04:05:06.08 Old\n");
    ASSERT_TRUE(dos::Copy("Test:one", "Test:moved", {.Moves = true}));
    ASSERT_TRUE(dos::Copy("Test:two", "Test:old", {.Replaces = true, .Moves = true})) << dos::IoErr();
    EXPECT_EQ(Tree.Read("old"), "two");
    EXPECT_EQ(dos::ExamineObject("Test:old")->Comment, "A note");
    // What a file that is replaced passes on comes by no renaming.
    Tree.Write("four", "four");
    ASSERT_TRUE(dos::SetComment("Test:four", "Mine") || dos::IoErr() == dos::ErrorActionNotKnown);
    ASSERT_TRUE(dos::Copy("Test:four", "Test:old", {.Comment = false, .Replaces = true, .Moves = true}));
    EXPECT_EQ(dos::ExamineObject("Test:old")->Comment, "A note");
    EXPECT_EQ(Tree.Read("old") + (Tree.Exists("four") ? "?" : ""), "four");
    Calls().Renameat2 = Failing<EXDEV>();
    ASSERT_TRUE(dos::Copy("Test:three", "Test:across", {.Moves = true})) << dos::IoErr();
    EXPECT_EQ(NamesIn("Test:"), (Names{"across", "moved", "old"}));
    EXPECT_EQ(Tree.Read("across"), "three");
}

std::string RootOfRace;
std::string VictimOfRace; // gets another object between the plan and the deed

TEST_F(CopyTest, AMoveOverTouchesOnlyWhatWasPlanned) {
    RootOfRace = Tree.Root() + "/";
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        std::error_code onceOnly;
        if (std::string_view(name) == "to.uaem")
            std::filesystem::rename(RootOfRace + "other", RootOfRace + VictimOfRace, onceOnly);
        return dos::RealHost().Openat(drawer, name, flags, mode);
    };
    using enum dos::CopyEnd;
    for (const auto& [victim, end, error] : {std::tuple{"from", SourceRefused, dos::ErrorObjectNotFound},
                                             {"to", TargetRefused, dos::ErrorObjectInUse}}) {
        for (const char* name : {"from", "to", "other"})
            Tree.Write(name, name);
        VictimOfRace = victim;
        EXPECT_EQ(dos::Copy("Test:from", "Test:to", {.Replaces = true, .Moves = true}).End, end) << victim;
        EXPECT_EQ(dos::IoErr(), error) << victim;
        EXPECT_EQ(Tree.Read(victim), "other");
        EXPECT_EQ(NamesIn("Test:"), (Names{"from", "to"}));
    }
    Tree.Link("link", "from");
    EXPECT_EQ(Refusal(dos::Copy("Test:link", "Test:moved", {.FollowsLink = true, .Moves = true})),
              dos::ErrorActionNotKnown);
    EXPECT_TRUE(Tree.Exists("link") && !Tree.Exists("moved"));
}

TEST_F(CopyTest, OtherDevicesAreCopiedByStreams) {
    Tree.Write("file", "X");
    EXPECT_TRUE(dos::Copy("Test:file", "NIL:"));
    EXPECT_TRUE(dos::Copy("NIL:", "Test:file", {.Replaces = true}));
    EXPECT_EQ(Tree.Read("file"), "");
    EXPECT_EQ(dos::Copy("Test:file", "NIL:", {.Moves = true}).End, dos::CopyEnd::TargetRefused);
    EXPECT_EQ(dos::IoErr(), dos::ErrorActionNotKnown);
    EXPECT_TRUE(Tree.Exists("file"));
}

TEST_F(CopyTest, DrawersHandDownNoAccessToACopy) {
    Tree.Write("from", "X");
    Tree.Drawer("drawer");
    const std::string list("\2\0\0\0\1\0\7\0\377\377\377\377\2\0\7\0\71\60\0\0\4\0\7\0\377\377\377\377"
                           "\20\0\7\0\377\377\377\377\40\0\7\0\377\377\377\377",
                           44);
    ASSERT_EQ(
        ::setxattr(Tree.Path("drawer").c_str(), "system.posix_acl_default", list.data(), list.size(), 0), 0);
    ASSERT_TRUE(dos::Copy("Test:from", "Test:drawer/to"));
    EXPECT_EQ(Attribute(Tree.Path("drawer/to"), "system.posix_acl_access"), "");
    EXPECT_EQ(StatusOf(Tree.Path("drawer/to")).st_mode, StatusOf(Tree.Path("from")).st_mode);
}

// What a process left that was ended is not seen, not in the way, and goes.
TEST_F(CopyTest, LeftTemporariesGo) {
    Tree.Write("file", "X");
    // Without files that have no name a copy has one while it is made.
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        if ((flags & O_TMPFILE) == O_TMPFILE) {
            errno = ENOTSUP;
            return -1;
        }
        return dos::RealHost().Openat(drawer, name, flags, mode);
    };
    std::string left;
    ASSERT_TRUE(dos::Copy("Test:file", "Test:copy", {}, [&](std::uint64_t) {
        for (const auto& entry : std::filesystem::directory_iterator(Tree.Root()))
            if (entry.path().filename().string().starts_with(".solvane-"))
                left = entry.path().filename().string();
        return true;
    }));
    ASSERT_FALSE(left.empty());
    const std::string mark = left.substr(0, left.find('-', 10));
    const std::string dead = mark + "-4194305-1.tmp"; // above all process numbers
    const std::string own = left;
    const std::string foreign = ".solvane-deadbee5-1-1.tmp";
    const std::string theirs = ".solvane-deadbee5-x.tmp"; // no name of ours
    for (const std::string& name : {dead, own, foreign, theirs})
        Tree.Write("drawer/" + name, "half");
    EXPECT_EQ(NamesIn("Test:drawer"), Names{theirs});
    EXPECT_FALSE(Tree.Exists("drawer/" + dead));
    EXPECT_TRUE(Tree.Exists("drawer/" + own) && Tree.Exists("drawer/" + foreign));
    Tree.Write("other/" + dead, "half");
    EXPECT_TRUE(dos::Delete("Test:other"));
}

} // namespace
