// Names of host objects as AmigaDOS sees them. Disks that may not answer are not asked. Private to
// platform/dos.
#pragma once

#include "platform/dos/VolumeTable.h"

#include <string>
#include <string_view>

namespace dos {

// The name under which an entry of a host drawer is shown.
[[nodiscard]] std::string ShownNameAt(const std::string& drawerHostPath, std::string_view hostName,
                                      MetadataRule rule);

// A host path below a volume's root, as the path spells that, as "part/part" of shown names; empty for
// the root itself.
[[nodiscard]] std::string PathBelow(std::string_view root, const std::string& hostPath, MetadataRule rule);

// What stands before the colon in a path to the volume: its name, or its device where another
// volume of that name would be found first.
[[nodiscard]] std::string PathNameOf(const VolumeRef& volume);

// The root of the volume that lies above the path, as the path spells it.
[[nodiscard]] const std::string& RootAbove(const Volume& volume, std::string_view hostPath);

} // namespace dos
