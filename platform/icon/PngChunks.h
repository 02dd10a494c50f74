// The chunks of a PNG stream. Private to platform/icon.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace icon {

inline constexpr std::string_view PngSignature("\x89PNG\r\n\x1A\n", 8);
inline constexpr std::string_view IconChunk = "icOn"; // the icon's own data
inline constexpr std::string_view LastChunk = "IEND";

struct PngChunk {
    std::string_view Id, Data;
    std::string_view Whole; // with length, name and checksum
};

// Walks over the chunks of a stream from its signature on; checksums are not looked at.
class PngChunkReader {
public:
    explicit PngChunkReader(std::string_view stream);
    // Nothing at the end, behind the last chunk, and at a chunk that is cut off.
    std::optional<PngChunk> Next();

private:
    std::string_view Left;
};

// A whole chunk with its checksum.
[[nodiscard]] std::string MakePngChunk(std::string_view id, std::string_view data);

} // namespace icon
