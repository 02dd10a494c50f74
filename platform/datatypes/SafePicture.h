// What must be known of a picture before a reader may open it: small files exist that keep a reader busy or
// hungry for ever. Private to platform/datatypes.
#pragma once

#include "platform/datatypes/Bytes.h"

#include <string>
#include <string_view>

namespace datatypes {

// Whether a reader of the format ("jpeg", "svg" ...) may open the file. pixels: by its header, 0 when that
// does not say.
[[nodiscard]] bool IsSafePicture(Bytes file, std::string_view format, std::uint64_t pixels);

// Whether the bytes are packed as drawings often are ("x.svgz").
[[nodiscard]] bool IsPacked(Bytes file);
// What is packed in the file; empty when that is damaged, larger than a drawing may be, or packed again.
// Throws std::bad_alloc.
[[nodiscard]] std::string UnpackDrawing(Bytes file);

} // namespace datatypes
