// The icon service over files that stand in a table: this program links its own files of dos.
#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "tests/platform/icon/IconSamples.h"

#include <map>

namespace {

std::map<std::string, std::string, std::less<>> Files;
std::map<std::string, std::uint32_t, std::less<>> Types;

const std::string UntypedPng("\x89PNG\r\n\x1A\n");

std::string PngWithTool() {
    return UntypedPng + std::string("\0\0\0\x06icOn\x80\0\x10\x0AX\0\0\0\0\0", 18);
}

} // namespace

namespace dos {

std::optional<std::string> ReadWhole(std::string_view path, std::size_t limit) {
    const auto file = Files.find(path);
    if (file == Files.end())
        SetIoErr(ErrorObjectNotFound);
    else if (file->second.size() <= limit)
        return file->second;
    return std::nullopt;
}

bool WriteWhole(std::string_view path, std::string_view bytes) {
    Files.insert_or_assign(std::string(path), std::string(bytes));
    return true;
}

bool Delete(std::string_view path) {
    return Files.erase(std::string(path)) > 0;
}

std::optional<ExamineData> ExamineObject(std::string_view path) {
    const auto type = Types.find(path);
    if (type == Types.end())
        return std::nullopt;
    ExamineData data;
    data.Type = type->second;
    return data;
}

} // namespace dos

namespace {

TEST(GetDiskObjectTest, AnIconWithoutATypeGetsThatOfItsObject) {
    Types = {{"Work:drawer", dos::TypeDrawer}, {"Work:program", dos::TypeFile}};
    struct Row {
        const char *Name, *File;
        std::string Bytes;
        icon::IconType Type;
    };
    const Row rows[] = {
        {"Work:drawer", "Work:drawer.info", UntypedPng, icon::IconType::Drawer},
        {"Work:drawer/", "Work:drawer.info", UntypedPng, icon::IconType::Drawer},
        {"Work:program", "Work:program.info", UntypedPng, icon::IconType::Tool},
        {"Work:text", "Work:text.info", PngWithTool(), icon::IconType::Project},
        {"Work:", "Work:Disk.info", UntypedPng, icon::IconType::Disk},
        {"Work:disk", "Work:disk.info", PngWithTool(), icon::IconType::Disk},
        {"a.b", "a.b.info", UntypedPng, icon::IconType::Tool},
    };
    for (const Row& row : rows) {
        Files = {{row.File, row.Bytes}};
        const auto object = icon::GetDiskObject(row.Name);
        ASSERT_TRUE(object) << row.Name;
        EXPECT_EQ(object->Type, row.Type) << row.Name;
    }
}

TEST(GetDiskObjectTest, TellsMissingIconsFromBrokenOnes) {
    Files = {{"Work:broken.info", "no icon at all"}};
    EXPECT_FALSE(icon::GetDiskObject("Work:missing"));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectNotFound);
    EXPECT_FALSE(icon::GetDiskObject("Work:broken"));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectWrongType);
}

TEST(GetDiskObjectTest, AnIconIsPutWhereItIsFound) {
    Files = {{"Work:a.b.info", ProjectIcon({"A"})}, {"Work:Disk.info", Sample("os4_argb_tool")}};
    auto object = icon::GetDiskObject("Work:a.b");
    ASSERT_TRUE(object);
    object->ToolTypes = {"B"};
    EXPECT_TRUE(icon::PutDiskObject("Work:a.b", *object));
    EXPECT_EQ(Files["Work:a.b.info"], ProjectIcon({"B"}));
    EXPECT_TRUE(icon::PutIconPosition("Work:", 3, icon::NoIconPosition));
    EXPECT_EQ(icon::GetDiskObject("Work:")->CurrentX, 3);
    object->ToolTypes = {"日本"};
    EXPECT_FALSE(icon::PutDiskObject("Work:a.b", *object));
    EXPECT_EQ(dos::IoErr(), dos::ErrorObjectWrongType);
    EXPECT_EQ(Files["Work:a.b.info"], ProjectIcon({"B"}));
    EXPECT_FALSE(icon::PutIconPosition("Work:missing", 1, 1));
    EXPECT_EQ(Files.size(), 2U);
}

TEST(GetDiskObjectTest, AGuessedTypeIsNotWritten) {
    const std::string file = Sample("gen_png_single_rgba");
    Files = {{"Work:text.info", file}};
    auto object = icon::GetDiskObject("Work:text");
    ASSERT_TRUE(object);
    EXPECT_TRUE(icon::PutDiskObject("Work:text", *object));
    EXPECT_EQ(Files["Work:text.info"], file);
    object->Type = icon::IconType::Kick;
    EXPECT_TRUE(icon::PutDiskObject("Work:text", *object));
    EXPECT_EQ(icon::GetDiskObject("Work:text")->Type, icon::IconType::Kick);
}

TEST(GetDiskObjectTest, DefaultIconsFallBackToTheirTypeAndToBuiltInOnes) {
    const std::string drawer = Sample("os35_drawer_uncompressed_palette"),
                      project = Sample("os35_project_tooltypes");
    Files = {{"ENVARC:Sys/def_drawer.info", drawer},
             {"ENVARC:Sys/def_project.info", project},
             {"ENVARC:Sys/def_picture.info", Sample("gen_png_two_images")},
             {"ENVARC:Sys/def_broken.info", "broken"},
             {"ENVARC:Sys/def_../evil.info", drawer}};
    EXPECT_EQ(*icon::GetDefaultIcon(icon::IconType::Drawer).File, drawer);
    EXPECT_EQ(icon::GetDefaultIcon(icon::IconType::Drawer).CurrentX, icon::NoIconPosition);
    EXPECT_EQ(icon::GetDefaultIcon("picture").Format, icon::IconFormat::Png);
    EXPECT_EQ(icon::GetDefaultIcon("picture").Type, icon::IconType::Project);
    for (const std::string_view kind : {"jpeg", "broken", "../evil", ""})
        EXPECT_EQ(*icon::GetDefaultIcon(kind).File, project) << kind;
    Files.clear();
    for (int type = 1; type <= 8; ++type) {
        const icon::DiskObject object = icon::GetDefaultIcon(static_cast<icon::IconType>(type));
        EXPECT_EQ(object.Type, static_cast<icon::IconType>(type));
        const auto picture = icon::GetIconPicture(object, icon::IconState::Normal);
        ASSERT_TRUE(picture) << type;
        EXPECT_NE(picture->Pixels, icon::GetIconPicture(object, icon::IconState::Selected)->Pixels) << type;
    }
}

TEST(GetDiskObjectTest, DeletingAnIconLeavesItsObject) {
    Files = {{"Work:a", ""}, {"Work:a.info", ""}, {"Work:Disk.info", ""}, {"Work:Disk", ""}};
    EXPECT_TRUE(icon::DeleteDiskObject("Work:a"));
    EXPECT_TRUE(icon::DeleteDiskObject("Work:"));
    EXPECT_FALSE(icon::DeleteDiskObject("Work:b"));
    EXPECT_EQ(Files, (decltype(Files){{"Work:a", ""}, {"Work:Disk", ""}}));
}

} // namespace
