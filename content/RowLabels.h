// The labels that rows of the Tiles and Content styles show beside their pictures, formed from the record at
// the moment of drawing.
#pragma once

#include "model/ContentNode.h"

#include <cstdint>
#include <string>
#include <vector>

namespace solvane {

enum class RowLabel {
    Tiles,   // under the name: what it is, its dates and figures, its path
    Content, // under the name: of a file what it is
    Figures, // the second label of Content, no name above it: date, and the size where there is one
};

// Lines of the fullest label of that kind, the name's counted.
[[nodiscard]] int LinesOf(RowLabel label);

// The label's lines but for the name.
[[nodiscard]] std::vector<std::string> FormLabel(RowLabel label, const ContentNode& node);

} // namespace solvane
