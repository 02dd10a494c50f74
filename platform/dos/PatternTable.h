// Patterns with "~" inside of them as a table of states, made once when they are parsed, so that each
// character of a text costs one look-up. Private to the pattern sources.
#pragma once

#include "platform/dos/PatternTree.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace dos {

// Characters that the same letters of the pattern take are one class.
struct PatternTable {
    std::array<std::uint16_t, 128> AsciiClass{};
    std::vector<std::pair<std::uint64_t, std::uint16_t>> Classes; // by the letters that take them, sorted
    std::vector<std::uint16_t> Next; // by state and class; the first state is where a text begins
    std::vector<bool> Accepts;       // by state
};

// Nothing for a pattern of more than 64 letters or whose table would be large or slow to make.
[[nodiscard]] std::optional<PatternTable> MakePatternTable(const PatternTree& tree);

// Whether the whole text matches the root of the tree; Inverted is left to the caller. Nothing when
// the text has a character of a class that the table was not made for.
[[nodiscard]] std::optional<bool> MatchByTable(const PatternTree& tree, const PatternTable& table,
                                               std::string_view text);

} // namespace dos
