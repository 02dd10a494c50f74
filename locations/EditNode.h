// The small dialog that edits a name, and a drawer with it.
#pragma once

#include "sak/Text.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace solvane {

// --- State: what the dialog edits; its caller fills both and reads them afterwards ---

extern Text<128> AslReqFile;    // the name
extern Text<1024> AslReqDrawer; // the drawer

// --- Functions ---

enum class EmptyValues : std::uint8_t { Refused, Allowed };

// Asks for a name and a drawer, with a button that lets a drawer be chosen. Above 0: confirmed, and both hold
// what was entered. 0: cancelled, below 0: the dialog could not be opened, which was told; both stay. A value
// that is empty and must not be is told, and the dialog comes back. So is a drawer that is too long; it may
// be typed as in the path gadget. picture: path of the picture beside the fields.
[[nodiscard]] int EditNode(std::string_view title, std::string_view picture, std::string_view nameLabel,
                           std::string_view drawerLabel, EmptyValues empty = EmptyValues::Refused);

// The same for one text: the name, or while that is empty what AslReqDrawer has. longest: bytes that can be
// typed.
[[nodiscard]] int EditNodeNoDrawer(std::string_view title, std::string_view picture, std::string_view label,
                                   EmptyValues empty = EmptyValues::Refused,
                                   std::size_t longest = Text<128>::Limit);

} // namespace solvane
