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
//   [[label]]
//   volume = "Home"          # what a volume of the system or a disk is called by itself
//   name = "My things"       # what it is called instead; Relabel writes these
//
// Private to platform/dos.
#pragma once

#include "platform/dos/VolumeTable.h"

#include <optional>
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
    std::vector<VolumeLabel> Labels;
    std::vector<std::string> Problems; // one for each entry left out, for a person
};

// Looks at nothing but the text; "~" stands for the home drawer.
[[nodiscard]] MountFile ParseMountFile(std::string_view text, const std::string& homeDrawer);

// The text with another name for a volume; all else in it stays byte for byte.
struct RelabelledText {
    std::string Text;
    bool IsDeclared = false; // by a [[volume]], whose name it is now; else a [[label]] tells it
};
// current is what the volume is called, own what it or its disk says by itself. Nothing when the text
// is broken or cannot be changed in one place.
[[nodiscard]] std::optional<RelabelledText> RelabelInMountFile(std::string_view text,
                                                               std::string_view current, std::string_view own,
                                                               std::string_view name);

} // namespace dos
