#include "platform/dos/HostChanges.h"

#include "platform/dos/Dates.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/MetadataWriting.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/TemporaryNames.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace dos {

namespace {

bool Fails(long error) {
    SetIoErr(error);
    return false;
}

// Some hosts say EEXIST for a drawer that is not empty.
int ErrorOfRemoval(int hostError, bool isDrawer) {
    return isDrawer && hostError == EEXIST ? ENOTEMPTY : hostError;
}

// What processes that were ended left in a drawer does not hold it.
bool RemoveEntry(int drawer, const Spot& spot) {
    const bool isDrawer = IsDrawerMode(spot.Facts.Mode);
    const int flags = isDrawer ? AT_REMOVEDIR : 0;
    if (Host().Unlinkat(drawer, spot.Name.c_str(), flags) == 0)
        return true;
    if (!isDrawer || ErrorOfRemoval(errno, isDrawer) != ENOTEMPTY)
        return false;
    RemoveStale(spot.Object.Get());
    return Host().Unlinkat(drawer, spot.Name.c_str(), flags) == 0;
}

bool DeleteNow(const HostLock& from, const std::string& rest, const ObjectId* only, WalkMode& mode) {
    Spot spot;
    StoredMetadata stored;
    if (!FindEntry(from, rest, LastLink::Keep, mode, spot))
        return false;
    if (only && spot.Facts.Id != *only)
        return Fails(ErrorObjectNotFound);
    if (!ReadStored(spot, stored))
        return Refuse(errno, Operation::Delete);
    if ((stored.Bits & ProtectDelete) != 0)
        return Fails(ErrorDeleteProtected);
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Delete);
    const int drawer = spot.Drawer.Get();
    const RemovalLoan loan(drawer);
    const OwnChange change(drawer);
    if (!RemoveEntry(drawer, spot))
        return Refuse(ErrorOfRemoval(errno, IsDrawerMode(spot.Facts.Mode)), Operation::Delete);
    change.End(spot.Name, {});
    if (stored.Sidecar.State != SidecarState::Ours)
        return true;
    const std::string sidecar = SidecarNameOf(spot.Name);
    const OwnChange further(drawer);
    if (Host().Unlinkat(drawer, sidecar.c_str(), 0) != 0 && errno != ENOENT)
        return Refuse(errno, Operation::Delete);
    further.End(sidecar, {});
    return true;
}

// A place for a new entry; false with IoErr, 203 when there is one.
bool FindPlace(const HostLock& from, const std::string& rest, WalkMode& mode, Spot& spot) {
    if (!FindSpot(from, rest, LastLink::Keep, mode, spot))
        return false;
    if (spot.Object)
        return Fails(ErrorObjectExists);
    return mode.Commit() || Refuse(ENOMEDIUM, Operation::Write);
}

// The name of the object that a path from the drawer of a link leads to, or of one that could be there,
// as the host has it: an alias or another case means nothing to it.
std::string RealNameOf(const HostLock& drawer, std::string_view path, std::string_view name, WalkMode& mode) {
    Spot spot;
    if (FindSpot(drawer, path, LastLink::Keep, mode, spot) && spot.Object && !spot.Name.empty())
        return spot.Name;
    return HostNameFor(drawer.On->Info.Metadata, name);
}

// A relative AmigaDOS path as the text of a host link.
std::string HostTextOf(const HostLock& drawer, std::string_view path, WalkMode& mode) {
    std::string text;
    for (std::size_t at = 0; at < path.size();) {
        text.append(text.empty() ? "" : "/");
        if (path[at] == '/') {
            text.append("..");
            ++at;
            continue;
        }
        const std::size_t end = std::min(path.find('/', at), path.size());
        text.append(RealNameOf(drawer, path.substr(0, end), path.substr(at, end - at), mode));
        at = end + 1;
    }
    return text;
}

bool SoftLinkNow(const HostLock& from, const std::string& rest, const SoftTarget& target, WalkMode& mode) {
    Spot spot;
    if (!FindPlace(from, rest, mode, spot))
        return false;
    std::string text = target.HostPath;
    if (text.empty()) {
        ObjectFacts facts;
        HostFd drawer = DuplicateFd(spot.Drawer);
        if (!drawer || !FactsOf(drawer.Get(), facts))
            return Refuse(errno, Operation::Write);
        text = HostTextOf(HostLock(spot.On, std::move(drawer), facts, spot.SlowMount), target.Relative, mode);
        if (!mode.WantsLimit.empty())
            return false; // to be done anew where it may wait, so nothing is made yet
    }
    const OwnChange change(spot.Drawer.Get());
    if (Host().Symlinkat(text.c_str(), spot.Drawer.Get(), spot.Name.c_str()) != 0)
        return Refuse(errno == EPERM ? ENOTSUP : errno, Operation::Write);
    change.End({}, spot.Name);
    return true;
}

// Bits and comment of a file that keeps them in a sidecar go with its further name.
bool CopySidecar(const HostLock& target, const Spot& spot) {
    Spot from;
    from.Object = DuplicateFd(target.Object);
    from.Facts = target.Facts;
    from.On = target.On;
    SidecarFile sidecar;
    SidecarFile old;
    const int drawer = spot.Drawer.Get();
    if (!from.Object || !CompleteSpot(from) || !FindSidecar(from.Drawer.Get(), from.Name, sidecar) ||
        !FindSidecar(drawer, spot.Name, old))
        return false;
    if (sidecar.State == SidecarState::Ours && sidecar.Facts.Date && old.State != SidecarState::Foreign)
        return WriteSidecar(drawer, spot.Name, old, sidecar.Facts);
    return BeginSidecar(drawer, spot.Name, old, spot.On->Info.Metadata);
}

// The host says the same of a disk without hard links and of a file to which this user may have none.
int ErrorOfLink(int object, int hostError) {
    struct statx about {};
    if (hostError != EPERM || Host().Statx(object, "", AT_EMPTY_PATH, STATX_UID, &about) != 0)
        return hostError;
    constexpr std::uint64_t Fixed = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
    const bool isForbidden = about.stx_uid != ::geteuid() || (about.stx_attributes & Fixed) != 0;
    return isForbidden ? EPERM : ENOTSUP;
}

bool HardLinkNow(const HostLock& from, const std::string& rest, const HostLock& target, WalkMode& mode) {
    Spot spot;
    if (!IsFileMode(target.Facts.Mode))
        return Fails(ErrorObjectWrongType);
    if (!FindPlace(from, rest, mode, spot))
        return false;
    const OwnChange change(spot.Drawer.Get());
    if (Host().LinkObject(target.Object.Get(), spot.Drawer.Get(), spot.Name.c_str()) != 0)
        return Refuse(ErrorOfLink(target.Object.Get(), errno), Operation::Write);
    change.End({}, spot.Name);
    if (CopySidecar(target, spot))
        return true;
    const int error = errno;
    const OwnChange back(spot.Drawer.Get());
    if (Host().Unlinkat(spot.Drawer.Get(), spot.Name.c_str(), 0) == 0 ||
        Host().Unlinkat(spot.Drawer.Get(), spot.Name.c_str(), 0) == 0)
        back.End(spot.Name, {});
    return Refuse(error, Operation::Write);
}

bool ChangeNow(const HostLock& from, const std::string& rest, const MetadataChange& change, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Follow, mode, spot))
        return false;
    if (!spot.Object)
        return Refuse(ENOENT, Operation::Lookup);
    if (!CompleteSpot(spot)) {
        if (errno != EBUSY)
            return Refuse(errno, Operation::Lookup);
        spot.Drawer = HostFd();                      // a root: nothing lies beside it
        if (!FactsOf(spot.Object.Get(), spot.Facts)) // its lock may have been made long ago
            return Refuse(errno, Operation::Lookup);
    }
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Write);
    return ChangeStored(spot, change);
}

// Not all file systems keep it.
std::uint32_t CreationOf(const HostLock& lock) {
    struct statx facts {};
    const bool isTold = Host().Statx(lock.Object.Get(), "", AT_EMPTY_PATH, STATX_BTIME, &facts) == 0 &&
                        (facts.stx_mask & STATX_BTIME) != 0 && facts.stx_btime.tv_sec > 0;
    return isTold ? AmigaSecondsFromUnix(facts.stx_btime.tv_sec) : 0;
}

bool InfoNow(const HostLock& lock, InfoData& info) {
    const VolumeRef volume = PresentRecord(lock.On);
    info.Unit = volume->Info.Unit;
    info.DosType = volume->Info.DosType;
    struct statvfs raw {};
    if (Host().Fstatvfs(lock.Object.Get(), &raw) != 0)
        return Refuse(errno, Operation::Lookup);
    const auto blocks = static_cast<std::uint64_t>(raw.f_blocks);
    const auto available = static_cast<std::uint64_t>(raw.f_bavail);
    info.State = (raw.f_flag & ST_RDONLY) != 0 ? DiskState::WriteProtected : DiskState::Validated;
    info.Blocks = blocks;
    info.BlocksUsed = blocks - std::min(blocks, available);
    info.BytesPerBlock = raw.f_frsize != 0 ? raw.f_frsize : raw.f_bsize;
    info.Created = CreationOf(lock);
    return true;
}

} // namespace

bool DeleteHostEntry(const LockRef& start, std::string_view rest) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest)](WalkMode& mode) {
        return DeleteNow(*from, rest, nullptr, mode);
    });
}

bool DeleteHostObject(const LockRef& start, std::string_view rest, const ObjectId& object) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest), object](WalkMode& mode) {
        return DeleteNow(*from, rest, &object, mode);
    });
}

bool MakeHostSoftLink(const LockRef& start, std::string_view rest, const SoftTarget& target) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest), target](WalkMode& mode) {
        return SoftLinkNow(*from, rest, target, mode);
    });
}

bool MakeHostHardLink(const LockRef& start, std::string_view rest, const LockRef& target) {
    if (target->Owner != &HostHandler)
        return Fails(ErrorRenameAcrossDevices);
    const HostLockRef from = AsHostLock(start);
    const HostLockRef to = AsHostLock(target);
    return IsMounted(*to) && OnHost<bool>(from, [from, rest = std::string(rest), to](WalkMode& mode) {
               return HardLinkNow(*from, rest, *to, mode);
           });
}

bool ChangeHostEntry(const LockRef& start, std::string_view rest, const MetadataChange& change) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest), change](WalkMode& mode) {
        return ChangeNow(*from, rest, change, mode);
    });
}

bool InfoOfHost(const LockRef& lock, InfoData& info) {
    const HostLockRef from = AsHostLock(lock);
    using Answer = std::optional<InfoData>;
    const Answer answer = OnHost<Answer>(from, [from](WalkMode&) -> Answer {
        InfoData data;
        return InfoNow(*from, data) ? Answer(data) : std::nullopt;
    });
    info = answer.value_or(InfoData());
    return answer.has_value();
}

} // namespace dos
