#include "platform/datatypes/IffChunks.h"
#include "platform/datatypes/Pictures.h"
#include "platform/datatypes/Recognise.h"
#include "platform/dos/Errors.h"

#include <algorithm>
#include <array>
#include <string>

namespace datatypes {

namespace {

using Size = std::optional<PictureSize>;

constexpr unsigned MostSteps = 4096; // chunks, segments or directory entries looked at in a file

Size MakeSize(std::uint32_t width, std::uint32_t height, std::uint32_t depth) {
    return width == 0 || height == 0 || depth == 0 ? Size{} : Size{{width, height, depth}};
}

// The bit map header of a picture, or of the first frame of an animation.
Size IffSize(ByteSource& source) {
    std::uint64_t at = 12;
    for (unsigned step = 0; step < MostSteps; ++step) {
        const auto chunk = ChunkAt(source, at, ByteOrder::Big);
        if (!chunk) {
            return {};
        }
        if (chunk->Id == FourCharacters("FORM")) {
            at = chunk->Data + 4;
            continue;
        }
        if (chunk->Id == FourCharacters("BMHD")) {
            const Bytes header = source.At(chunk->Data, 20);
            const std::uint32_t planes = U8(header, 8);
            return planes > 32 ? Size{} : MakeSize(Be16(header, 0), Be16(header, 2), planes);
        }
        at = chunk->Next();
    }
    return {};
}

Size GifSize(ByteSource& source) {
    const Bytes header = source.At(0, 13);
    const std::uint32_t flags = U8(header, 10);
    // Without a colour table for all frames the resolution of the colours has to do.
    const std::uint32_t depth = (flags & 0x80) != 0 ? (flags & 7) + 1 : (flags >> 4 & 7) + 1;
    return MakeSize(Le16(header, 6), Le16(header, 8), depth);
}

Size PngSize(ByteSource& source) {
    constexpr std::array<std::uint32_t, 7> samples = {1, 0, 3, 1, 2, 0, 4}; // by colour type
    const Bytes header = source.At(0, 26);
    const std::uint32_t colour = U8(header, 25);
    if (!HasMark(header, 12, "IHDR") || colour >= samples.size()) {
        return {};
    }
    return MakeSize(Be32(header, 16), Be32(header, 20), U8(header, 24) * samples[colour]);
}

bool IsJpegFrame(std::uint32_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

Size JpegSize(ByteSource& source) {
    std::uint64_t at = 2;
    for (unsigned step = 0; step < MostSteps; ++step) {
        const Bytes segment = source.At(at, 10);
        const std::uint32_t marker = U8(segment, 1);
        if (segment.size() < 4 || U8(segment, 0) != 0xFF) {
            return {};
        }
        if (marker == 0xFF) { // filling
            ++at;
            continue;
        }
        if (IsJpegFrame(marker)) {
            return MakeSize(Be16(segment, 7), Be16(segment, 5), U8(segment, 4) * U8(segment, 9));
        }
        if (marker == 0xD9 || marker == 0xDA) { // the end, or the picture itself
            return {};
        }
        const bool bare = marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
        at += 2 + (bare ? 0 : std::max(Be16(segment, 2), 2U));
    }
    return {};
}

Size BmpSize(ByteSource& source) {
    const Bytes header = source.At(0, 30);
    if (Le32(header, 14) == 12) {
        return MakeSize(Le16(header, 18), Le16(header, 20), Le16(header, 24));
    }
    const std::uint32_t height = Le32(header, 22); // negative for pictures from the top down
    return MakeSize(Le32(header, 18), (height & 0x80000000) != 0 ? 0 - height : height, Le16(header, 28));
}

Size WebpSize(ByteSource& source) {
    const Bytes header = source.At(0, 30);
    if (HasMark(header, 12, "VP8X")) {
        return MakeSize(Le24(header, 24) + 1, Le24(header, 27) + 1, (U8(header, 20) & 0x10) != 0 ? 32 : 24);
    }
    if (HasMark(header, 12, "VP8L")) {
        const std::uint32_t bits = Le32(header, 21);
        return MakeSize((bits & 0x3FFF) + 1, (bits >> 14 & 0x3FFF) + 1, (bits >> 28 & 1) != 0 ? 32 : 24);
    }
    if (HasMark(header, 12, "VP8 ")) {
        return MakeSize(Le16(header, 26) & 0x3FFF, Le16(header, 28) & 0x3FFF, 24);
    }
    return {};
}

// Numbers of a TIFF in the byte order that its first letters tell.
struct TiffReader {
    ByteSource& Source;
    bool Big;

    [[nodiscard]] std::uint32_t Word(std::uint64_t at) const {
        const Bytes bytes = Source.At(at, 2);
        return Big ? Be16(bytes, 0) : Le16(bytes, 0);
    }
    [[nodiscard]] std::uint32_t Long(std::uint64_t at) const {
        const Bytes bytes = Source.At(at, 4);
        return Big ? Be32(bytes, 0) : Le32(bytes, 0);
    }
    // The value of a directory entry with one number in it.
    [[nodiscard]] std::uint32_t Value(std::uint64_t entry) const {
        constexpr std::uint32_t shortNumber = 3;
        return Word(entry + 2) == shortNumber ? Word(entry + 8) : Long(entry + 8);
    }
    // The sum of an entry of up to a few short numbers.
    [[nodiscard]] std::uint32_t Sum(std::uint64_t entry) const {
        const std::uint32_t count = std::min(Long(entry + 4), 16U);
        const std::uint64_t start = count <= 2 ? entry + 8 : Long(entry + 8);
        std::uint32_t sum = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            sum += Word(start + std::uint64_t{i} * 2);
        }
        return sum;
    }
};

Size TiffSize(ByteSource& source) {
    const TiffReader tiff{source, HasMark(source.At(0, 2), 0, "MM")};
    if (tiff.Word(2) != 42) { // the form for huge files
        return {};
    }
    const std::uint64_t directory = tiff.Long(4);
    const std::uint32_t entries = std::min(tiff.Word(directory), std::uint32_t{MostSteps});
    std::uint32_t width = 0, height = 0, depth = 1;
    for (std::uint32_t i = 0; i < entries; ++i) {
        const std::uint64_t entry = directory + 2 + std::uint64_t{i} * 12;
        switch (tiff.Word(entry)) {
        case 256:
            width = tiff.Value(entry);
            break;
        case 257:
            height = tiff.Value(entry);
            break;
        case 258:
            depth = tiff.Sum(entry);
            break;
        default:
            break;
        }
    }
    return MakeSize(width, height, depth);
}

Size PcxSize(ByteSource& source) {
    const Bytes header = source.At(0, 66);
    return MakeSize(Le16(header, 8) - Le16(header, 4) + 1, Le16(header, 10) - Le16(header, 6) + 1,
                    U8(header, 3) * U8(header, 65));
}

// The next number of a header in words, comments skipped; 0 when there is none.
std::uint32_t NextNumber(std::string_view text, std::size_t& at) {
    while (at < text.size() && (text[at] < '0' || text[at] > '9')) {
        at = text[at] == '#' ? std::min(text.find('\n', at), text.size()) : at + 1;
    }
    std::uint32_t number = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        number = std::min(number * 10 + static_cast<std::uint32_t>(text[at] - '0'), 100'000'000U);
    }
    return number;
}

Size NetpbmSize(ByteSource& source) {
    const std::string_view text = AsText(source.At(0, 512));
    const char kind = text.size() > 2 ? text[1] : '7';
    if (kind == '7') {
        return {};
    }
    std::size_t at = 2;
    const std::uint32_t width = NextNumber(text, at), height = NextNumber(text, at);
    if (kind == '1' || kind == '4') {
        return MakeSize(width, height, 1);
    }
    const std::uint32_t sample = NextNumber(text, at) > 255 ? 16 : 8;
    return MakeSize(width, height, kind == '3' || kind == '6' ? sample * 3 : sample);
}

Size CdxlSize(ByteSource& source) {
    const Bytes header = source.At(0, 24);
    return MakeSize(Be16(header, 14), Be16(header, 16), Be16(header, 18));
}

Size FlicSize(ByteSource& source) {
    const Bytes header = source.At(0, 14);
    return MakeSize(Le16(header, 8), Le16(header, 10), Le16(header, 12));
}

Size PsdSize(ByteSource& source) {
    const Bytes header = source.At(0, 24);
    return MakeSize(Be32(header, 18), Be32(header, 14), Be16(header, 12) * Be16(header, 22));
}

Size TgaSize(ByteSource& source) {
    const Bytes header = source.At(0, 18);
    return MakeSize(Le16(header, 12), Le16(header, 14), U8(header, 16));
}

Size SunSize(ByteSource& source) {
    const Bytes header = source.At(0, 16);
    return MakeSize(Be32(header, 4), Be32(header, 8), Be32(header, 12));
}

Size SgiSize(ByteSource& source) {
    const Bytes header = source.At(0, 12);
    return MakeSize(Be16(header, 6), Be16(header, 8), U8(header, 3) * 8 * Be16(header, 10));
}

Size QoiSize(ByteSource& source) {
    const Bytes header = source.At(0, 13);
    return MakeSize(Be32(header, 4), Be32(header, 8), U8(header, 12) * 8);
}

struct SizeRow {
    std::string_view Type;
    Size (*Parse)(ByteSource&);
};

constexpr std::array<SizeRow, 18> Parsers = {{
    {"ILBM", IffSize},
    {"ACBM", IffSize},
    {"ANIM", IffSize},
    {"GIF", GifSize},
    {"PNG", PngSize},
    {"JPEG", JpegSize},
    {"BMP", BmpSize},
    {"WEBP", WebpSize},
    {"TIFF", TiffSize},
    {"PCX", PcxSize},
    {"Netpbm", NetpbmSize},
    {"CDXL", CdxlSize},
    {"FLC", FlicSize},
    {"PSD", PsdSize},
    {"TGA", TgaSize},
    {"Sun Raster", SunSize},
    {"SGI", SgiSize},
    {"QOI", QoiSize},
}};

} // namespace

std::optional<PictureSize> ParsePictureSize(ByteSource& source, std::string_view name) {
    const Bytes head = source.At(0, HeadSize);
    const DataType* type = RecogniseByContent(head, name, source.Size());
    const auto row = type == nullptr ? Parsers.end() : std::ranges::find(Parsers, type->Name, &SizeRow::Type);
    return row == Parsers.end() ? std::nullopt : row->Parse(source);
}

std::optional<PictureSize> HostPictureSize(std::string_view hostPath) {
    const auto source = SourceFromHostFile(std::string(hostPath));
    if (source == nullptr) {
        return std::nullopt;
    }
    const auto size = ParsePictureSize(*source, hostPath.substr(hostPath.rfind('/') + 1));
    if (!size) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
    }
    return size;
}

} // namespace datatypes
