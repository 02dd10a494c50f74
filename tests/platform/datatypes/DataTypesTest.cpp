// The calls by AmigaDOS path: aliases, soft links, missing volumes and disks that do not answer.
#include "platform/datatypes/DataTypes.h"

#include "platform/datatypes/Pictures.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountInfo.h"
#include "tests/platform/dos/DosTest.h"

#include <algorithm>
#include <latch>

namespace {

using namespace std::string_literals;
using datatypes::DataType;

const std::string Gif = "GIF89a\1\0\1\0\0\0\0;"s;
std::string MountList; // host path of a text that stands for the host's list of mounts

class DataTypes : public DosTest {
protected:
    DataTypes() {
        Tree.Write("real", Gif);
        Tree.Write("net/picture", Gif);
        Tree.Link("link", "real");
        Tree.Link("far", "net/picture");
        Tree.Link("away", "net");
    }
    ~DataTypes() override {
        if (!MountList.empty()) {
            dos::Host() = dos::RealHost();
            dos::ForgetMounts();
            MountList.clear();
        }
    }
    void MountNet() {
        MountList = Tree.Path("mountinfo");
        Tree.Write("mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:9 / " + Tree.Path("net") +
                                    " rw - fuse.sshfs machine: rw\n");
        Calls().Openat = [](int drawer, const char* name, int flags, unsigned mode) {
            const bool list = std::string_view(name) == "/proc/self/mountinfo";
            return dos::RealHost().Openat(drawer, list ? MountList.c_str() : name, flags, mode);
        };
        dos::ForgetMounts();
    }
    static std::vector<const DataType*> TypesIn(std::string_view drawer,
                                                std::vector<std::string_view> names) {
        std::vector<const DataType*> results(names.size());
        datatypes::ObtainDataTypes(drawer, names, results);
        return results;
    }
};

TEST_F(DataTypes, ComeFromAmigaDosPaths) {
    const DataType* type = datatypes::ObtainDataType("Test:real");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->Name, "GIF");
    EXPECT_EQ(datatypes::ObtainDataType("Test:link"), type);
    EXPECT_EQ(datatypes::GetPictureSize("Test:link"), (datatypes::PictureSize{1, 1, 1}));
    EXPECT_EQ(datatypes::GetFrameCount("Test:real"), 0);
    EXPECT_EQ(datatypes::ObtainDataType("Missing:x"), nullptr);
    EXPECT_EQ(dos::IoErr(), dos::ErrorDeviceNotMounted);
}

TEST_F(DataTypes, NamesOfADrawerMayBeAliasesAndLinks) {
    Tree.Write("with:colon", Gif);
    const auto names = NamesIn("Test:");
    const auto alias = std::ranges::find_if(names, [](const auto& name) { return name.starts_with("with"); });
    ASSERT_NE(alias, names.end());
    const auto types = TypesIn("Test:", {"real", "link", "missing", *alias});
    ASSERT_NE(types[0], nullptr);
    EXPECT_EQ(types[1], types[0]);
    EXPECT_EQ(types[2], nullptr);
    EXPECT_EQ(types[3], types[0]);
    EXPECT_EQ(TypesIn("Missing:", {"a"}), std::vector<const DataType*>{nullptr});
}

TEST_F(DataTypes, DiskThatDoesNotAnswerHasNoTypesAndHoldsNobodyUp) {
    MountNet();
    const DataType* gif = datatypes::ObtainDataType("Test:net/picture");
    ASSERT_NE(gif, nullptr);
    EXPECT_EQ(TypesIn("Test:net", {"picture", "missing"}), (std::vector<const DataType*>{gif, nullptr}));
    EXPECT_EQ(TypesIn("Test:", {"real", "far"}), (std::vector<const DataType*>{gif, gif}));
    const auto dead = std::make_shared<std::latch>(1);
    ASSERT_FALSE(dos::RunWithLimit(Tree.Path("net"), [dead](dos::Progress&) { dead->wait(); }));
    // Whatever would be asked directly now would get an answer.
    for (const char* path : {"Test:net", "Test:away"})
        EXPECT_EQ(TypesIn(path, {"picture"}), std::vector<const DataType*>{nullptr}) << path;
    EXPECT_EQ(TypesIn("Test:", {"real", "far"}), (std::vector<const DataType*>{gif, nullptr}));
    for (const char* path : {"Test:net/picture", "Test:far"}) {
        EXPECT_EQ(datatypes::ObtainDataType(path), nullptr) << path;
        EXPECT_EQ(dos::IoErr(), dos::ErrorNoDisk) << path;
        EXPECT_FALSE(datatypes::GetPictureSize(path)) << path;
        EXPECT_FALSE(datatypes::CountFrames(path, 2)) << path;
    }
    dead->count_down();
    while (!dos::RunWithLimit(Tree.Path("net"), [](dos::Progress&) {})) {
    }
    EXPECT_EQ(datatypes::ObtainDataType("Test:far"), gif);
}

} // namespace
