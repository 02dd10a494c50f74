// From the host's mounts to the disks that a person knows: which of them are, what they are called
// and what kind of device they pass for. Private to platform/dos.
#pragma once

#include "platform/dos/MountInfo.h"
#include "platform/dos/Volumes.h"

#include <string>
#include <string_view>
#include <vector>

namespace dos {

inline constexpr std::size_t LongestDeviceText = 100; // bytes of a name before a colon

// The mounts that are disks of the user's, as volumes that carry the stem of a device name by kind
// ("USB") and the disk's label; those of the system itself, kernel file systems, layers and bind
// mounts are left out. Numbers, and names that differ, are for the caller to give.
[[nodiscard]] std::vector<VolumeInfo> DisksOf(const std::vector<MountRow>& rows);

// The drives that have no medium in them, as DisksOf would give their disks; the drive's file is MountSource.
[[nodiscard]] std::vector<VolumeInfo> DrivesWithoutMedium();

// What a volume has of the file system on which it lies, whatever drawer it begins at: FileSystem,
// DosType, WriteProtected and Removable.
void DescribeFileSystem(VolumeInfo& info, const MountRow& row);

// A label as a name that can stand before a colon; empty when nothing is left of it.
[[nodiscard]] std::string FitVolumeName(std::string_view label);

} // namespace dos
