// Further windows of the program; each is an instance of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace solvane {

// Whether there can be any. A program in the background is the only instance.
[[nodiscard]] bool CanHaveFurtherWindows();

// Starts a new instance with one argument, which is data whatever it holds. False with IoErr: 105, in
// silence, where there can be none; after a requester where it cannot be started or does not fit on a command
// line.
bool OpenNewSolvaneWindow(std::string_view argument);

// The same for a user who has asked for the window by a key or an object: he is told that there can be none.
bool OpenWantedWindow(std::string_view argument);

// As OpenNewSolvaneWindow, with one argument for each tab.
bool StartInstance(const std::vector<std::string>& arguments);

} // namespace solvane
