#include "platform/dos/HostCalls.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/openat2.h>
#include <poll.h>
#include <pwd.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace dos {

namespace {

// Numbers of calls that are younger than the C library's headers; one number on all processors.
constexpr long CallGetxattrat = 464;
constexpr long CallListxattrat = 465;

// What the kernel takes as the arguments of getxattrat.
struct XattrArguments {
    std::uint64_t Value;
    std::uint32_t Size;
    std::uint32_t Flags;
};

std::string ProcPath(int drawer, const char* name) {
    std::string path = "/proc/self/fd/" + std::to_string(drawer);
    if (*name != '\0')
        path.append("/").append(name);
    return path;
}

long ListByPath(int drawer, const char* name, char* buffer, std::size_t size) {
    if (*name == '\0')
        return ::listxattr(ProcPath(drawer, name).c_str(), buffer, size);
    if (drawer == AT_FDCWD || *name == '/')
        return ::llistxattr(name, buffer, size);
    return ::llistxattr(ProcPath(drawer, name).c_str(), buffer, size);
}

long RealListxattr(int drawer, const char* name, char* buffer, std::size_t size) {
    if (*name == '\0' || drawer == AT_FDCWD || *name == '/')
        return ListByPath(drawer, name, buffer, size);
    const long result = ::syscall(CallListxattrat, drawer, name, AT_SYMLINK_NOFOLLOW, buffer, size);
    return result >= 0 || errno != ENOSYS ? result : ListByPath(drawer, name, buffer, size);
}

long GetByPath(int drawer, const char* name, const char* attribute, void* buffer, std::size_t size) {
    if (*name == '\0')
        return ::getxattr(ProcPath(drawer, name).c_str(), attribute, buffer, size);
    if (drawer == AT_FDCWD || *name == '/')
        return ::lgetxattr(name, attribute, buffer, size);
    return ::lgetxattr(ProcPath(drawer, name).c_str(), attribute, buffer, size);
}

long RealGetxattr(int drawer, const char* name, const char* attribute, void* buffer, std::size_t size) {
    if (*name == '\0' || drawer == AT_FDCWD || *name == '/')
        return GetByPath(drawer, name, attribute, buffer, size);
    XattrArguments arguments{reinterpret_cast<std::uintptr_t>(buffer), static_cast<std::uint32_t>(size), 0};
    const long result = ::syscall(CallGetxattrat, drawer, name, AT_SYMLINK_NOFOLLOW, attribute, &arguments,
                                  sizeof(arguments));
    return result >= 0 || errno != ENOSYS ? result : GetByPath(drawer, name, attribute, buffer, size);
}

int RealOpenat2(int drawer, const char* name, int flags, std::uint64_t resolve) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = resolve;
    return static_cast<int>(::syscall(SYS_openat2, drawer, name, &how, sizeof(how)));
}

std::string RealHomeOfUser() {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return found->pw_dir ? found->pw_dir : "";
}

int RealSetTime(int object, std::int64_t seconds, long nanoseconds) {
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, timespec{seconds, nanoseconds}};
    return ::utimensat(AT_FDCWD, ProcPath(object, "").c_str(), times.data(), 0);
}

constexpr HostCalls RealCalls{
    .Openat = [](int drawer, const char* name, int flags,
                 unsigned mode) { return ::openat(drawer, name, flags, mode); },
    .Openat2 = RealOpenat2,
    .Close = [](int descriptor) { return ::close(descriptor); },
    .Duplicate = [](int descriptor) { return ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0); },
    .Statx = [](int drawer, const char* name, int flags, unsigned mask,
                struct statx* result) { return ::statx(drawer, name, flags, mask, result); },
    .Getdents = [](int drawer, void* buffer,
                   std::size_t size) { return ::syscall(SYS_getdents64, drawer, buffer, size); },
    .Readlinkat = [](int drawer, const char* name, char* buffer, std::size_t size) -> long {
        return ::readlinkat(drawer, name, buffer, size);
    },
    .Listxattr = RealListxattr,
    .Getxattr = RealGetxattr,
    .Fsetxattr = [](int descriptor, const char* attribute, const void* value,
                    std::size_t size) { return ::fsetxattr(descriptor, attribute, value, size, 0); },
    .Read = [](int descriptor, void* buffer, std::size_t size) -> long {
        return ::read(descriptor, buffer, size);
    },
    .Write = [](int descriptor, const void* bytes, std::size_t size) -> long {
        return ::write(descriptor, bytes, size);
    },
    .Lseek = [](int descriptor, std::int64_t offset, int origin) -> std::int64_t {
        return ::lseek(descriptor, offset, origin);
    },
    .Fsync = [](int descriptor) { return ::fsync(descriptor); },
    .Fchmod = [](int descriptor, unsigned mode) { return ::fchmod(descriptor, mode); },
    .ChangeMode = [](int object, unsigned mode) { return ::chmod(ProcPath(object, "").c_str(), mode); },
    .SetAttribute =
        [](int object, const char* attribute, const void* value, std::size_t size) {
            return ::setxattr(ProcPath(object, "").c_str(), attribute, value, size, 0);
        },
    .RemoveAttribute =
        [](int object, const char* attribute) {
            return ::removexattr(ProcPath(object, "").c_str(), attribute);
        },
    .SetTime = RealSetTime,
    .Ftruncate = [](int descriptor, std::int64_t size) { return ::ftruncate(descriptor, size); },
    .Clone = [](int from, int to) { return ::ioctl(to, FICLONE, from); },
    .Fstatvfs = [](int descriptor, struct statvfs* result) { return ::fstatvfs(descriptor, result); },
    .Fchown = [](int descriptor, unsigned owner,
                 unsigned group) { return ::fchown(descriptor, owner, group); },
    .Mkdirat = [](int drawer, const char* name, unsigned mode) { return ::mkdirat(drawer, name, mode); },
    .Symlinkat = [](const char* target, int drawer,
                    const char* name) { return ::symlinkat(target, drawer, name); },
    .LinkObject =
        [](int object, int drawer, const char* name) {
            return ::linkat(AT_FDCWD, ProcPath(object, "").c_str(), drawer, name, AT_SYMLINK_FOLLOW);
        },
    .Unlinkat = [](int drawer, const char* name, int flags) { return ::unlinkat(drawer, name, flags); },
    .Renameat2 = [](int fromDrawer, const char* from, int toDrawer, const char* to,
                    unsigned flags) { return ::renameat2(fromDrawer, from, toDrawer, to, flags); },
    .UnshareDirectory = [] { return ::unshare(CLONE_FS); },
    .Fchdir = [](int drawer) { return ::fchdir(drawer); },
    .InotifyInit = [] { return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC); },
    .InotifyAddWatch = [](int inotify, const char* path,
                          std::uint32_t mask) { return ::inotify_add_watch(inotify, path, mask); },
    .InotifyRemoveWatch = [](int inotify, int watch) { return ::inotify_rm_watch(inotify, watch); },
    .Eventfd = [] { return ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC); },
    .Poll = [](struct pollfd* descriptors, unsigned long count,
               int timeout) { return ::poll(descriptors, count, timeout); },
    .HomeOfUser = RealHomeOfUser,
};

} // namespace

HostCalls& Host() noexcept {
    static HostCalls calls = RealCalls;
    return calls;
}

const HostCalls& RealHost() noexcept {
    return RealCalls;
}

} // namespace dos
