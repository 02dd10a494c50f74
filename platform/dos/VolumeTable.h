// The table of volumes and assigns as the handlers see it. Private to platform/dos.
#pragma once

#include "platform/dos/HostFd.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Volumes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

struct Volume {
    VolumeInfo Info;
    std::string RealRoot;  // HostRoot without links
    std::string SlowMount; // the mount point that may not answer; empty for a disk that does
};
using VolumeRef = std::shared_ptr<const Volume>;

// By device name first, then by volume name; null when there is none.
[[nodiscard]] VolumeRef FindVolume(std::string_view name);
// The volume with the longest root above a host path. Never null: a path outside of all volumes
// lies on one that stands for the host's root.
[[nodiscard]] VolumeRef VolumeOfHostPath(std::string_view hostPath);

struct AssignTarget {
    FileLock Bound; // empty: look Path up
    std::string Path;
};
// The targets of an assign or of PROGDIR:, in order; nothing when there is none of that name.
[[nodiscard]] std::optional<std::vector<AssignTarget>> FindAssign(std::string_view name);
// Binds a target of a late assign to what its path has led to.
void BindTarget(std::string_view name, const std::string& path, const FileLock& lock);

// Sets PROGDIR: to a path; empty removes it.
void SetProgramDrawer(const std::string& path);

// What ReadMountFile and SetUpSystem have to tell a person; texts are joined by line ends.
void AddSetUpProblem(const std::string& text);

// Forgets all volumes, assigns and problems. For tests, so that one begins as a fresh process does.
void ResetVolumeTable();

// Adds the volumes and assigns of a mounts.toml; no such file is no problem. What is wrong in it
// goes to AddSetUpProblem, entry by entry.
void ReadMountFile(const std::string& hostPath, const std::string& homeDrawer);

} // namespace dos
