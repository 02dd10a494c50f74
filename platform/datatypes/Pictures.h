// Size and number of frames of pictures and animations, from the first bytes of a file or a bounded
// walk over its blocks. Nothing is decoded here.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace datatypes {

class ByteSource;

struct PictureSize {
    std::uint32_t Width;  // pixels, at least 1
    std::uint32_t Height; // pixels, at least 1
    std::uint32_t Depth;  // bit planes of an IFF picture, else the bits of a pixel in all
    bool operator==(const PictureSize&) const = default;
};

inline constexpr std::uint32_t NoFrameLimit = 0xFFFFFFFF;

// Nothing with IoErr when the file cannot be read (as ObtainDataType, 226 too), or when it is no picture
// or animation whose header is understood (212).
[[nodiscard]] std::optional<PictureSize> GetPictureSize(std::string_view path);

// Frames of a GIF, ANIM, FLC, animated PNG or WEBP; a damaged file has as many as can be found.
// Counting stops at limit. Nothing as above for all other files.
[[nodiscard]] std::optional<std::uint32_t> CountFrames(std::string_view path, std::uint32_t limit);
// All frames of the file.
[[nodiscard]] std::optional<std::uint32_t> GetFrameCount(std::string_view path);

// The same for a file by host path. The reason of a failure is in IoErr too.
[[nodiscard]] std::optional<PictureSize> HostPictureSize(std::string_view hostPath);
[[nodiscard]] std::optional<std::uint32_t> HostFrameCount(std::string_view hostPath,
                                                          std::uint32_t limit = NoFrameLimit);

// The same for bytes; the name serves formats that have no mark of their own. IoErr is untouched.
[[nodiscard]] std::optional<PictureSize> ParsePictureSize(ByteSource& source, std::string_view name);
[[nodiscard]] std::optional<std::uint32_t> ParseFrameCount(ByteSource& source, std::string_view name,
                                                           std::uint32_t limit);

} // namespace datatypes
