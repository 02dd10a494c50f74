#include "platform/dos/Dates.h"
#include "platform/dos/Files.h"
#include "tests/platform/dos/DosTest.h"

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>

namespace {

class ExamineTest : public DosTest {};

using testing::ElementsAre;

TEST_F(ExamineTest, EveryKindOfObjectHasItsTypeInAListing) {
    Tree.Write("file", "12345");
    Tree.Drawer("drawer");
    Tree.Link("link", "file");
    Tree.Link("dangling", "nowhere");
    std::filesystem::create_hard_link(Tree.Path("file"), Tree.Path("hard"));
    ASSERT_EQ(::mkfifo(Tree.Path("pipe").c_str(), 0600), 0);
    Tree.Socket("socket");
    const std::uint32_t soft = dos::TypeLinkFlag | dos::LinkSoft;
    const std::map<std::string, std::uint32_t> expected = {
        {"file", dos::TypeFile},    {"drawer", dos::TypeDrawer}, {"link", soft},
        {"dangling", soft},         {"hard", dos::TypeFile},     {"pipe", dos::TypePipe},
        {"socket", dos::TypeSocket}};
    std::map<std::string, std::uint32_t> found;
    for (const auto& [name, object] : List("Test:"))
        found[name] = object.Type;
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(List("Test:")["file"].Size, 5u);
    EXPECT_EQ(List("Test:")["drawer"].Size, 0u);
    EXPECT_EQ(dos::ExamineObject("Host:dev/null")->Type, dos::TypeDevice);
}

TEST_F(ExamineTest, ExamineObjectFollowsLinksAndNamesRootsAfterTheirVolume) {
    Tree.Write("a/file", "123");
    Tree.Link("link", "a/file");
    Tree.Link("dangling", "nowhere");
    const auto object = dos::ExamineObject("Test:link");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->Type, dos::TypeFile);
    EXPECT_EQ(object->Name, "file");
    EXPECT_EQ(object->Size, 3u);
    EXPECT_EQ(dos::ExamineObject("Test:")->Name, "Test");
    EXPECT_EQ(dos::ExamineObject("Test:")->Type, dos::TypeDrawer);
    EXPECT_EQ(Refusal(dos::ExamineObject("Test:dangling")), dos::ErrorObjectNotFound);
}

TEST_F(ExamineTest, LinkTargetsAreAmigaPaths) {
    Tree.Link("absolute", Tree.Path("x/y"));
    Tree.Link("elsewhere", "/no/such place");
    Tree.Link("root", "/");
    Tree.Link("beside", "./x/y");
    Tree.Link("above", "../../x");
    Tree.Link("detour", "x/../y");
    Tree.Link("end", "x/..");
    Tree.Link("colon", "a:b");
    const std::map<std::string, std::string> expected = {{"absolute", "Test:x/y"},
                                                         {"elsewhere", "Host:no/such place"},
                                                         {"root", "Host:"},
                                                         {"beside", "x/y"},
                                                         {"above", "//x"},
                                                         {"detour", "x//y"},
                                                         {"end", "x//"}};
    const auto listed = List("Test:");
    for (const auto& [name, target] : expected)
        EXPECT_EQ(listed.at(name).LinkTarget, target) << name;
    EXPECT_EQ(listed.at("colon").LinkTarget.find(':'), std::string::npos);
}

TEST_F(ExamineTest, ProtectionMirrorsTheModes) {
    struct ModeCase {
        unsigned Mode;
        std::uint32_t Protection;
    };
    Tree.Write("file", "");
    for (const ModeCase row : {ModeCase{0700, 0},
                               {0600, dos::ProtectExecute},
                               {0000, 0xE},
                               {0640, 0x802},
                               {0777, 0xEE00},
                               {0604, 0x8002},
                               {0731, 0x2600}}) {
        ASSERT_EQ(::chmod(Tree.Path("file").c_str(), row.Mode), 0);
        EXPECT_EQ(dos::ExamineObject("Test:file")->Protection, row.Protection) << std::oct << row.Mode;
        EXPECT_EQ(List("Test:")["file"].Protection, row.Protection) << std::oct << row.Mode;
    }
}

TEST_F(ExamineTest, DatesComeThroughTheLocalCalendar) {
    Tree.Write("file", "");
    const timespec times[2] = {{1000000000, 0}, {1000000000, 999}};
    ASSERT_EQ(::utimensat(AT_FDCWD, Tree.Path("file").c_str(), times, 0), 0);
    EXPECT_EQ(List("Test:")["file"].Date, dos::AmigaSecondsFromUnix(1000000000));
    EXPECT_EQ(dos::ExamineObject("Test:file")->Date, dos::AmigaSecondsFromUnix(1000000000));
}

TEST_F(ExamineTest, AwkwardNamesAreListedAsBytes) {
    const std::vector<std::string> names = {" ", ".hidden", "a\"b", "line\nbreak", "x.uaem", "\x80\xFF"};
    for (const std::string& name : names)
        Tree.Write(name, "");
    EXPECT_EQ(NamesIn("Test:"), names); // a sidecar without its file is a file
}

TEST_F(ExamineTest, NamesThatDoNotFitHaveAliasesUnderWhichEverythingWorks) {
    const std::string head(140, 'h');
    const std::vector<std::string> names = {head + "1.jpeg",
                                            head + "2.jpeg",
                                            head + "1.jpeg.info",
                                            std::string(255, '\xE4'),
                                            "a:b.txt",
                                            "a\uA789b.txt",
                                            "::",
                                            std::string(60, 'x') + ":" + std::string(60, 'x') + ".info"};
    for (const std::string& name : names)
        Tree.Write(name, "text of " + name);
    Tree.Write("d:r/inner", "");
    std::set<std::string> texts;
    for (const std::string& alias : NamesIn("Test:")) {
        EXPECT_LE(alias.size(), 127u) << alias;
        EXPECT_EQ(alias.find(':'), std::string::npos) << alias;
        if (dos::ExamineObject("Test:" + alias)->Type != dos::TypeFile)
            continue;
        EXPECT_EQ(Find("Test:" + alias), "Test:" + alias);
        EXPECT_EQ(dos::ExamineObject("Test:" + alias)->Name, alias);
        texts.insert(dos::ReadWhole("Test:" + alias, 1000).value_or("unreadable " + alias));
    }
    std::set<std::string> expected;
    for (const std::string& name : names)
        expected.insert("text of " + name);
    EXPECT_EQ(texts, expected);
}

TEST_F(ExamineTest, AliasOfAnIconIsThatOfItsFileWithTheSuffix) {
    const std::string name = std::string(150, 'n') + ":.mod";
    Tree.Write(name, "");
    Tree.Write(name + ".info", "icon");
    const std::vector<std::string> names = NamesIn("Test:");
    ASSERT_EQ(names.size(), 2u);
    EXPECT_EQ(names[1], names[0] + ".info");
    EXPECT_TRUE(names[0].ends_with(".mod"));
    EXPECT_EQ(dos::ReadWhole("Test:" + names[0] + ".info", 10), "icon");
}

// A name that is made to look like the alias of another file gets no hold of that file.
TEST_F(ExamineTest, AliasIsNeverTheNameOfAnotherFile) {
    const std::string real = "a:b";
    Tree.Write(real, "real");
    const std::string alias = NamesIn("Test:").front();
    Tree.Write(alias, "impostor");
    const std::vector<std::string> names = NamesIn("Test:");
    ASSERT_EQ(names.size(), 2u);
    std::set<std::string> texts;
    for (const std::string& name : names)
        texts.insert(dos::ReadWhole("Test:" + name, 100).value_or(""));
    EXPECT_EQ(texts, (std::set<std::string>{"real", "impostor"}));
    EXPECT_EQ(dos::ReadWhole("Test:" + alias, 100), "impostor");
}

TEST_F(ExamineTest, LargeDrawersAreListedWholeAndInDirectoryOrder) {
    std::vector<std::string> order;
    for (int i = 0; i < 5000; ++i)
        Tree.Write(std::to_string(i), std::string(static_cast<std::size_t>(i % 50), 'x'));
    if (DIR* drawer = ::opendir(Tree.Root().c_str())) {
        while (const dirent* entry = ::readdir(drawer))
            if (entry->d_name[0] != '.')
                order.emplace_back(entry->d_name);
        ::closedir(drawer);
    }
    std::vector<std::string> listed;
    dos::DirContext context = dos::ObtainDirContext("Test:");
    while (const dos::ExamineData* object = dos::ExamineDir(context)) {
        EXPECT_EQ(object->Size, std::stoul(object->Name) % 50);
        listed.push_back(object->Name);
    }
    EXPECT_EQ(listed, order);
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
}

TEST_F(ExamineTest, WalkMayBeLeftHalfWay) {
    for (int i = 0; i < 3000; ++i)
        Tree.Write(std::to_string(i), "");
    for (int round = 0; round < 20; ++round) {
        dos::DirContext context = dos::ObtainDirContext("Test:");
        EXPECT_NE(dos::ExamineDir(context), nullptr);
    }
}

TEST_F(ExamineTest, WhatCannotBeListedSaysWhy) {
    Tree.Write("file", "");
    EXPECT_EQ(Refusal(dos::ObtainDirContext("Test:file")), dos::ErrorObjectWrongType);
    EXPECT_EQ(Refusal(dos::ObtainDirContext("Test:none")), dos::ErrorObjectNotFound);
    const dos::FileLock root = dos::Lock("Test:");
    Calls().Openat = Failing<EACCES>();
    EXPECT_EQ(Refusal(dos::ObtainDirContext(root)), dos::ErrorReadProtected);
}

TEST_F(ExamineTest, DrawerThatCannotBeReadOnKeepsWhatWasFound) {
    Tree.Plant({"a", "b"});
    static bool hasRead = false;
    hasRead = false;
    Calls().Getdents = [](int drawer, void* buffer, std::size_t size) -> long {
        if (std::exchange(hasRead, true)) {
            errno = EIO;
            return -1;
        }
        return dos::RealHost().Getdents(drawer, buffer, size);
    };
    EXPECT_THAT(NamesIn("Test:"), ElementsAre("a", "b"));
    EXPECT_NE(dos::IoErr(), dos::ErrorNoMoreEntries);
}

TEST_F(ExamineTest, ObjectsThatVanishArePassedOverAndClosedOnesKeepTheirName) {
    for (const char* name : {"gone", "closed", "plain"})
        Tree.Write(name, "1");
    Calls().Statx = [](int drawer, const char* name, int flags, unsigned mask, struct statx* result) {
        const std::string_view wanted = name;
        errno = wanted == "gone" ? ENOENT : EACCES;
        return wanted == "gone" || wanted == "closed"
                   ? -1
                   : dos::RealHost().Statx(drawer, name, flags, mask, result);
    };
    auto listed = List("Test:");
    EXPECT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed["closed"].Type, dos::TypeFile);
    EXPECT_EQ(listed["closed"].Protection & 0xFF, 0xEu);
    EXPECT_EQ(listed["plain"].Size, 1u);
}

TEST_F(ExamineTest, NothingWaitsForPipes) {
    ASSERT_EQ(::mkfifo(Tree.Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(dos::ExamineObject("Test:pipe")->Type, dos::TypePipe);
    EXPECT_EQ(Refusal(dos::OpenOld("Test:pipe")), dos::ErrorObjectWrongType);
}

} // namespace
