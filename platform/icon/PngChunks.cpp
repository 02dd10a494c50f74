#include "platform/icon/PngChunks.h"

#include "platform/icon/ByteReader.h"
#include "platform/icon/ByteWriter.h"

#include <zlib.h>

namespace icon {
namespace {

constexpr std::size_t ChunkFrame = 12; // bytes of length, name and checksum

} // namespace

PngChunkReader::PngChunkReader(std::string_view stream) {
    if (stream.starts_with(PngSignature))
        Left = stream.substr(PngSignature.size());
}

std::optional<PngChunk> PngChunkReader::Next() {
    if (Left.size() < ChunkFrame)
        return std::nullopt;
    const std::size_t size = ByteReader(Left).Long();
    if (size > Left.size() - ChunkFrame)
        return std::nullopt;
    const PngChunk chunk{Left.substr(4, 4), Left.substr(8, size), Left.substr(0, size + ChunkFrame)};
    Left = chunk.Id == LastChunk ? std::string_view() : Left.substr(chunk.Whole.size());
    return chunk;
}

std::string MakePngChunk(std::string_view id, std::string_view data) {
    std::string chunk;
    AppendLong(chunk, static_cast<std::uint32_t>(data.size()));
    chunk.append(id).append(data);
    const std::string_view summed = std::string_view(chunk).substr(4);
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(summed.data()), static_cast<uInt>(summed.size()));
    AppendLong(chunk, static_cast<std::uint32_t>(sum));
    return chunk;
}

} // namespace icon
