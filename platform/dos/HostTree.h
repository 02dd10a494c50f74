// Whole trees of host drawers: made, copied, removed. For set-up only; it asks nobody and knows no
// AmigaDOS names. Private to platform/dos.
#pragma once

#include <string>

namespace dos {

// Makes a drawer and those above it where they are missing; false with errno.
[[nodiscard]] bool MakeHostDrawers(const std::string& hostPath, unsigned mode);

// Copies a tree of drawers, files and links to a place where nothing is; false with errno, and then
// a part of the copy may be there.
[[nodiscard]] bool CopyHostTree(const std::string& from, const std::string& to);

// Removes a tree without following links; what cannot be removed stays.
void RemoveHostTree(const std::string& hostPath);

} // namespace dos
