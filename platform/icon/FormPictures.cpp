#include "platform/icon/ByteReader.h"
#include "platform/icon/PictureKinds.h"

#include <algorithm>
#include <zlib.h>

namespace icon {
namespace {

constexpr std::uint8_t HasTransparent = 1, HasPalette = 2; // flags of a colour picture
constexpr std::uint8_t RunLength = 1;                      // a coding; 0 is none
constexpr std::size_t ArgbHeader = 10;                     // bytes before the packed pixels

// A stream of bits in bytes, most significant first; reads past its end give zeros and fail.
class BitReader {
public:
    explicit BitReader(std::string_view bytes) : Bytes(bytes) {}

    std::uint8_t Take(unsigned bits) {
        while (Held < bits && At < Bytes.size()) {
            Buffer = Buffer << 8 | static_cast<std::uint8_t>(Bytes[At++]);
            Held += 8;
        }
        if (Held < bits) {
            HasFailed = true;
            return 0;
        }
        Held -= bits;
        return static_cast<std::uint8_t>(Buffer >> Held & ((1U << bits) - 1));
    }
    [[nodiscard]] bool Failed() const { return HasFailed; }

private:
    std::string_view Bytes;
    std::size_t At = 0;
    std::uint32_t Buffer = 0;
    unsigned Held = 0;
    bool HasFailed = false;
};

// Runs of values, until there are count of them or the bytes end.
std::vector<std::uint8_t> UnpackRuns(std::string_view bytes, unsigned bits, std::size_t count) {
    BitReader reader(bytes);
    std::vector<std::uint8_t> values;
    while (values.size() < count) {
        const std::uint32_t code = reader.Take(8);
        if (code == 128)
            continue;
        const bool repeats = code > 128;
        std::uint8_t value = 0;
        for (std::uint32_t left = repeats ? 257 - code : code + 1; left > 0 && values.size() < count;
             --left) {
            if (!repeats || left == 257 - code)
                value = reader.Take(bits);
            if (reader.Failed())
                return values;
            values.push_back(value);
        }
    }
    return values;
}

std::vector<std::uint8_t> Unpack(std::string_view bytes, std::uint8_t format, unsigned bits,
                                 std::size_t count) {
    if (format == RunLength)
        return UnpackRuns(bytes, bits, count);
    bytes = bytes.substr(0, count);
    return {bytes.begin(), bytes.end()};
}

struct ColourChunk {
    std::uint8_t Transparent, Flags, ImageFormat, PaletteFormat, Depth;
    std::size_t Colours;
    std::string_view Image, Palette;
};

std::optional<ColourChunk> ReadColourChunk(std::string_view bytes) {
    ByteReader reader(bytes);
    ColourChunk chunk{};
    chunk.Transparent = reader.Byte();
    chunk.Colours = reader.Byte() + std::size_t{1};
    chunk.Flags = reader.Byte();
    chunk.ImageFormat = reader.Byte();
    chunk.PaletteFormat = reader.Byte();
    chunk.Depth = reader.Byte();
    const std::size_t imageSize = reader.Word() + std::size_t{1};
    const std::size_t paletteSize = reader.Word() + std::size_t{1};
    chunk.Image = reader.Raw(imageSize);
    if ((chunk.Flags & HasPalette) != 0)
        chunk.Palette = reader.Raw(std::min(paletteSize, reader.Left()));
    if (reader.Failed() || chunk.Depth < 1 || chunk.Depth > 8)
        return std::nullopt;
    return chunk;
}

// Opaque colours; empty when the chunk has none.
std::vector<std::uint32_t> ReadPalette(const ColourChunk& chunk) {
    if (chunk.Palette.empty())
        return {};
    const auto components = Unpack(chunk.Palette, chunk.PaletteFormat, 8, chunk.Colours * 3);
    std::vector<std::uint32_t> palette;
    for (std::size_t at = 0; at + 2 < components.size(); at += 3)
        palette.push_back(Opaque | std::uint32_t{components[at]} << 16 |
                          std::uint32_t{components[at + 1]} << 8 | components[at + 2]);
    return palette;
}

std::optional<IconPicture> UnpackArgb(const FormIcon& form, std::string_view chunk) {
    if (form.Width == 0 || chunk.size() <= ArgbHeader)
        return std::nullopt;
    chunk.remove_prefix(ArgbHeader);
    IconPicture picture{form.Width, form.Height, {}};
    const std::size_t count = std::size_t{form.Width} * form.Height;
    std::string bytes(count * 4, '\0');
    uLongf size = bytes.size();
    // A stream that holds more than the picture ends in an error with the picture whole.
    const int result = uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size,
                                  reinterpret_cast<const Bytef*>(chunk.data()), chunk.size());
    if ((result != Z_OK && result != Z_BUF_ERROR) || size != bytes.size())
        return std::nullopt;
    picture.Pixels.reserve(count);
    ByteReader reader(bytes);
    for (std::size_t i = 0; i < count; ++i)
        picture.Pixels.push_back(reader.Long());
    return picture;
}

} // namespace

std::optional<IconPicture> DecodeColour(const FormIcon& form, IconState state) {
    const auto chunk = ReadColourChunk(form.Colour[state == IconState::Selected ? 1 : 0]);
    if (!chunk || form.Width == 0)
        return std::nullopt;
    std::vector<std::uint32_t> palette = ReadPalette(*chunk);
    if (palette.empty() && state == IconState::Selected)
        if (const auto first = ReadColourChunk(form.Colour[0]))
            palette = ReadPalette(*first);
    const std::size_t count = std::size_t{form.Width} * form.Height;
    const auto pens = Unpack(chunk->Image, chunk->ImageFormat, chunk->Depth, count);
    if (palette.empty() || pens.size() != count)
        return std::nullopt;
    palette.resize(256, Opaque);
    if ((chunk->Flags & HasTransparent) != 0)
        palette[chunk->Transparent] = 0;
    IconPicture picture{form.Width, form.Height, std::vector<std::uint32_t>(count)};
    std::ranges::transform(pens, picture.Pixels.begin(), [&](std::uint8_t pen) { return palette[pen]; });
    return picture;
}

std::optional<IconPicture> DecodeArgb(const FormIcon& form, IconState state) {
    const std::size_t index = state == IconState::Selected ? 1 : 0;
    std::optional<IconPicture> picture = UnpackArgb(form, form.Argb[index]);
    return picture ? picture : DecodePng(form.Png[index]);
}

} // namespace icon
