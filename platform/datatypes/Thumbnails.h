// Small pictures of picture files, shared with the other programs of the desktop through its cache of
// thumbnails. A cache that cannot be read or written costs time and nothing else.
#pragma once

#include "platform/datatypes/DecodePicture.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace datatypes {

// What is worth keeping in the cache: a picture in one of its sizes, or the knowledge that a file cannot be
// decoded.
struct NewThumbnail {
    std::string Uri;              // of the file
    std::int64_t Modified = 0;    // of the file, seconds since 1970
    std::uint64_t FileSize = 0;   // bytes
    std::optional<Picture> Shown; // none: the file is broken
    std::uint32_t Side = 0;       // of the cache's size class; pixels
};

struct Thumbnail {
    std::optional<Picture> Shown; // nothing with IoErr, as LoadPicture
    // For StoreThumbnail, at a time when nobody waits.
    std::optional<NewThumbnail> ToStore;
};

// The picture of the file as large as the box has room: out of the cache where that has one of this very
// state of the file, else decoded. From any thread.
[[nodiscard]] Thumbnail LoadThumbnail(std::string_view path, const PictureBox& box);

// Puts it into the cache, in one step. False when that did not go; nothing is left behind then.
bool StoreThumbnail(const NewThumbnail& thumbnail);

} // namespace datatypes
