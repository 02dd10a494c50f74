#include "platform/icon/Icon.h"

#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/Paths.h"
#include "platform/icon/IconKinds.h"
#include "platform/utility/Text.h"

namespace icon {
namespace {

// The object whose icon is asked for: a root has its icon as the file "Disk" in it.
std::string ObjectName(std::string_view name) {
    if (name.ends_with('/') && !name.ends_with("//"))
        name.remove_suffix(1);
    std::string object(name);
    if (object.ends_with(':'))
        object += "Disk";
    return object;
}

bool IsDiskName(std::string_view object) {
    return dos::PathPart(object).ends_with(':') && utility::Stricmp(dos::FilePart(object), "Disk") == 0;
}

// The type that an icon without one gets from its object; a missing object is no error here.
IconType TypeOfObject(const std::string& object, const DiskObject& icon) {
    if (IsDiskName(object))
        return IconType::Disk;
    const auto data = dos::ExamineObject(object);
    if (data && data->Type == dos::TypeDrawer)
        return IconType::Drawer;
    return icon.DefaultTool.empty() ? IconType::Tool : IconType::Project;
}

} // namespace

std::optional<DiskObject> GetDiskObject(std::string_view name) {
    const std::string object = ObjectName(name);
    const std::optional<std::string> file = dos::ReadWhole(object + ".info", MaxIconFile);
    if (!file)
        return std::nullopt;
    std::optional<DiskObject> icon = ParseDiskObject(std::as_bytes(std::span(*file)));
    if (!icon)
        dos::SetIoErr(dos::ErrorObjectWrongType);
    else if (icon->Type == IconType::None)
        icon->Type = icon->GuessedType = TypeOfObject(object, *icon);
    return icon;
}

bool PutDiskObject(std::string_view name, const DiskObject& object) {
    const std::optional<std::string> file = WriteDiskObject(object);
    if (!file) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
        return false;
    }
    return dos::WriteWhole(ObjectName(name) + ".info", *file);
}

bool DeleteDiskObject(std::string_view name) {
    return dos::Delete(ObjectName(name) + ".info");
}

bool PutIconPosition(std::string_view name, std::int32_t x, std::int32_t y) {
    std::optional<DiskObject> object = GetDiskObject(name);
    if (!object)
        return false;
    object->CurrentX = x;
    object->CurrentY = y;
    return PutDiskObject(name, *object);
}

} // namespace icon
