// Exercises the readers of icon files, classic and PNG, the decoders of their pictures, drawing, and
// writing: an unchanged object gives the same bytes, a changed one is read back.
#include "platform/icon/IconPicture.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace {

void Require(bool isSo) {
    if (!isSo)
        std::abort();
}

void CheckToolTypes(const icon::DiskObject& object) {
    for (const std::string& text : object.ToolTypes) {
        const std::string name = text.substr(0, text.find('='));
        Require(icon::FindToolType(object, name).has_value());
        (void)icon::MatchToolValue(text, name);
    }
}

void CheckPictures(const icon::DiskObject& object, std::uint32_t side) {
    for (const icon::IconState state : {icon::IconState::Normal, icon::IconState::Selected}) {
        if (const auto picture = icon::GetIconPicture(object, state)) {
            Require(picture->Width > 0 && picture->Width <= icon::MaxPictureSide);
            Require(picture->Pixels.size() == std::size_t{picture->Width} * picture->Height);
        }
        if (const auto drawn = icon::DrawIcon(object, side, 40, state)) {
            Require(drawn->Width <= side && drawn->Height <= 40);
            Require(drawn->Pixels.size() == std::size_t{drawn->Width} * drawn->Height);
        }
    }
}

void CheckWriting(const icon::DiskObject& object) {
    Require(icon::WriteDiskObject(object) == *object.File);
    icon::DiskObject changed = object;
    icon::SetToolType(changed, "FUZZ", "1");
    changed.CurrentX = 77;
    changed.DefaultTool = "Tool";
    changed.Drawer = icon::DrawerData{1, 2, 3, 4, 5, 6, 2, 3};
    const auto bytes = icon::WriteDiskObject(changed);
    if (!bytes)
        return; // a PNG without an end
    const auto again = icon::ParseDiskObject(std::as_bytes(std::span(*bytes)));
    Require(again && again->CurrentX == 77 && again->DefaultTool == "Tool");
    Require(again->ToolTypes == changed.ToolTypes && again->Drawer == changed.Drawer);
    Require(again->ToolWindow == object.ToolWindow && again->StackSize == object.StackSize);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto object = icon::ParseDiskObject(std::as_bytes(std::span(data, size)));
    if (!object)
        return 0;
    Require(object->Type <= icon::IconType::AppIcon && object->StackSize >= icon::MinStackSize);
    CheckToolTypes(*object);
    CheckPictures(*object, static_cast<std::uint32_t>(size % 96 + 1));
    CheckWriting(*object);
    return 0;
}
