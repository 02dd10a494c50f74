#include "platform/dos/Files.h"
#include "platform/icon/Icon.h"
#include "platform/icon/IconKinds.h"

namespace icon {
namespace {

std::string_view KindOf(IconType type) {
    switch (type) {
    case IconType::Disk:
    case IconType::Device:
        return "disk";
    case IconType::Drawer:
        return "drawer";
    case IconType::Tool:
    case IconType::AppIcon:
        return "tool";
    case IconType::Garbage:
        return "trashcan";
    case IconType::Kick:
        return "kick";
    default:
        return "project";
    }
}

std::optional<DiskObject> ReadDefault(std::string_view kind) {
    // A kind may come from a file's name: it must not lead elsewhere.
    if (kind.empty() || kind.find_first_of(":/") != std::string_view::npos)
        return std::nullopt;
    const auto file = dos::ReadWhole("ENVARC:Sys/def_" + std::string(kind) + ".info", MaxIconFile);
    return file ? ParseDiskObject(std::as_bytes(std::span(*file))) : std::nullopt;
}

} // namespace

DiskObject GetDefaultIcon(IconType type) {
    return GetDefaultIcon(KindOf(type), type);
}

DiskObject GetDefaultIcon(std::string_view kind, IconType type) {
    std::optional<DiskObject> object = ReadDefault(kind);
    if (!object && kind != KindOf(type))
        object = ReadDefault(KindOf(type));
    if (!object)
        object = BuiltInIcon(type);
    if (object->Type == IconType::None)
        object->Type = type;
    object->CurrentX = object->CurrentY = NoIconPosition;
    return *std::move(object);
}

} // namespace icon
