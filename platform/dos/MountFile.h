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
    std::size_t Index = 0; // among all [[volume]]s of the file
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

// The declaration of a volume or disk, by its place and device; of several without a device, the one of its
// name. Null when there is none or it is not clear which.
[[nodiscard]] const MountFileVolume* FindDeclaration(const MountFile& file, const VolumeInfo& volume);

// The text with another name for a volume, in its declaration or, where that is null, in the [[label]] of its
// own name; all else in it stays byte for byte. Nothing when the text is broken or cannot be changed in one
// place.
[[nodiscard]] std::optional<std::string> RelabelInMountFile(std::string_view text,
                                                            const MountFileVolume* declared,
                                                            std::string_view own, std::string_view name);

// The complaint about a name that cannot be given.
[[nodiscard]] std::string NameIsTaken(std::string_view name);

} // namespace dos
