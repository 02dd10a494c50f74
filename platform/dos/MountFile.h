// The user's own volumes and assigns, as the text of mounts.toml tells them:
//
//   [[volume]]
//   name = "Work"            # what stands before the colon
//   path = "~/Amiga/Work"    # a drawer of the host
//   device = "DH3"           # optional; the next free DHn otherwise
//   names = "fold"           # or "exact", the default
//   metadata = "uaem"        # or "xattr", the default
//
//   [[assign]]
//   name = "Games"
//   paths = ["Work:Games", "/srv/games"]   # in order; host paths too. path = "..." for one
//   bind = "path"                          # looked up at every use; "late", the default, at the first
//
// Private to platform/dos.
#pragma once

#include "platform/dos/Volumes.h"

#include <string>
#include <string_view>
#include <vector>

namespace dos {

inline constexpr std::size_t LargestMountFile = 1u << 20; // bytes
inline constexpr std::size_t MostMountRows = 500;         // volumes, and as many assigns
inline constexpr std::size_t MostMountPaths = 64;         // of one assign
inline constexpr std::size_t LongestMountPath = 4096;     // bytes

// An entry that can be tried; Line is where it stands, for complaints.
struct MountFileVolume {
    VolumeInfo Info; // Device empty: the next free one
    long Line = 0;
};
struct MountFileAssign {
    AssignInfo Info; // Late or NonBinding; targets are paths of dos or absolute host paths
    long Line = 0;
};
struct MountFile {
    std::vector<MountFileVolume> Volumes;
    std::vector<MountFileAssign> Assigns;
    std::vector<std::string> Problems; // one for each entry left out, for a person
};

// Looks at nothing but the text; "~" stands for the home drawer.
[[nodiscard]] MountFile ParseMountFile(std::string_view text, const std::string& homeDrawer);

} // namespace dos
