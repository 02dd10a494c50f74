// Pictures in IFF files: ILBM of 1 to 8 planes with palette, half-bright and hold-and-modify, 24 and 32 bits,
// mask plane or transparent colour, packed or not; the chunky PBM and the plain planes of ACBM.
// Private to platform/datatypes.
#pragma once

#include "platform/datatypes/Bytes.h"
#include "platform/icon/IconPicture.h"

#include <cstdint>
#include <optional>

namespace datatypes {

// Whether the bytes begin as such a file does.
[[nodiscard]] bool IsIlbm(Bytes file);

// How many pixels the header announces, before they are squared; 0 without a header.
[[nodiscard]] std::uint64_t IlbmPixels(Bytes file);

// The picture in its own size; one drawn for pixels twice as high as wide, or the reverse, is squared.
// Nothing when there is no header, no data or far too few, a size of 0 or more than mostPixels. Where the
// data end early the rest stays transparent.
[[nodiscard]] std::optional<icon::IconPicture> ParseIlbm(Bytes file, std::uint64_t mostPixels);

} // namespace datatypes
