#include "platform/exec/PortFiles.h"

#include "platform/exec/Forbid.h"
#include "platform/exec/PublicPorts.h"
#include "platform/exec/RuntimeDirectory.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace exec {

namespace {

constexpr std::string_view LockSuffix = ".lock";
constexpr std::size_t ReadableStem = 24; // bytes of the name that people see in the file name
constexpr mode_t FileRights = 0600;

enum class LockState { Missing, NoLockFile, Dead, Living };

std::uint64_t Hash(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    return hash;
}

std::string HexDigits(std::uint64_t number) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4) {
        text += digits[(number >> shift) & 15];
    }
    return text;
}

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '_';
}

std::string LockName(const std::string& stem) {
    return stem + std::string(LockSuffix);
}

struct flock WriteLock() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

// The lock belongs to the open file, so it ends when the last process with that one has gone.
bool TakeLock(const Descriptor& file) {
    struct flock lock = WriteLock();
    return fcntl(file.Get(), F_OFD_SETLK, &lock) == 0;
}

// Only asks: a lock taken for a moment could make a claim at the same moment fail.
bool IsLocked(const Descriptor& file) {
    struct flock lock = WriteLock();
    return fcntl(file.Get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

// What a claim makes: a plain file of this user under one name. All else there is rubbish.
bool IsLockFile(const struct stat& found) {
    return S_ISREG(found.st_mode) && found.st_uid == geteuid() && found.st_nlink == 1;
}

// The lock file under `name`; errno is ENOENT when there is nothing, EINVAL when there is something
// else, which is not opened.
Descriptor OpenLockFile(const Descriptor& directory, const std::string& name, int access) {
    struct stat found {};
    if (fstatat(directory.Get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return {};
    }
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    if (IsLockFile(found)) {
        Descriptor file(openat(directory.Get(), name.c_str(), access | flags));
        if (!file.IsOpen() && errno == ENOENT) {
            return {};
        }
        if (file.IsOpen() && fstat(file.Get(), &found) == 0 && IsLockFile(found)) {
            return file;
        }
    }
    errno = EINVAL;
    return {};
}

LockState ProbeLock(const Descriptor& directory, const std::string& stem) {
    const Descriptor file = OpenLockFile(directory, LockName(stem), O_RDONLY);
    if (!file.IsOpen()) {
        return errno == ENOENT ? LockState::Missing : LockState::NoLockFile;
    }
    return IsLocked(file) ? LockState::Living : LockState::Dead;
}

// Removes a file, link, socket or empty directory; true when nothing is there afterwards.
bool ClearPlace(const Descriptor& directory, const std::string& name) {
    return unlinkat(directory.Get(), name.c_str(), 0) == 0 || errno == ENOENT ||
           unlinkat(directory.Get(), name.c_str(), AT_REMOVEDIR) == 0;
}

bool IsStillThere(const Descriptor& directory, const std::string& name, const Descriptor& file) {
    struct stat held {};
    struct stat named {};
    return fstat(file.Get(), &held) == 0 &&
           fstatat(directory.Get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           held.st_ino == named.st_ino && held.st_dev == named.st_dev;
}

void RemoveFiles(const Descriptor& directory, const std::string& stem) {
    ClearPlace(directory, SocketName(stem));
    ClearPlace(directory, LockName(stem));
}

// Leaves it for the next one to ask when a claim is under way.
void RemoveLeftovers(const Descriptor& directory, const std::string& stem) {
    if (!AttemptForbid()) {
        return;
    }
    const Descriptor file = OpenLockFile(directory, LockName(stem), O_RDWR);
    if (file.IsOpen() && TakeLock(file) && IsStillThere(directory, LockName(stem), file)) {
        RemoveFiles(directory, stem);
    }
    Permit();
}

// Makes and locks the lock file; not open when the name is taken.
Descriptor MakeLockFile(const Descriptor& directory, const std::string& name) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr int attempts = 16; // only another hand in the directory makes a second one needed
    for (int attempt = 0; attempt < attempts; ++attempt) {
        Descriptor file = OpenLockFile(directory, name, O_RDWR);
        if (!file.IsOpen()) {
            if (errno != ENOENT && !ClearPlace(directory, name)) {
                return {};
            }
            file = Descriptor(openat(directory.Get(), name.c_str(), flags, FileRights));
        }
        if (file.IsOpen() && !TakeLock(file)) {
            return {};
        }
        if (file.IsOpen() && IsStillThere(directory, name, file)) {
            return file;
        }
    }
    return {};
}

bool WriteName(const Descriptor& file, std::string_view name) {
    return ftruncate(file.Get(), 0) == 0 &&
           pwrite(file.Get(), name.data(), name.size(), 0) == static_cast<ssize_t>(name.size());
}

// The name in a lock file; empty when that holds something else.
std::string ReadName(const Descriptor& file) {
    std::string name(MaxPortName + 1, '\0');
    const ssize_t length = pread(file.Get(), name.data(), name.size(), 0);
    name.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return IsPortName(name) ? name : std::string();
}

struct ListedPort {
    std::int64_t Seconds;
    std::int64_t Nanoseconds; // of the claim
    std::string Name;
    auto operator<=>(const ListedPort&) const = default;
};

std::optional<ListedPort> ListedPortOf(const Descriptor& directory, const std::string& stem) {
    const Descriptor file = OpenLockFile(directory, LockName(stem), O_RDONLY);
    struct stat found {};
    if (!file.IsOpen() || fstat(file.Get(), &found) != 0) {
        return std::nullopt;
    }
    std::string name = ReadName(file);
    if (PortFileStem(name) != stem) {
        return std::nullopt;
    }
    return ListedPort{found.st_mtim.tv_sec, found.st_mtim.tv_nsec, std::move(name)};
}

std::vector<std::string> StemsOfLockFiles(const Descriptor& directory) {
    // An own descriptor: the position in the directory is the stream's.
    const int number = openat(directory.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(number >= 0 ? fdopendir(number) : nullptr, &closedir);
    std::vector<std::string> stems;
    while (const dirent* const entry = stream != nullptr ? readdir(stream.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name.ends_with(LockSuffix)) {
            stems.emplace_back(name.substr(0, name.size() - LockSuffix.size()));
        }
    }
    return stems;
}

} // namespace

std::string SocketName(const std::string& stem) {
    return stem + ".port";
}

bool IsPortName(std::string_view name) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    return !name.empty() && name.size() <= MaxPortName && std::ranges::none_of(name, isControl);
}

std::string PortFileStem(std::string_view name) {
    const std::string folded = utility::Fold(name);
    std::string stem = folded.substr(0, ReadableStem);
    std::ranges::replace_if(
        stem, [](char c) { return !IsPlain(c); }, '_');
    return stem + '-' + HexDigits(Hash(folded));
}

Descriptor OpenPortDirectory() {
    const std::string& runtime = RuntimeDirectory();
    if (runtime.empty()) {
        return {};
    }
    return OpenPrivateDirectory(AT_FDCWD, (runtime + "/ports").c_str());
}

PortClaim::PortClaim(Descriptor directory, Descriptor lock, std::string stem) noexcept
    : Ports(std::move(directory)), Lock(std::move(lock)), FileStem(std::move(stem)) {}

PortClaim::~PortClaim() {
    if (!Lock.IsOpen()) {
        return; // moved from
    }
    const ForbidScope forbidden;
    if (IsStillThere(Ports, LockName(FileStem), Lock)) {
        RemoveFiles(Ports, FileStem);
    }
}

std::optional<PortClaim> ClaimPort(std::string_view name) {
    Descriptor directory = OpenPortDirectory();
    if (!directory.IsOpen() || !IsPortName(name)) {
        return std::nullopt;
    }
    const std::string stem = PortFileStem(name);
    Descriptor lock = MakeLockFile(directory, LockName(stem));
    if (!lock.IsOpen()) {
        return std::nullopt;
    }
    const bool ready = WriteName(lock, name) && ClearPlace(directory, SocketName(stem));
    PortClaim claim(std::move(directory), std::move(lock), stem); // clears up when it is not
    return ready ? std::optional<PortClaim>(std::move(claim)) : std::nullopt;
}

bool IsPortAlive(const Descriptor& directory, const std::string& stem) {
    const LockState state = ProbeLock(directory, stem);
    if (state == LockState::Dead) {
        RemoveLeftovers(directory, stem);
    }
    return state == LockState::Living;
}

std::vector<std::string> LivingPorts(const Descriptor& directory) {
    std::vector<ListedPort> ports;
    for (const std::string& stem : StemsOfLockFiles(directory)) {
        if (!IsPortAlive(directory, stem)) {
            continue;
        }
        if (auto port = ListedPortOf(directory, stem)) {
            ports.push_back(*std::move(port));
        }
    }
    std::ranges::sort(ports);
    std::vector<std::string> names;
    std::ranges::transform(ports, std::back_inserter(names), &ListedPort::Name);
    return names;
}

} // namespace exec
