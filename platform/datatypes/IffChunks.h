// Walking over the chunks of IFF and RIFF files without reading their data. Both have an id and a
// size before each chunk and pad to even lengths; they differ in the order of the size's bytes.
#pragma once

#include "platform/datatypes/ByteSource.h"

#include <optional>

namespace datatypes {

struct Chunk {
    std::uint32_t Id;     // as FourCharacters makes it
    std::uint64_t Data;   // where its data start in the file
    std::uint32_t Length; // of the data, as stated
    [[nodiscard]] std::uint64_t Next() const noexcept { return Data + Length + (Length & 1); }
};

enum class ByteOrder { Big, Little };

// The chunk at that place; nothing where the file has no room for a chunk header.
[[nodiscard]] inline std::optional<Chunk> ChunkAt(ByteSource& source, std::uint64_t at, ByteOrder order) {
    const Bytes header = source.At(at, 8);
    if (header.size() < 8) {
        return std::nullopt;
    }
    return Chunk{Be32(header, 0), at + 8, order == ByteOrder::Big ? Be32(header, 4) : Le32(header, 4)};
}

} // namespace datatypes
