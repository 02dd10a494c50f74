#include "platform/dos/MountInfo.h"

#include "platform/dos/HostFd.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t LargestMountInfo = 8u << 20; // bytes; far above any real list

// "\040" and its like stand for characters that would break the list's columns.
std::string Unescape(std::string_view field) {
    std::string out;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && field[i + 1] >= '0' && field[i + 1] <= '3') {
            out.push_back(static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                            (field[i + 3] - '0')));
            i += 3;
        } else {
            out.push_back(field[i]);
        }
    }
    return out;
}

std::string_view NextField(std::string_view& line) {
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return field;
}

// File systems that ask another machine or a program of the user's; autofs waits for both.
bool IsSlowType(std::string_view type) {
    static constexpr std::array<std::string_view, 17> Slow = {
        "nfs",   "nfs4", "cifs",  "smb3",   "smbfs",    "9p",   "afs",    "ceph",   "coda",
        "ncpfs", "fuse", "davfs", "autofs", "orangefs", "gfs2", "lustre", "fuseblk"};
    return type.starts_with("fuse.") || std::ranges::find(Slow, type) != Slow.end();
}

// "36 35 98:0 /root /point options [optional ...] - type source superoptions"
bool ParseLine(std::string_view line, MountRow& row) {
    for (int skipped = 0; skipped < 3; ++skipped)
        NextField(line);
    row.Root = Unescape(NextField(line));
    row.Point = Unescape(NextField(line));
    const std::size_t dash = line.find(" - ");
    if (row.Point.empty() || row.Point.front() != '/' || dash == std::string_view::npos)
        return false;
    line.remove_prefix(dash + 3);
    row.Type = Unescape(NextField(line));
    row.Source = Unescape(NextField(line));
    row.Slow = IsSlowType(row.Type);
    return true;
}

struct MountCache {
    std::mutex Guard;
    HostFd List; // stays open: the kernel marks it when the list changes
    MountRows Rows;
};

MountCache& Cache() {
    static MountCache cache;
    return cache;
}

bool HasChanged(int list) {
    struct pollfd question {
        list, POLLPRI, 0
    };
    return Host().Poll(&question, 1, 0) > 0 && (question.revents & (POLLPRI | POLLERR)) != 0;
}

bool IsBelowAny(std::string_view point, std::initializer_list<std::string_view> roots) {
    return std::ranges::any_of(roots, [&](auto root) { return LiesUnder(point, root); });
}

// A disk that a person would look for: not the system's own, no bind mount of a single file.
bool IsUsersDisk(const MountRow& row) {
    static constexpr std::array<std::string_view, 22> NoDisk = {
        "proc",     "sysfs",      "tmpfs",     "devtmpfs", "devpts",  "cgroup",     "cgroup2", "mqueue",
        "overlay",  "squashfs",   "ramfs",     "autofs",   "debugfs", "tracefs",    "bpf",     "pstore",
        "configfs", "securityfs", "hugetlbfs", "fusectl",  "nsfs",    "binfmt_misc"};
    if (row.Point == "/" || row.Root.find("//deleted") != std::string::npos ||
        std::ranges::find(NoDisk, row.Type) != NoDisk.end() || row.Type == "efivarfs" ||
        row.Type == "fuse.gvfsd-fuse" || row.Type == "fuse.portal" || row.Type == "fuse.snapfuse" ||
        row.Type == "rpc_pipefs")
        return false;
    if (LiesUnder(row.Point, "/run") && !LiesUnder(row.Point, "/run/media"))
        return false;
    if (row.Source.starts_with("/dev/") && row.Root != "/" && row.Type != "btrfs")
        return false; // a bind mount of a part of a disk that is shown elsewhere
    return row.Point != "/home" && row.Point != "/tmp" && row.Point != "/var" &&
           !IsBelowAny(row.Point,
                       {"/proc", "/sys", "/dev", "/boot", "/etc", "/usr", "/snap", "/var/lib", "/var/snap"});
}

struct DiskKind {
    std::string_view Device;     // stem of the device name, "USB"
    std::string_view ExecDevice; // empty for plain disks
    std::string_view Handler;    // empty: the host's type
};

bool IsUsb(std::string_view source) {
    const std::string name(source.substr(source.rfind('/') + 1));
    return ReadLinkText(AT_FDCWD, ("/sys/class/block/" + name).c_str()).find("/usb") != std::string::npos;
}

DiskKind KindOf(const MountRow& row) {
    const std::string_view source = row.Source;
    if (row.Type == "cifs" || row.Type == "smb3")
        return {"SMB", "", "smbfs"};
    if (row.Slow && row.Type != "fuseblk")
        return {"NET", "", ""};
    const bool optical = row.Type == "iso9660" || row.Type == "udf";
    if (source.starts_with("/dev/loop"))
        return {optical ? "ICD" : "IDF", "diskimage.device", ""};
    if (source.starts_with("/dev/sr") || optical)
        return {"CD", "", ""};
    if (source.starts_with("/dev/mmcblk"))
        return {"CF", "", ""};
    if (IsUsb(source))
        return {"USB", "usbdisk.device", ""};
    return {"HD", "", ""};
}

// A name that can stand before a colon.
std::string CleanVolumeName(std::string name) {
    for (char& c : name)
        if (c == ':' || c == '/' || static_cast<unsigned char>(c) < ' ')
            c = '_';
    if (name.size() > 100)
        name.resize(100);
    return name.empty() ? "Unnamed" : name;
}

// Desktops mount a disk under its label; elsewhere the mount point's name is the best there is.
std::string LabelOf(const MountRow& row) {
    if (row.Type == "cifs" || row.Type == "smb3")
        return CleanVolumeName(row.Source.substr(row.Source.find_last_of("/\\") + 1));
    return CleanVolumeName(row.Point.substr(row.Point.rfind('/') + 1));
}

} // namespace

bool LiesUnder(std::string_view hostPath, std::string_view root) noexcept {
    if (root == "/")
        return hostPath.starts_with('/');
    return hostPath.starts_with(root) && (hostPath.size() == root.size() || hostPath[root.size()] == '/');
}

std::vector<MountRow> ParseMountInfo(std::string_view text) {
    std::vector<MountRow> rows;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        MountRow row;
        if (ParseLine(text.substr(0, end), row))
            rows.push_back(std::move(row));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return rows;
}

MountRows Mounts() {
    MountCache& cache = Cache();
    const std::lock_guard hold(cache.Guard);
    if (!cache.List)
        cache.List = HostFd(Host().Openat(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC, 0));
    else if (cache.Rows && !HasChanged(cache.List.Get()))
        return cache.Rows;
    std::string text;
    if (cache.List && Host().Lseek(cache.List.Get(), 0, SEEK_SET) == 0 &&
        ReadToEnd(cache.List.Get(), text, LargestMountInfo))
        cache.Rows = std::make_shared<const std::vector<MountRow>>(ParseMountInfo(text));
    if (!cache.Rows)
        cache.Rows = std::make_shared<const std::vector<MountRow>>();
    return cache.Rows;
}

void ForgetMounts() {
    MountCache& cache = Cache();
    const std::lock_guard hold(cache.Guard);
    cache.List = HostFd();
    cache.Rows.reset();
}

const MountRow* MountOf(const std::vector<MountRow>& rows, std::string_view hostPath) {
    const MountRow* best = nullptr; // of equals the last one: it covers the others
    for (const MountRow& row : rows)
        if (LiesUnder(hostPath, row.Point) && (!best || row.Point.size() >= best->Point.size()))
            best = &row;
    return best;
}

std::vector<VolumeInfo> DisksOf(const std::vector<MountRow>& rows) {
    std::vector<VolumeInfo> disks;
    for (const MountRow& row : rows) {
        if (!IsUsersDisk(row) || MountOf(rows, row.Point) != &row)
            continue;
        const DiskKind kind = KindOf(row);
        const auto unit = static_cast<std::uint32_t>(std::ranges::count_if(
            disks, [&](const VolumeInfo& disk) { return disk.Device.starts_with(kind.Device); }));
        disks.push_back({.Device = std::string(kind.Device) + std::to_string(unit),
                         .Volume = LabelOf(row),
                         .HostRoot = row.Point,
                         .ExecDevice = std::string(kind.ExecDevice),
                         .Unit = unit,
                         .HandlerName = kind.Handler.empty() ? row.Type : std::string(kind.Handler),
                         .MountSource = row.Source,
                         .Removable = true});
    }
    return disks;
}

} // namespace dos
