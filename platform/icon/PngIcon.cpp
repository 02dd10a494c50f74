#include "platform/icon/IconKinds.h"
#include "platform/icon/IconText.h"
#include "platform/icon/PngChunks.h"
#include "platform/icon/PngItems.h"

#include <algorithm>

namespace icon {
namespace {

std::int16_t Coordinate(std::uint32_t value) {
    return static_cast<std::int16_t>(
        std::clamp(static_cast<std::int32_t>(value), INT16_MIN + 0, INT16_MAX + 0));
}

DrawerData& DrawerOf(DiskObject& object) {
    if (!object.Drawer)
        object.Drawer.emplace();
    return *object.Drawer;
}

void SetText(const PngItem& item, DiskObject& object) {
    std::string text = Utf8FromPngText(item.Text);
    if (item.Tag == IconTag::ToolTypeText)
        object.ToolTypes.push_back(std::move(text));
    else
        (item.Tag == IconTag::ToolWindowText ? object.ToolWindow : object.DefaultTool) = std::move(text);
}

// A number of the drawer's window.
void SetDrawerNumber(const PngItem& item, DiskObject& object) {
    switch (item.Tag) {
    case IconTag::DrawerX:
        DrawerOf(object).Left = Coordinate(item.Number);
        break;
    case IconTag::DrawerY:
        DrawerOf(object).Top = Coordinate(item.Number);
        break;
    case IconTag::DrawerWidth:
        DrawerOf(object).Width = Coordinate(item.Number);
        break;
    case IconTag::DrawerHeight:
        DrawerOf(object).Height = Coordinate(item.Number);
        break;
    case IconTag::ScrollX:
        DrawerOf(object).CurrentX = static_cast<std::int32_t>(item.Number);
        break;
    case IconTag::ScrollY:
        DrawerOf(object).CurrentY = static_cast<std::int32_t>(item.Number);
        break;
    default:
        break;
    }
}

void SetNumber(const PngItem& item, DiskObject& object) {
    switch (item.Tag) {
    case IconTag::X:
        object.CurrentX = static_cast<std::int32_t>(item.Number);
        break;
    case IconTag::Y:
        object.CurrentY = static_cast<std::int32_t>(item.Number);
        break;
    case IconTag::StackSize:
        object.StackSize = std::max(static_cast<std::int32_t>(item.Number), MinStackSize);
        break;
    case IconTag::Type:
        if (item.Number >= 1 && item.Number <= 7)
            object.Type = static_cast<IconType>(item.Number);
        break;
    default:
        SetDrawerNumber(item, object);
    }
}

// The flags tell the view only where no item of its own does.
void SetDrawerView(const std::vector<PngItem>& items, DiskObject& object) {
    const PngItem* flags = nullptr;
    const PngItem* modes = nullptr;
    for (const PngItem& item : items) {
        if (item.Tag == IconTag::DrawerFlags)
            flags = &item;
        else if (item.Tag == IconTag::ViewModes)
            modes = &item;
    }
    if (flags != nullptr) {
        DrawerOf(object).Flags = (flags->Number & ShowAllFlag) != 0 ? 2 : 1;
        DrawerOf(object).ViewModes = (flags->Number & ShowIconsFlag) != 0
                                         ? std::uint16_t{1}
                                         : static_cast<std::uint16_t>(2 + ((flags->Number >> SortShift) & 3));
    }
    if (modes != nullptr)
        DrawerOf(object).ViewModes = static_cast<std::uint16_t>(std::min(modes->Number, 5U));
}

bool ReadIconChunk(std::string_view chunk, DiskObject& object) {
    const PngItems items = SplitPngItems(chunk);
    if (items.Items.size() > MaxPngItems)
        return false;
    for (const PngItem& item : items.Items) {
        if (IsTextTag(item.Tag))
            SetText(item, object);
        else
            SetNumber(item, object);
    }
    SetDrawerView(items.Items, object);
    return object.ToolTypes.size() <= MaxToolTypes;
}

} // namespace

bool IsPng(std::string_view file) {
    return file.starts_with(PngSignature);
}

std::optional<DiskObject> ParsePngIcon(std::string_view file) {
    if (!IsPng(file))
        return std::nullopt;
    DiskObject object;
    object.Format = IconFormat::Png;
    PngChunkReader reader(file);
    while (const auto chunk = reader.Next()) {
        if (chunk->Id == IconChunk) {
            if (!ReadIconChunk(chunk->Data, object))
                return std::nullopt;
            break;
        }
    }
    return object;
}

} // namespace icon
