// Text rules that every layer shares: case folding compare, UTF-8 checks and cuts. Names are bytes
// here, mostly UTF-8; nothing in this module depends on the user's locale, and nothing allocates
// but what returns a string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace utility {

inline constexpr char32_t ReplacementCharacter = 0xFFFD;
// Decode() gives a byte that is no part of valid UTF-8 as InvalidByteBase + the byte: above all
// code points.
inline constexpr char32_t InvalidByteBase = 0x110000;

struct Character {
    char32_t Code;      // code point, or InvalidByteBase + byte
    std::size_t Length; // bytes taken, 1 to 4
};

// The character that starts at text[at]; at must be below text.size().
[[nodiscard]] Character Decode(std::string_view text, std::size_t at) noexcept;
// Appends c as UTF-8; what is no code point (a surrogate, too large) is appended as U+FFFD.
void AppendUtf8(std::string& text, char32_t c);

// Simple one-to-one case mapping for Latin, Greek and Cyrillic; every other character is returned
// as it is.
[[nodiscard]] char32_t ToUpper(char32_t c) noexcept;
[[nodiscard]] char32_t ToLower(char32_t c) noexcept;

// Order of two texts without regard to case: below, equal to or above 0. Characters compare as
// lower-case code points, invalid bytes above all of them by their value.
[[nodiscard]] int Stricmp(std::string_view a, std::string_view b) noexcept;
// The same over at most the first `bytes` bytes of each.
[[nodiscard]] int Strnicmp(std::string_view a, std::string_view b, std::size_t bytes) noexcept;

// A key that is equal exactly when Stricmp is 0 and that sorts by memcmp as Stricmp does.
[[nodiscard]] std::string Fold(std::string_view text);
// The first 8 bytes of Fold(text) as a big-endian number, zeros behind a shorter one. Prefixes that
// differ order like Stricmp; equal ones leave the question to Stricmp.
[[nodiscard]] std::uint64_t FoldPrefix(std::string_view text) noexcept;

// The largest length of at most maxBytes that does not cut a UTF-8 character; an invalid byte
// counts as one.
[[nodiscard]] std::size_t CutLength(std::string_view text, std::size_t maxBytes) noexcept;
[[nodiscard]] bool IsValidUtf8(std::string_view text) noexcept;
// For display: each invalid byte becomes U+FFFD.
[[nodiscard]] std::string ReplaceInvalidUtf8(std::string_view text);

// Amiga files hold ISO 8859-1 texts; every such text has a UTF-8 form.
[[nodiscard]] std::string Utf8FromLatin1(std::string_view latin1);

} // namespace utility
