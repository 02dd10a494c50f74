#include "platform/icon/ClassicParts.h"

#include "platform/icon/Icon.h"

#include <algorithm>
#include <iterator>

namespace icon {
namespace {

constexpr std::int32_t MaxFlaggedSide = 1024; // pixels, of an image that only a flag announces

void SkipText(ByteReader& reader) {
    reader.Skip(reader.Long());
}

void SkipToolTypes(ByteReader& reader) {
    const std::uint32_t slots = reader.Long() / 4; // one more than there are texts
    if (slots > MaxToolTypes + 1)
        reader.Fail();
    for (std::uint32_t i = 1; i < slots && !reader.Failed(); ++i)
        SkipText(reader);
}

// Passes over an image and its planes; false when it reaches past the end or has no possible size.
bool SkipImage(ByteReader& reader) {
    const ImageHeader header = ReadImageHeader(reader);
    if (header.Width < 0 || header.Height < 0 || header.Depth < 0)
        return false;
    if (header.HasData)
        reader.Skip(PlaneRowBytes(header.Width) * static_cast<std::size_t>(header.Height) *
                    static_cast<std::size_t>(header.Depth));
    return !reader.Failed();
}

// Some writers set only the flag of an image, some set it without an image: it is there when it
// looks like one.
bool LooksLikeImage(ByteReader reader) {
    ByteReader whole = reader;
    const ImageHeader header = ReadImageHeader(reader);
    return header.Width > 0 && header.Width <= MaxFlaggedSide && header.Height > 0 &&
           header.Height <= MaxFlaggedSide && header.Depth > 0 && header.Depth <= MaxPlanes &&
           header.HasData && SkipImage(whole);
}

// Cuts the parts off a file, one after the other.
class Splitter {
public:
    explicit Splitter(std::string_view file) : File(file), Reader(file) {}

    template <typename Skip>
    std::string_view Part(bool isThere, Skip skip) {
        const std::size_t start = Reader.Position();
        if (isThere)
            skip(Reader);
        return Reader.Failed() ? std::string_view() : File.substr(start, Reader.Position() - start);
    }
    // The same for a part that may be cut off: then it is not taken.
    template <typename Skip>
    std::string_view OptionalPart(bool isThere, Skip skip) {
        const ByteReader before = Reader;
        const std::string_view part = Part(isThere, skip);
        if (Reader.Failed())
            Reader = before;
        return part;
    }
    std::string_view Image(bool pointer, bool flag) {
        return Part(pointer || (flag && LooksLikeImage(Reader)),
                    [this](ByteReader& reader) { Broken = Broken || !SkipImage(reader); });
    }
    [[nodiscard]] bool Failed() const { return Broken || Reader.Failed(); }
    [[nodiscard]] std::string_view Rest() const { return File.substr(Reader.Position()); }

private:
    std::string_view File;
    ByteReader Reader;
    bool Broken = false;
};

} // namespace

ImageHeader ReadImageHeader(ByteReader& reader) {
    reader.Skip(4); // left, top
    ImageHeader header{};
    header.Width = reader.SignedWord();
    header.Height = reader.SignedWord();
    header.Depth = reader.SignedWord();
    header.HasData = reader.Long() != 0;
    header.PlanePick = reader.Byte();
    header.PlaneOnOff = reader.Byte();
    reader.Skip(4); // next image
    return header;
}

std::optional<ClassicParts> SplitClassicIcon(std::string_view file) {
    const auto skip = [](std::size_t size) { return [size](ByteReader& reader) { reader.Skip(size); }; };
    Splitter splitter(file);
    ClassicParts parts;
    parts.Record = splitter.Part(true, skip(RecordSize));
    if (splitter.Failed() || WordAt(file, 0) != DiskMagic)
        return std::nullopt;
    const auto has = [&](std::size_t pointer) { return LongAt(parts.Record, pointer) != 0; };
    const std::uint16_t flags = WordAt(parts.Record, RecordGadgetFlags);
    parts.Drawer = splitter.Part(has(RecordDrawer), skip(DrawerSize));
    parts.Image = splitter.Image(has(RecordImage), (flags & HasImageFlag) != 0);
    parts.SecondImage = splitter.Image(has(RecordSecondImage), (flags & HighlightMask) == HighlightImage);
    parts.DefaultTool = splitter.Part(has(RecordDefaultTool), SkipText);
    parts.ToolTypes = splitter.Part(has(RecordToolTypes), SkipToolTypes);
    if (splitter.Failed())
        return std::nullopt;
    parts.ToolWindow = splitter.OptionalPart(has(RecordToolWindow), SkipText);
    const bool windowWhole = !has(RecordToolWindow) || !parts.ToolWindow.empty();
    const bool revised = (LongAt(parts.Record, RecordUserData) & 0xFF) == 1;
    parts.Drawer2 = splitter.OptionalPart(windowWhole && revised && !parts.Drawer.empty(), skip(Drawer2Size));
    parts.Rest = splitter.Rest();
    return parts;
}

std::string_view TextOf(std::string_view part) {
    const std::string_view text = part.substr(std::min<std::size_t>(4, part.size()));
    return text.substr(0, text.find('\0'));
}

ToolTypeRecords SplitToolTypes(std::string_view part) {
    ByteReader reader(part);
    const std::uint32_t slots = reader.Long() / 4;
    std::vector<std::string_view> records;
    for (std::uint32_t i = 1; i < slots && !reader.Failed(); ++i) {
        const std::size_t start = reader.Position();
        SkipText(reader);
        if (!reader.Failed())
            records.push_back(part.substr(start, reader.Position() - start));
    }
    auto hidden = records.begin();
    while (hidden != records.end() && !(TextOf(*hidden) == " " && std::next(hidden) != records.end() &&
                                        TextOf(*std::next(hidden)).starts_with("*** DON'T EDIT")))
        ++hidden;
    if (hidden == records.end())
        hidden = std::stable_partition(records.begin(), records.end(),
                                       [](std::string_view record) { return !IsImageLine(TextOf(record)); });
    return {{records.begin(), hidden}, {hidden, records.end()}};
}

bool IsImageLine(std::string_view text) {
    return text.starts_with("IM1=") || text.starts_with("IM2=");
}

} // namespace icon
