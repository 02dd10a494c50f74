// Further windows of the program; each is an instance of its own.
#pragma once

#include <string_view>

namespace solvane {

// Starts a new instance with one argument, empty for none. Started programs come with the command lines of
// the platform; until then this does nothing.
void OpenNewSolvaneWindow(std::string_view argument);

} // namespace solvane
