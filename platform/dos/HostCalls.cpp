#include "platform/dos/HostCalls.h"

#include "platform/dos/HostWatch.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/openat2.h>
#include <poll.h>
#include <pwd.h>
#include <sched.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/wait.h>
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
    if (*name == '\0') {
        const long result = ::fgetxattr(drawer, attribute, buffer, size);
        return result >= 0 || errno != EBADF // of a handle that is only a place
                   ? result
                   : ::getxattr(ProcPath(drawer, name).c_str(), attribute, buffer, size);
    }
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

// Older hosts let only the administrator name an object by its descriptor alone.
int RealLinkObject(int object, int drawer, const char* name) {
    if (::linkat(object, "", drawer, name, AT_EMPTY_PATH) == 0)
        return 0;
    if (errno != ENOENT && errno != EPERM && errno != EINVAL)
        return -1;
    return ::linkat(AT_FDCWD, ProcPath(object, "").c_str(), drawer, name, AT_SYMLINK_FOLLOW);
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

// The actions of a spawn in the order in which they are added; the first that fails is kept.
class SpawnPlan {
public:
    SpawnPlan() {
        Note(::posix_spawnattr_init(&Attributes));
        Note(::posix_spawn_file_actions_init(&Actions));
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan() {
        ::posix_spawnattr_destroy(&Attributes);
        ::posix_spawn_file_actions_destroy(&Actions);
    }

    void SetCompany(ChildCompany company) {
        int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        flags |= company == ChildCompany::Group ? POSIX_SPAWN_SETPGROUP : 0;
        flags |= company == ChildCompany::Session ? POSIX_SPAWN_SETSID : 0;
        sigset_t none{};
        sigset_t all{};
        ::sigemptyset(&none);
        ::sigfillset(&all);
        Note(::posix_spawnattr_setsigmask(&Attributes, &none));
        Note(::posix_spawnattr_setsigdefault(&Attributes, &all));
        Note(::posix_spawnattr_setflags(&Attributes, static_cast<short>(flags)));
    }
    void Become(int descriptor, int number) {
        if (descriptor != NoDescriptor)
            Note(::posix_spawn_file_actions_adddup2(&Actions, descriptor, number));
    }
    void Open(const char* terminal) {
        Note(::posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, terminal, O_RDWR, 0));
    }
    void Enter(int drawer) { Note(::posix_spawn_file_actions_addfchdir_np(&Actions, drawer)); }
    void CloseFrom(int number) { Note(::posix_spawn_file_actions_addclosefrom_np(&Actions, number)); }

    int Run(const SpawnOrder& order) {
        pid_t process = 0;
        if (Error == 0)
            Error =
                ::posix_spawn(&process, order.Path, &Actions, &Attributes, order.Words, order.Environment);
        errno = Error;
        return Error == 0 ? process : -1;
    }

private:
    void Note(int error) { Error = Error == 0 ? error : Error; }

    posix_spawnattr_t Attributes{};
    posix_spawn_file_actions_t Actions{};
    int Error = 0;
};

int RealSpawn(const SpawnOrder& order) {
    SpawnPlan plan;
    plan.SetCompany(order.Company);
    if (order.Drawer != NoDescriptor)
        plan.Enter(order.Drawer);
    if (order.Terminal)
        plan.Open(order.Terminal);
    else
        plan.Become(order.Input, STDIN_FILENO);
    plan.Become(order.Output, STDOUT_FILENO);
    plan.Become(order.ErrorOutput, STDERR_FILENO);
    plan.CloseFrom(STDERR_FILENO + 1);
    return plan.Run(order);
}

int RealSetTimes(int drawer, const char* name, const timespec* times) {
    return *name == '\0' ? ::futimens(drawer, times) : ::utimensat(drawer, name, times, AT_SYMLINK_NOFOLLOW);
}

long RealCopyRange(int from, std::int64_t fromOffset, int to, std::int64_t toOffset, std::size_t size) {
    off64_t source = fromOffset;
    off64_t target = toOffset;
    return ::copy_file_range(from, &source, to, &target, size, 0);
}

int RealOpenTerminal(std::string& name) {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    name.assign(128, '\0');
    if (master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0 &&
        ::ptsname_r(master, name.data(), name.size()) == 0) {
        name.resize(name.find('\0'));
        return master;
    }
    const int error = errno;
    if (master >= 0)
        ::close(master);
    errno = error;
    return -1;
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
    .Flistxattr = [](int descriptor, char* buffer, std::size_t size) -> long {
        return ::flistxattr(descriptor, buffer, size);
    },
    .Fgetxattr = [](int descriptor, const char* attribute, void* buffer, std::size_t size) -> long {
        return ::fgetxattr(descriptor, attribute, buffer, size);
    },
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
    .SetTimes = RealSetTimes,
    .Ftruncate = [](int descriptor, std::int64_t size) { return ::ftruncate(descriptor, size); },
    .Clone = [](int from, int to) { return ::ioctl(to, FICLONE, from); },
    .BytesWaiting = [](int pipe, int* bytes) { return ::ioctl(pipe, FIONREAD, bytes); },
    .CopyRange = RealCopyRange,
    .Fstatvfs = [](int descriptor, struct statvfs* result) { return ::fstatvfs(descriptor, result); },
    .Fchown = [](int descriptor, unsigned owner,
                 unsigned group) { return ::fchown(descriptor, owner, group); },
    .Mkdirat = [](int drawer, const char* name, unsigned mode) { return ::mkdirat(drawer, name, mode); },
    .Symlinkat = [](const char* target, int drawer,
                    const char* name) { return ::symlinkat(target, drawer, name); },
    .LinkObject = RealLinkObject,
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
    .Pipe = [](int* ends) { return ::pipe2(ends, O_CLOEXEC); },
    .OpenTerminal = RealOpenTerminal,
    .Spawn = RealSpawn,
    .OpenProcess = [](int process) { return static_cast<int>(::syscall(SYS_pidfd_open, process, 0)); },
    .ReapChild = [](int process, int* status) { return ::waitpid(process, status, WNOHANG); },
    .SendSignal = [](int process, int number) { return ::kill(process, number); },
    .HomeOfUser = RealHomeOfUser,
};

thread_local HostWatch* WatchOfThread = nullptr;

} // namespace

HostCalls& Host() noexcept {
    static HostCalls calls = RealCalls;
    if (WatchOfThread)
        WatchOfThread->Calls.fetch_add(1, std::memory_order_relaxed);
    return calls;
}

HostWatch* ThreadWatch() noexcept {
    return WatchOfThread;
}

void SetThreadWatch(HostWatch* watch) noexcept {
    WatchOfThread = watch;
}

bool IsAwaited() noexcept {
    if (!WatchOfThread || !WatchOfThread->IsLeft)
        return true;
    errno = ENOMEDIUM;
    return false;
}

const HostCalls& RealHost() noexcept {
    return RealCalls;
}

} // namespace dos
