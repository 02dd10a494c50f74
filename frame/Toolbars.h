// What a button of the toolbar does, which is what its menu item does.
#pragma once

#include <cstdint>

namespace solvane {

// By the number of the button; numbers that there are not do nothing.
void HandleToolbars(std::uint32_t number);

// A pick in the chooser of scripts, by its position.
void HandleScriptChooser(std::uint32_t position);

} // namespace solvane
