#include "platform/dos/DiskVolumes.h"

#include "platform/dos/MediumInfo.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace dos {

namespace {

constexpr std::uint64_t LargestFloppy = 5760 * 512; // bytes; 2.88 MB
constexpr std::string_view Fuse = "fuse.";

bool IsOneOf(std::string_view text, std::span<const std::string_view> rows) {
    return std::ranges::find(rows, text) != rows.end();
}

// File systems of the kernel's own, and layers over what is shown elsewhere.
constexpr std::array<std::string_view, 37> NoDisk = {"proc",
                                                     "sysfs",
                                                     "devtmpfs",
                                                     "devpts",
                                                     "cgroup",
                                                     "cgroup2",
                                                     "mqueue",
                                                     "overlay",
                                                     "overlayfs",
                                                     "aufs",
                                                     "unionfs",
                                                     "squashfs",
                                                     "erofs",
                                                     "ramfs",
                                                     "rootfs",
                                                     "autofs",
                                                     "debugfs",
                                                     "tracefs",
                                                     "bpf",
                                                     "pstore",
                                                     "configfs",
                                                     "securityfs",
                                                     "hugetlbfs",
                                                     "fusectl",
                                                     "nsfs",
                                                     "binfmt_misc",
                                                     "efivarfs",
                                                     "rpc_pipefs",
                                                     "selinuxfs",
                                                     "fuse.gvfsd-fuse",
                                                     "nfsd",
                                                     "fuse.portal",
                                                     "fuse.snapfuse",
                                                     "fuse.lxcfs",
                                                     "fuse.fuse-overlayfs",
                                                     "fuse.rofiles-fuse",
                                                     "fuse.unionfs"};

// Drawers of the system: what is mounted there or below is its own affair.
constexpr std::array<std::string_view, 10> SystemTrees = {"/proc", "/sys", "/dev",  "/boot", "/efi",
                                                          "/etc",  "/usr", "/snap", "/var",  "/root"};
// Mounts of a system that is spread over several disks; drawers below them may well be user's disks.
constexpr std::array<std::string_view, 5> SystemPoints = {"/", "/home", "/tmp", "/opt", "/srv"};

// Their sources are names without a path.
constexpr std::array<std::string_view, 3> NamedSources = {"zfs", "virtiofs", "vboxsf"};

constexpr std::array<std::string_view, 12> NetworkTypes = {
    "nfs", "nfs4", "smbfs", "9p", "afs", "ceph", "coda", "ncpfs", "davfs", "lustre", "virtiofs", "vboxsf"};
constexpr std::array<std::string_view, 14> NetworkFuse = {
    "sshfs",    "rclone",  "s3fs",   "curlftpfs", "davfs2", "glusterfs", "ceph",
    "smbnetfs", "gcsfuse", "goofys", "httpdirfs", "jmtpfs", "nfs",       "ftpfs"};

// Is the mount one of a home drawer of its own? That is "Home:" or another user's.
bool IsHome(std::string_view point) {
    return point.starts_with("/home/") && point.find('/', 6) == std::string_view::npos;
}

bool IsSystemPoint(std::string_view point) {
    if (IsOneOf(point, SystemPoints) || IsHome(point) || point.find("/.") != std::string_view::npos)
        return true;
    if (LiesUnder(point, "/run") && !LiesUnder(point, "/run/media"))
        return true;
    return std::ranges::any_of(SystemTrees, [&](auto tree) { return LiesUnder(point, tree); });
}

// Memory is a disk only where people put theirs by hand: at /mnt or /media, or a drawer in it.
bool IsOwnPlace(std::string_view point) {
    const std::string_view parent = point.substr(0, point.rfind('/'));
    return point == "/mnt" || parent == "/mnt" || parent == "/media";
}

// A disk that a person would look for.
bool IsUsersDisk(const MountRow& row) {
    if (IsSystemPoint(row.Point) || IsOneOf(row.Type, NoDisk) ||
        row.Root.find("//deleted") != std::string::npos)
        return false;
    if (row.Type == "tmpfs")
        return row.Root == "/" && IsOwnPlace(row.Point);
    // What comes from nothing is the kernel's.
    return row.Slow || row.Source.find_first_of("/:") != std::string::npos || IsOneOf(row.Type, NamedSources);
}

// A disk that is mounted elsewhere too, or a part of one: the first mount counts, and none when the
// system itself is on it. On some file systems (btrfs) drawers pass for disks: they are parts.
bool IsSecondMount(const std::vector<MountRow>& rows, const MountRow& row) {
    const bool isOnBlock = row.Source.starts_with("/dev/");
    const bool hasParts = isOnBlock && row.Type == "btrfs";
    if (row.Slow && !isOnBlock)
        return false;
    if (row.Root != "/" && !hasParts)
        return true;
    bool isLater = false; // than the row itself
    for (const MountRow& other : rows) {
        isLater = isLater || &other == &row;
        if (&other == &row ||
            (hasParts ? other.Source != row.Source : other.Number != row.Number || other.Root != row.Root))
            continue;
        if (IsSystemPoint(other.Point) || (!isLater && MountOf(rows, other.Point) == &other))
            return true;
    }
    return false;
}

struct DiskKind {
    std::string_view Device;          // stem of the device name, "USB"
    std::string_view ExecDevice = {}; // empty for plain disks
    std::string_view Handler = {};    // empty: the host's type
    bool Removable = true;
};

constexpr DiskKind NetworkShare{"NET", "", "smbfs"};

// "sshfs" of "fuse.sshfs".
std::string_view ShortType(std::string_view type) {
    return type.starts_with(Fuse) ? type.substr(Fuse.size()) : type;
}

const DiskKind* NetworkKind(const MountRow& row) {
    struct NamedKind {
        std::string_view Type;
        DiskKind Kind;
    };
    static constexpr std::array<NamedKind, 7> Named = {
        {{"cifs", {"SMB", "", "smbfs"}},
         {"smb3", {"SMB", "", "smbfs"}},
         {"fuse.google-drive-ocamlfuse", {"GDRIVE", "", "google-drive-handler"}},
         {"fuse.dbxfs", {"DROPBOX", "", "dropbox-handler"}},
         {"fuse.dbfs", {"DROPBOX", "", "dropbox-handler"}},
         {"fuse.onedriver", {"ONEDRIVE", "", ""}},
         {"fuse.onedrive", {"ONEDRIVE", "", ""}}}};
    for (const NamedKind& each : Named)
        if (each.Type == row.Type)
            return &each.Kind;
    const bool isFuse = row.Type.starts_with(Fuse);
    if (isFuse ? IsOneOf(ShortType(row.Type), NetworkFuse) : IsOneOf(row.Type, NetworkTypes))
        return &NetworkShare;
    return nullptr;
}

bool EndsWithOne(std::string_view text, std::span<const std::string_view> suffixes) {
    return std::ranges::any_of(suffixes, [&](std::string_view suffix) {
        return text.size() >= suffix.size() &&
               utility::Stricmp(text.substr(text.size() - suffix.size()), suffix) == 0;
    });
}

// By what the file says it is, then by what is in it.
DiskKind ImageKind(const MountRow& row, const MediumFacts& medium) {
    static constexpr std::array<std::string_view, 8> Discs = {".iso", ".bin", ".img.iso", ".cue",
                                                              ".nrg", ".mdf", ".toast",   ".udf"};
    static constexpr std::array<std::string_view, 6> Floppies = {".adf", ".adz", ".dms",
                                                                 ".ima", ".dsk", ".st"};
    static constexpr std::array<std::string_view, 5> HardDisks = {".hdf", ".hdz", ".vhd", ".vdi", ".qcow2"};
    const DiskKind disc{"ICD", "diskimage.device"};
    const DiskKind floppy{"IDF", "diskimage.device"};
    const DiskKind hardDisk{"IHD", "diskimage.device"};
    if (EndsWithOne(medium.BackingFile, Floppies))
        return floppy;
    if (EndsWithOne(medium.BackingFile, HardDisks))
        return hardDisk;
    if (EndsWithOne(medium.BackingFile, Discs) || row.Type == "iso9660" || row.Type == "udf")
        return disc;
    return medium.Blocks * medium.BlockSize > LargestFloppy ? hardDisk : floppy;
}

// Floppy drives have one device name for each kind of disk that may be in them.
DiskKind FloppyKind(const MountRow& row) {
    if (row.Type == "vfat" || row.Type == "msdos")
        return {"PC"};
    return {row.Type.starts_with("hfs") ? "MAC" : "DF"};
}

DiskKind KindOf(const MountRow& row, const MediumFacts& medium) {
    if (const DiskKind* network = NetworkKind(row))
        return *network;
    if (row.Type == "tmpfs")
        return {"VD"};
    const std::string_view on = medium.Carrier;
    if (on.starts_with("loop"))
        return ImageKind(row, medium);
    if (on.starts_with("sr"))
        return {"CD"};
    if (medium.OnUsb)
        return {"USB", "usbdisk.device"};
    if (on.starts_with("mmcblk"))
        return {"CF"};
    if (on.starts_with("fd"))
        return FloppyKind(row);
    if (on.starts_with("zram") || on.starts_with("ram"))
        return {"RD"};
    if (row.Type == "iso9660" || row.Type == "udf")
        return {"CD"};
    return {.Device = "HD", .Removable = medium.Removable || medium.Name.empty()};
}

struct TypeRow {
    std::string_view HostType;
    std::uint32_t DosType;
};

// Four bytes as one number, the first on top.
constexpr std::uint32_t Identifier(std::string_view text) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = (value << 8) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0u);
    return value;
}

// Others are called by the first letters of the host's name.
std::uint32_t DosTypeOf(std::string_view type) {
    static constexpr std::array<TypeRow, 8> Known = {{{"affs", Identifier("DOS")},
                                                      {"msdos", Identifier("MSD")},
                                                      {"vfat", Identifier("FAT")},
                                                      {"exfat", Identifier("FATX")},
                                                      {"iso9660", Identifier("CD01")},
                                                      {"hfsplus", Identifier("HFS+")},
                                                      {"ntfs3", Identifier("NTFS")},
                                                      {"tmpfs", Identifier("RAM")}}};
    for (const TypeRow& row : Known)
        if (row.HostType == type)
            return row.DosType;
    std::string letters(ShortType(type).substr(0, 4));
    for (char& c : letters)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return Identifier(letters);
}

void SetFileSystem(VolumeInfo& info, std::string_view type) {
    const std::string release = HostRelease();
    info.DosType = DosTypeOf(type);
    info.FileSystem = std::string(ShortType(type)) + (release.empty() ? "" : " " + release);
}

// "fuseblk" says nothing of what is on the disk; the device manager may.
std::string TypeOf(const MountRow& row, const MediumFacts& medium) {
    return row.Type == "fuseblk" && !medium.Content.empty() ? medium.Content : row.Type;
}

// What a share is called on its server; the server's own name where that is nothing.
std::string ShareName(std::string_view source) {
    while (source.ends_with('/') || source.ends_with('\\') || source.ends_with(':'))
        source.remove_suffix(1);
    return FitVolumeName(source.substr(source.find_last_of("/\\:@") + 1));
}

std::string NameOfDisk(const MountRow& row, const MediumFacts& medium) {
    std::string name = NetworkKind(row) ? ShareName(row.Source) : FitVolumeName(medium.Label);
    if (name.empty()) // desktops mount a disk under its label
        name = FitVolumeName(std::string_view(row.Point).substr(row.Point.rfind('/') + 1));
    return name.empty() ? "Unnamed" : name;
}

VolumeInfo DiskOf(const MountRow& row) {
    const MediumFacts medium = FactsOfMedium(row);
    const DiskKind kind = KindOf(row, medium);
    const std::string type = TypeOf(row, medium);
    VolumeInfo info{.Device = std::string(kind.Device),
                    .Volume = NameOfDisk(row, medium),
                    .HostRoot = row.Point,
                    .ExecDevice = std::string(kind.ExecDevice),
                    .HandlerName = std::string(kind.Handler.empty() ? ShortType(type) : kind.Handler),
                    .MountSource = row.Source,
                    .Removable = kind.Removable,
                    .WriteProtected = row.ReadOnly,
                    .MediumBlocks = medium.Blocks,
                    .MediumBlockSize = medium.BlockSize};
    SetFileSystem(info, type);
    return info;
}

} // namespace

std::string FitVolumeName(std::string_view label) {
    std::string name = utility::ReplaceInvalidUtf8(label);
    for (char& c : name)
        if (c == ':' || c == '/' || static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            c = '_';
    name.resize(utility::CutLength(name, LongestDeviceText));
    name.erase(std::min(name.find_last_not_of(' ') + 1, name.size()));
    name.erase(0, name.find_first_not_of(' '));
    return name;
}

void DescribeFileSystem(VolumeInfo& info, const MountRow& row) {
    const MediumFacts medium = row.Source.starts_with("/dev/") ? FactsOfMedium(row) : MediumFacts();
    SetFileSystem(info, TypeOf(row, medium));
    info.WriteProtected = row.ReadOnly;
    info.Removable = IsUsersDisk(row) && KindOf(row, medium).Removable;
}

std::vector<VolumeInfo> DisksOf(const std::vector<MountRow>& rows) {
    std::vector<VolumeInfo> disks;
    for (const MountRow& row : rows) {
        if (!IsUsersDisk(row) || MountOf(rows, row.Point) != &row || IsSecondMount(rows, row))
            continue;
        disks.push_back(DiskOf(row));
    }
    return disks;
}

std::vector<VolumeInfo> DrivesWithoutMedium() {
    std::vector<VolumeInfo> drives;
    for (const std::string& name : EmptyDriveNames()) {
        MountRow row;
        row.Source = "/dev/" + name;
        const DiskKind kind = KindOf(row, FactsOfMedium(row));
        drives.push_back({.Device = std::string(kind.Device),
                          .ExecDevice = std::string(kind.ExecDevice),
                          .MountSource = row.Source,
                          .Removable = true});
    }
    return drives;
}

} // namespace dos
