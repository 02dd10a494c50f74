// The decision which type a file has, made from its first bytes, its name and its size alone. A sure
// mark in the content wins; then text goes by its name; then the name decides as far as the content
// does not deny it; then the host's magic database is asked.
#pragma once

#include "platform/datatypes/DataType.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace datatypes {

inline constexpr std::size_t HeadSize = 4096; // bytes of a file that recognition looks at

// head holds the first bytes of the file, at most HeadSize of them; name is the last part of its
// path; size its length in bytes. Never null. May be called from any thread. The databases of the
// host are loaded when the first file needs them.
[[nodiscard]] const DataType* Recognise(std::span<const std::byte> head, std::string_view name,
                                        std::uint64_t size);

// The part of the decision that needs no database: null when the content has no mark of ours.
[[nodiscard]] const DataType* RecogniseByContent(std::span<const std::byte> head, std::string_view name,
                                                 std::uint64_t size);

} // namespace datatypes
