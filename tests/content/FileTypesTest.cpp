#include "content/FileTypes.h"

#include "content/ExamineSingle.h"
#include "sak/Datatypes.h"
#include "sak/Version.h"
#include "tests/content/DrawerTest.h"

namespace solvane {
namespace {

// A GIF of so many frames of one pixel.
std::string Gif(int frames) {
    std::string gif("GIF89a\x01\x00\x01\x00\x80\x00\x00\xff\xff\xff\x00\x00\x00", 19);
    for (int at = 0; at < frames; ++at)
        gif.append("\x2c\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00", 15);
    return gif + ";";
}

class FileTypesTest : public DrawerTest {
protected:
    FileTypesTest() {
        Drawer("env/Sys");
        EXPECT_TRUE(dos::SetAssign("ENVARC", dos::AssignKind::Directory, {Path("env")}));
    }

    const ContentNode& TypeOf(std::string_view name, std::string_view bytes) {
        File("d/" + std::string(name), bytes);
        EXPECT_TRUE(Scan("d"));
        return Entry(name);
    }
    void Icon(std::string_view name) const { File("env/Sys/" + std::string(name)); }
};

TEST_F(FileTypesTest, GifOfMoreThanOneFrameIsAnAnimation) {
    EXPECT_EQ(TypeOf("one.gif", Gif(1)).DatatypeGroupValue, GroupPicture);
    EXPECT_EQ(TypeOf("two.gif", Gif(2)).DatatypeGroupValue, GroupAnimation);
    EXPECT_EQ(TypeOf("two.GIF", Gif(2)).DatatypeGroupValue, GroupPicture) << "case is kept";
    EXPECT_EQ(Entry("two.gif").DatatypeGroupName.View(), "Picture");
}

TEST_F(FileTypesTest, WithoutIconsTheTypeNamesItself) {
    const ContentNode& node = TypeOf("one.gif", Gif(1));
    EXPECT_EQ(node.DatatypeName.View(), "GIF Picture");
    EXPECT_EQ(node.DefaultIconName.View(), "def_project.info");
}

TEST_F(FileTypesTest, IconOfTheExtensionComesFirst) {
    Icon("def_jpeg.info");
    Icon("def_GIF.info");
    Icon("def_picture.info");
    // The bytes say GIF; the extension decides.
    const ContentNode& node = TypeOf("photo.JPG", Gif(1));
    EXPECT_EQ(node.DefaultIconName.View(), "def_jpeg.info");
    EXPECT_EQ(node.DatatypeName.View(), "JPEG Picture");
}

TEST_F(FileTypesTest, IconOfTheDatatypeComesNextThenThatOfTheGroup) {
    Icon("def_picture.info");
    EXPECT_EQ(TypeOf("a", Gif(1)).DefaultIconName.View(), "ENVARC:Sys/def_picture.info");
    Icon("def_gif.info");
    EXPECT_EQ(TypeOf("a", Gif(1)).DefaultIconName.View(), "def_gif.info");
    EXPECT_EQ(TypeOf("a", Gif(1)).DatatypeName.View(), "GIF Picture");
}

TEST_F(FileTypesTest, BinaryFilesTakeTheSystemIcon) {
    Icon("def_system.info");
    Icon("def_tool.info");
    const ContentNode& node = TypeOf("thing", std::string("\x01\x02\x00\xfe\xed\x00\x00\x07", 8));
    EXPECT_EQ(node.DatatypeGroupValue, GroupSystem);
    EXPECT_EQ(node.DefaultIconName.View(), "ENVARC:Sys/def_system.info");
}

TEST_F(FileTypesTest, TypingCanWaitOrNeverHappen) {
    File("d/one.gif", Gif(1));
    for (const int never : {1, 2}) {
        Prefs.DetermineDatatype = never;
        ASSERT_TRUE(Scan("d"));
        EXPECT_EQ(Entry("one.gif").DatatypeName.View(), "File");
    }
    GetFileType(*FindContentNode("one.gif", AnyKind));
    EXPECT_EQ(Entry("one.gif").DatatypeName.View(), "GIF Picture");
    EXPECT_EQ(SAK_DTGroupIDValue, GroupPicture);
    EXPECT_EQ(SAK_DTGroupID.View(), "Picture");
    EXPECT_EQ(SAK_DTName.View(), "GIF");
}

TEST_F(FileTypesTest, DimensionsAreReadForAShownColumnOnly) {
    EXPECT_TRUE(TypeOf("one.gif", Gif(1)).Dimensions.Empty());
    ColInfo_GetDimensions = 1;
    EXPECT_EQ(TypeOf("one.gif", Gif(1)).Dimensions.View().substr(0, 4), "1x1x");
    EXPECT_TRUE(TypeOf("icon.INFO", Gif(1)).Dimensions.Empty());
    EXPECT_EQ(Entry("icon.INFO").DatatypeGroupValue, GroupPicture);
    Prefs.WhenScanningADrawer = 1;
    EXPECT_TRUE(TypeOf("one.gif", Gif(1)).Dimensions.Empty());
    ColInfo_GetDimensions = 0;
}

TEST_F(FileTypesTest, VersionsAreReadForAShownColumnWhateverIsTyped) {
    const struct {
        std::string Name, Bytes, Text;
        float Number;
    } rows[] = {
        {"tool", std::string("\x01\0\xfe$VER: Tool 47.12 (1.2.2026)(c) me\0more", 38), "47.12", 47.12F},
        {"lower", "\x01 $ $ver:x 3.1.4\n9.9", "3.1.4", 3.1F},
        {"words", std::string("\0\xff$VER: a beta", 15), "beta", 0.0F},
        {"nan", std::string("\0\xff$VER: a nan", 14), "nan", 0.0F},
        {"long", std::string("\0\xff$VER: a ", 10) + std::string(600, '1'), std::string(19, '1'),
         1.1111111e18F},
        {"late", std::string(65536, '\1') + "$VER: a 1.0", "", 0.0F},
        {"cut", std::string("\0\xff$VE", 5), "", 0.0F},
        {"thing.o", std::string("\0\xff$VER: a 1.0", 14), "", 0.0F}};
    for (const auto& row : rows)
        File("d/" + row.Name, row.Bytes);
    for (const int typing : {0, 1, 2}) {
        Prefs.DetermineDatatype = typing;
        Prefs.WhenScanningADrawer = typing == 0 ? 1 : 0;
        ColInfo_GetVersion = 1;
        ASSERT_TRUE(Scan("d"));
        for (const auto& row : rows) {
            if (Entry(row.Name).DatatypeGroupValue == GroupSystem) {
                EXPECT_EQ(Entry(row.Name).VersionText.View(), row.Text) << row.Name;
                EXPECT_FLOAT_EQ(Entry(row.Name).VersionNumber, row.Number) << row.Name;
            }
        }
        ColInfo_GetVersion = 0;
        ASSERT_TRUE(Scan("d"));
        EXPECT_TRUE(Entry("tool").VersionText.Empty());
    }
    ASSERT_TRUE(SAK_GetVersion(Path("d/tool")));
    EXPECT_EQ(SAK_GetVersionFull.View(), "Tool 47.12 (1.2.2026) (c) me");
    EXPECT_EQ(SAK_GetVersionName.View(), "Tool");
    EXPECT_EQ(SAK_GetVersionDate.View(), "1.2.2026");
    EXPECT_EQ(SAK_GetVersionComment.View(), "(c) me");
}

TEST_F(FileTypesTest, FileThatCannotBeOpenedKeepsItsPlainType) {
    File("d/closed.gif", Gif(1));
    std::filesystem::permissions(Host("d/closed.gif"), std::filesystem::perms::none);
    const PlainUser user(HostRoot);
    ASSERT_TRUE(Scan("d"));
    EXPECT_EQ(Entry("closed.gif").DatatypeName.View(), "File");
    EXPECT_EQ(Entry("closed.gif").DefaultIconName.View(), "def_project.info");
    ASSERT_TRUE(ExamineSingleFull(Path("d/closed.gif"), WithType::Yes));
    EXPECT_EQ(ExamineSingleNode->DatatypeName.View(), "File");
    EXPECT_EQ(ExamineSingleNode->DefaultIconName.View(), "def_project.info");
}

// More files than are typed at a time, so that the batches must fit together.
TEST_F(FileTypesTest, LargeDrawersAreTypedWhole) {
    for (int at = 0; at < 4200; ++at)
        File("d/" + std::to_string(at), at % 7 == 0 ? Gif(1) : std::string("plain text\n"));
    ASSERT_TRUE(Scan("d"));
    for (const ContentNode& node : *ContentList) {
        const bool picture = std::stoi(std::string(node.EntryName.View())) % 7 == 0;
        ASSERT_EQ(node.DatatypeGroupValue, picture ? GroupPicture : GroupText) << node.EntryName.View();
    }
}

} // namespace
} // namespace solvane
