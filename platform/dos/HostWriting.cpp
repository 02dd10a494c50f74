#include "platform/dos/HostWriting.h"

#include "platform/dos/HostDirectory.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/TemporaryNames.h"
#include "platform/utility/Text.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t LargestWrite = 1u << 20; // bytes at one call
constexpr int MostTemporaryNames = 100;        // tries
constexpr std::size_t ArchiveLetter = 3;       // of the eight
constexpr unsigned NoChange = ~0u;             // of an owner

// May the attribute be left out? The host's own ones are not for everybody to read or write; the
// user's are, and one of them must not get lost by a passing trouble.
bool IsLeftOut(std::string_view name, int hostError) {
    if (hostError == ENODATA || hostError == ENOTSUP)
        return true;
    return !name.starts_with("user.") && (hostError == EPERM || hostError == EACCES);
}

bool CopyAttribute(int from, int to, const char* name, std::string& value) {
    const long length = Host().Getxattr(from, "", name, value.data(), value.size());
    if (length < 0)
        return IsLeftOut(name, errno);
    if (length > static_cast<long>(ArchiveLetter) && std::string_view(name) == ProtectionAttribute)
        value[ArchiveLetter] = '-'; // a file that was written to is not archived
    return Host().Fsetxattr(to, name, value.data(), static_cast<std::size_t>(length)) == 0 ||
           IsLeftOut(name, errno);
}

// Attributes are the user's, some not ours: they go over as they are. False with errno.
bool CopyAttributes(int from, int to) {
    std::string names(LargestAttribute, '\0');
    const long size = Host().Listxattr(from, "", names.data(), names.size());
    if (size < 0)
        return errno == ENOTSUP || errno == ENOSYS;
    names.resize(static_cast<std::size_t>(size));
    std::string value(LargestAttribute, '\0');
    for (std::size_t at = 0; at < names.size(); at += std::strlen(names.data() + at) + 1)
        if (!CopyAttribute(from, to, names.data() + at, value))
            return false;
    return true;
}

// Some disks refuse to set modes and have all files alike: nothing is lost by it. Keeps errno.
bool HasMode(int file, unsigned mode) {
    const int error = errno;
    ObjectFacts now;
    const bool isSet = FactsOf(file, now) && (now.Mode & PermissionBits) == mode;
    errno = error;
    return isSet;
}

bool IsUnknownFlag(int hostError) {
    return hostError == EINVAL || hostError == ENOSYS || hostError == ENOTSUP;
}

// A second name that fails where one is, then the first is dropped.
bool RenameByLink(int fromDrawer, const std::string& from, int toDrawer, const std::string& to) {
    const HostFd object(Host().Openat(fromDrawer, from.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!object || Host().LinkObject(object.Get(), toDrawer, to.c_str()) != 0)
        return false;
    if (Host().Unlinkat(fromDrawer, from.c_str(), 0) == 0)
        return true;
    const int error = errno;
    Host().Unlinkat(toDrawer, to.c_str(), 0);
    errno = error;
    return false;
}

// Claims the name by an empty object of our own, which the rename then replaces.
bool RenameByClaim(int fromDrawer, const std::string& from, int toDrawer, const std::string& to,
                   unsigned mode) {
    const bool isDrawer = IsDrawerMode(mode);
    if (isDrawer ? Host().Mkdirat(toDrawer, to.c_str(), 0700) != 0
                 : !HostFd(Host().Openat(toDrawer, to.c_str(),
                                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)))
        return false;
    if (IsAwaited() && Host().Renameat2(fromDrawer, from.c_str(), toDrawer, to.c_str(), 0) == 0)
        return true;
    const int error = errno;
    Host().Unlinkat(toDrawer, to.c_str(), isDrawer ? AT_REMOVEDIR : 0);
    errno = error;
    return false;
}

bool RenameKeeping(int fromDrawer, const std::string& from, int toDrawer, const std::string& to,
                   unsigned mode) {
    if (Host().Renameat2(fromDrawer, from.c_str(), toDrawer, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (!IsUnknownFlag(errno))
        return false;
    if (IsFileMode(mode)) {
        if (RenameByLink(fromDrawer, from, toDrawer, to))
            return true;
        if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK)
            return false;
    }
    return RenameByClaim(fromDrawer, from, toDrawer, to, mode);
}

// Are both names of one entry, on a disk that folds? Two entries that are links to one file are not.
bool IsOneFoldedEntry(int fromDrawer, const std::string& from, int toDrawer, const std::string& to) {
    ObjectFacts one;
    ObjectFacts other;
    if (from == to || utility::Stricmp(from, to) != 0 || !FactsOf(fromDrawer, one) ||
        !FactsOf(toDrawer, other) || one.Id != other.Id)
        return false;
    int seen = 0;
    const bool isWhole =
        ForEachName(fromDrawer, [&](std::string_view name) { seen += name == from || name == to ? 1 : 0; });
    const HostFd a(Host().Openat(fromDrawer, from.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    const HostFd b(Host().Openat(fromDrawer, to.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    return isWhole && seen == 1 && a && b && FactsOf(a.Get(), one) && FactsOf(b.Get(), other) &&
           one.Id == other.Id;
}

bool RenameAround(int drawer, const std::string& from, const std::string& to, unsigned mode) {
    // A name that is seen: what a crash leaves there is the user's.
    const std::string between = to + "~" + std::to_string(::getpid());
    if (!RenameKeeping(drawer, from, drawer, between, mode))
        return false;
    if (RenameKeeping(drawer, between, drawer, to, mode))
        return true;
    const int error = errno;
    // Nothing else has the old name: the way back is free.
    if (!RenameKeeping(drawer, between, drawer, from, mode))
        RenameKeeping(drawer, between, drawer, from, mode);
    errno = error;
    return false;
}

} // namespace

bool Refuse(int hostError, Operation operation) {
    SetIoErr(ErrorFromErrno(hostError, operation));
    return false;
}

bool CompleteSpot(Spot& spot) {
    // A root is a drawer. Anything else is what its name led to, even if another has the name by now.
    if (spot.Drawer && !IsDrawerMode(spot.Facts.Mode))
        return true;
    const std::string path = HostPathOf(spot.Object.Get());
    // Roots do not lie so deep that the host has no path for them.
    if (path.empty())
        return spot.Drawer && errno == ENAMETOOLONG;
    if (path == "/" || path == spot.On->RealRoot) {
        errno = EBUSY;
        return false;
    }
    if (spot.Drawer)
        return true;
    const std::size_t slash = path.rfind('/');
    const std::string drawer = path.substr(0, slash == 0 ? 1 : slash);
    HostFd open(Host().Openat(AT_FDCWD, drawer.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    if (!open)
        return false;
    std::string name = path.substr(slash + 1);
    const HostFd there(Host().Openat(open.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    ObjectFacts facts;
    if (!there || !FactsOf(there.Get(), facts))
        return false;
    if (facts.Id != spot.Facts.Id) {
        errno = ENOENT;
        return false;
    }
    spot.Drawer = std::move(open);
    spot.Name = std::move(name);
    return true;
}

bool FindEntry(const HostLock& start, std::string_view rest, LastLink last, WalkMode& mode, Spot& spot) {
    if (!FindSpot(start, rest, last, mode, spot))
        return false;
    if (!spot.Object)
        return Refuse(ENOENT, Operation::Lookup);
    return CompleteSpot(spot) || Refuse(errno, Operation::Lookup);
}

Temporary::~Temporary() {
    if (Name.empty())
        return;
    const int error = errno;
    const OwnChange change(Drawer);
    // A second try: a signal or a short trouble of the disk must not leave the file behind.
    if (Host().Unlinkat(Drawer, Name.c_str(), 0) != 0 && errno != ENOENT)
        Host().Unlinkat(Drawer, Name.c_str(), 0);
    change.End(Name, {});
    errno = error;
}

// A file without a name vanishes by itself whatever happens to us; not every file system has them.
bool Temporary::Make(int drawer, unsigned mode, unsigned modeWhileNamed) {
    Drawer = drawer;
    Open = HostFd(Host().Openat(drawer, ".", O_RDWR | O_TMPFILE | O_CLOEXEC, mode));
    for (int i = 0; i < MostTemporaryNames && !Open; ++i) {
        std::string name = NextTemporaryName();
        const OwnChange change(drawer);
        Open = HostFd(Host().Openat(drawer, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                    modeWhileNamed));
        if (Open) {
            change.End({}, name);
            Name = std::move(name);
        } else if (errno != EEXIST) {
            break;
        }
    }
    return static_cast<bool>(Open);
}

bool Temporary::TakePlace(const std::string& name, Existing existing) {
    const bool replaces = existing == Existing::Replaced;
    const OwnChange change(Drawer);
    if (!IsAwaited())
        return false;
    if (Name.empty() && !replaces) {
        const bool done = Host().LinkObject(Open.Get(), Drawer, name.c_str()) == 0;
        if (done)
            change.End({}, name);
        return done;
    }
    if (Name.empty()) {
        std::string between = NextTemporaryName();
        if (Host().LinkObject(Open.Get(), Drawer, between.c_str()) != 0)
            return false;
        Name = std::move(between);
        if (!IsAwaited())
            return false;
    }
    const bool done = replaces ? Host().Renameat2(Drawer, Name.c_str(), Drawer, name.c_str(), 0) == 0
                               : RenameKeeping(Drawer, Name, Drawer, name, S_IFREG);
    if (done) {
        change.End(Name, name);
        Name.clear();
    }
    return done;
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const long put = Host().Write(file, bytes.data(), std::min(bytes.size(), LargestWrite));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            errno = put == 0 ? ENOSPC : errno;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

bool Inherit(int old, int file) {
    struct statx from {};
    struct statx own {};
    constexpr unsigned Wanted = STATX_MODE | STATX_UID | STATX_GID;
    if (Host().Statx(old, "", AT_EMPTY_PATH, Wanted, &from) != 0 ||
        Host().Statx(file, "", AT_EMPTY_PATH, Wanted, &own) != 0 || !CopyAttributes(old, file))
        return false;
    unsigned mode = from.stx_mode & PermissionBits;
    const bool isOthers = from.stx_uid != own.stx_uid || from.stx_gid != own.stx_gid;
    if (isOthers && Host().Fchown(file, from.stx_uid, from.stx_gid) != 0) {
        // The group at least, so that those who share the file can go on doing so.
        if (errno != EPERM || (from.stx_gid != own.stx_gid &&
                               Host().Fchown(file, NoChange, from.stx_gid) != 0 && errno != EPERM))
            return false;
        mode &= ~PrivilegeBits; // they were given to the program of another
    }
    return Host().Fchmod(file, mode) == 0 || HasMode(file, mode);
}

void SyncDrawer(int drawer) {
    const HostFd open = OpenForListing(drawer);
    if (open)
        Host().Fsync(open.Get());
}

bool RenameEntry(int fromDrawer, const std::string& from, int toDrawer, const std::string& to,
                 unsigned mode) {
    const OwnChange out(fromDrawer);
    const OwnChange in(toDrawer);
    bool done = RenameKeeping(fromDrawer, from, toDrawer, to, mode);
    const int error = errno;
    if (!done && error == EEXIST && IsOneFoldedEntry(fromDrawer, from, toDrawer, to))
        done = RenameAround(fromDrawer, from, to, mode);
    else
        errno = error;
    if (done)
        EndMove(out, from, in, to);
    return done;
}

std::optional<unsigned> LendForRemoval(int drawer) {
    constexpr unsigned needed = S_IWUSR | S_IXUSR;
    struct statx about {};
    if (Host().Statx(drawer, "", AT_EMPTY_PATH, STATX_MODE | STATX_UID, &about) != 0)
        return {};
    const unsigned modes = about.stx_mode & PermissionBits;
    const bool isLacking = (modes & needed) != needed && about.stx_uid == ::geteuid();
    if (!isLacking || !IsAwaited() || Host().ChangeMode(drawer, modes | needed) != 0)
        return {};
    return modes;
}

void GiveBackModes(int drawer, unsigned modes) {
    if (Host().ChangeMode(drawer, modes) != 0)
        Host().ChangeMode(drawer, modes); // a passing trouble is over by now
}

bool IsWellClosed(int file) {
    const int copy = Host().Duplicate(file);
    return copy >= 0 && Host().Close(copy) == 0;
}

bool ReplaceBytes(int drawer, const std::string& name, int old, std::string_view bytes, Flush flush) {
    Temporary file;
    const bool hasOld = old != NoDescriptor;
    if (!file.Make(drawer, hasOld ? ModeOfReplacement : ModeOfNewFile) || !WriteAll(file.File(), bytes) ||
        (hasOld && !Inherit(old, file.File())) ||
        (flush == Flush::Now ? Host().Fsync(file.File()) != 0 : !IsWellClosed(file.File())) ||
        !file.TakePlace(name, hasOld ? Existing::Replaced : Existing::Kept))
        return false;
    if (flush == Flush::Now)
        SyncDrawer(drawer);
    return true;
}

bool ReplaceHostText(const std::string& hostPath, std::string_view text) {
    const HostFd old(Host().Openat(AT_FDCWD, hostPath.c_str(), O_PATH | O_CLOEXEC, 0));
    if (!old && errno != ENOENT)
        return false;
    const std::string path = old ? HostPathOf(old.Get()) : hostPath;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return false;
    const HostFd drawer(
        Host().Openat(AT_FDCWD, path.substr(0, slash + 1).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    return drawer && ReplaceBytes(drawer.Get(), path.substr(slash + 1), old.Get(), text, Flush::Now);
}

} // namespace dos
