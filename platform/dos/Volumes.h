// Volumes and assigns: the names that stand before the colon of a path, and their first set-up on
// this host. Usage figures and disk events are not told here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

enum class NameRule { Exact, Fold };     // how a name in a drawer of the volume is found
enum class MetadataRule { Xattr, Uaem }; // where bits and notes are written

struct VolumeInfo {
    std::string Device{};   // "DH0", unique
    std::string Volume{};   // "Workbench"; two disks may carry one name
    std::string HostRoot{}; // host path of the root drawer
    NameRule Names = NameRule::Exact;
    MetadataRule Metadata = MetadataRule::Xattr;
    std::string ExecDevice{};  // "usbdisk.device"; empty for plain disks
    std::uint32_t Unit = 0;    // of the Exec device
    std::string HandlerName{}; // "smbfs", "nfs", "ext4"
    std::string MountSource{}; // what the host mounted: a device file, "//server/share"
    bool Removable = false;    // comes and goes with a mount of the host
};

enum class AssignKind {
    Directory,  // bound to a drawer when it is made; follows the drawer when that is renamed
    Late,       // the path is bound at its first use
    NonBinding, // the path is looked up at every use
};

struct AssignInfo {
    std::string Name; // "LIBS", no colon
    AssignKind Kind = AssignKind::Directory;
    std::vector<std::string> Targets; // paths in order; more than one: a multi-assign
};

// Host paths that the program knows of itself.
struct SystemDrawers {
    std::string SystemSkeleton; // what SYS: is made from at the first start; may be empty
    std::string ProgramDrawer;  // becomes PROGDIR:
};

// Makes DH0: to DH2:, RAM:, the assigns and what mounts.toml adds; at the first start the system
// drawer as well. False when the program cannot go on, with IoErr and SetUpProblem().
[[nodiscard]] bool SetUpSystem(const SystemDrawers& drawers);
// What went wrong at set-up, for a person; a broken mounts.toml is told here though the rest works.
// Empty when all is well.
[[nodiscard]] std::string SetUpProblem();

// What is there now; mounts of the host that came or went are seen.
[[nodiscard]] std::vector<VolumeInfo> Volumes();
// All assigns but PROGDIR:, which belongs to the process.
[[nodiscard]] std::vector<AssignInfo> Assigns();

// Makes or replaces an assign; no target removes it. False with IoErr: 202 a device or volume is
// called so, 205 or another for a Directory target that cannot be locked.
[[nodiscard]] bool SetAssign(std::string_view name, AssignKind kind, std::vector<std::string> targets);
// Adds a volume. False with IoErr: 203 the device name is taken, 210 bad name, 205 no such drawer.
[[nodiscard]] bool AddVolume(VolumeInfo volume);

// Is the name before the colon a device, volume or assign?
[[nodiscard]] bool IsKnownDevice(std::string_view name);

} // namespace dos
