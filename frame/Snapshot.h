// A run that nobody watches: the window is shown once, its content printed, its picture saved, and the
// program ends.
#pragma once

namespace solvane {

// When the environment asks for a picture of the window ("SOLVANE_SNAPSHOT" names its file): prints what the
// window shows to standard output, saves the picture and results in true, so that the program may end. Called
// before each wait; without a wish, or before the window is open, it does nothing and results in false.
[[nodiscard]] bool TakeSnapshot();

// In a run that nobody watches requesters are printed and take their last answer. Without such a wish nothing
// changes. Called once, before the first requester can come up.
void AnswerRequestersOfSnapshot();

} // namespace solvane
