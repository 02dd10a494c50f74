#include "platform/dos/HostFd.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

// The kernel marks the path of a removed object with this ending. A living object may be called so
// too, so the path is believed when it still leads to the same object.
constexpr std::string_view RemovedMark = " (deleted)";

bool LeadsTo(const std::string& hostPath, int descriptor) {
    struct statx there {};
    ObjectFacts here;
    if (!FactsOf(descriptor, here) ||
        Host().Statx(AT_FDCWD, hostPath.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_INO, &there) !=
            0)
        return false;
    const std::uint64_t device =
        (static_cast<std::uint64_t>(there.stx_dev_major) << 32) | there.stx_dev_minor;
    return here.Id == ObjectId{device, there.stx_ino};
}

bool AskFacts(int drawer, const char* name, int flags, ObjectFacts& facts) {
    struct statx raw {};
    constexpr unsigned Wanted = STATX_TYPE | STATX_MODE | STATX_INO;
    if (Host().Statx(drawer, name, flags | AT_STATX_DONT_SYNC, Wanted, &raw) != 0)
        return false;
    facts.Id.Device = (static_cast<std::uint64_t>(raw.stx_dev_major) << 32) | raw.stx_dev_minor;
    facts.Id.Inode = raw.stx_ino;
    facts.Mode = raw.stx_mode;
    return true;
}

} // namespace

HostFd& HostFd::operator=(HostFd&& other) noexcept {
    const HostFd old(std::exchange(Descriptor, std::exchange(other.Descriptor, NoDescriptor)));
    return *this;
}

HostFd::~HostFd() {
    if (Descriptor < 0)
        return;
    const int error = errno; // often what the caller is about to report
    Host().Close(Descriptor);
    errno = error;
}

bool IsDrawerMode(unsigned mode) noexcept {
    return S_ISDIR(mode);
}
bool IsLinkMode(unsigned mode) noexcept {
    return S_ISLNK(mode);
}
bool IsFileMode(unsigned mode) noexcept {
    return S_ISREG(mode);
}

int OpenNothing() {
    return Host().Openat(AT_FDCWD, "/dev/null", O_RDWR | O_CLOEXEC, 0);
}

HostFd DuplicateFd(const HostFd& descriptor) {
    return HostFd(Host().Duplicate(descriptor.Get()));
}

bool FactsOf(int descriptor, ObjectFacts& facts) {
    return AskFacts(descriptor, "", AT_EMPTY_PATH, facts);
}

bool FactsAt(const std::string& hostPath, ObjectFacts& facts) {
    return AskFacts(AT_FDCWD, hostPath.c_str(), 0, facts);
}

std::string DescriptorPath(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

std::string ReadLinkText(int drawer, const char* name) {
    std::string text(256, '\0');
    while (true) {
        const long length = Host().Readlinkat(drawer, name, text.data(), text.size());
        if (length < 0)
            return {};
        if (static_cast<std::size_t>(length) < text.size()) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        if (text.size() > PATH_MAX) {
            errno = ENAMETOOLONG;
            return {};
        }
        text.resize(text.size() * 4);
    }
}

std::string HostPathOf(int descriptor) {
    std::string path = ReadLinkText(AT_FDCWD, DescriptorPath(descriptor).c_str());
    if (path.ends_with(RemovedMark) && !LeadsTo(path, descriptor)) {
        errno = ENOENT;
        return {};
    }
    if (!path.empty() && path.front() != '/') { // a pipe, or an object outside of what is mounted
        errno = ENOENT;
        return {};
    }
    return path;
}

bool ReadToEnd(int descriptor, std::string& out, std::size_t limit) {
    constexpr std::size_t Step = 65536;
    out.clear();
    while (out.size() < limit) {
        const std::size_t had = out.size();
        out.resize(had + std::min(Step, limit - had));
        const long got = Host().Read(descriptor, out.data() + had, out.size() - had);
        out.resize(had + (got > 0 ? static_cast<std::size_t>(got) : 0));
        if (got == 0)
            return true;
        if (got < 0 && errno != EINTR)
            return false;
    }
    return true;
}

std::optional<std::string> ReadHostText(const std::string& hostPath, std::size_t limit) {
    const HostFd file(
        Host().Openat(AT_FDCWD, hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0));
    ObjectFacts facts;
    std::string text;
    if (!file || !FactsOf(file.Get(), facts))
        return {};
    if (!IsFileMode(facts.Mode)) {
        errno = EINVAL;
        return {};
    }
    if (!ReadToEnd(file.Get(), text, limit + 1))
        return {};
    if (text.size() > limit) {
        errno = EFBIG;
        return {};
    }
    return text;
}

} // namespace dos
