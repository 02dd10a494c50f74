#include "platform/exec/RuntimeDirectory.h"

#include "tests/platform/exec/Processes.h"

#include <sys/stat.h>

namespace {

using namespace exec_tests;
namespace fs = std::filesystem;

constexpr uid_t OtherUser = 64321; // nobody's

mode_t ModeOf(const std::string& path) {
    struct stat found {};
    EXPECT_EQ(lstat(path.c_str(), &found), 0);
    return found.st_mode;
}

// Whether a process of that user has that runtime directory in a session with that base.
bool HasDirectory(const TempTree& base, const std::string& directory, uid_t user = geteuid()) {
    Process child([&] {
        umask(0);
        setenv("XDG_RUNTIME_DIR", base.Root().c_str(), 1);
        return (user == geteuid() || setuid(user) == 0) && exec::RuntimeDirectory() == directory ? 0 : 1;
    });
    return child.Join() == 0;
}

TEST(RuntimeDirectory, IsMadePrivateInTheBaseOfTheSession) {
    const TempTree base;
    EXPECT_TRUE(HasDirectory(base, base.Path("solvane")));
    EXPECT_EQ(ModeOf(base.Path("solvane")), static_cast<mode_t>(S_IFDIR | 0700));
}

TEST(RuntimeDirectory, ABaseThatOthersMayWriteToIsRefused) {
    const TempTree base;
    chmod(base.Root().c_str(), 0777);
    EXPECT_TRUE(HasDirectory(base, ""));
    EXPECT_FALSE(base.Exists("solvane"));
}

TEST(RuntimeDirectory, WhatOthersCouldHaveAHandInIsRefusedAndLeftAsItIs) {
    struct Case {
        const char* Name;
        void (*Make)(const std::string& path);
    };
    const Case cases[] = {
        {"open to the group", [](const std::string& path) { mkdir(path.c_str(), 0750); }},
        {"open to all",
         [](const std::string& path) {
             mkdir(path.c_str(), 0700);
             chmod(path.c_str(), 01777);
         }},
        {"a link to a private directory",
         [](const std::string& path) {
             mkdir((path + "-target").c_str(), 0700);
             fs::create_directory_symlink(path + "-target", path);
         }},
        {"a link to nothing", [](const std::string& path) { fs::create_symlink(path + "-missing", path); }},
        {"a file", [](const std::string& path) { std::ofstream(path) << "text"; }},
        {"another user's",
         [](const std::string& path) {
             mkdir(path.c_str(), 0700);
             // Without the right to give it away it is refused for its mode.
             if (chown(path.c_str(), OtherUser, OtherUser) != 0)
                 chmod(path.c_str(), 0755);
         }},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.Name);
        const TempTree base;
        const std::string path = base.Path("place");
        one.Make(path);
        const mode_t before = ModeOf(path);
        EXPECT_FALSE(exec::UseRuntimeDirectory(path));
        EXPECT_FALSE(exec::UseRuntimeDirectory(path + "/"));
        EXPECT_EQ(exec::RuntimeDirectory(), "");
        EXPECT_EQ(ModeOf(path), before);
        EXPECT_FALSE(fs::exists(path + "-missing"));
    }
    exec::UseRuntimeDirectory({});
}

TEST(RuntimeDirectory, ABaseOfAnotherUserIsNotUsed) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs the right to become another user";
    const TempTree base;
    const std::string fallback = "/tmp/solvane-" + std::to_string(OtherUser);
    EXPECT_TRUE(HasDirectory(base, fallback, OtherUser));
    EXPECT_TRUE(fs::is_empty(base.Root()));
    EXPECT_EQ(ModeOf(fallback), static_cast<mode_t>(S_IFDIR | 0700));
    fs::remove(fallback);
}

} // namespace
