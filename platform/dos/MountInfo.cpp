#include "platform/dos/MountInfo.h"

#include "platform/dos/HostFd.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t LargestMountInfo = 8u << 20; // bytes; far above any real list
constexpr std::size_t MostMounts = 100000;

// Three digits that make one byte.
bool IsOctal(std::string_view digits) {
    return digits.size() == 3 && digits[0] >= '0' && digits[0] <= '3' &&
           std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '7'; });
}

// "\040" and its like stand for characters that would break the list's columns.
std::string Unescape(std::string_view field) {
    std::string out;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && IsOctal(field.substr(i + 1, 3))) {
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

// The number of the mount that an object lies on; nothing where the host does not tell.
std::optional<std::uint64_t> MountOf(int drawer, const char* name) {
    struct statx raw {};
    if (Host().Statx(drawer, name, AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_MNT_ID, &raw) != 0 ||
        (raw.stx_mask & STATX_MNT_ID) == 0)
        return {};
    return raw.stx_mnt_id;
}

// File systems that ask another machine or a program of the user's; autofs waits for both.
bool IsSlowType(std::string_view type) {
    static constexpr std::array<std::string_view, 17> Slow = {
        "nfs",   "nfs4", "cifs",  "smb3",   "smbfs",    "9p",   "afs",    "ceph",   "coda",
        "ncpfs", "fuse", "davfs", "autofs", "orangefs", "gfs2", "lustre", "fuseblk"};
    return type.starts_with("fuse.") || std::ranges::find(Slow, type) != Slow.end();
}

bool HasOption(std::string_view options, std::string_view wanted) {
    while (!options.empty()) {
        const std::size_t end = std::min(options.find(','), options.size());
        if (options.substr(0, end) == wanted)
            return true;
        options.remove_prefix(std::min(end + 1, options.size()));
    }
    return false;
}

// "36 35 98:0 /root /point options [optional ...] - type source superoptions"
bool ParseLine(std::string_view line, MountRow& row) {
    const std::string_view id = NextField(line);
    std::from_chars(id.data(), id.data() + id.size(), row.Id);
    NextField(line);
    row.Number = NextField(line);
    row.Root = Unescape(NextField(line));
    row.Point = Unescape(NextField(line));
    row.ReadOnly = HasOption(NextField(line), "ro");
    const std::size_t dash = (" " + std::string(line)).find(" - "); // there may be no optional field
    if (row.Point.empty() || row.Point.front() != '/' || dash == std::string::npos)
        return false;
    line.remove_prefix(dash + 2);
    row.Type = Unescape(NextField(line));
    row.Source = Unescape(NextField(line));
    row.ReadOnly = row.ReadOnly || HasOption(line, "ro");
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

using Clock = std::chrono::steady_clock;
constexpr auto LongestLook = std::chrono::milliseconds(1);

thread_local int Looks = 0;
thread_local std::optional<Clock::time_point> LookedAt; // only while there are looks

bool HasLooked() {
    return Looks > 0 && LookedAt && Clock::now() - *LookedAt < LongestLook;
}

bool HasChanged(int list) {
    struct pollfd question {
        list, POLLPRI, 0
    };
    return Host().Poll(&question, 1, 0) > 0 && (question.revents & (POLLPRI | POLLERR)) != 0;
}

} // namespace

bool LiesUnder(std::string_view hostPath, std::string_view root) noexcept {
    if (root == "/")
        return hostPath.starts_with('/');
    return hostPath.starts_with(root) && (hostPath.size() == root.size() || hostPath[root.size()] == '/');
}

std::vector<MountRow> ParseMountInfo(std::string_view text) {
    std::vector<MountRow> rows;
    while (!text.empty() && rows.size() < MostMounts) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        MountRow row;
        if (ParseLine(text.substr(0, end), row))
            rows.push_back(std::move(row));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return rows;
}

HostFd OpenMountList() {
    return HostFd(Host().Openat(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC, 0));
}

MountRows Mounts() {
    MountCache& cache = Cache();
    const std::lock_guard hold(cache.Guard);
    const bool isNew = !cache.List;
    if (isNew)
        cache.List = OpenMountList();
    else if (cache.Rows && HasLooked())
        return cache.Rows;
    if (Looks > 0)
        LookedAt = Clock::now();
    if (!isNew && cache.Rows && !HasChanged(cache.List.Get()))
        return cache.Rows;
    std::string text;
    if (cache.List && Host().Lseek(cache.List.Get(), 0, SEEK_SET) == 0 &&
        ReadToEnd(cache.List.Get(), text, LargestMountInfo))
        cache.Rows = std::make_shared<const std::vector<MountRow>>(ParseMountInfo(text));
    if (!cache.Rows)
        cache.Rows = std::make_shared<const std::vector<MountRow>>();
    return cache.Rows;
}

MountLook::MountLook() noexcept {
    ++Looks;
}

MountLook::~MountLook() {
    if (--Looks == 0)
        LookedAt.reset();
}

MountRows KnownMounts() {
    MountCache& cache = Cache();
    const std::lock_guard hold(cache.Guard);
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

std::string SlowMountOf(const std::vector<MountRow>& rows, std::string_view hostPath) {
    const MountRow* row = MountOf(rows, hostPath);
    return row && row->Slow ? row->Point : std::string();
}

bool HasVanished(int descriptor, const std::vector<MountRow>& rows) {
    const auto mount = MountOf(descriptor, "");
    if (rows.empty() || !mount || mount == MountOf(AT_FDCWD, "/"))
        return false; // nothing speaks against it; a root that is no mount point of its own is in no list
    return std::ranges::none_of(rows, [&](const MountRow& row) { return row.Id == *mount; });
}

} // namespace dos
