// A table of host calls of which the n-th fails, is short or ends the process. Whoever begins faults puts
// the real table back.
#pragma once

#include "platform/dos/HostCalls.h"
#include "platform/dos/HostLocks.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <type_traits>

enum class Fault { Error, ShortWrite, Kill };

inline int FailingCall = -1;          // counted over all calls; -1 for none
inline std::atomic<int> CallsSeen{0}; // by all threads
inline int FailWith = 0;
inline Fault Kind = Fault::Error;

inline bool IsToFail() {
    if (CallsSeen++ != FailingCall)
        return false;
    if (Kind == Fault::Kill)
        ::raise(SIGKILL);
    errno = FailWith;
    return true;
}

template <auto Member, typename>
struct Faulty;
template <auto Member, typename Result, typename... Arguments>
struct Faulty<Member, Result (*)(Arguments...)> {
    static Result Call(Arguments... arguments) {
        return IsToFail() ? static_cast<Result>(-1) : (dos::RealHost().*Member)(arguments...);
    }
};

template <auto... Members>
void MakeFaulty() {
    dos::HostCalls& host = dos::Host();
    ((host.*Members = Faulty<Members, std::remove_reference_t<decltype(host.*Members)>>::Call), ...);
}

inline std::size_t Shortened(std::size_t size) {
    return std::min(size, size / 3 + 1);
}

inline long FaultyWrite(int file, const void* bytes, std::size_t size) {
    if (Kind == Fault::ShortWrite)
        return dos::RealHost().Write(file, bytes, Shortened(size));
    return IsToFail() ? -1 : dos::RealHost().Write(file, bytes, size);
}

inline bool CopiesRanges = true; // the host; otherwise block by block

inline long FaultyCopyRange(int from, std::int64_t fromAt, int to, std::int64_t toAt, std::size_t size) {
    if (!CopiesRanges) {
        errno = ENOSYS;
        return -1;
    }
    const std::size_t wanted = Kind == Fault::ShortWrite ? Shortened(size) : size;
    return IsToFail() ? -1 : dos::RealHost().CopyRange(from, fromAt, to, toAt, wanted);
}

// The disk of a test need not really be waited for.
inline int FaultyFsync(int) {
    return IsToFail() ? -1 : 0;
}

inline bool HasNamelessFiles = true; // of the host; without them temporary ones have names

inline int FaultyOpenat(int drawer, const char* name, int flags, unsigned mode) {
    if (!HasNamelessFiles && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = ENOTSUP;
        return -1;
    }
    return IsToFail() ? -1 : dos::RealHost().Openat(drawer, name, flags, mode);
}

inline bool IsAcross = false; // nothing but temporary files can be renamed, as between two disks

inline int FaultyRename(int fromDrawer, const char* from, int toDrawer, const char* to, unsigned flags) {
    if (IsAcross && !std::string_view(from).starts_with(".solvane-")) {
        errno = EXDEV;
        return -1;
    }
    return IsToFail() ? -1 : dos::RealHost().Renameat2(fromDrawer, from, toDrawer, to, flags);
}

inline void BeginFaults(int number) {
    using Calls = dos::HostCalls;
    FailingCall = number;
    CallsSeen = 0;
    MakeFaulty<&Calls::Openat2, &Calls::Flistxattr, &Calls::Fgetxattr, &Calls::SetTimes, &Calls::Duplicate,
               &Calls::Statx, &Calls::Getdents, &Calls::Readlinkat, &Calls::Getxattr, &Calls::Listxattr,
               &Calls::Fsetxattr, &Calls::Fchown, &Calls::Read, &Calls::Lseek, &Calls::Fchmod,
               &Calls::ChangeMode, &Calls::SetAttribute, &Calls::RemoveAttribute, &Calls::SetTime,
               &Calls::Ftruncate, &Calls::Clone, &Calls::Mkdirat, &Calls::Symlinkat, &Calls::LinkObject,
               &Calls::Unlinkat>();
    dos::Host().Renameat2 = FaultyRename;
    dos::Host().Openat = FaultyOpenat;
    dos::Host().Write = FaultyWrite;
    dos::Host().CopyRange = FaultyCopyRange;
    dos::Host().Fsync = FaultyFsync;
}

inline std::size_t OpenDescriptors() {
    dos::ForgetRoots(); // those that are kept are not lost
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}
