// Path texts: taking "Volume:drawer/file" apart and putting it together. Pure text; nothing is
// looked up, so a result says nothing about what exists.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

inline constexpr std::size_t PathSize = 1024; // bytes of a path buffer, its final NUL counted

// The last component; empty when the path ends in ":" or "/". The result points into path.
[[nodiscard]] std::string_view FilePart(std::string_view path) noexcept;

// What stands before the last component, without the "/" between them; a ":" and leading slashes
// (steps to a parent) belong to it. The result points into path.
[[nodiscard]] std::string_view PathPart(std::string_view path) noexcept;

// dir with file behind it, one "/" between where one is needed. A file with a device of its own
// replaces dir, one that begins with ":" keeps only the device of dir, one that begins with "/"
// keeps its slash as a step up. Nothing when the text and its NUL do not fit into size bytes (IoErr
// 120).
[[nodiscard]] std::optional<std::string> AddPart(std::string_view dir, std::string_view file,
                                                 std::size_t size = PathSize);

// Copies the component of name from position to the separator into out, at most size - 1 bytes of
// it. Returns the position behind the separator, -1 when there is none.
[[nodiscard]] long SplitName(std::string_view name, char separator, std::string& out, long position,
                             std::size_t size);

} // namespace dos
