#include "platform/dos/Files.h"

#include "platform/dos/Changes.h"
#include "platform/dos/Variables.h"
#include "tests/platform/dos/DosTest.h"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

class FilesTest : public DosTest {
protected:
    FilesTest() {
        Tree.Plant({"env/", "envarc/"});
        EXPECT_TRUE(dos::SetAssign("ENV", dos::AssignKind::Late, {"Test:env"}));
        EXPECT_TRUE(dos::SetAssign("ENVARC", dos::AssignKind::Late, {"Test:envarc"}));
    }
};

TEST_F(FilesTest, FilesAreReadWholeUpToALimit) {
    Tree.Write("file", "12345");
    EXPECT_EQ(dos::ReadWhole("Test:file", 5), "12345");
    EXPECT_EQ(Refusal(dos::ReadWhole("Test:file", 4)), dos::ErrorObjectTooLarge);
    EXPECT_EQ(dos::ReadWhole("NIL:", 4), "");
    EXPECT_EQ(Refusal(dos::ReadWhole("Test:", 4)), dos::ErrorObjectWrongType);
    const std::string large(300000, 'x');
    Tree.Write("large", large);
    EXPECT_EQ(dos::ReadWhole("Test:large", large.size()), large);
}

TEST_F(FilesTest, HandlesReadAndSeek) {
    Tree.Write("file", "0123456789");
    dos::FileHandle file = dos::OpenOld("Test:file");
    ASSERT_TRUE(file);
    std::array<std::byte, 4> buffer;
    EXPECT_EQ(dos::Seek(file, -3, dos::SeekFrom::End), 7);
    EXPECT_EQ(dos::Read(file, buffer), 3);
    EXPECT_EQ(buffer[0], std::byte{'7'});
    EXPECT_EQ(dos::Read(file, buffer), 0);
    EXPECT_EQ(dos::Seek(file, -1, dos::SeekFrom::Beginning), -1);
    EXPECT_EQ(dos::IoErr(), dos::ErrorSeekError);
}

TEST_F(FilesTest, WritingReplacesTheContentsAndKeepsTheRest) {
    Tree.Write("file", "old");
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0750), 0);
    const bool hasAttributes = ::setxattr(Tree.Path("file").c_str(), "user.other.tool", "kept", 4, 0) == 0;
    Tree.Link("link", "file");
    EXPECT_TRUE(dos::WriteWhole("Test:link", "new"));
    EXPECT_EQ(Tree.Read("file"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(Tree.Path("link")));
    EXPECT_EQ(dos::ExamineObject("Test:file")->Protection, 0xA00u);
    std::array<char, 8> value{};
    if (hasAttributes) {
        EXPECT_EQ(::getxattr(Tree.Path("file").c_str(), "user.other.tool", value.data(), value.size()), 4);
    }
    EXPECT_TRUE(dos::WriteWhole("Test:fresh", ""));
    EXPECT_TRUE(dos::WriteWhole("NIL:", "nowhere"));
    EXPECT_EQ(NamesIn("Test:"), (Names{"env", "envarc", "file", "fresh", "link"}));
}

TEST_F(FilesTest, WhatCannotBeWrittenIsRefused) {
    Tree.Write("closed", "old");
    ASSERT_EQ(::chmod(Tree.Path("closed").c_str(), 0444), 0);
    Tree.Write("noted", "old");
    Tree.Write("noted.uaem", "----r-ed 2001-02-03 04:05:06.08 \n");
    const std::pair<std::string_view, long> cases[] = {
        {"Test:closed", 223}, {"Test:noted", 223}, {"Test:env", 212}, {"Test:", 212},
        {"Test:no/x", 205},   {"Test:..", 205},    {"Test:a:b", 210}, {"Nobody:x", 218},
    };
    for (const auto& [path, error] : cases)
        EXPECT_EQ(Refusal(dos::WriteWhole(path, "new")), error) << path;
    EXPECT_EQ(Tree.Read("closed"), "old");
}

TEST_F(FilesTest, AFullDiskIsToldWhicheverCallMeetsItFirst) {
    Tree.Write("file", "old");
    for (const auto fill : {+[](dos::HostCalls& host) { host.Write = Failing<ENOSPC>(); },
                            +[](dos::HostCalls& host) { host.Fsync = Failing<ENOSPC>(); },
                            +[](dos::HostCalls& host) { host.Renameat2 = Failing<ENOSPC>(); }}) {
        Calls() = dos::RealHost();
        fill(Calls());
        EXPECT_EQ(Refusal(dos::WriteWhole("Test:file", "new")), dos::ErrorDiskFull);
        EXPECT_EQ(Tree.Read("file"), "old");
    }
}

std::string Newcomer; // host path of a file that somebody makes while another one is written

TEST_F(FilesTest, FileThatCameMeanwhilePassesOnWhatItHas) {
    Newcomer = Tree.Path("file");
    Calls().Fsync = [](int) {
        const int file = ::open(Newcomer.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0640);
        return file < 0 ? 0 : ::close(file);
    };
    EXPECT_TRUE(dos::WriteWhole("Test:file", "new"));
    EXPECT_EQ(Tree.Read("file"), "new");
    EXPECT_EQ(dos::ExamineObject("Test:file")->Protection, 0x802u);
    // The sidecar that an emulator has just written is not lost.
    Newcomer = Tree.Path("file.uaem");
    EXPECT_TRUE(dos::AddVolume(
        {.Device = "TD1", .Volume = "Amiga", .HostRoot = Tree.Root(), .Metadata = dos::MetadataRule::Uaem}));
    EXPECT_EQ(Refusal(dos::SetComment("Amiga:file", "note")), dos::ErrorObjectExists);
    EXPECT_EQ(Tree.Read("file.uaem"), "");
}

TEST_F(FilesTest, FileThatAnotherReplacesMeanwhileIsReplacedAllTheSame) {
    Tree.Write("file", "old");
    Newcomer = Tree.Path("file");
    Calls().Openat2 = [](int drawer, const char* name, int flags, std::uint64_t resolve) {
        const int found = dos::RealHost().Openat2(drawer, name, flags, resolve);
        std::filesystem::remove(Newcomer);
        return found;
    };
    EXPECT_TRUE(dos::WriteWhole("Test:file", "new"));
    EXPECT_EQ(Tree.Read("file"), "new");
}

TEST_F(FilesTest, ReplacedFileStaysWithItsGroupOnDisksOfAllKinds) {
    Tree.Write("file", "old");
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0600), 0);
    static unsigned group = 0;
    group = 0;
    Calls().Statx = [](int at, const char* name, int flags, unsigned mask, struct statx* result) {
        const int done = dos::RealHost().Statx(at, name, flags, mask, result);
        result->stx_gid += (flags & AT_EMPTY_PATH) != 0 && result->stx_nlink == 1 && result->stx_size == 3;
        return done;
    };
    Calls().Fchown = [](int, unsigned owner, unsigned newGroup) {
        group = newGroup;
        errno = EPERM;
        return owner == ~0u ? 0 : -1;
    };
    Calls().Fchmod = Failing<ENOTSUP>();
    EXPECT_TRUE(dos::WriteWhole("Test:file", "new text"));
    EXPECT_EQ(group, ::getgid() + 1);
    EXPECT_EQ(Tree.Read("file"), "new text");
}

TEST_F(FilesTest, DrawersAreMadeOnce) {
    Tree.Write("file", "");
    EXPECT_TRUE(dos::CreateDir("Test:new/"));
    EXPECT_EQ(Refusal(dos::CreateDir("Test:new")), dos::ErrorObjectExists);
    EXPECT_EQ(Refusal(dos::CreateDir("Test:file")), dos::ErrorObjectExists);
    EXPECT_EQ(Refusal(dos::CreateDir("Test:none/new")), dos::ErrorObjectNotFound);
    EXPECT_FALSE(dos::CreateDir("Test:.."));
    EXPECT_TRUE(dos::CreateDirs("Test:a/b/c"));
    EXPECT_TRUE(dos::CreateDirs("Test:a/b/c"));
    EXPECT_TRUE(Tree.Exists("a/b/c"));
    EXPECT_FALSE(dos::CreateDirs("Test:file/x"));
    EXPECT_EQ(Refusal(dos::CreateDirs("Test:file")), dos::ErrorObjectWrongType);
    EXPECT_EQ(Refusal(dos::CreateDirs("Test:long/" + std::string(120, 'n') + std::string(900, '/') + "x")),
              dos::ErrorLineTooLong);
    EXPECT_FALSE(Tree.Exists("long"));
}

TEST_F(FilesTest, NewObjectsOfAMultiAssignAreMadeWhereTheirDrawerIs) {
    Tree.Plant({"one/", "two/only/"});
    ASSERT_TRUE(dos::SetAssign("Multi", dos::AssignKind::Late, {"Test:one", "Test:two"}));
    EXPECT_TRUE(dos::CreateDir("Multi:new"));
    EXPECT_TRUE(dos::WriteWhole("Multi:only/file", "x"));
    EXPECT_TRUE(Tree.Exists("one/new"));
    EXPECT_TRUE(Tree.Exists("two/only/file"));
}

TEST_F(FilesTest, VariablesAreKeptWhereTheirScopeSays) {
    EXPECT_TRUE(dos::SetVar("Global", "g", dos::VarScope::Global));
    EXPECT_TRUE(dos::SetVar("AppPaths/Solvane", "Test:env", dos::VarScope::GlobalSaved));
    EXPECT_EQ(Tree.Read("env/Global"), "g");
    EXPECT_FALSE(Tree.Exists("envarc/Global"));
    EXPECT_EQ(Tree.Read("env/AppPaths/Solvane"), "Test:env");
    EXPECT_EQ(Tree.Read("envarc/AppPaths/Solvane"), "Test:env");
    Tree.Write("envarc/Saved", "first line\nsecond\n");
    EXPECT_EQ(dos::GetVar("Saved"), "first line");
    EXPECT_EQ(dos::GetVar("Global"), "g");
    EXPECT_EQ(Refusal(dos::GetVar("None")), dos::ErrorObjectNotFound);
    for (const std::string_view name : {"", "/up", "a//b", "Test:file", "a/"}) {
        EXPECT_EQ(Refusal(dos::SetVar(name, "x", dos::VarScope::Global)), dos::ErrorInvalidComponentName)
            << name;
    }
}

} // namespace
