// Type-ahead in the Content pane: keys in quick succession form the beginning of a name.
#pragma once

#include "sak/Text.h"

#include <string_view>

namespace solvane {

// --- State ---

extern Text<128> JumpToBuffer; // what was typed so far; counts while SameJumpTo is set

// --- Functions ---

// Adds what a key types to the beginning that is looked for, or begins a new one, and clicks the first row
// whose name begins so, case aside. Without one the display flashes.
void FindFirstNodeByLetter(std::string_view text);

// Serves a tick: ten of them after the last key end the word. Ticks run while a word is typed only.
void TickTypeAhead();

// The next key begins a new word; called when the window goes, too.
void EndTypeAhead();

} // namespace solvane
