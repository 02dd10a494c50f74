// The dialog in which the user presses a hot key instead of typing its text. Nothing opens it before there is
// an editor of the preferences.
#pragma once

#include "sak/Text.h"

namespace solvane {

// --- State ---

extern Text<128> RecordKeystrokesBuffer; // the combination before and after RecordKeystrokesReq

// --- Functions ---

// Lets the user press a combination of keys and say whether Caps Lock matters, until there is one that can be
// read; whether the desktop gives it to the program is found out when it is taken. False when the user gives
// up; RecordKeystrokesBuffer is then as it was. What is wrong with a combination is told.
[[nodiscard]] bool RecordKeystrokesReq();

} // namespace solvane
