// What the host tells of the block device behind a mount: its label, its bus, its size. Read from
// the kernel's and the device manager's own lists, so that no medium is touched. Private to
// platform/dos.
#pragma once

#include "platform/dos/MountInfo.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

// Where the host keeps these lists. Tests put drawers of their own in place.
struct MediumPlaces {
    std::string Numbers = "/sys/dev/block";    // "8:17", a link into the tree of devices
    std::string Blocks = "/sys/class/block";   // "sdb1", such a link too
    std::string Labels = "/dev/disk/by-label"; // a link named by the label to "../../sdb1"
    std::string Records = "/run/udev/data";    // "b8:17", the device manager's notes
    std::string Release = "/proc/sys/kernel/osrelease";
};
[[nodiscard]] MediumPlaces& Places();

struct MediumFacts {
    std::string Name{};        // "sdb1"; empty: no block device
    std::string Carrier{};     // the whole device that carries it, "sdb"; below a mapping its first disk
    std::string Label{};       // bytes as the medium has them; empty: none, or not known
    std::string Content{};     // file system by the device manager's own look, "ntfs"
    std::string BackingFile{}; // of a disk image
    bool OnUsb = false;
    bool Removable = false;      // the medium can be taken out of its drive
    std::uint64_t Blocks = 0;    // 0: not known
    std::uint32_t BlockSize = 0; // bytes
};
// What cannot be read is left out.
[[nodiscard]] MediumFacts FactsOfMedium(const MountRow& row);

// The kernel's names of the drives that have no medium in them, in order of name. No drive is touched: one of
// which it cannot be told is left out.
[[nodiscard]] std::vector<std::string> EmptyDriveNames();

// "\x20" and its like stand for bytes that would not do in a file name.
[[nodiscard]] std::string DecodeHexEscapes(std::string_view text);

// "6.1": the host's release, which its file systems share. Empty when it is not told.
[[nodiscard]] std::string HostRelease();

} // namespace dos
