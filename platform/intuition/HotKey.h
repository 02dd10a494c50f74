// A key of the whole desktop: pressed anywhere, it sets a signal. Called by the commodity of the program.
#pragma once

#include "platform/exec/Tasks.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace intuition {

// A key with the qualifiers that must be held, as commodities write it: "-capslock lcommand e", "ctrl alt
// f1", "rawkey lshift help". Words are told apart by blanks, case aside. "-" before a qualifier: held or not.
// The key is one that types the character in any of the user's layouts, with Shift where that is a qualifier.
struct KeyCombination {
    std::uint32_t Symbol = 0;     // of the key, as display servers number symbols
    std::uint16_t Qualifiers = 0; // that must be held, of the left or right side; bits of namespace qualifier
    std::uint16_t Ignored = 0;    // qualifiers that may be held or not
};

// Nothing for a text that names no key, or more than one, or a word that is none of these.
[[nodiscard]] std::optional<KeyCombination> ParseKeyCombination(std::string_view text);

// Whether this display can give a program keys of the whole desktop.
[[nodiscard]] bool DisplayHasHotKeys();

// From now on the signals of the task are set when the combination is pressed, whatever window is in front,
// and nobody else gets it. Replaces the hot key before. False when the display refuses it, as for a key that
// another program has taken.
[[nodiscard]] bool SetHotKey(const KeyCombination& keys, exec::Task* task, exec::SignalMask signals);
void ClearHotKey();

} // namespace intuition
