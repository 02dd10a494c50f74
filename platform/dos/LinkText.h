// Texts of links and paths of the host told as AmigaDOS paths. Disks that may not answer are not asked;
// names there that need an alias get the plain one. Private to platform/dos.
#pragma once

#include "platform/dos/Volumes.h"

#include <string>
#include <string_view>

namespace dos {

// The target of a soft link as the host stores it, as an AmigaDOS path: absolute ones from their
// volume, relative ones relative to the drawer of the link (a descriptor), whose volume has that rule.
[[nodiscard]] std::string AmigaLinkTarget(int drawer, std::string_view hostTarget, MetadataRule rule);

// An absolute host path with "." and ".." taken out by their text alone, "//" made one.
[[nodiscard]] std::string CleanHostPath(std::string_view hostPath);

} // namespace dos
