#include "platform/datatypes/IffChunks.h"
#include "platform/datatypes/Pictures.h"
#include "platform/datatypes/Recognise.h"
#include "platform/dos/Errors.h"

#include <algorithm>
#include <array>
#include <string>

namespace datatypes {

namespace {

constexpr std::uint64_t LongestWalk = std::uint64_t{1} << 30; // bytes of a file that are walked over
constexpr std::uint32_t MostChunks = 100'000;
constexpr std::uint32_t MostGifBlocks = 1'000'000; // 250 MB of full ones; tiny ones would take minutes

std::uint64_t ColourTableSize(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::uint64_t{3} << ((flags & 7) + 1) : 0;
}

// Where the blocks that start there end: each has its length before it, the last is empty. Without blocks
// left to walk over it ends nowhere in the file.
std::uint64_t SkipBlocks(ByteSource& source, std::uint64_t at, std::uint32_t& blocksLeft) {
    while (at < std::min(source.Size(), LongestWalk)) {
        if (blocksLeft == 0) {
            return LongestWalk;
        }
        --blocksLeft;
        const std::uint32_t length = U8(source.At(at, 1), 0);
        at += 1 + std::uint64_t{length};
        if (length == 0) {
            break;
        }
    }
    return at;
}

std::uint32_t GifFrames(ByteSource& source, std::uint32_t limit) {
    constexpr std::uint32_t extension = 0x21, image = 0x2C;
    std::uint64_t at = 13 + ColourTableSize(U8(source.At(10, 1), 0));
    std::uint32_t frames = 0, blocksLeft = MostGifBlocks;
    while (frames < limit && at < LongestWalk) {
        const Bytes block = source.At(at, 10);
        const std::uint32_t kind = U8(block, 0);
        if (kind == extension) {
            at = SkipBlocks(source, at + 2, blocksLeft);
        } else if (kind == image && block.size() == 10) {
            ++frames;
            // After the colour table one byte says how the pixels are packed.
            at = SkipBlocks(source, at + 11 + ColourTableSize(U8(block, 9)), blocksLeft);
        } else {
            break;
        }
    }
    return frames;
}

// Chunks of that id among the ones from `at` on.
std::uint32_t CountChunks(ByteSource& source, std::uint64_t at, ByteOrder order, std::uint32_t id,
                          std::uint32_t limit) {
    std::uint32_t count = 0;
    for (std::uint32_t step = 0; step < MostChunks && count < limit; ++step) {
        const auto chunk = ChunkAt(source, at, order);
        if (!chunk) {
            break;
        }
        count += chunk->Id == id ? 1 : 0;
        at = chunk->Next();
    }
    return count;
}

std::uint32_t AnimFrames(ByteSource& source, std::uint32_t limit) {
    return CountChunks(source, 12, ByteOrder::Big, FourCharacters("FORM"), limit);
}

std::uint32_t WebpFrames(ByteSource& source, std::uint32_t limit) {
    const std::uint32_t frames = CountChunks(source, 12, ByteOrder::Little, FourCharacters("ANMF"), limit);
    return std::max(frames, 1U);
}

// The control chunk of an animated PNG stands before the picture.
std::uint32_t PngFrames(ByteSource& source, std::uint32_t limit) {
    std::uint64_t at = 8;
    for (unsigned step = 0; step < 256; ++step) {
        const Bytes chunk = source.At(at, 12);
        if (chunk.size() < 12 || HasMark(chunk, 4, "IDAT")) {
            break;
        }
        if (HasMark(chunk, 4, "acTL")) {
            return std::clamp(Be32(chunk, 8), 1U, limit);
        }
        at += 12 + std::uint64_t{Be32(chunk, 0)};
    }
    return 1;
}

std::uint32_t FlicFrames(ByteSource& source, std::uint32_t limit) {
    return std::min(Le16(source.At(6, 2), 0), limit);
}

struct FrameRow {
    std::string_view Type;
    std::uint32_t (*Count)(ByteSource&, std::uint32_t limit);
};

constexpr std::array<FrameRow, 5> Counters = {{
    {"GIF", GifFrames},
    {"ANIM", AnimFrames},
    {"WEBP", WebpFrames},
    {"PNG", PngFrames},
    {"FLC", FlicFrames},
}};

} // namespace

std::optional<std::uint32_t> ParseFrameCount(ByteSource& source, std::string_view name, std::uint32_t limit) {
    const Bytes head = source.At(0, HeadSize);
    const DataType* type = RecogniseByContent(head, name, source.Size());
    const auto row =
        type == nullptr ? Counters.end() : std::ranges::find(Counters, type->Name, &FrameRow::Type);
    return row == Counters.end() ? std::nullopt : std::optional(row->Count(source, std::max(limit, 1U)));
}

std::optional<std::uint32_t> HostFrameCount(std::string_view hostPath, std::uint32_t limit) {
    const auto source = SourceFromHostFile(std::string(hostPath));
    if (source == nullptr) {
        return std::nullopt;
    }
    const auto count = ParseFrameCount(*source, hostPath.substr(hostPath.rfind('/') + 1), limit);
    if (!count) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
    }
    return count;
}

} // namespace datatypes
