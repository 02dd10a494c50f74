// The text of an emulator's ".uaem" file: bits, date and comment of the file beside which it lies,
// read and written. Pure text. Private to platform/dos.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

inline constexpr std::string_view SidecarSuffix = ".uaem";
inline constexpr std::size_t LargestSidecar = 8192;      // bytes looked at
inline constexpr std::size_t LongestSidecarComment = 79; // characters, as an Amiga's record has it

struct SidecarFacts {
    std::optional<std::uint32_t> Protection; // the low eight bits, as dos keeps them
    std::optional<std::uint32_t> Date;       // seconds since 1 January 1978
    std::uint8_t Hundredths = 0;             // of the date's second
    std::string Comment;                     // UTF-8
};

// What cannot be read of it is left out: beside a date any other character than a column's own counts as an
// absent letter, and a line that ends within the letters, as an empty file does, has default bits. A text
// that is no such line at all gives nothing.
[[nodiscard]] SidecarFacts ParseSidecar(std::string_view text);

// The line for a sidecar; bits and date must be there. A comment that is no UTF-8 counts as Latin-1;
// what Latin-1 has not is written as UTF-8.
[[nodiscard]] std::string FormatSidecar(const SidecarFacts& facts);
// Characters that the comment takes on an Amiga.
[[nodiscard]] std::size_t SidecarCommentLength(std::string_view comment);

// The eight letters of the low bits.
[[nodiscard]] std::string LettersFromProtection(std::uint32_t bits);
// The bits of eight letters "hsparwed", "-" where one is absent; nothing when it is not that.
[[nodiscard]] std::optional<std::uint32_t> ProtectionFromLetters(std::string_view letters) noexcept;

} // namespace dos
