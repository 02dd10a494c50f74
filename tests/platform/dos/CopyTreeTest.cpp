#include "platform/dos/CopyTree.h"

#include "platform/dos/Changes.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostFd.h"
#include "tests/platform/dos/DosTest.h"

#include <fcntl.h>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

namespace fs = std::filesystem;

// Every entry below a drawer with what a user would miss if it changed.
std::map<std::string, std::string> Look(const std::string& root) {
    std::map<std::string, std::string> picture;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        struct stat about {};
        EXPECT_EQ(::lstat(entry.path().c_str(), &about), 0);
        std::string text = std::to_string(about.st_mode) + " " + std::to_string(about.st_mtim.tv_sec) + "." +
                           std::to_string(about.st_mtim.tv_nsec) + " ";
        if (entry.is_symlink())
            text += fs::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            text += std::string(std::istreambuf_iterator<char>(std::ifstream(entry.path()).rdbuf()), {});
        if (entry.path().filename() == "noted.uaem") // it is written anew
            text.erase(0, text.find("-s-"));
        picture[entry.path().string().substr(root.size())] = text;
    }
    return picture;
}

void MakeOld(const std::string& root) {
    std::vector<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        paths.push_back(entry.path().string());
    long at = 0;
    for (const std::string& path : paths) {
        const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000 + ++at, at}};
        EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
}

class CopyTreeTest : public DosTest {
protected:
    void PlantAwkward() {
        for (const char* name : {"from/plain", "from/new\nline", "from/quo\"te's", "from/bad\xff\xfe utf",
                                 "from/a/b/c/deep", "from/noted", "from/only.uaem"})
            Tree.Write(name, name);
        Tree.Write("from/" + std::string(255, 'l'), "long");
        Tree.Write("from/noted.uaem", "-s-arwed 2001-02-03 04:05:06.08 A note\n");
        Tree.Drawer("from/empty");
        Tree.Link("from/link", "a/b");
        Tree.Link("from/broken", "/nowhere");
        fs::create_hard_link(Tree.Path("from/plain"), Tree.Path("from/twin"));
        ASSERT_EQ(::chmod(Tree.Path("from/a/b").c_str(), 0555), 0);
        MakeOld(Tree.Path("from"));
    }
    // Notes what goes wrong and gives one answer to all of it.
    dos::TreeControl Answering(dos::TroubleAnswer answer) {
        dos::TreeControl control;
        control.Trouble = [this, answer](const dos::TreeTrouble& trouble) {
            Troubles[trouble.Path] = trouble.Error;
            return answer;
        };
        return control;
    }
    std::map<std::string, long> Troubles;
};

TEST_F(CopyTreeTest, TreeIsCopiedWithAllThatIsInIt) {
    PlantAwkward();
    std::size_t finished = 0;
    dos::TreeControl control;
    control.Finished = [&](const std::string&, bool) { ++finished; };
    const dos::TreeResult result = dos::CopyTree("Test:from", "Test:to", {}, control);
    ASSERT_TRUE(result) << result.FirstError;
    EXPECT_EQ(result.Lost, 0u);
    EXPECT_EQ(Look(Tree.Path("to")), Look(Tree.Path("from")));
    EXPECT_EQ(result.Done.Objects, finished);
    EXPECT_EQ(dos::ExamineObject("Test:to/noted")->Comment, "A note");
}

using Errors = std::map<std::string, long>;

TEST_F(CopyTreeTest, WhatCannotBeCopiedIsToldAndTheRestGoesOn) {
    for (const char* name : {"from/a/file", "from/closed", "from/z"})
        Tree.Write(name, name);
    ::mkfifo(Tree.Path("from/a/pipe").c_str(), 0600);
    ::mknod(Tree.Path("from/device").c_str(), S_IFCHR | 0600, 0);
    ASSERT_EQ(::mknod(Tree.Path("from/a/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        if (std::string_view(name) == "closed") {
            errno = EACCES;
            return -1;
        }
        return dos::RealHost().Openat(drawer, name, flags, mode);
    };
    const dos::TreeResult result =
        dos::CopyTree("Test:from", "Test:to", {}, Answering(dos::TroubleAnswer::Skip));
    EXPECT_FALSE(result);
    Errors wanted{{"a/pipe", 212}, {"a/socket", 212}, {"closed", 224}};
    if (Tree.Exists("from/device"))
        wanted["device"] = 212;
    EXPECT_EQ(Troubles, wanted);
    EXPECT_EQ(result.Skipped, wanted.size());
    EXPECT_EQ(Tree.Read("to/a/file") + Tree.Read("to/z"), "from/a/filefrom/z");
}

// A stick has neither attributes nor modes; what its sidecars tell is not lost there.
TEST_F(CopyTreeTest, WhatASidecarTellsIsNoLoss) {
    Tree.Drawer("stick");
    AddDisk("TU0", "Stick", Tree.Path("stick"), dos::NameRule::Exact, dos::MetadataRule::Uaem);
    Tree.Write("from/f", "text");
    for (const char* path : {"Test:from", "Test:from/f"})
        if (!dos::SetProtection(path, dos::ProtectScript | dos::ProtectDelete) ||
            !dos::SetComment(path, "A note"))
            GTEST_SKIP() << "no attributes here";
    Calls().Fsetxattr = Failing<ENOTSUP>();
    Calls().Fchmod = Failing<EPERM>();
    EXPECT_EQ(dos::CopyTree("Test:from", "Stick:tree").Lost, 0u);
    EXPECT_EQ(dos::Copy("Test:from", "Stick:drawer").Lost, 0u);
    EXPECT_EQ(dos::Copy("Test:from/f", "Stick:f").Lost, 0u);
    for (const char* path : {"Stick:tree", "Stick:tree/f", "Stick:drawer", "Stick:f"})
        EXPECT_EQ(dos::ExamineObject(path)->Comment, "A note") << path;
    ASSERT_TRUE(dos::SetComment("Test:from/f", std::string(100, 'n')));
    EXPECT_EQ(dos::Copy("Test:from/f", "Stick:long").Lost, dos::LostComment);
    EXPECT_NE(dos::Copy("Test:from/f", "Test:plain").Lost, 0u);
}

// Where names are folded twins meet, and neither is lost unasked; where bits belong into files they go there.
TEST_F(CopyTreeTest, VolumesOfOtherKindsTakeATree) {
    Tree.Drawer("kept");
    AddDisk("TD1", "Kept", Tree.Path("kept"), dos::NameRule::Fold, dos::MetadataRule::Uaem);
    for (const char* name : {"from/a/File", "from/a/FILE", "from/b/one", "from/B/two"})
        Tree.Write(name, name);
    ASSERT_TRUE(dos::SetProtection("Test:from/b/one", 0x42));
    dos::TreeControl control;
    control.Conflict = [](const dos::TreeConflict&) -> dos::ConflictReply {
        return {dos::ConflictAnswer::Rename, "twin"};
    };
    const dos::TreeResult result = dos::CopyTree("Test:from", "Kept:to", {}, control);
    ASSERT_TRUE(result) << result.FirstError;
    EXPECT_EQ(NamesIn("Kept:to/a").size(), 2u);
    EXPECT_TRUE(Tree.Exists("kept/to/a/twin"));
    EXPECT_EQ(*dos::ReadWhole("Kept:to/b/one", 100) + *dos::ReadWhole("Kept:to/b/two", 100),
              "from/b/onefrom/B/two");
    EXPECT_EQ(dos::ExamineObject("Kept:to/B/one")->Protection & 0xFF, 0x42u);

    // Replacing is for what was there before, not for the copy of a twin.
    for (const char* name : {"again/File", "again/FILE", "again/d/x", "again/D/X", "kept/2/file"})
        Tree.Write(name, name);
    control.Conflict = [](const dos::TreeConflict&) -> dos::ConflictReply {
        return {dos::ConflictAnswer::Replace};
    };
    int troubles = 0;
    control.Trouble = [&](const dos::TreeTrouble& trouble) {
        EXPECT_EQ(trouble.Error, 203);
        ++troubles;
        return dos::TroubleAnswer::Skip;
    };
    EXPECT_EQ(dos::CopyTree("Test:again", "Kept:2", {.Copy = {.Replaces = true}}, control).Skipped, 2u);
    EXPECT_EQ(troubles, 2);
    EXPECT_EQ(dos::CopyTree("Test:again", "Kept:3", {.Copy = {.Replaces = true}}).Skipped, 2u);
    EXPECT_NE(Tree.Read("kept/2/file"), "kept/2/file");
}

// What a name is called in the drawer "fat": there the host folds, keeps no dot at the end and says neither.
std::string FatName(int drawer, const char* name) {
    std::string text = name;
    if (dos::HostPathOf(drawer).find("/fat") == std::string::npos || text.starts_with('.'))
        return text;
    for (char& c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    if (text.ends_with('.'))
        text.pop_back();
    if (text == "\xC3\x84") // what nobody here takes for twins: umlauts
        text = "a\xCC\x88";
    return text;
}

TEST_F(CopyTreeTest, TwinsAreNotLostWhereTheHostFolds) {
    Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
        return dos::RealHost().Openat(drawer, FatName(drawer, name).c_str(), flags, mode);
    };
    Calls().Mkdirat = [](int drawer, const char* name, unsigned mode) {
        return dos::RealHost().Mkdirat(drawer, FatName(drawer, name).c_str(), mode);
    };
    Calls().LinkObject = [](int object, int drawer, const char* name) {
        return dos::RealHost().LinkObject(object, drawer, FatName(drawer, name).c_str());
    };
    Calls().Renameat2 = [](int from, const char* name, int to, const char* toName, unsigned flags) {
        return dos::RealHost().Renameat2(from, FatName(from, name).c_str(), to, FatName(to, toName).c_str(),
                                         flags);
    };
    const std::vector<std::string> files{"File", "FILE", "dot",        "dot.",        "D/x",
                                         "d/x",  "d/y",  "u/\xC3\x84", "u/a\xCC\x88", "one"};
    for (const std::string& name : files)
        Tree.Write("from/" + name, name);
    Tree.Write("fat/old/file", "old");
    for (const std::string to : {"fat/new", "fat/old"}) {
        const dos::TreeResult result = dos::CopyTree("Test:from", "Test:" + to, {.Copy = {.Replaces = true}});
        EXPECT_EQ(result.Skipped, 4u) << to;
        EXPECT_EQ(result.FirstError, 203) << to;
        EXPECT_NE(Tree.Read(to + "/file"), "old");
        EXPECT_EQ(Tree.Read(to + "/d/y") + Tree.Read(to + "/one"), "d/yone");
    }
}

TEST_F(CopyTreeTest, ConflictsAreAskedAndAnswered) {
    for (const char* name : {"from/skip", "from/replace", "from/rename", "from/d/skip", "from/e/file"})
        Tree.Write(name, "new");
    for (const char* name : {"to/skip", "to/replace", "to/rename", "to/d/skip", "to/e/file", "to/d/other"})
        Tree.Write(name, "old");
    dos::TreeControl control;
    control.Conflict = [](const dos::TreeConflict& conflict) -> dos::ConflictReply {
        if (conflict.Path == "replace" || conflict.Path == "d")
            return {dos::ConflictAnswer::Replace};
        if (conflict.Path == "rename" || conflict.Path == "e")
            return {dos::ConflictAnswer::Rename, conflict.Path + " 2"};
        return {};
    };
    const dos::TreeResult result = dos::CopyTree("Test:from", "Test:to", {.MergesDrawers = false}, control);
    EXPECT_EQ(result.Skipped, 2u);
    for (const auto& [name, text] : {std::pair{"skip", "old"},
                                     {"replace", "new"},
                                     {"rename", "old"},
                                     {"rename 2", "new"},
                                     {"d/skip", "old"},
                                     {"d/other", "old"},
                                     {"e/file", "old"},
                                     {"e 2/file", "new"}})
        EXPECT_EQ(Tree.Read(std::string("to/") + name), text) << name;
    ASSERT_TRUE(dos::CopyTree("Test:from", "Test:to", {.Copy = {.Replaces = true}}));
    EXPECT_EQ(Tree.Read("to/d/skip"), "new");
}

TEST_F(CopyTreeTest, ADrawerIntoItselfIsRefusedBeforeAnythingHappens) {
    Tree.Write("from/a/file", "x");
    for (const char* to : {"Test:from", "Test:from/copy", "Test:from/a"})
        EXPECT_EQ(Refusal(dos::CopyTree("Test:from", to)), 202) << to;
    EXPECT_EQ(Look(Tree.Path("from")).size(), 2u);
}

TEST_F(CopyTreeTest, ProtectedTargetsAreForcedWhenAsked) {
    Tree.Write("from/file", "new");
    Tree.Write("to/file", "old");
    ::setxattr(Tree.Path("to/file").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
    const dos::TreeOptions replacing{.Copy = {.Replaces = true}};
    EXPECT_FALSE(dos::CopyTree("Test:from", "Test:to", replacing, Answering(dos::TroubleAnswer::Skip)));
    EXPECT_EQ(Troubles, (Errors{{"file", 222}}));
    EXPECT_EQ(Tree.Read("to/file"), "old");
    EXPECT_TRUE(dos::CopyTree("Test:from", "Test:to", replacing, Answering(dos::TroubleAnswer::Force)));
    EXPECT_EQ(Tree.Read("to/file"), "new");
}

TEST_F(CopyTreeTest, DeepTreesNeedFewDescriptorsBothWays) {
    constexpr int Levels = 1500;
    int at = ::open(Tree.Root().c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < Levels; ++i) {
        const char* name = i == 0 ? "deep" : "a drawer";
        ASSERT_EQ(::mkdirat(at, name, 0777), 0);
        const int next = ::openat(at, name, O_RDONLY | O_DIRECTORY);
        ::close(::openat(next, "file", O_CREAT | O_WRONLY, 0666));
        ::close(std::exchange(at, next));
    }
    ::close(at);
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &old), 0);
    const rlimit few{300, old.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const dos::TreeResult copied = dos::CopyTree("Test:deep", "Test:copy");
    const dos::TreeResult gone = dos::DeleteTree("Test:deep");
    const dos::TreeResult goneToo = dos::DeleteTree("Test:copy");
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &old), 0);
    for (const dos::TreeResult& result : {copied, gone, goneToo}) {
        EXPECT_TRUE(result) << result.FirstError;
        EXPECT_EQ(result.Done.Objects, 2u * Levels);
    }
    EXPECT_TRUE(NamesIn("Test:").empty());
}

TEST_F(CopyTreeTest, DeletingRespectsProtectionAndFollowsNoLink) {
    for (const char* name :
         {"tree/a/kept", "tree/a/goes", "tree/guarded/inside", "tree/note", "outside/file"})
        Tree.Write(name, "x");
    Tree.Write("tree/note.uaem", "----rwe- 2001-02-03 04:05:06.08 A note\n");
    Tree.Link("tree/link", Tree.Path("outside"));
    ::setxattr(Tree.Path("tree/a/kept").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
    ::setxattr(Tree.Path("tree/guarded").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
    const auto keeping = Answering(dos::TroubleAnswer::Skip);
    EXPECT_FALSE(dos::DeleteTree("Test:tree", dos::Protected::Respected, keeping));
    EXPECT_EQ(Troubles, (Errors{{"a/kept", 222}, {"guarded", 222}, {"note", 222}}));
    EXPECT_TRUE(Tree.Exists("tree/a/kept") && Tree.Exists("tree/guarded/inside") &&
                Tree.Exists("tree/note.uaem"));
    EXPECT_FALSE(Tree.Exists("tree/a/goes") || Tree.Exists("tree/link"));
    const auto forcing = Answering(dos::TroubleAnswer::Force);
    EXPECT_TRUE(dos::DeleteTree("Test:tree/guarded", dos::Protected::Respected, forcing));
    EXPECT_TRUE(dos::DeleteTree("Test:tree", dos::Protected::Forced)) << dos::IoErr();
    EXPECT_FALSE(Tree.Exists("tree"));
    EXPECT_TRUE(Tree.Exists("outside/file"));
}

// Whoever is not root meets this: the host wants permissions of the drawer, AmigaDOS the bit of the object.
TEST_F(CopyTreeTest, ADrawerThatMayNotBeWrittenLetsItsEntriesGo) {
    for (const char* name : {"shut/one", "shut/sub/two", "shut/kept"})
        Tree.Write(name, "x");
    Tree.Write("shut/kept.uaem", "----rwe- 2001-02-03 04:05:06.08 \n");
    ::chmod(Tree.Path("shut/sub").c_str(), 0444);
    ::chmod(Tree.Path("shut").c_str(), 0555);
    Calls().Unlinkat = [](int drawer, const char* name, int flags) {
        struct stat about {};
        constexpr unsigned needed = S_IWUSR | S_IXUSR;
        if (::fstatat(drawer, "", &about, AT_EMPTY_PATH) == 0 && (about.st_mode & needed) != needed) {
            errno = EACCES;
            return -1;
        }
        return dos::RealHost().Unlinkat(drawer, name, flags);
    };
    EXPECT_TRUE(dos::Delete("Test:shut/one")) << dos::IoErr();
    EXPECT_FALSE(
        dos::DeleteTree("Test:shut", dos::Protected::Respected, Answering(dos::TroubleAnswer::Skip)));
    EXPECT_EQ(Troubles, (Errors{{"kept", 222}}));
    EXPECT_EQ(NamesIn("Test:shut"), std::vector<std::string>{"kept"});
    EXPECT_EQ(fs::status(Tree.Path("shut")).permissions(), fs::perms(0555));
    ::chmod(Tree.Path("shut").c_str(), 0755);
}

// Whoever is not root meets this: the host tells no attribute of what its owner may not read.
TEST_F(CopyTreeTest, WhatItsOwnerMayNotReadIsDeletedToo) {
    for (const char* name : {"tree/unread", "tree/protected"}) {
        Tree.Write(name, "x");
        ::chmod(Tree.Path(name).c_str(), 0);
    }
    std::filesystem::create_directory(Tree.Path("tree/empty"));
    ::chmod(Tree.Path("tree/empty").c_str(), 0);
    ::setxattr(Tree.Path("tree/protected").c_str(), "user.amiga.protection", "----rwe-", 8, 0);
    Calls().Getxattr = [](int drawer, const char* name, const char* attribute, void* buffer,
                          std::size_t size) -> long {
        struct stat about {};
        if (::fstatat(drawer, name, &about, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH) == 0 &&
            (about.st_mode & S_IRUSR) == 0) {
            errno = EACCES;
            return -1;
        }
        return dos::RealHost().Getxattr(drawer, name, attribute, buffer, size);
    };
    EXPECT_FALSE(
        dos::DeleteTree("Test:tree", dos::Protected::Respected, Answering(dos::TroubleAnswer::Skip)));
    EXPECT_EQ(Troubles, (Errors{{"protected", 222}}));
    EXPECT_FALSE(Tree.Exists("tree/unread") || Tree.Exists("tree/empty"));
}

TEST_F(CopyTreeTest, ACancelStopsBothThreadsAndLeavesWholeFiles) {
    for (int i = 0; i < 300; ++i)
        Tree.Write("from/" + std::to_string(i % 7) + "/" + std::to_string(i), std::string(5000, 'x'));
    dos::TreeControl control;
    std::set<std::string> finished;
    control.Finished = [&](const std::string& path, bool) { finished.insert(path); };
    control.Progress = [](const dos::TreeProgress& progress) { return progress.Objects < 50; };
    const dos::TreeResult result = dos::CopyTree("Test:from", "Test:to", {}, control);
    EXPECT_TRUE(result.IsCancelled);
    EXPECT_EQ(dos::IoErr(), dos::ErrorBreak);
    EXPECT_FALSE(finished.contains("")); // the whole of it is not done
    for (const std::string& name : finished)
        EXPECT_TRUE(Tree.Exists("to/" + name)) << name;
    for (const auto& entry : fs::recursive_directory_iterator(Tree.Path("to")))
        EXPECT_TRUE(!entry.is_regular_file() || entry.file_size() == 5000u) << entry.path();
    EXPECT_TRUE(dos::DeleteTree("Test:from", dos::Protected::Respected, control).IsCancelled);
}

} // namespace
