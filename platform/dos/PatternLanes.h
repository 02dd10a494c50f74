// Matches a text by any pattern tree, those with "~" inside of them included. Private to the pattern sources;
// trees without it have a faster way there.
#pragma once

#include "platform/dos/PatternTree.h"

#include <cstddef>
#include <string_view>

namespace dos {

// Whether matching a text of length bytes ends in reasonable time (about a second) and space.
[[nodiscard]] bool LanesAreAffordable(const PatternTree& tree, std::size_t length);

// Whether the whole text matches the root of the tree; Inverted is left to the caller.
[[nodiscard]] bool MatchByLanes(const PatternTree& tree, std::string_view text);

} // namespace dos
