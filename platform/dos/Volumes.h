// Volumes and assigns: the names that stand before the colon of a path, and their first set-up on
// this host. Usage figures are not told here; DiskEvents.h tells of disks that come and go.
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
    std::string Volume{};   // "Workbench"; a mounted disk whose label is taken adds its device's name
    std::string HostRoot{}; // host path of the root drawer
    NameRule Names = NameRule::Exact;
    MetadataRule Metadata = MetadataRule::Xattr;
    std::string ExecDevice{};  // "usbdisk.device"; empty for plain disks
    std::uint32_t Unit = 0;    // of the Exec device
    std::string HandlerName{}; // "ext4", "vfat"; "smbfs" for a share of whatever network
    std::string FileSystem{};  // name and version, "nfs4 6.1"
    std::uint32_t DosType = 0; // four characters, the first on top
    std::string MountSource{}; // what the host mounted: a device file, "//server/share"
    bool Removable = false;    // the disk or share can go while the program runs
    bool WriteProtected = false;
    bool MayHang = false;              // on a network or a program of the user's, which may never answer
    std::uint64_t MediumBlocks = 0;    // of the whole medium, 0 where it is not known
    std::uint32_t MediumBlockSize = 0; // bytes
};

enum class AssignKind {
    Directory,  // bound to a drawer when it is made; follows the drawer when that is renamed. A
                // drawer on a removable disk is known by its name, so that the disk can be taken out
    Late,       // the path is bound at its first use, and is a Directory from then on
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
// The drives that have no medium in them: device name, which no volume has, Exec device and unit.
[[nodiscard]] std::vector<VolumeInfo> EmptyDrives();
// All assigns but PROGDIR:, which belongs to the process.
[[nodiscard]] std::vector<AssignInfo> Assigns();

// Makes or replaces an assign; no target removes it. An assign stands before a volume of its name.
// False with IoErr: 202 a device is called so, 205 or another for a Directory target that cannot be
// locked, 210 bad name, 212 more than one target for a NonBinding one.
[[nodiscard]] bool SetAssign(std::string_view name, AssignKind kind, std::vector<std::string> targets);

enum class AssignEnd { Last, First };
// Adds a drawer to an assign, or makes a Directory assign of it when there is none. Of a drawer that
// it already has nothing is added. False with IoErr: as for SetAssign, 212 a NonBinding assign.
[[nodiscard]] bool AddToAssign(std::string_view name, std::string_view path, AssignEnd end);
// Takes one drawer out; the assign goes with its last one. False with IoErr 205 when there is no
// such assign or it does not have the drawer.
[[nodiscard]] bool RemoveFromAssign(std::string_view name, std::string_view path);

// Adds a volume; what the host tells of its file system is filled in. False with IoErr: 203 the device name
// is taken, 210 bad name, 205 no such drawer.
[[nodiscard]] bool AddVolume(VolumeInfo volume);

// Gives a volume another name, with or without a colon behind the old one; device names stay. The
// new name is written to mounts.toml: into its own declaration, or as a label for what is not declared
// there; what a disk carries itself stays as it is. Those who wait for disk events are told. False with
// IoErr: 218 no such volume, 203 another thing is called so, 210 empty, too long or with what cannot be
// part of a name, 214 a disk that cannot be written, 209 there is no mounts.toml to keep it, 212 that one
// is broken.
[[nodiscard]] bool Relabel(std::string_view volume, std::string_view name);

struct VolumeRename {
    std::string Before, Now; // no colons
};
// Looks whether mounts.toml gives volumes other names than before, as when another process has called
// Relabel: they and the assigns to them have those names from then on. A name that is taken is passed over,
// and so is one label for several disks. Nothing when the file cannot be read or something in it is wrong.
[[nodiscard]] std::vector<VolumeRename> TakeNewNames();

// "DOS\07", "NTFS": three characters and an escape where the last byte is none.
[[nodiscard]] std::string DosTypeText(std::uint32_t dosType);

// Is the name before the colon a device, volume or assign?
[[nodiscard]] bool IsKnownDevice(std::string_view name);

} // namespace dos
