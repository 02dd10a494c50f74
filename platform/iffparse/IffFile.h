// IFF streams as files of dos: read as a whole now, written as a whole or not at all.
#pragma once

#include "platform/iffparse/IffWriter.h"

#include <optional>
#include <string>
#include <string_view>

namespace iffparse {

inline constexpr std::size_t MaxIffFile = std::size_t{256} * 1024 * 1024; // bytes; larger files are not read

// The bytes of a file that begins as an IFF stream does, for IffReader. Nothing with IoErr: 212 for
// another kind of file, 207 for one that is too large.
[[nodiscard]] std::optional<std::string> ReadIff(std::string_view path, std::size_t limit = MaxIffFile);

// Finishes the writer and makes or replaces the file. False with IoErr; 207 when the writer has
// failed: what it was to hold does not fit an IFF stream.
[[nodiscard]] bool WriteIff(std::string_view path, IffWriter& writer);

} // namespace iffparse
