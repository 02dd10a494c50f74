// MIME types and the host's database of them. Loads the database at the first question to it; the
// rest of the module sees our types only.
#pragma once

#include "platform/datatypes/NameTypes.h"

#include <string_view>

namespace datatypes {

// What the shared MIME database says about files with that extension (as it stands, no dot).
[[nodiscard]] NameMeaning MeaningOfExtension(std::string_view extension);

// Our type for a MIME type; null for an empty or general one.
[[nodiscard]] const DataType* TypeForMime(std::string_view mime);

struct MimeRow {
    std::string_view Mime;
    DataType Type;
};
[[nodiscard]] std::span<const MimeRow> MimeRows() noexcept;

} // namespace datatypes
