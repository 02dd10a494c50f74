// The ids of IFF chunks and what can be wrong with a stream. Numbers are big-endian throughout; ids
// compare exactly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace iffparse {

using ChunkId = std::uint32_t;

// The id of four characters, as in MakeId("FORM").
[[nodiscard]] constexpr ChunkId MakeId(const char (&text)[5]) noexcept {
    ChunkId id = 0;
    for (std::size_t at = 0; at < 4; ++at)
        id = id << 8 | static_cast<unsigned char>(text[at]);
    return id;
}

inline constexpr ChunkId IdForm = MakeId("FORM");
inline constexpr ChunkId IdList = MakeId("LIST");
inline constexpr ChunkId IdCat = MakeId("CAT ");
inline constexpr ChunkId IdProp = MakeId("PROP");

inline constexpr std::size_t ChunkHeaderSize = 8; // bytes: id and size
inline constexpr std::size_t GroupTypeSize = 4;   // bytes of a group's data before its first chunk

enum class IffError : std::uint8_t {
    None,
    NotIff,    // no FORM, LIST or CAT at the beginning
    Truncated, // the file ends inside a chunk
    Mangled,   // a chunk is larger than the group around it, or has no proper id
    Syntax,    // a chunk where none of its kind may stand
    TooDeep,   // more groups inside each other than the reader was to follow
};

// For people who look into a broken file; empty for None.
[[nodiscard]] std::string_view ErrorText(IffError error) noexcept;

// Four printable ASCII characters, blanks only at the end.
[[nodiscard]] bool IsChunkId(ChunkId id) noexcept;
// FORM, LIST, CAT or PROP: what holds chunks instead of data.
[[nodiscard]] bool IsGroupId(ChunkId id) noexcept;
// The four characters, "?" for each that is not printable.
[[nodiscard]] std::string IdText(ChunkId id);

} // namespace iffparse
