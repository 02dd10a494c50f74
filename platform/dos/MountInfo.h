// What the host has mounted where, read from its own list without touching any of the mounts.
// Private to platform/dos.
#pragma once

#include "platform/dos/Volumes.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

struct MountRow {
    std::string Point;  // host path
    std::string Type;   // "ext4", "nfs4", "fuse.sshfs"
    std::string Source; // "/dev/sdb1", "//server/share"
    std::string Root;   // which part of the file system stands there, "/" for all
    bool Slow = false;  // a network or FUSE file system: may never answer
};
using MountRows = std::shared_ptr<const std::vector<MountRow>>;

[[nodiscard]] std::vector<MountRow> ParseMountInfo(std::string_view text);
// The present list; the same object as long as nothing was mounted or unmounted. Never null.
[[nodiscard]] MountRows Mounts();
// Has the list opened and read anew. For tests that put another in its place.
void ForgetMounts();
// The mount in which a host path lies; null when the list knows none.
[[nodiscard]] const MountRow* MountOf(const std::vector<MountRow>& rows, std::string_view hostPath);

// Is path the root or something below it?
[[nodiscard]] bool LiesUnder(std::string_view hostPath, std::string_view root) noexcept;

// The mounts that are disks of the user's, as volumes with device names by kind; those of the
// system itself (root, boot, kernel file systems) are left out.
[[nodiscard]] std::vector<VolumeInfo> DisksOf(const std::vector<MountRow>& rows);

} // namespace dos
