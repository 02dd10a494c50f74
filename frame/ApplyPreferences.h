// Brings the running program in line with its preferences, at the start and whenever they are read again. The
// window is for the caller to open or build anew.
#pragma once

namespace solvane {

// Texts, dates, fonts, scripts and the forms of the icon, from the preferences as they are.
void ApplyPreferences();

// Reads the document again and applies it; hot key and dock entry follow.
void LoadAndApplyPreferences();

// At the start, where the program is to wait in the background: there is one instance only. A second one
// wakes the first. False when this instance is to end: it was the second, or a requester has told why.
[[nodiscard]] bool SetUpAsCommodity();

} // namespace solvane
