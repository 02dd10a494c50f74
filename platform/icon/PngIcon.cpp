#include "platform/icon/ByteReader.h"
#include "platform/icon/IconKinds.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace icon {
namespace {

constexpr std::string_view PngSignature("\x89PNG\r\n\x1A\n", 8);

// Items of the icon chunk. Texts are marked so in the names, all others are one number.
enum class IconTag : std::uint32_t {
    X = 0x80001001,
    Y = 0x80001002,
    DrawerX = 0x80001003,
    DrawerY = 0x80001004,
    DrawerWidth = 0x80001005,
    DrawerHeight = 0x80001006,
    DrawerFlags = 0x80001007,
    ToolWindowText = 0x80001008,
    StackSize = 0x80001009,
    DefaultToolText = 0x8000100A,
    ToolTypeText = 0x8000100B,
    ViewModes = 0x8000100C,
    ScrollX = 0x8000100D,
    ScrollY = 0x8000100E,
    Type = 0x8000100F,
    Frameless = 0x80001010,
    DrawerFlags2 = 0x80001107,
};

constexpr std::uint32_t ShowAllFlag = 1;
constexpr std::uint32_t ShowIconsFlag = 2;
constexpr std::uint32_t SortShift = 2;

std::int16_t Coordinate(std::uint32_t value) {
    return static_cast<std::int16_t>(
        std::clamp(static_cast<std::int32_t>(value), INT16_MIN + 0, INT16_MAX + 0));
}

// Drawer flags as the record of classic icons has them.
void SetDrawerFlags(DrawerData& drawer, std::uint32_t flags) {
    drawer.Flags = (flags & ShowAllFlag) != 0 ? 2 : 1;
    if (drawer.ViewModes == 0)
        drawer.ViewModes = (flags & ShowIconsFlag) != 0
                               ? std::uint16_t{1}
                               : static_cast<std::uint16_t>(2 + ((flags >> SortShift) & 3));
}

DrawerData& DrawerOf(DiskObject& object) {
    if (!object.Drawer)
        object.Drawer.emplace();
    return *object.Drawer;
}

// Stores a text item; false when the tag is none.
bool SetText(IconTag tag, ByteReader& reader, DiskObject& object) {
    if (tag != IconTag::ToolWindowText && tag != IconTag::DefaultToolText && tag != IconTag::ToolTypeText)
        return false;
    std::string text = utility::Utf8FromLatin1(reader.UntilNul());
    if (reader.Failed())
        return true;
    if (tag == IconTag::ToolTypeText)
        object.ToolTypes.push_back(std::move(text));
    else
        (tag == IconTag::ToolWindowText ? object.ToolWindow : object.DefaultTool) = std::move(text);
    // Some writers pad texts with zeros; a tag never begins with one.
    while (reader.Left() > 0 && reader.Peek() == 0)
        reader.Skip(1);
    return true;
}

// Stores a number of the drawer's window; false when the tag is none.
bool SetDrawerNumber(IconTag tag, std::uint32_t value, DiskObject& object) {
    switch (tag) {
    case IconTag::DrawerX:
        DrawerOf(object).Left = Coordinate(value);
        return true;
    case IconTag::DrawerY:
        DrawerOf(object).Top = Coordinate(value);
        return true;
    case IconTag::DrawerWidth:
        DrawerOf(object).Width = Coordinate(value);
        return true;
    case IconTag::DrawerHeight:
        DrawerOf(object).Height = Coordinate(value);
        return true;
    case IconTag::DrawerFlags:
        SetDrawerFlags(DrawerOf(object), value);
        return true;
    case IconTag::ViewModes:
        DrawerOf(object).ViewModes = static_cast<std::uint16_t>(std::min(value, 5U));
        return true;
    case IconTag::ScrollX:
        DrawerOf(object).CurrentX = static_cast<std::int32_t>(value);
        return true;
    case IconTag::ScrollY:
        DrawerOf(object).CurrentY = static_cast<std::int32_t>(value);
        return true;
    default:
        return false;
    }
}

// Stores a number; false when the tag is unknown, so that the size of its item is unknown too.
bool SetNumber(IconTag tag, std::uint32_t value, DiskObject& object) {
    switch (tag) {
    case IconTag::X:
        object.CurrentX = static_cast<std::int32_t>(value);
        return true;
    case IconTag::Y:
        object.CurrentY = static_cast<std::int32_t>(value);
        return true;
    case IconTag::StackSize:
        object.StackSize = std::max(static_cast<std::int32_t>(value), MinStackSize);
        return true;
    case IconTag::Type:
        if (value >= 1 && value <= 7)
            object.Type = static_cast<IconType>(value);
        return true;
    case IconTag::Frameless:
    case IconTag::DrawerFlags2:
        return true;
    default:
        return SetDrawerNumber(tag, value, object);
    }
}

void ReadIconChunk(std::string_view chunk, DiskObject& object) {
    ByteReader reader(std::as_bytes(std::span(chunk)));
    while (reader.Left() >= 4 && !reader.Failed()) {
        const auto tag = static_cast<IconTag>(reader.Long());
        if (SetText(tag, reader, object))
            continue;
        const std::uint32_t value = reader.Long();
        if (reader.Failed() || !SetNumber(tag, value, object))
            return;
    }
}

} // namespace

bool IsPng(std::span<const std::byte> file) {
    return ByteReader(file).Raw(PngSignature.size()) == PngSignature;
}

std::optional<DiskObject> ParsePngIcon(std::span<const std::byte> file) {
    if (!IsPng(file))
        return std::nullopt;
    DiskObject object;
    object.Format = IconFormat::Png;
    ByteReader reader(file.subspan(PngSignature.size()));
    while (!reader.Failed()) {
        const std::uint32_t size = reader.Long();
        const std::string_view id = reader.Raw(4);
        const std::string_view data = reader.Raw(size);
        reader.Skip(4); // checksum
        if (id == "icOn" && !reader.Failed())
            ReadIconChunk(data, object);
        if (id == "icOn" || id == "IEND")
            break;
    }
    return object;
}

} // namespace icon
