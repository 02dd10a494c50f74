#include "platform/icon/Icon.h"
#include "platform/icon/IconKinds.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace icon {

std::optional<DiskObject> ParseDiskObject(std::span<const std::byte> file) {
    return IsPng(file) ? ParsePngIcon(file) : ParseClassicIcon(file);
}

std::optional<std::string> FindToolType(const DiskObject& object, std::string_view name) {
    for (const std::string_view text : object.ToolTypes) {
        const std::size_t nameEnd = std::min(text.find('='), text.size());
        if (utility::Stricmp(text.substr(0, nameEnd), name) == 0)
            return std::string(text.substr(std::min(nameEnd + 1, text.size())));
    }
    return std::nullopt;
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

} // namespace icon
