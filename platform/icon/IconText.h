// Texts of icon files against the UTF-8 of the program. Private to platform/icon.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace icon {

// ISO 8859-1 as classic files hold it; nothing when a character has no place there, for a NUL, and for
// invalid UTF-8.
[[nodiscard]] std::optional<std::string> ClassicText(std::string_view utf8);

// Texts of PNG icons are ISO 8859-1 in most files. Bytes that are valid UTF-8 are read as that, and a
// text is written as ISO 8859-1 only where it comes back as it was. Nothing for a NUL or invalid UTF-8.
[[nodiscard]] std::optional<std::string> PngText(std::string_view utf8);
[[nodiscard]] std::string Utf8FromPngText(std::string_view bytes);

} // namespace icon
