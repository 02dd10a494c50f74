// The files of the desktop's cache of thumbnails: where they are, what they say, and how one comes there.
// Private to platform/datatypes.
#pragma once

#include "platform/datatypes/Thumbnails.h"

#include <optional>
#include <string>

namespace datatypes {

inline constexpr std::uint32_t LargestSide = 1024; // of the cache's size classes; pixels

// The address of a host file as the cache's names are made from it.
[[nodiscard]] std::string UriOf(std::string_view hostPath);

// The side of the smallest size class that the box needs; 0 when none is large enough.
[[nodiscard]] std::uint32_t SideFor(const PictureBox& box);

// The cache's picture of that size class; nothing when it has none, or one of another file or another state
// of this one.
[[nodiscard]] std::optional<Picture> FindThumbnail(const std::string& uri, std::int64_t modified,
                                                   std::uint32_t side);
// Whether this state of the file is known to be broken.
[[nodiscard]] bool IsKnownBroken(const std::string& uri, std::int64_t modified);

// Whether the host file lies in the cache itself.
[[nodiscard]] bool IsInCache(std::string_view hostPath);

} // namespace datatypes
