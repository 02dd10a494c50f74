// Small text routines. All of them take a view and return their result, so that "text =
// SAK_StringToLower(text)" works for bounded texts and strings alike; none keeps anything. Offsets
// and lengths count bytes; whatever speaks of characters means whole UTF-8 characters, and an
// invalid byte counts as one.
#pragma once

#include "sak/Text.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace solvane {

// What the routines that look for a place return when there is none.
inline constexpr std::size_t NotFound = std::string_view::npos;

// How SAK_Find and SAK_FindAndReplace compare.
enum class FindMode : std::uint8_t { FoldCase = 0, KeepCase = 1 };
enum class ReplaceScope : std::uint8_t { First = 0, All = 1 };

inline constexpr std::size_t ReplaceLimit = 1023; // bytes of a text that SAK_FindAndReplace makes

// --- Case ---

// By the rules of the user's language.
[[nodiscard]] std::string SAK_StringToLower(std::string_view text);
[[nodiscard]] std::string SAK_StringToUpper(std::string_view text);

// The first character and each one behind " " or "." in upper case, all others in lower case. The
// character behind a separator is not examined: in "a..b" the "b" stays small.
[[nodiscard]] std::string SAK_ConvertToTitleCase(std::string_view text);
// Title case without the blanks.
[[nodiscard]] std::string SAK_ConvertToCamelCase(std::string_view text);

// --- Characters ---

[[nodiscard]] std::size_t SAK_CountCharacters(std::string_view text); // how many there are in all

// The text with the characters number a and b, counted from 0, exchanged; as it is when one is not
// there.
[[nodiscard]] std::string SAK_swap(std::string_view text, std::size_t a, std::size_t b);
[[nodiscard]] std::string SAK_ReverseString(std::string_view text);

// How often the first character of `character` occurs.
[[nodiscard]] std::size_t SAK_CountChars(std::string_view text, std::string_view character);

// True for printable ASCII, 32 to 126.
[[nodiscard]] constexpr bool SAK_isprint(int c) {
    return c >= 32 && c <= 126;
}

// --- Looking for a text ---

// Last place of the byte c; the end of the text for c 0.
[[nodiscard]] std::size_t SAK_strrchr(std::string_view text, char c);
// First place of find without regard to case. An empty find is found at 0; nothing is found in an
// empty text.
[[nodiscard]] std::size_t SAK_strcasestr(std::string_view text, std::string_view find);
// Last place of find, case kept.
[[nodiscard]] std::size_t SAK_strrstr(std::string_view text, std::string_view find);

// Offset of the first match within the first `length` bytes, -1 when there is none or a text is
// empty.
[[nodiscard]] std::ptrdiff_t SAK_Find(std::string_view text, std::size_t length, std::string_view find,
                                      FindMode mode);

// --- Changing ---

// A text after replacing, and how many replacements made it.
struct Replaced {
    std::string Result; // at most ReplaceLimit bytes
    std::uint32_t Count = 0;
};

// Replaces the first or each match, going on behind each replacement. With an empty text or find
// the text comes back with a count of 0.
[[nodiscard]] Replaced SAK_FindAndReplace(std::string_view text, std::string_view find,
                                          std::string_view replace, FindMode mode, ReplaceScope scope);
// The same in place, further cut at the text's own size; returns the count.
template <std::size_t N>
std::uint32_t SAK_FindAndReplace(Text<N>& text, std::string_view find, std::string_view replace,
                                 FindMode mode, ReplaceScope scope) {
    const Replaced done = SAK_FindAndReplace(text.View(), find, replace, mode, scope);
    if (done.Count > 0) {
        text = done.Result;
    }
    return done.Count;
}

// The text without the places of find, case kept; what remains is not searched again across a cut.
[[nodiscard]] std::string SAK_RemoveAllOccurences(std::string_view text, std::string_view find);
[[nodiscard]] std::string SAK_RemoveFirstOccurence(std::string_view text, std::string_view find);
[[nodiscard]] std::string SAK_RemoveLastOccurence(std::string_view text, std::string_view find);

// The text with `insert` in front.
[[nodiscard]] std::string SAK_strins(std::string_view text, std::string_view insert);

// Which ends SAK_TrimWhitespace cuts.
enum class TrimSide : std::uint8_t { Left, Right, Both };

// The text without white space at these ends; points into text.
[[nodiscard]] std::string_view SAK_TrimWhitespace(std::string_view text, TrimSide side = TrimSide::Both);

// --- Widths ---

// Characters of a label without its "_" marks.
[[nodiscard]] std::size_t SAK_GadToolsStrlen(std::string_view label);
[[nodiscard]] std::size_t SAK_GadToolsLongestString(std::span<const std::string_view> labels);

// Width of a text in the system font, and of the widest of some, in layout units; 0 without a display.
[[nodiscard]] int SAK_StrLenPixels(std::string_view text);
[[nodiscard]] int SAK_LongestStrLenPixels(std::span<const std::string_view> texts);

// Characters of the longest text.
[[nodiscard]] std::size_t SAK_LongestStrLenCharacters(std::span<const std::string_view> texts);

} // namespace solvane
