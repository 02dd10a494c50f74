// The text of an emulator's ".uaem" file: bits, date and comment of the file beside which it lies.
// Pure text. Private to platform/dos.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

inline constexpr std::string_view SidecarSuffix = ".uaem";
inline constexpr std::size_t LargestSidecar = 8192; // bytes looked at

struct SidecarFacts {
    std::optional<std::uint32_t> Protection; // the low eight bits, as dos keeps them
    std::optional<std::uint32_t> Date;       // seconds since 1 January 1978
    std::string Comment;                     // UTF-8
};

// What cannot be read of it is left out; a text that is no such line at all gives nothing.
[[nodiscard]] SidecarFacts ParseSidecar(std::string_view text);

// The bits of eight letters "hsparwed", "-" where one is absent; nothing when it is not that.
[[nodiscard]] std::optional<std::uint32_t> ProtectionFromLetters(std::string_view letters) noexcept;

} // namespace dos
