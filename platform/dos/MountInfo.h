// What the host has mounted where, read from its own list without touching any of the mounts.
// Private to platform/dos.
#pragma once

#include "platform/dos/HostFd.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

// One mount as the list tells it.
struct MountRow {
    std::uint64_t Id = 0; // the kernel's number of the mount, never used again while it is held
    std::string Number;   // of the device, "8:17"; major number 0 when no block device is behind it
    std::string Point;    // host path
    std::string Type;     // "ext4", "nfs4", "fuse.sshfs"
    std::string Source;   // "/dev/sdb1", "//server/share"
    std::string Root;     // which part of the file system stands there, "/" for all
    bool ReadOnly = false;
    bool Slow = false; // a network or FUSE file system: may never answer
};
using MountRows = std::shared_ptr<const std::vector<MountRow>>;

// Lines that are none of the list's are passed over.
[[nodiscard]] std::vector<MountRow> ParseMountInfo(std::string_view text);
// The present list; the same object as long as nothing was mounted or unmounted. Never null.
[[nodiscard]] MountRows Mounts();
// While one lives, its thread asks for the list but once, or once in a millisecond where the work
// takes so long: for one call of dos the disks are those that it found.
class MountLook {
public:
    MountLook() noexcept;
    MountLook(const MountLook&) = delete;
    MountLook& operator=(const MountLook&) = delete;
    ~MountLook();
};
// The list as it was last read; null before the first time. Asks the host nothing.
[[nodiscard]] MountRows KnownMounts();
// Has the list opened and read anew. For tests that put another in its place.
void ForgetMounts();
// The mount in which a host path lies; null when the list knows none.
[[nodiscard]] const MountRow* MountOf(const std::vector<MountRow>& rows, std::string_view hostPath);
// Its mount point when that may never answer; empty for a disk that does.
[[nodiscard]] std::string SlowMountOf(const std::vector<MountRow>& rows, std::string_view hostPath);

// Is path the root or something below it?
[[nodiscard]] bool LiesUnder(std::string_view hostPath, std::string_view root) noexcept;

// Does the descriptor lead to a mount that is no longer in the list? Asks no file system.
[[nodiscard]] bool HasVanished(int descriptor, const std::vector<MountRow>& rows);

// The host's list itself, for waiting: POLLPRI says that it has changed since it was opened or last
// read. Empty with errno.
[[nodiscard]] HostFd OpenMountList();

} // namespace dos
