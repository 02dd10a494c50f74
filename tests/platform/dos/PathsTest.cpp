#include "platform/dos/Paths.h"

#include "platform/dos/Errors.h"

#include <gtest/gtest.h>

namespace {

TEST(PathsTest, ParsePathsIntoDrawerAndFile) {
    struct Row {
        std::string_view Path, File, Drawer;
    };
    const Row rows[] = {
        {"", "", ""},
        {"a", "a", ""},
        {"a/b", "b", "a"},
        {"a/b/", "", "a/b"},
        {"Work:", "", "Work:"},
        {"Work:a", "a", "Work:"},
        {"Work:a/", "", "Work:a"},
        {"Work:a/b/c", "c", "Work:a/b"},
        {"/", "", "/"},
        {"//", "", "//"},
        {"/a", "a", "/"},
        {"//a", "a", "//"},
        {"a//b", "b", "a/"},
        {":a", "a", ":"},
        {":a/b", "b", ":a"},
        {"Work:/a", "a", "Work:/"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(dos::FilePart(row.Path), row.File) << row.Path;
        EXPECT_EQ(dos::PathPart(row.Path), row.Drawer) << row.Path;
    }
}

TEST(PathsTest, AddPartPutsOneSlashWhereItIsNeeded) {
    struct Row {
        std::string_view Drawer, File, Path;
    };
    const Row rows[] = {
        {"", "x", "x"},
        {"Work:", "a", "Work:a"},
        {"Work:a", "b", "Work:a/b"},
        {"Work:a/", "b", "Work:a/b"},
        {"Work:a", "", "Work:a"},
        {"Work:", "", "Work:"},
        {"foo", "/bar", "foo//bar"},
        {"foo/", "/bar", "foo//bar"},
        {"Work:a", ":x", "Work:x"},
        {"a", ":x", ":x"},
        {"Work:a", "Sys:x", "Sys:x"},
        {"/", "a", "/a"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(dos::AddPart(row.Drawer, row.File), row.Path) << row.Drawer << " + " << row.File;
}

TEST(PathsTest, AddPartRefusesWhatDoesNotFitWithItsNul) {
    EXPECT_EQ(dos::AddPart("Work:a", "b", 9), "Work:a/b");
    EXPECT_EQ(dos::AddPart("Work:a", "b", 8), std::nullopt);
    EXPECT_EQ(dos::IoErr(), 120);
}

TEST(PathsTest, SplitNameWalksThroughTheComponents) {
    struct Row {
        std::string_view Name;
        char Separator;
        long Position;
        std::size_t Size;
        std::string_view Part;
        long Next;
    };
    const Row rows[] = {
        {"Work:a/b", ':', 0, 32, "Work", 5},  {"Work:a/b", '/', 5, 32, "a", 7},
        {"Work:a/b", '/', 7, 32, "b", -1},    {"a//b", '/', 0, 32, "a", 2},
        {"a//b", '/', 2, 32, "", 3},          {"a//b", '/', 3, 32, "b", -1},
        {"longname/b", '/', 0, 5, "long", 9}, {"a", '/', 9, 32, "", -1},
        {"a", '/', -1, 32, "", -1},           {"a", '/', 0, 0, "", -1},
    };
    for (const Row& row : rows) {
        std::string part = "old";
        EXPECT_EQ(dos::SplitName(row.Name, row.Separator, part, row.Position, row.Size), row.Next);
        EXPECT_EQ(part, row.Part) << row.Name << " from " << row.Position;
    }
}

} // namespace
