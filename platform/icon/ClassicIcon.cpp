#include "platform/icon/ByteReader.h"
#include "platform/icon/IconKinds.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace icon {
namespace {

constexpr std::uint16_t DiskMagic = 0xE310;
constexpr std::uint16_t HasImageFlag = 4;   // of the gadget: the first image is there
constexpr std::uint16_t HighlightMask = 3;  // how a selected icon is shown
constexpr std::uint16_t HighlightImage = 2; // by the second image
constexpr std::int32_t MaxImageSize = 1024; // pixels, of an image that only a flag announces
constexpr std::int32_t MaxImageDepth = 8;

// What the fixed record says about the parts behind it.
struct Parts {
    bool DefaultTool, ToolTypes, DrawerData, ToolWindow;
    bool Image, SecondImage; // by their pointers
    std::uint16_t GadgetFlags;
};

bool ReadGadget(ByteReader& reader, DiskObject& object, Parts& parts) {
    reader.Skip(8); // next gadget, left, top
    object.Width = reader.SignedWord();
    object.Height = reader.SignedWord();
    parts.GadgetFlags = reader.Word();
    reader.Skip(4); // activation, type
    parts.Image = reader.Long() != 0;
    parts.SecondImage = reader.Long() != 0;
    reader.Skip(14); // text, exclude, special info, id
    object.Revision = static_cast<std::uint8_t>(reader.Long() & 0xFF);
    return !reader.Failed();
}

bool ReadRecord(ByteReader& reader, DiskObject& object, Parts& parts) {
    if (reader.Word() != DiskMagic)
        return false;
    reader.Skip(2); // version
    if (!ReadGadget(reader, object, parts))
        return false;
    const std::uint8_t type = reader.Byte();
    reader.Skip(1);
    parts.DefaultTool = reader.Long() != 0;
    parts.ToolTypes = reader.Long() != 0;
    object.CurrentX = reader.SignedLong();
    object.CurrentY = reader.SignedLong();
    parts.DrawerData = reader.Long() != 0;
    parts.ToolWindow = reader.Long() != 0;
    object.StackSize = std::max(reader.SignedLong(), MinStackSize);
    object.Type = static_cast<IconType>(type);
    return !reader.Failed() && type >= static_cast<std::uint8_t>(IconType::Disk) &&
           type <= static_cast<std::uint8_t>(IconType::AppIcon);
}

DrawerData ReadDrawerData(ByteReader& reader) {
    DrawerData drawer{};
    drawer.Left = reader.SignedWord();
    drawer.Top = reader.SignedWord();
    drawer.Width = reader.SignedWord();
    drawer.Height = reader.SignedWord();
    reader.Skip(40); // the rest of the window record
    drawer.CurrentX = reader.SignedLong();
    drawer.CurrentY = reader.SignedLong();
    return drawer;
}

struct ImageHeader {
    std::int32_t Width, Height, Depth;
    bool HasData;
};

ImageHeader ReadImageHeader(ByteReader& reader) {
    reader.Skip(4); // left, top
    ImageHeader header{};
    header.Width = reader.SignedWord();
    header.Height = reader.SignedWord();
    header.Depth = reader.SignedWord();
    header.HasData = reader.Long() != 0;
    reader.Skip(6); // plane pick, plane on/off, next image
    return header;
}

// Passes over an image and its planes; false when it reaches past the end or has no possible size.
bool SkipImage(ByteReader& reader) {
    const ImageHeader header = ReadImageHeader(reader);
    if (header.Width < 0 || header.Height < 0 || header.Depth < 0)
        return false;
    if (header.HasData) {
        const std::int64_t rowBytes = (header.Width + 15) / 16 * 2;
        reader.Skip(static_cast<std::size_t>(rowBytes * header.Height * header.Depth));
    }
    return !reader.Failed();
}

// Some writers set only the flag of an image, some set it without an image: it is there when it
// looks like one.
bool LooksLikeImage(ByteReader reader) {
    ByteReader whole = reader;
    const ImageHeader header = ReadImageHeader(reader);
    return header.Width > 0 && header.Width <= MaxImageSize && header.Height > 0 &&
           header.Height <= MaxImageSize && header.Depth > 0 && header.Depth <= MaxImageDepth &&
           header.HasData && SkipImage(whole);
}

bool SkipImages(ByteReader& reader, const Parts& parts) {
    const bool flagged = (parts.GadgetFlags & HasImageFlag) != 0;
    if ((parts.Image || (flagged && LooksLikeImage(reader))) && !SkipImage(reader))
        return false;
    const bool highlight = (parts.GadgetFlags & HighlightMask) == HighlightImage;
    return !(parts.SecondImage || (highlight && LooksLikeImage(reader))) || SkipImage(reader);
}

// A text with its length before it; the length counts the final NUL.
std::string_view ReadText(ByteReader& reader) {
    const std::string_view text = reader.Raw(reader.Long());
    return text.substr(0, text.find('\0'));
}

// The texts of the tool type array, as they stand in the file.
std::vector<std::string> ReadToolTypes(ByteReader& reader) {
    const std::uint32_t slots = reader.Long() / 4; // one more than there are texts
    std::vector<std::string> texts;
    for (std::uint32_t i = 1; i < slots && !reader.Failed(); ++i)
        texts.emplace_back(ReadText(reader));
    return texts;
}

bool IsImageLine(std::string_view text) {
    return text.starts_with("IM1=") || text.starts_with("IM2=");
}

// Parts the tool types of the user from the lines in which a NewIcon hides its images. All lines
// from the warning on are image data; where some tool has taken the warning away, the image lines
// are known by their names.
void SplitToolTypes(std::vector<std::string> texts, DiskObject& object) {
    auto hidden = texts.begin();
    while (hidden != texts.end() && !(*hidden == " " && std::next(hidden) != texts.end() &&
                                      std::next(hidden)->starts_with("*** DON'T EDIT")))
        ++hidden;
    if (hidden == texts.end())
        hidden = std::stable_partition(texts.begin(), texts.end(),
                                       [](const std::string& text) { return !IsImageLine(text); });
    std::transform(texts.begin(), hidden, std::back_inserter(object.ToolTypes), utility::Utf8FromLatin1);
    object.ImageToolTypes.assign(std::move_iterator(hidden), std::move_iterator(texts.end()));
    if (std::ranges::any_of(object.ImageToolTypes, IsImageLine))
        object.Format = IconFormat::NewIcon;
}

// The pictures of later systems in an IFF form at the end; bytes before it and chunks cut short are
// passed over.
void FindColourImages(std::span<const std::byte> tail, DiskObject& object) {
    const std::string_view bytes(reinterpret_cast<const char*>(tail.data()), tail.size());
    std::size_t form = bytes.find("FORM");
    while (form != std::string_view::npos && bytes.substr(std::min(form + 8, bytes.size()), 4) != "ICON")
        form = bytes.find("FORM", form + 1);
    if (form == std::string_view::npos)
        return;
    ByteReader reader(tail.subspan(form + 12));
    while (reader.Left() >= 8) {
        const std::string_view id = reader.Raw(4);
        const std::uint32_t size = reader.Long();
        if (id == "ARGB")
            object.Format = IconFormat::Argb;
        else if (id == "IMAG" && object.Format != IconFormat::Argb)
            object.Format = IconFormat::Colour;
        reader.Skip(std::min<std::size_t>(std::size_t{size} + size % 2, reader.Left()));
    }
}

// What may be cut off without harm to the object: tool window, second drawer record, colour images.
void ReadTail(std::span<const std::byte> file, ByteReader reader, const Parts& parts, DiskObject& object) {
    if (parts.ToolWindow)
        object.ToolWindow = utility::Utf8FromLatin1(ReadText(reader));
    if (object.Drawer && object.Revision == 1) {
        const std::uint32_t flags = reader.Long();
        const std::uint16_t modes = reader.Word();
        if (!reader.Failed()) {
            object.Drawer->Flags = flags;
            object.Drawer->ViewModes = modes;
        }
    }
    FindColourImages(file.subspan(reader.Position()), object);
}

} // namespace

std::optional<DiskObject> ParseClassicIcon(std::span<const std::byte> file) {
    ByteReader reader(file);
    DiskObject object;
    Parts parts{};
    if (!ReadRecord(reader, object, parts))
        return std::nullopt;
    if (parts.DrawerData)
        object.Drawer = ReadDrawerData(reader);
    if (!SkipImages(reader, parts))
        return std::nullopt;
    if (parts.DefaultTool)
        object.DefaultTool = utility::Utf8FromLatin1(ReadText(reader));
    if (parts.ToolTypes)
        SplitToolTypes(ReadToolTypes(reader), object);
    if (reader.Failed())
        return std::nullopt;
    ReadTail(file, reader, parts, object);
    return object;
}

} // namespace icon
