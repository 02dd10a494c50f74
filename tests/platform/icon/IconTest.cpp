#include "tests/platform/icon/IconSamples.h"

namespace {

using icon::DiskObject, icon::IconFormat, icon::IconType;

TEST(IconTest, ReadsEveryKindOfIconFile) {
    struct Row {
        const char* Name;
        IconType Type;
        IconFormat Format;
        std::int32_t X, Y, Stack;
        std::string_view DefaultTool;
        std::size_t ToolTypes;
    };
    constexpr std::int32_t none = icon::NoIconPosition;
    const Row rows[] = {
        {"classic_drawer_2plane", IconType::Drawer, IconFormat::Planar, none, none, 4096, "", 0},
        {"classic_project_8plane", IconType::Project, IconFormat::Planar, 4, 103, 4096, "MultiView", 0},
        {"classic_project_many_tooltypes", IconType::Project, IconFormat::Planar, none, none, 15000,
         "StormC:StormSYS/StormCPP", 22},
        {"classic_tool_3plane_latin1_tooltype", IconType::Tool, IconFormat::Planar, 75, 4, 80000, "", 1},
        {"newicon_project_11col", IconType::Project, IconFormat::NewIcon, none, none, 4096, "Multiview", 0},
        {"newicon_drawer_8x8_opaque", IconType::Drawer, IconFormat::NewIcon, none, none, 4096, "", 0},
        {"os35_drawer_uncompressed_palette", IconType::Drawer, IconFormat::Colour, 8, 4, 8000, "", 0},
        {"os35_project_name_with_blanks", IconType::Project, IconFormat::Colour, 249, 4, 8192, "NotePad", 1},
        {"os4_argb_tool", IconType::Tool, IconFormat::Argb, 8, 71, 20480, "", 0},
        {"png_icon_with_icon_chunk", IconType::Drawer, IconFormat::Png, none, none, 4096, "", 1},
        {"gen_png_single_rgba", IconType::None, IconFormat::Png, none, none, 4096, "", 0},
    };
    for (const Row& row : rows) {
        const std::optional<DiskObject> object = Parse(Sample(row.Name));
        ASSERT_TRUE(object) << row.Name;
        EXPECT_EQ(object->Type, row.Type) << row.Name;
        EXPECT_EQ(object->Format, row.Format) << row.Name;
        EXPECT_EQ(object->CurrentX, row.X) << row.Name;
        EXPECT_EQ(object->CurrentY, row.Y) << row.Name;
        EXPECT_EQ(object->StackSize, row.Stack) << row.Name;
        EXPECT_EQ(object->DefaultTool, row.DefaultTool) << row.Name;
        EXPECT_EQ(object->ToolTypes.size(), row.ToolTypes) << row.Name;
    }
}

TEST(IconTest, DrawerIconsTellTheirWindow) {
    const auto classic = Parse(Sample("classic_drawer_2plane"));
    ASSERT_TRUE(classic && classic->Drawer);
    EXPECT_EQ(classic->Drawer->Left, 471);
    EXPECT_EQ(classic->Drawer->Top, 16);
    EXPECT_EQ(classic->Drawer->Width, 213);
    EXPECT_EQ(classic->Drawer->Height, 184);
    EXPECT_EQ(classic->Drawer->Flags, 2U);
    const auto png = Parse(Sample("png_icon_with_icon_chunk"));
    ASSERT_TRUE(png && png->Drawer);
    EXPECT_EQ(png->Drawer->Left, 108);
    EXPECT_EQ(png->Drawer->Height, 487);
    EXPECT_EQ(png->Drawer->ViewModes, 2);
    EXPECT_FALSE(Parse(Sample("os4_argb_tool"))->Drawer);
}

TEST(IconTest, TextsBecomeUtf8) {
    EXPECT_EQ(Parse(Sample("classic_tool_3plane_latin1_tooltype"))->ToolTypes.at(0),
              "»»»» Icon by Stefan Kost ««««");
    EXPECT_EQ(Parse(Sample("png_icon_with_icon_chunk"))->ToolTypes.at(0), "(Icon ©2007 Ken Lester)");
}

TEST(IconTest, PictureDataOfNewIconsAreNoToolTypesForUsers) {
    const std::string warning = "*** DON'T EDIT THE FOLLOWING LINES!! ***";
    struct Row {
        std::vector<std::string> Lines, Shown;
        std::size_t Kept;
        IconFormat Format;
    };
    const Row rows[] = {
        {{"A=1", " ", warning, "IM1=x", "IM2=y"}, {"A=1"}, 4, IconFormat::NewIcon},
        {{"A=1", "IM1=x\xD1", "B"}, {"A=1", "B"}, 1, IconFormat::NewIcon}, // a tool has dropped the warning
        {{"A=1", " ", "B"}, {"A=1", " ", "B"}, 0, IconFormat::Planar},
        {{" ", warning}, {}, 2, IconFormat::Planar},
    };
    for (const Row& row : rows) {
        const auto object = Parse(ProjectIcon(row.Lines));
        ASSERT_TRUE(object);
        EXPECT_EQ(object->ToolTypes, row.Shown);
        EXPECT_EQ(object->ImageToolTypes.size(), row.Kept);
        EXPECT_EQ(object->Format, row.Format);
    }
    const auto sample = Parse(Sample("newicon_project_11col"));
    EXPECT_EQ(sample->ImageToolTypes.size(), 13U);
}

TEST(IconTest, CutFilesAreRefusedOrTellTheSame) {
    for (const char* name : {"classic_project_many_tooltypes", "newicon_drawer_8x8_opaque",
                             "os35_drawer_uncompressed_palette", "os4_argb_tool"}) {
        const std::string file = Sample(name);
        const auto whole = Parse(file);
        EXPECT_FALSE(Parse(file.substr(0, 100))) << name;
        for (std::size_t size = 0; size < file.size(); ++size)
            if (const auto cut = Parse(file.substr(0, size))) {
                ASSERT_EQ(cut->ToolTypes, whole->ToolTypes) << name << ' ' << size;
                ASSERT_EQ(cut->DefaultTool, whole->DefaultTool) << name << ' ' << size;
            }
    }
}

TEST(IconTest, HostileSizesAreRefused) {
    const std::string good = ProjectIcon({"A"});
    ASSERT_TRUE(Parse(good));
    struct Row {
        std::size_t Offset;
        std::string Bytes;
        const char* What;
    };
    const Row rows[] = {
        {0, std::string("\xE3\x11", 2), "magic"},
        {0x30, std::string(1, '\0'), "type 0"},
        {0x30, "\x09", "type 9"},
        {78, Long(0xFFFFFFFF), "count of tool types"},
        {82, Long(0xFFFFFFFF), "length of a text"},
        {0x32, "\1", "a default tool that is not there"},
        {0x42, "\1", "a drawer record that is not there"},
        {0x16, "\1", "an image that is not there"},
    };
    for (const Row& row : rows) {
        std::string bad = good;
        bad.replace(row.Offset, row.Bytes.size(), row.Bytes);
        EXPECT_FALSE(Parse(bad)) << row.What;
    }
    const std::string image =
        std::string(4, '\0') + "\x7F\xFF\x7F\xFF" + std::string("\0\1\0\0\0\1", 6) + std::string(6, '\0');
    std::string huge = good;
    huge[0x16] = 1;
    EXPECT_FALSE(Parse(huge.insert(78, image)));
}

TEST(IconTest, MoreToolTypesThanAnyIconHasAreRefused) {
    std::vector<std::string> lines(icon::MaxToolTypes, "A");
    std::optional<DiskObject> object = Parse(ProjectIcon(lines));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->ToolTypes.size(), lines.size());
    lines.emplace_back("B");
    EXPECT_FALSE(Parse(ProjectIcon(lines)));
    object->ToolTypes.emplace_back("B");
    EXPECT_FALSE(icon::WriteDiskObject(*object));
    object = Parse(Sample("png_icon_with_icon_chunk"));
    object->ToolTypes.assign(icon::MaxToolTypes, "A");
    EXPECT_TRUE(Parse(icon::WriteDiskObject(*object).value_or("")));
}

TEST(IconTest, AnImageFlagWithoutAnImageDoesNotHideTheTexts) {
    std::string file = ProjectIcon({"A=1"});
    file[0x11] = 6; // both image flags, no pointers
    const auto object = Parse(file);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->ToolTypes, std::vector<std::string>{"A=1"});
}

TEST(IconTest, SmallStacksAreRaised) {
    std::string file = ProjectIcon({});
    file.replace(0x4A, 4, Long(0x80000001));
    EXPECT_EQ(Parse(file)->StackSize, icon::MinStackSize);
    file.replace(0x4A, 4, Long(4097));
    EXPECT_EQ(Parse(file)->StackSize, 4097);
}

std::string PngIcon(const std::string& chunk) {
    return std::string("\x89PNG\r\n\x1A\n") + Long(static_cast<std::uint32_t>(chunk.size())) + "icOn" +
           chunk + Long(0);
}

TEST(IconTest, ItemsOfAPngIconAreReadUpToTheFirstUnknownOne) {
    const auto object =
        Parse(PngIcon(Long(0x80001001) + Long(7) + Long(0x8000100A) + "Tool" + std::string(4, '\0') +
                      Long(0x8000100F) + Long(4) + Long(0x80009999) + Long(0x80001002) + Long(9)));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->CurrentX, 7);
    EXPECT_EQ(object->CurrentY, icon::NoIconPosition);
    EXPECT_EQ(object->DefaultTool, "Tool");
    EXPECT_EQ(object->Type, IconType::Project);
    EXPECT_EQ(Parse(PngIcon(Long(0x8000100B) + "no end"))->ToolTypes.size(), 0U);
    EXPECT_EQ(Parse(PngIcon(Long(0x8000100F) + Long(77)))->Type, IconType::None);
}

TEST(IconTest, FindsToolTypesByNameWithoutCase) {
    DiskObject object;
    object.ToolTypes = {"(PATH=Off:)", "Path=Work:a=b", "PATH=Second:", "DONOTWAIT", "WINDOWS=1", "EMPTY="};
    EXPECT_EQ(icon::FindToolType(object, "PATH"), "Work:a=b");
    EXPECT_EQ(icon::FindToolType(object, "donotwait"), "");
    EXPECT_EQ(icon::FindToolType(object, "EMPTY"), "");
    for (const std::string_view name : {"WINDOW", "Work:a", "OFF:", ""})
        EXPECT_EQ(icon::FindToolType(object, name), std::nullopt) << name;
}

TEST(IconTest, ToolTypesAreSetInTheirPlaceAndRemovedByName) {
    DiskObject object;
    object.ToolTypes = {"(PATH=Off:)", "Path=Work:", "OTHER", "PATH=Second:"};
    icon::SetToolType(object, "PATH", "New:");
    icon::SetToolType(object, "DONOTWAIT", "");
    EXPECT_EQ(object.ToolTypes,
              (std::vector<std::string>{"(PATH=Off:)", "Path=New:", "OTHER", "PATH=Second:", "DONOTWAIT"}));
    EXPECT_TRUE(icon::RemoveToolType(object, "path"));
    EXPECT_FALSE(icon::RemoveToolType(object, "path"));
    EXPECT_EQ(object.ToolTypes, (std::vector<std::string>{"(PATH=Off:)", "OTHER", "DONOTWAIT"}));
}

TEST(IconTest, MatchesOneOfTheValuesOfAToolType) {
    struct Row {
        std::string_view Values, Value;
        bool Matches;
    };
    const Row rows[] = {
        {"text", "TEXT", true},
        {"text|ascii", "ASCII", true},
        {"text|ascii", "asci", false},
        {"text|ascii", "text|ascii", false},
        {"", "", true},
        {"a|", "", true},
        {"a", "", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(icon::MatchToolValue(row.Values, row.Value), row.Matches)
            << row.Values << " : " << row.Value;
}

} // namespace
