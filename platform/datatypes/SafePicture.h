// What must be known of a picture before a reader may open it: small files exist that keep a reader busy or
// hungry for ever. Private to platform/datatypes.
#pragma once

#include "platform/datatypes/Bytes.h"

#include <string_view>

namespace datatypes {

// Whether a reader of the format ("jpeg", "svg" ...) may open the file. pixels: by its header, 0 when that
// does not say.
[[nodiscard]] bool IsSafePicture(Bytes file, std::string_view format, std::uint64_t pixels);

} // namespace datatypes
