#include "platform/dos/DeviceProcs.h"
#include "tests/platform/dos/DosTest.h"

namespace {

class LocksTest : public DosTest {};

struct PathCase {
    std::string_view Path, Found;
};

void ExpectFound(std::initializer_list<PathCase> cases) {
    for (const PathCase& row : cases)
        EXPECT_EQ(Find(row.Path), row.Found) << "path \"" << row.Path << "\"";
}

TEST_F(LocksTest, PathsLeadWhereTheirSlashesAndColonsSay) {
    Tree.Plant({"a/b/c/file", "a/sibling", ".hidden/"});
    dos::CurrentDir(dos::Lock("Test:a/b"));
    ExpectFound({
        {"", "Test:a/b"},
        {":", "Test:"},
        {":a", "Test:a"},
        {"/", "Test:a"},
        {"//", "Test:"},
        {"///", "error 205"},
        {"/sibling", "Test:a/sibling"},
        {"c/", "Test:a/b/c"},
        {"c//", "Test:a/b"},
        {"c//c/file", "Test:a/b/c/file"},
        {"c/file//file", "Test:a/b/c/file"}, // the drawer that holds the file, and the file again
        {"Test:", "Test:"},
        {"tEsT:a/b", "Test:a/b"},
        {"TD0:a", "Test:a"},
        {"Test:/", "error 205"},
        {"Test:a/b//sibling", "Test:a/sibling"},
        {"Test:.hidden", "Test:.hidden"},
        {"Test:.", "error 205"},
        {"Test:a/..", "error 205"},
        {"Test:a/./b", "error 205"},
        {"Test:a/missing/c", "error 205"},
        {"Test:a/sibling/c", "error 212"},
        {"Test:a:b", "error 210"},
        {std::string_view("Test:a\0b", 8), "error 210"},
        {"Nobody:a", "error 218"},
        {"NIL:", "error 212"},
    });
}

TEST_F(LocksTest, AwkwardNamesAreFoundAsTheyAre) {
    const std::string longest(255, 'x');
    for (const std::string name : {"a\"b;rm -rf *", "line\nbreak", "\xFF\xFE bad", "Größe", "tilde~",
                                   "~12345678", "semi;colon", " blank ", "%41", "\xE2\x80\xAE"}) {
        Tree.Write(name, "");
        EXPECT_EQ(Find("Test:" + name), "Test:" + name);
    }
    Tree.Write(longest, "");
    EXPECT_TRUE(dos::Lock("Test:" + longest));
    EXPECT_EQ(Find("Test:" + longest + "y"), "error 210");
}

TEST_F(LocksTest, TwinsThatDifferInCaseStayApartOnAnExactVolume) {
    Tree.Plant({"Readme", "README"});
    ExpectFound(
        {{"Test:Readme", "Test:Readme"}, {"Test:README", "Test:README"}, {"Test:readme", "error 205"}});
    EXPECT_FALSE(dos::SameLock(dos::Lock("Test:Readme"), dos::Lock("Test:README")));
}

TEST_F(LocksTest, SoftLinksLeadOnAsTheirTextSays) {
    Tree.Write("drawer/sub/file", "");
    Tree.Link("relative", "drawer/sub");
    Tree.Link("absolute", Tree.Path("drawer/sub"));
    Tree.Link("drawer/up", "../drawer/./sub/file");
    Tree.Link("chain", "relative");
    Tree.Link("outside", "/");
    Tree.Link("dangling", "nowhere");
    Tree.Link("circle", "circle2");
    Tree.Link("circle2", "circle");
    Tree.Link("bad:name", "drawer");
    ExpectFound({
        {"Test:relative", "Test:drawer/sub"},
        {"Test:relative/file", "Test:drawer/sub/file"},
        {"Test:absolute/file", "Test:drawer/sub/file"},
        {"Test:drawer/up", "Test:drawer/sub/file"},
        {"Test:chain/file", "Test:drawer/sub/file"},
        {"Test:relative//", "Test:drawer"}, // up from where the link led
        {"Test:outside", "Host:"},
        {"Test:dangling", "error 205"},
        {"Test:circle", "error 217"},
        {"Test:circle/a", "error 217"},
    });
}

TEST_F(LocksTest, LockFollowsItsObjectWhenThatIsRenamedAndKnowsWhenItIsGone) {
    Tree.Drawer("old/inner");
    const dos::FileLock lock = dos::Lock("Test:old/inner");
    std::filesystem::rename(Tree.Path("old"), Tree.Path("new"));
    EXPECT_EQ(dos::NameFromLock(lock), "Test:new/inner");
    EXPECT_EQ(dos::NameFromLock(dos::ParentDir(lock)), "Test:new");
    std::filesystem::remove(Tree.Path("new/inner"));
    EXPECT_EQ(dos::NameFromLock(lock), "");
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectNotFound);
}

TEST_F(LocksTest, NameEndingLikeARemovedOneIsStillAName) {
    Tree.Write("x (deleted)", "");
    EXPECT_EQ(Find("Test:x (deleted)"), "Test:x (deleted)");
}

TEST_F(LocksTest, ParentsEndAtTheRootOfTheVolume) {
    Tree.Write("a/file", "");
    const dos::FileLock drawer = dos::ParentDir(dos::Lock("Test:a/file"));
    EXPECT_EQ(dos::NameFromLock(drawer), "Test:a");
    const dos::FileLock root = dos::ParentDir(drawer);
    EXPECT_EQ(dos::NameFromLock(root), "Test:");
    dos::SetIoErr(99);
    EXPECT_EQ(Refusal(dos::ParentDir(root)), 0);
}

TEST_F(LocksTest, SameLockSeesThroughVolumesLinksAndHardLinks) {
    Tree.Write("file", "");
    std::filesystem::create_hard_link(Tree.Path("file"), Tree.Path("hard"));
    Tree.Link("soft", "file");
    const dos::FileLock file = dos::Lock("Test:file");
    for (const std::string path : {"TD0:file", "Test:hard", "Test:soft"})
        EXPECT_TRUE(dos::SameLock(file, dos::Lock(path))) << path;
    EXPECT_TRUE(dos::SameLock(file, dos::Lock("Host:" + Tree.Path("file").substr(1))));
    EXPECT_FALSE(dos::SameLock(file, dos::Lock("Test:")));
    EXPECT_FALSE(dos::SameLock(file, dos::FileLock()));
}

TEST_F(LocksTest, NamesComeWithVolumeOrDevice) {
    Tree.Write("a/file", "");
    const dos::FileLock lock = dos::Lock("TD0:a/file");
    EXPECT_EQ(dos::NameFromLock(lock), "Test:a/file");
    EXPECT_EQ(dos::DevNameFromLock(lock, dos::DevName::FullPath), "TD0:a/file");
    EXPECT_EQ(dos::DevNameFromLock(lock, dos::DevName::DeviceOnly), "TD0");
}

TEST_F(LocksTest, DeepPathsBeyondTheHostsLimitAreFoundStepByStep) {
    const std::string part(200, 'd');
    std::string path = "Test:";
    std::filesystem::path old = std::filesystem::current_path();
    std::filesystem::current_path(Tree.Root());
    for (int depth = 0; depth < 30; ++depth) {
        std::filesystem::create_directory(part);
        std::filesystem::current_path(part);
        path += part + "/";
    }
    std::filesystem::current_path(old);
    const dos::FileLock lock = dos::Lock(path);
    EXPECT_TRUE(lock);
    EXPECT_EQ(dos::NameFromLock(lock), ""); // refused, not cut
    EXPECT_NE(dos::IoErr(), 0);
    EXPECT_TRUE(dos::SameLock(dos::ParentDir(lock), dos::Lock(path + "/")));
}

TEST_F(LocksTest, MultiAssignTriesItsTargetsInOrder) {
    Tree.Write("one/both", "1");
    Tree.Write("one/first", "");
    Tree.Write("two/both", "2");
    Tree.Write("two/second", "");
    ASSERT_TRUE(dos::SetAssign("Multi", dos::AssignKind::Late, {"Test:one", "Test:missing", "Test:two"}));
    ExpectFound({
        {"Multi:", "Test:one"},
        {"Multi:both", "Test:one/both"},
        {"multi:second", "Test:two/second"},
        {"Multi:neither", "error 205"},
        {"Multi:first/x", "error 212"}, // any other error than 205 stops the walk
    });
    bool complete = false;
    const auto names = TextsOf(dos::LockAllTargets("Multi:", &complete),
                               [](const dos::FileLock& lock) { return dos::NameFromLock(lock); });
    EXPECT_EQ(names, (Names{"Test:one", "Test:two"}));
    EXPECT_TRUE(complete);
    EXPECT_EQ(dos::IoErr(), dos::ErrorNoMoreEntries);
    EXPECT_EQ(dos::LockAllTargets("Multi:second", nullptr).size(), 1u);
    EXPECT_TRUE(dos::LockAllTargets("Nobody:", &complete).empty());
    EXPECT_FALSE(complete);
}

TEST_F(LocksTest, MissingVolumeIsAskedForOnlyWithRequestersOn) {
    Tree.Write("late/file", "");
    std::vector<std::string> asked;
    dos::SetVolumeRequest([&](std::string_view volume) {
        asked.emplace_back(volume);
        return dos::AddVolume({.Device = "TD1", .Volume = "Late", .HostRoot = Tree.Path("late")});
    });
    const bool old = dos::SetRequesters(false);
    EXPECT_TRUE(old);
    EXPECT_EQ(Find("Late:file"), "error 218");
    dos::SetRequesters(true);
    EXPECT_EQ(Find("Late:file"), "Late:file");
    EXPECT_EQ(Find("Other:"), "error 218"); // "no" ends it
    EXPECT_EQ(asked, (Names{"Late", "Other"}));
    dos::SetVolumeRequest({});
}

// An old host, or a sandbox, knows no openat2: the way is then gone step by step.
TEST_F(LocksTest, PathsAreFoundWithoutTheHostsNewerCalls) {
    Tree.Write("a/b/file", "");
    Tree.Link("link", "a/b");
    Calls().Openat2 = Failing<ENOSYS>();
    ExpectFound({{"Test:a/b/file", "Test:a/b/file"},
                 {"Test:link/file", "Test:a/b/file"},
                 {"Test:a/b//", "Test:a"},
                 {"Test:none", "error 205"}});
}

struct RefusedCase {
    int HostError;
    long Expected;
};

TEST_F(LocksTest, RefusalsOfTheHostBecomeErrorsOfDos) {
    Tree.Write("file", "");
    static int refusal = 0;
    Calls().Openat2 = [](int, const char*, int, std::uint64_t) {
        errno = refusal;
        return -1;
    };
    for (const RefusedCase row :
         {RefusedCase{EACCES, 224}, {ENOMEM, 103}, {ENAMETOOLONG, 210}, {ELOOP, 217}}) {
        refusal = row.HostError;
        EXPECT_EQ(Refusal(dos::Lock("Test:file")), row.Expected) << "errno " << row.HostError;
    }
}

} // namespace
