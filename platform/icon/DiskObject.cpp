#include "platform/icon/Icon.h"
#include "platform/icon/IconKinds.h"
#include "platform/icon/IconText.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace icon {
namespace {

std::string_view ToolTypeName(std::string_view text) {
    return text.substr(0, text.find('='));
}

auto IsToolType(std::string_view name) {
    return [name](std::string_view text) { return utility::Stricmp(ToolTypeName(text), name) == 0; };
}

} // namespace

std::optional<DiskObject> ParseDiskObject(std::span<const std::byte> file) {
    const auto bytes =
        std::make_shared<const std::string>(reinterpret_cast<const char*>(file.data()), file.size());
    std::optional<DiskObject> object = IsPng(*bytes) ? ParsePngIcon(*bytes) : ParseClassicIcon(*bytes);
    if (object)
        object->File = bytes;
    return object;
}

std::optional<std::string> WriteDiskObject(const DiskObject& object) {
    if (object.ToolTypes.size() + object.ImageToolTypes.size() > MaxToolTypes)
        return std::nullopt; // could not be read again
    if (!object.File)
        return WriteClassicIcon(NewClassicIcon(IconType::Project), object);
    return IsPng(*object.File) ? WritePngIcon(*object.File, object) : WriteClassicIcon(*object.File, object);
}

bool FitsIcon(const DiskObject& object, std::string_view text) {
    return (object.File && IsPng(*object.File) ? PngText(text) : ClassicText(text)).has_value();
}

std::optional<std::string> FindToolType(const DiskObject& object, std::string_view name) {
    const auto found = std::ranges::find_if(object.ToolTypes, IsToolType(name));
    if (found == object.ToolTypes.end())
        return std::nullopt;
    return found->substr(std::min(ToolTypeName(*found).size() + 1, found->size()));
}

bool MatchToolValue(std::string_view toolValue, std::string_view value) {
    for (std::size_t start = 0; start <= toolValue.size();) {
        const std::size_t end = std::min(toolValue.find('|', start), toolValue.size());
        if (utility::Stricmp(toolValue.substr(start, end - start), value) == 0)
            return true;
        start = end + 1;
    }
    return false;
}

void SetToolType(DiskObject& object, std::string_view name, std::string_view value) {
    auto found = std::ranges::find_if(object.ToolTypes, IsToolType(name));
    if (found == object.ToolTypes.end())
        found = object.ToolTypes.emplace(found, name);
    std::string text(ToolTypeName(*found));
    if (!value.empty())
        text.append("=").append(value);
    *found = std::move(text);
}

bool RemoveToolType(DiskObject& object, std::string_view name) {
    return std::erase_if(object.ToolTypes, IsToolType(name)) > 0;
}

} // namespace icon
