// Further windows of the program; each is an instance of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace solvane {

// Whether there can be any. A program in the background is the only instance.
[[nodiscard]] bool HasFurtherWindows();

// Starts a new instance with one argument, which is data whatever it holds. False where there can be none;
// false, after a requester, when that cannot be started or does not fit on a command line.
bool OpenNewSolvaneWindow(std::string_view argument);

// The same with one argument for each tab.
bool StartInstance(const std::vector<std::string>& arguments);

} // namespace solvane
