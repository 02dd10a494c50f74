#include "platform/dos/Changes.h"

#include "platform/dos/Files.h"
#include "platform/dos/Info.h"
#include "tests/platform/dos/DosTest.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>

namespace {

constexpr std::string_view Line = "----rwed 2001-02-03 04:05:06.08 \n";
constexpr std::string_view Protected = "----rwe- 2001-02-03 04:05:06.08 \n";

class ChangesTest : public DosTest {};

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

TEST_F(ChangesTest, DeleteTakesTheEntryAndItsSidecarOnly) {
    Tree.Write("file", "x");
    Tree.Write("file.uaem", Line);
    Tree.Write("target", "kept");
    Tree.Link("link", "target");
    Tree.Plant({"empty/", "full/inner/"});
    Tree.Link("drawerlink", "full");
    for (const std::string_view path : {"Test:file", "Test:link", "Test:drawerlink", "Test:empty/"})
        EXPECT_TRUE(dos::Delete(path)) << path << " " << dos::IoErr();
    EXPECT_EQ(NamesIn("Test:"), (Names{"full", "target"}));
    EXPECT_TRUE(Tree.Exists("full/inner"));
}

TEST_F(ChangesTest, WhatOnlyLooksLikeASidecarStays) {
    Tree.Write("file", "x");
    Tree.Write("file.uaem", "my own text");
    EXPECT_TRUE(dos::Delete("Test:file"));
    EXPECT_EQ(Tree.Read("file.uaem"), "my own text");
    Tree.Write("file", "x");
    EXPECT_TRUE(dos::Rename("Test:file", "Test:other"));
    EXPECT_EQ(Tree.Read("file.uaem"), "my own text");
}

TEST_F(ChangesTest, DeleteRefusesWithTheReason) {
    Tree.Write("noted", "x");
    Tree.Write("noted.uaem", Protected);
    Tree.Write("full/x", "");
    const std::pair<std::string, long> cases[] = {
        {"Test:noted", 222},
        {"Test:full", 216},
        {"Test:none", 205},
        {"Test:noted/x", 212},
        {"Test:", 202},
        {"Nobody:x", 218},
        {"NIL:", 209},
        {"Test:a:b", 210},
        {"Test:..", 205},
        {"Test:none/x", 205},
        {"Test:" + std::string(1020, 'a'), 120},
    };
    for (const auto& [path, error] : cases)
        EXPECT_EQ(Refusal(dos::Delete(path)), error) << path;
    EXPECT_EQ(NamesIn("Test:"), (Names{"full", "noted"}));
    Calls().Unlinkat = Failing<EROFS>();
    EXPECT_EQ(Refusal(dos::Delete("Test:full/x")), dos::ErrorDiskWriteProtected);
}

TEST_F(ChangesTest, ProtectionByAttributeRefusesDeletion) {
    Tree.Write("file", "x");
    if (::setxattr(Tree.Path("file").c_str(), "user.amiga.protection", "----rwe-", 8, 0) != 0)
        GTEST_SKIP() << "no attributes here";
    EXPECT_EQ(Refusal(dos::Delete("Test:file")), dos::ErrorDeleteProtected);
    EXPECT_EQ(Refusal(dos::Open("Test:file", dos::OpenMode::New)), dos::ErrorDeleteProtected);
    EXPECT_TRUE(dos::SetProtection("Test:file", 0));
    EXPECT_TRUE(dos::Delete("Test:file"));
}

// A relative path from a lock on the object itself, and one that goes up through it.
TEST_F(ChangesTest, ObjectsAreFoundWithoutAName) {
    Tree.Drawer("drawer/inner");
    dos::CurrentDir(dos::Lock("Test:drawer/inner"));
    EXPECT_TRUE(dos::SetProtection("", 0));
    EXPECT_EQ(Refusal(dos::Delete("/")), dos::ErrorDirectoryNotEmpty);
    EXPECT_TRUE(dos::Rename("/", "Test:moved"));
    EXPECT_TRUE(dos::Delete(""));
    EXPECT_EQ(NamesIn("Test:moved"), Names());
}

TEST_F(ChangesTest, SoftLinksLeadWhereTheirPathSays) {
    Tree.Write("drawer/file", "content");
    Tree.Drawer("sub/deep");
    const std::string longName(140, 'n');
    Tree.Write("drawer/" + longName, "long");
    const std::string alias = NamesIn("Test:drawer")[1];
    const struct {
        std::string Name, Target, Text;
    } cases[] = {
        {"Test:sub/absolute", "Test:drawer/file", Tree.Path("drawer/file")},
        {"Test:sub/up", "/drawer/file", "../drawer/file"},
        {"Test:sub/deep/up2", "//drawer/file", "../../drawer/file"},
        {"Test:beside", "drawer/file", "drawer/file"},
        {"Test:dangling", "no/such", "no/such"},
        {"Test:byAlias", "drawer/" + alias, "drawer/" + longName},
        {"Test:todrawer", "Test:drawer/", Tree.Path("drawer")},
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(dos::MakeLink(row.Name, row.Target)) << row.Name << " " << dos::IoErr();
        EXPECT_EQ(std::filesystem::read_symlink(Tree.Path(row.Name.substr(5))), row.Text);
    }
    EXPECT_EQ(dos::ReadWhole("Test:sub/deep/up2", 100), "content");
    const std::pair<std::string_view, std::pair<std::string_view, long>> refused[] = {
        {"Test:drawer", {"x", 203}}, {"Test:new", {"Nobody:x", 218}},    {"Test:no/new", {"x", 205}},
        {"Test:new", {"", 210}},     {"Test:new", {"Test:no/x/y", 205}}, {"NIL:x", {"x", 209}},
    };
    for (const auto& [name, why] : refused)
        EXPECT_EQ(Refusal(dos::MakeLink(name, why.first)), why.second) << name << " " << why.first;
}

TEST_F(ChangesTest, HardLinksAreFurtherNamesOfFiles) {
    Tree.Write("file", "content");
    Tree.Drawer("drawer");
    EXPECT_TRUE(dos::MakeLink("Test:drawer/second", dos::Lock("Test:file")));
    EXPECT_TRUE(std::filesystem::equivalent(Tree.Path("file"), Tree.Path("drawer/second")));
    EXPECT_EQ(Refusal(dos::MakeLink("Test:file", dos::Lock("Test:drawer/second"))), dos::ErrorObjectExists);
    EXPECT_EQ(Refusal(dos::MakeLink("Test:third", dos::Lock("Test:drawer"))), dos::ErrorObjectWrongType);
    EXPECT_EQ(Refusal(dos::MakeLink("Test:third", dos::Lock("Host:proc/version"))),
              dos::ErrorRenameAcrossDevices);
}

TEST_F(ChangesTest, HardLinkThatIsForbiddenIsToldFromOneThatCannotBe) {
    Tree.Write("file", "");
    const dos::FileLock lock = dos::Lock("Test:file");
    Calls().LinkObject = Failing<EPERM>();
    EXPECT_EQ(Refusal(dos::MakeLink("Test:link", lock)), dos::ErrorActionNotKnown);
    Calls().Statx = [](int drawer, const char* name, int flags, unsigned mask, struct statx* result) {
        const int done = dos::RealHost().Statx(drawer, name, flags, mask, result);
        result->stx_uid = ::geteuid() + 1;
        return done;
    };
    EXPECT_EQ(Refusal(dos::MakeLink("Test:link", lock)), dos::ErrorWriteProtected);
}

TEST_F(ChangesTest, HolesStayWhenAnOldFileIsChanged) {
    Tree.Write("file", "begin");
    std::filesystem::resize_file(Tree.Path("file"), 64u << 20);
    Calls().Clone = Failing<ENOTSUP>();
    dos::FileHandle file = dos::Open("Test:file", dos::OpenMode::Old);
    EXPECT_EQ(dos::Write(file, Bytes("B")), 1);
    ASSERT_TRUE(dos::Close(file));
    struct stat about {};
    ASSERT_EQ(::stat(Tree.Path("file").c_str(), &about), 0);
    EXPECT_EQ(about.st_size, 64 << 20);
    EXPECT_LT(about.st_blocks, 1024);
}

// The host has no path for what lies so deep; only from drawer to drawer it is reached.
TEST_F(ChangesTest, ObjectsBeyondTheLongestHostPathAreMadeAndDeletedAgain) {
    const std::string name(120, 'd');
    std::vector<dos::FileLock> way{dos::Lock("Test:")};
    for (int i = 0; i < 40; ++i) {
        dos::CurrentDir(way.back());
        ASSERT_TRUE(dos::CreateDir(name)) << i;
        way.push_back(dos::Lock(name));
        ASSERT_TRUE(way.back()) << i;
    }
    dos::CurrentDir(way.back());
    EXPECT_TRUE(dos::WriteWhole("file", "old"));
    EXPECT_TRUE(dos::WriteWhole("file", "new"));
    EXPECT_TRUE(dos::CreateDir("drawer"));
    EXPECT_TRUE(dos::Rename("drawer", "moved"));
    EXPECT_TRUE(dos::Rename("file", "moved/file"));
    EXPECT_EQ(dos::ReadWhole("moved/file", 10), "new");
    EXPECT_EQ(dos::NameFromLock(way.back()), "");
    EXPECT_EQ(dos::IoErr(), dos::ErrorLineTooLong);
    EXPECT_EQ(Refusal(dos::ExamineObject("moved/file")), dos::ErrorLineTooLong);
    EXPECT_TRUE(dos::Delete("moved/file"));
    EXPECT_TRUE(dos::Delete("moved"));
    while (way.size() > 1) {
        way.pop_back();
        dos::CurrentDir(way.back());
        EXPECT_TRUE(dos::Delete(name)) << way.size();
    }
}

TEST_F(ChangesTest, WrittenFilesAppearWhenTheyAreClosed) {
    dos::FileHandle file = dos::Open("Test:new", dos::OpenMode::New);
    ASSERT_TRUE(file);
    EXPECT_EQ(dos::Write(file, Bytes("0123456789")), 10);
    EXPECT_FALSE(Tree.Exists("new"));
    EXPECT_EQ(dos::Seek(file, 2, dos::SeekFrom::Beginning), 2);
    EXPECT_EQ(dos::Write(file, Bytes("ab")), 2);
    EXPECT_EQ(dos::SetFileSize(file, -4, dos::SeekFrom::End), 6);
    EXPECT_EQ(dos::Seek(file, 7, dos::SeekFrom::Beginning), -1);
    EXPECT_EQ(dos::IoErr(), dos::ErrorSeekError);
    EXPECT_TRUE(dos::Close(file));
    EXPECT_FALSE(file);
    EXPECT_EQ(Tree.Read("new"), "01ab45");
    EXPECT_EQ(Refusal(dos::Close(file)), dos::ErrorInvalidLock);
    EXPECT_EQ(NamesIn("Test:"), Names{"new"});
}

TEST_F(ChangesTest, OldFilesAreChangedInPlaceOfTheirName) {
    Tree.Write("file", "0123456789");
    ASSERT_EQ(::chmod(Tree.Path("file").c_str(), 0640), 0);
    Tree.Link("link", "file");
    dos::FileHandle file = dos::Open("Test:link", dos::OpenMode::Old);
    EXPECT_EQ(dos::Seek(file, 4, dos::SeekFrom::Beginning), 4);
    EXPECT_EQ(dos::Write(file, Bytes("xy")), 2);
    EXPECT_EQ(Tree.Read("file"), "0123456789");
    EXPECT_TRUE(dos::Close(file));
    EXPECT_EQ(Tree.Read("file"), "0123xy6789");
    EXPECT_EQ(dos::ExamineObject("Test:file")->Protection, 0x802u);
    file = dos::Open("Test:made", dos::OpenMode::ReadWrite);
    EXPECT_TRUE(dos::Close(file));
    file = dos::Open("Test:file", dos::OpenMode::ReadWrite);
    EXPECT_EQ(dos::SetFileSize(file, 12, dos::SeekFrom::Beginning), 12);
    EXPECT_TRUE(dos::Close(file));
    EXPECT_EQ(Tree.Read("file"), std::string("0123xy6789\0\0", 12));
    EXPECT_EQ(NamesIn("Test:"), (Names{"file", "link", "made"}));
}

TEST_F(ChangesTest, AbandonedWritingLeavesTheOldFile) {
    Tree.Write("file", "old");
    {
        dos::FileHandle fresh = dos::Open("Test:file", dos::OpenMode::New);
        EXPECT_EQ(dos::Write(fresh, Bytes("new")), 3);
        dos::FileHandle changed = dos::Open("Test:file", dos::OpenMode::Old);
        EXPECT_EQ(dos::Write(changed, Bytes("new")), 3);
        dos::FileHandle none = dos::Open("Test:none", dos::OpenMode::ReadWrite);
    }
    EXPECT_EQ(Tree.Read("file"), "old");
    EXPECT_EQ(NamesIn("Test:"), Names{"file"});
}

TEST_F(ChangesTest, NewFileDoesNotReplaceWhatCameMeanwhile) {
    dos::FileHandle file = dos::Open("Test:file", dos::OpenMode::New);
    Tree.Write("file", "another's");
    EXPECT_EQ(Refusal(dos::Close(file)), dos::ErrorObjectExists);
    EXPECT_EQ(Tree.Read("file"), "another's");
    EXPECT_EQ(NamesIn("Test:"), Names{"file"});
}

TEST_F(ChangesTest, ProtectedFilesRefuseWriting) {
    Tree.Write("closed", "old");
    ASSERT_EQ(::chmod(Tree.Path("closed").c_str(), 0444), 0);
    Tree.Drawer("drawer");
    for (const dos::OpenMode mode : {dos::OpenMode::Old, dos::OpenMode::ReadWrite}) {
        dos::FileHandle file = dos::Open("Test:closed", mode);
        ASSERT_TRUE(file);
        EXPECT_EQ(dos::Write(file, Bytes("new")), -1);
        EXPECT_EQ(dos::IoErr(), dos::ErrorWriteProtected);
        EXPECT_EQ(Refusal(dos::Close(file)), dos::ErrorWriteProtected);
    }
    const std::pair<std::string_view, long> cases[] = {
        {"Test:closed", 223}, {"Test:drawer", 212}, {"Test:no/x", 205}, {"Test:", 212}};
    for (const auto& [path, error] : cases)
        EXPECT_EQ(Refusal(dos::Open(path, dos::OpenMode::New)), error) << path;
    EXPECT_EQ(Tree.Read("closed"), "old");
}

TEST_F(ChangesTest, HardLinkedFileIsReplacedUnderOneName) {
    Tree.Write("one", "old");
    std::filesystem::create_hard_link(Tree.Path("one"), Tree.Path("two"));
    dos::FileHandle file = dos::Open("Test:one", dos::OpenMode::New);
    EXPECT_EQ(dos::Write(file, Bytes("new")), 3);
    EXPECT_TRUE(dos::Close(file));
    EXPECT_EQ(Tree.Read("one"), "new");
    EXPECT_EQ(Tree.Read("two"), "old");
}

TEST_F(ChangesTest, InfoCountsBeyondThirtyTwoBits) {
    Calls().Fstatvfs = [](int, struct statvfs* result) {
        *result = {};
        result->f_frsize = 4096;
        result->f_blocks = 10'000'000'000;
        result->f_bfree = 4'000'000'000;
        result->f_bavail = 3'000'000'000;
        result->f_flag = ST_RDONLY;
        return 0;
    };
    const auto info = dos::Info("Test:");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->Blocks, 10'000'000'000u);
    EXPECT_EQ(info->BlocksUsed, 7'000'000'000u);
    EXPECT_EQ(info->BytesPerBlock, 4096u);
    EXPECT_EQ(info->State, dos::DiskState::WriteProtected);
    EXPECT_EQ(Refusal(dos::Info("Nobody:")), dos::ErrorDeviceNotMounted);
}

} // namespace
