// Reading numbers and marks out of bytes that come from a file. Every read is bounded: what lies
// beyond the end reads as zero, and marks there do not match. An empty mark is everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace datatypes {

using Bytes = std::span<const std::byte>;

[[nodiscard]] inline std::uint32_t U8(Bytes bytes, std::size_t at) noexcept {
    return at < bytes.size() ? std::to_integer<std::uint32_t>(bytes[at]) : 0;
}
[[nodiscard]] inline std::uint32_t Be16(Bytes bytes, std::size_t at) noexcept {
    return U8(bytes, at) << 8 | U8(bytes, at + 1);
}
[[nodiscard]] inline std::uint32_t Be32(Bytes bytes, std::size_t at) noexcept {
    return Be16(bytes, at) << 16 | Be16(bytes, at + 2);
}
[[nodiscard]] inline std::uint32_t Le16(Bytes bytes, std::size_t at) noexcept {
    return U8(bytes, at) | U8(bytes, at + 1) << 8;
}
[[nodiscard]] inline std::uint32_t Le24(Bytes bytes, std::size_t at) noexcept {
    return Le16(bytes, at) | U8(bytes, at + 2) << 16;
}
[[nodiscard]] inline std::uint32_t Le32(Bytes bytes, std::size_t at) noexcept {
    return Le16(bytes, at) | Le16(bytes, at + 2) << 16;
}

[[nodiscard]] inline std::string_view AsText(Bytes bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
[[nodiscard]] inline Bytes AsBytes(std::string_view text) noexcept {
    return std::as_bytes(std::span(text));
}

[[nodiscard]] inline bool HasMark(Bytes bytes, std::size_t at, std::string_view mark) noexcept {
    return mark.empty() || (at <= bytes.size() && mark.size() <= bytes.size() - at &&
                            std::memcmp(bytes.data() + at, mark.data(), mark.size()) == 0);
}

} // namespace datatypes
