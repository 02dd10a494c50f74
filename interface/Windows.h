// Further windows of the program; each is an instance of its own.
#pragma once

#include <string_view>

namespace solvane {

// Starts a new instance with one argument, which is data whatever it holds. Nothing is told of a failure; a
// line that does not fit is not started.
void OpenNewSolvaneWindow(std::string_view argument);

} // namespace solvane
