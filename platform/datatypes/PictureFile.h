// The bytes of a picture file and what tells one state of it from another. Private to platform/datatypes.
#pragma once

#include "platform/datatypes/DecodePicture.h"
#include "platform/datatypes/HostPlace.h"

#include <cstdint>
#include <optional>
#include <string>

namespace datatypes {

struct FileFacts {
    std::int64_t Modified = 0;    // seconds since 1970
    std::int64_t Nanoseconds = 0; // beyond those
    std::uint64_t Size = 0;       // bytes
};

// Nothing with IoErr; 212 for what is no regular file.
[[nodiscard]] std::optional<FileFacts> FactsOf(const HostPlace& place);
// All bytes; nothing with IoErr, 207 above MostPictureBytes.
[[nodiscard]] std::optional<std::string> ReadPictureFile(const HostPlace& place);

// Decodes; IoErr tells why there is no picture. Never throws for want of memory.
[[nodiscard]] DecodedPicture DecodeFile(const std::string& bytes, const PictureBox& box);

} // namespace datatypes
