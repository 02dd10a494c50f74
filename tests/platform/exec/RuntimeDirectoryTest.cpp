#include "platform/exec/RuntimeDirectory.h"

#include "tests/platform/exec/Processes.h"

#include <fstream>
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

TEST(RuntimeDirectory, IsMadePrivateInTheBaseOfTheSession) {
    const TempDirectory base;
    Process child([&] {
        umask(0);
        setenv("XDG_RUNTIME_DIR", base.Path().c_str(), 1);
        return exec::RuntimeDirectory() == base / "solvane" ? 0 : 1;
    });
    EXPECT_EQ(child.Join(), 0);
    EXPECT_EQ(ModeOf(base / "solvane"), static_cast<mode_t>(S_IFDIR | 0700));
}

TEST(RuntimeDirectory, ABaseThatOthersMayWriteToIsRefused) {
    const TempDirectory base;
    chmod(base.Path().c_str(), 0777);
    Process child([&] {
        setenv("XDG_RUNTIME_DIR", base.Path().c_str(), 1);
        return exec::RuntimeDirectory().empty() ? 0 : 1;
    });
    EXPECT_EQ(child.Join(), 0);
    EXPECT_FALSE(fs::exists(base / "solvane"));
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
             if (chown(path.c_str(), OtherUser, OtherUser) != 0) {
                 chmod(path.c_str(), 0755);
             }
         }},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.Name);
        const TempDirectory base;
        const std::string path = base / "place";
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
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs the right to become another user";
    }
    const TempDirectory base;
    const std::string fallback = "/tmp/solvane-" + std::to_string(OtherUser);
    Process child([&] {
        setenv("XDG_RUNTIME_DIR", base.Path().c_str(), 1);
        return setuid(OtherUser) == 0 && exec::RuntimeDirectory() == fallback ? 0 : 1;
    });
    EXPECT_EQ(child.Join(), 0);
    EXPECT_TRUE(fs::is_empty(base.Path()));
    EXPECT_EQ(ModeOf(fallback), static_cast<mode_t>(S_IFDIR | 0700));
    fs::remove(fallback);
}

} // namespace
