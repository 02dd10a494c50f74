// The icon service over files that stand in a table: this program links its own reading half of dos.
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/icon/Icon.h"

#include <gtest/gtest.h>
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

} // namespace
