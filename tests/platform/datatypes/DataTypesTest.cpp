// The calls by AmigaDOS path, over a dos of the test's own: a path "Test:name" is a file of the
// drawer, "Test:alias" stands for "real", and a path without a device starts at the drawer only on
// the thread that set it.
#include "platform/datatypes/DataTypes.h"

#include "platform/datatypes/Pictures.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "tests/platform/datatypes/TempDrawer.h"

#include <atomic>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace std::string_literals;
using datatypes::DataType;

std::string Root;
thread_local std::string CurrentRoot;
thread_local bool Requesters = true;
std::atomic<int> Asked; // paths of missing volumes looked up while requesters were on

const std::string Gif = "GIF89a\1\0\1\0\0\0\0;"s;

} // namespace

namespace dos {

std::optional<std::string> HostPath(std::string_view path) {
    if (path.starts_with("Missing:")) {
        Asked += Requesters ? 1 : 0;
        SetIoErr(ErrorDeviceNotMounted);
        return std::nullopt;
    }
    if (path.starts_with("Test:")) {
        path.remove_prefix(5);
        return Root + "/" + std::string(path == "alias" ? "real" : path);
    }
    return CurrentRoot.empty() ? std::nullopt : std::optional(CurrentRoot + "/" + std::string(path));
}

bool SetRequesters(bool on) {
    return std::exchange(Requesters, on);
}

} // namespace dos

namespace {

class DataTypes : public testing::Test {
protected:
    DataTypes() {
        Root = CurrentRoot = Drawer.Root;
        Drawer.Write("real", Gif);
    }
    TempDrawer Drawer;
};

TEST_F(DataTypes, ComeFromAmigaDosPaths) {
    const DataType* type = datatypes::ObtainDataType("Test:real");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->Name, "GIF");
    EXPECT_EQ(datatypes::GetPictureSize("Test:real"), (datatypes::PictureSize{1, 1, 1}));
    EXPECT_EQ(datatypes::GetFrameCount("Test:real"), 0);
    EXPECT_EQ(datatypes::ObtainDataType("Missing:x"), nullptr);
    EXPECT_EQ(dos::IoErr(), dos::ErrorDeviceNotMounted);
}

TEST_F(DataTypes, ManyPathsMayBeRelativeAndOnMissingVolumes) {
    std::vector<std::string> paths(1000, "real");
    for (std::size_t i = 0; i < paths.size(); i += 3) {
        paths[i] = "Test:real";
        paths[i + 2 < paths.size() ? i + 2 : i] = "Missing:x";
    }
    std::vector<const DataType*> results(paths.size());
    Asked = 0;
    datatypes::ObtainDataTypes(paths, results);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        ASSERT_EQ(results[i] == nullptr, paths[i] == "Missing:x") << i;
    }
    EXPECT_EQ(Asked, 0);
    EXPECT_TRUE(Requesters);
}

TEST_F(DataTypes, NamesOfADrawerMayBeAliases) {
    const std::vector<std::string_view> names = {"real", "alias", "missing"};
    std::vector<const DataType*> results(names.size());
    datatypes::ObtainDataTypes("Test:", names, results);
    ASSERT_NE(results[0], nullptr);
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(results[2], nullptr);
    datatypes::ObtainDataTypes("Missing:", names, results);
    EXPECT_EQ(results, std::vector<const DataType*>(names.size(), nullptr));
}

} // namespace
