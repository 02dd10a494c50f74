// Every call of dos to the host goes through this table, so that tests can make single calls fail,
// hang or lie. Private to platform/dos and its tests; each entry behaves as the host call of its
// name: -1 (or its like) with errno on failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct statvfs;
struct statx;
struct timespec;
struct pollfd;

namespace dos {

inline constexpr int NoDescriptor = -1;

// In whose company a child runs: Caller stays in the caller's process group, Group leads one of its own,
// Session leads a session too, with Terminal as its terminal.
enum class ChildCompany { Caller, Group, Session };

// What Spawn starts. All other descriptors are closed in the child; its signals are as in a fresh process.
struct SpawnOrder {
    const char* Path = nullptr;
    char* const* Words = nullptr;       // null-terminated, the first is the name
    char* const* Environment = nullptr; // null-terminated
    int Drawer = NoDescriptor;          // becomes the current directory
    int Input = NoDescriptor;           // becomes descriptor 0; not used with a Terminal
    int Output = NoDescriptor;          // becomes 1
    int ErrorOutput = NoDescriptor;     // becomes 2
    const char* Terminal = nullptr;     // opened by the child as descriptor 0
    ChildCompany Company = ChildCompany::Group;
};

struct HostCalls {
    int (*Openat)(int drawer, const char* name, int flags, unsigned mode);
    // Open with RESOLVE_* rules on the way.
    int (*Openat2)(int drawer, const char* name, int flags, std::uint64_t resolve);
    int (*Close)(int descriptor);
    int (*Duplicate)(int descriptor);
    int (*Statx)(int drawer, const char* name, int flags, unsigned mask, struct statx* result);
    long (*Getdents)(int drawer, void* buffer, std::size_t size);
    long (*Readlinkat)(int drawer, const char* name, char* buffer, std::size_t size);
    // Attributes of an entry, links not followed. An empty name means the object of the descriptor
    // itself, an O_PATH one too. The drawer AT_FDCWD is the calling thread's own directory.
    long (*Listxattr)(int drawer, const char* name, char* buffer, std::size_t size);
    long (*Getxattr)(int drawer, const char* name, const char* attribute, void* buffer, std::size_t size);
    // The same for a file that is open for reading or writing; less work.
    long (*Flistxattr)(int descriptor, char* buffer, std::size_t size);
    long (*Fgetxattr)(int descriptor, const char* attribute, void* buffer, std::size_t size);
    int (*Fsetxattr)(int descriptor, const char* attribute, const void* value, std::size_t size);
    long (*Read)(int descriptor, void* buffer, std::size_t size);
    long (*Write)(int descriptor, const void* bytes, std::size_t size);
    std::int64_t (*Lseek)(int descriptor, std::int64_t offset, int origin);
    int (*Fsync)(int descriptor);
    int (*Fchmod)(int descriptor, unsigned mode);
    // These four act on the very object of the descriptor, an O_PATH one too.
    int (*ChangeMode)(int object, unsigned mode);
    int (*SetAttribute)(int object, const char* attribute, const void* value, std::size_t size);
    int (*RemoveAttribute)(int object, const char* attribute);
    // The time of the last change; that of the last use stays.
    int (*SetTime)(int object, std::int64_t seconds, long nanoseconds);
    // Times of last use and last change, two of them. Of an entry, no link followed, or of an open
    // file when the name is empty.
    int (*SetTimes)(int drawer, const char* name, const struct timespec* times);
    int (*Ftruncate)(int descriptor, std::int64_t size);
    // Makes an empty file share the contents of another, where the file system can.
    int (*Clone)(int from, int to);
    int (*BytesWaiting)(int pipe, int* bytes);
    // Copies within the host; gives the bytes copied, which may be fewer.
    long (*CopyRange)(int from, std::int64_t fromOffset, int to, std::int64_t toOffset, std::size_t size);
    int (*Fstatvfs)(int descriptor, struct statvfs* result);
    int (*Fchown)(int descriptor, unsigned owner, unsigned group);
    int (*Mkdirat)(int drawer, const char* name, unsigned mode);
    int (*Symlinkat)(const char* target, int drawer, const char* name);
    // A further name for the object of a descriptor, an O_PATH one too; never for a drawer.
    int (*LinkObject)(int object, int drawer, const char* name);
    int (*Unlinkat)(int drawer, const char* name, int flags);
    int (*Renameat2)(int fromDrawer, const char* from, int toDrawer, const char* to, unsigned flags);
    // Gives the calling thread a current directory of its own, apart from the process's.
    int (*UnshareDirectory)();
    int (*Fchdir)(int drawer);
    int (*InotifyInit)();
    int (*InotifyAddWatch)(int inotify, const char* path, std::uint32_t mask);
    int (*InotifyRemoveWatch)(int inotify, int watch);
    int (*Eventfd)();
    int (*Poll)(struct pollfd* descriptors, unsigned long count, int timeoutMilliseconds);
    // Both ends close on exec.
    int (*Pipe)(int* ends);
    // The side of a new terminal that a window shows; the host's name of the other side goes to name.
    int (*OpenTerminal)(std::string& name);
    // The process id of the child; -1 with errno, also for what exec refuses.
    int (*Spawn)(const SpawnOrder& order);
    // A descriptor that becomes readable when the process ends.
    int (*OpenProcess)(int process);
    // Reaps the child when it has ended: its id, 0 when it runs on. The status is that of waitpid.
    int (*ReapChild)(int process, int* status);
    // A negative id means the group.
    int (*SendSignal)(int process, int number);
    // The home directory that the host's user list names for this user; empty when it has none.
    std::string (*HomeOfUser)();
};

// The table in use. Tests replace entries before the threads of dos are at work.
[[nodiscard]] HostCalls& Host() noexcept;
// The table as it stands without any replacement.
[[nodiscard]] const HostCalls& RealHost() noexcept;

} // namespace dos
