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
    std::string RealRoot;    // HostRoot without links
    std::string SlowMount;   // the mount point that may not answer; empty for a disk that does
    std::string Own{};       // what the system or the disk calls it, whatever it is called now
    bool IsOfSystem = false; // by AddSystemVolume: no declaration is about it
};
using VolumeRef = std::shared_ptr<const Volume>;

// By device name first, then by volume name; null when there is none, or when an assign stands
// before the volume of that name.
[[nodiscard]] VolumeRef FindVolume(std::string_view name);
// The volume with the longest root above a host path. Never null: a path outside of all volumes
// lies on one that stands for the host's root.
[[nodiscard]] VolumeRef VolumeOfHostPath(std::string_view hostPath);

// The record of a volume as it is now: it may have another name than when it was found.
[[nodiscard]] VolumeRef PresentRecord(const VolumeRef& volume);

// What a volume of the system or a disk is called instead of what it says by itself.
struct VolumeLabel {
    std::string Volume;
    std::string Name;
};
// The labels for disks and for AddSystemVolume from now on, and the host path of the mounts.toml that
// keeps them.
void SetVolumeLabels(std::vector<VolumeLabel> labels, const std::string& mountFile);
// That host path; empty when nothing keeps them.
[[nodiscard]] std::string LabelFile();

// AddVolume for a volume of the system itself: it is called by its label where that is free, and
// SetUpProblem tells where it is not.
[[nodiscard]] bool AddSystemVolume(VolumeInfo volume);

// No disk takes one of these names: assigns are to have them, which may come after it.
void KeepNamesFree(std::vector<std::string> names);

// Gives the disk that is mounted at the declared root, now or later, the declared name if that is free, and
// its rules. SetUpProblem tells of a name that is not.
void DeclareDisk(VolumeInfo declared);

// Gives the paths of all assigns that begin with the name of a volume its new name.
void RenameInAssigns(std::string_view volume, std::string_view name);

// Does a volume carry this device name? NIL:, CON: and PROGDIR: count.
[[nodiscard]] bool IsDeviceName(std::string_view name);
// Can the name stand before a colon?
[[nodiscard]] bool IsDeviceText(std::string_view name) noexcept;

struct AssignTarget {
    FileLock Bound;         // empty: look Path up
    std::string Path;       // of a bound one: as it was called then
    bool IsSettled = false; // Path is the full name of a drawer that was found
};
// The targets of an assign or of PROGDIR:, in order; nothing when there is none of that name.
[[nodiscard]] std::optional<std::vector<AssignTarget>> FindAssign(std::string_view name);
[[nodiscard]] bool IsAssign(std::string_view name);
// Binds a target of a late assign to what its path has led to.
void BindTarget(std::string_view name, const std::string& path, const FileLock& lock);

// Sets PROGDIR: to a path; empty removes it.
void SetProgramDrawer(const std::string& path);

// Forgets all assigns. For ResetVolumeTable.
void ResetAssigns();

// What ReadMountFile and SetUpSystem have to tell a person; texts are joined by line ends, and after
// some thousands of bytes more of them are only counted out.
void AddSetUpProblem(const std::string& text);

// Forgets all volumes, assigns and problems. For tests, so that one begins as a fresh process does.
void ResetVolumeTable();

// Adds the volumes and assigns of a mounts.toml; no such file is no problem. What is wrong in it
// goes to AddSetUpProblem, entry by entry.
void ReadMountFile(const std::string& hostPath, const std::string& homeDrawer);
// Takes what a mounts.toml says about names, before there are volumes: the labels, and its assigns' names,
// which are kept free. Its problems are ReadMountFile's.
void ReadVolumeLabels(const std::string& hostPath);

} // namespace dos
