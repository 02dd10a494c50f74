#include "sak/Icons.h"

#include "platform/dos/Paths.h"

#include <array>
#include <string>

namespace solvane {

std::optional<icon::DiskObject> SAK_GetProgramIcon(std::string_view name, std::string_view drawer) {
    const std::array<std::string, 4> places = {std::string(name), "PROGDIR:" + std::string(name),
                                               dos::AddPart(drawer, name).value_or(std::string(name)),
                                               std::string(drawer)};
    for (const std::string& place : places) {
        auto object = icon::GetDiskObject(place);
        if (object && object->Type == icon::IconType::Tool) {
            return object;
        }
    }
    return std::nullopt;
}

} // namespace solvane
