#include "platform/dos/TemporaryNames.h"

#include "platform/dos/HostDirectory.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dos {

namespace {

constexpr std::string_view Head = ".solvane-";
constexpr std::string_view Tail = ".tmp";
constexpr std::string_view HexDigits = "0123456789abcdef";
constexpr std::string_view Digits = "0123456789";
constexpr std::size_t MarkLength = 8;
constexpr std::string_view NoMark = "00000000";     // the host does not tell
constexpr std::int64_t AgeOfForeign = 24 * 60 * 60; // seconds

std::string MakeMark() {
    const auto boot = ReadHostText("/proc/sys/kernel/random/boot_id", 256);
    const std::string space = ReadLinkText(AT_FDCWD, "/proc/self/ns/pid");
    if (!boot || boot->empty() || space.empty())
        return std::string(NoMark);
    std::uint32_t hash = 2166136261u;
    for (const char c : *boot + space)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 16777619u;
    std::string mark(MarkLength, '0');
    for (std::size_t i = 0; i < MarkLength; ++i)
        mark[i] = HexDigits[(hash >> (4 * i)) & 15];
    return mark;
}

// Process numbers mean something only where they were given: one start of one machine, one
// container.
const std::string& Mark() {
    static const std::string mark = MakeMark();
    return mark;
}

struct Parts {
    std::string_view Mark;
    std::string_view Process;
};

bool IsMadeOf(std::string_view text, std::string_view characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

bool Split(std::string_view name, Parts& parts) {
    if (!name.starts_with(Head) || !name.ends_with(Tail) || name.size() < Head.size() + Tail.size())
        return false;
    name.remove_prefix(Head.size());
    name.remove_suffix(Tail.size());
    if (name.size() <= MarkLength || name[MarkLength] != '-')
        return false;
    parts.Mark = name.substr(0, MarkLength);
    name.remove_prefix(MarkLength + 1);
    const std::size_t dash = name.find('-');
    if (dash == std::string_view::npos)
        return false;
    parts.Process = name.substr(0, dash);
    return IsMadeOf(parts.Mark, HexDigits) && IsMadeOf(parts.Process, Digits) &&
           IsMadeOf(name.substr(dash + 1), Digits);
}

bool IsProcessGone(std::string_view process) {
    struct statx raw {};
    const std::string path = std::string("/proc/").append(process);
    return Host().Statx(AT_FDCWD, path.c_str(), 0, STATX_TYPE, &raw) != 0 && errno == ENOENT;
}

bool IsStale(const Parts& parts, std::int64_t changed) {
    if (parts.Mark == Mark() && parts.Mark != NoMark)
        return IsProcessGone(parts.Process);
    return changed < static_cast<std::int64_t>(std::time(nullptr)) - AgeOfForeign;
}

} // namespace

std::string NextTemporaryName() {
    static std::atomic<unsigned> counter{0};
    return std::string(Head)
        .append(Mark())
        .append("-")
        .append(std::to_string(::getpid()))
        .append("-")
        .append(std::to_string(++counter))
        .append(Tail);
}

bool IsTemporaryName(std::string_view name) noexcept {
    Parts parts;
    return Split(name, parts);
}

void RemoveIfStale(int drawer, const std::string& name) {
    Parts parts;
    struct statx raw {};
    constexpr unsigned Wanted = STATX_TYPE | STATX_UID | STATX_CTIME;
    if (!Split(name, parts) || Host().Statx(drawer, name.c_str(), AT_SYMLINK_NOFOLLOW, Wanted, &raw) != 0)
        return;
    const bool isOurKind = S_ISREG(raw.stx_mode) || S_ISLNK(raw.stx_mode);
    if (isOurKind && raw.stx_uid == ::geteuid() && IsStale(parts, raw.stx_ctime.tv_sec))
        Host().Unlinkat(drawer, name.c_str(), 0);
}

void RemoveStale(int drawer) {
    std::vector<std::string> names;
    if (!ForEachName(drawer, [&](std::string_view name) {
            if (IsTemporaryName(name))
                names.emplace_back(name);
        }))
        return;
    for (const std::string& name : names)
        RemoveIfStale(drawer, name);
}

} // namespace dos
