#include "platform/dos/HostFiles.h"

#include "platform/dos/HostWriting.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/SidecarFiles.h"

#include <cerrno>
#include <fcntl.h>

namespace dos {

namespace {

constexpr int MostTries = 10; // while another process makes and removes the file

bool WriteOnce(const HostLock& from, const std::string& rest, std::string_view bytes, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Follow, mode, spot) || (spot.Object && !IsReplaceable(spot)))
        return false;
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Write);
    SidecarFile sidecar;
    const int old = spot.Object ? spot.Object.Get() : NoDescriptor;
    if (!FindSidecar(spot.Drawer.Get(), spot.Name, sidecar) ||
        !ReplaceBytes(spot.Drawer.Get(), spot.Name, old, bytes, Flush::Now))
        return Refuse(errno, Operation::Write);
    return FinishSidecar(spot, sidecar) || Refuse(errno, Operation::Write);
}

bool WriteNow(const HostLock& from, const std::string& rest, std::string_view bytes, WalkMode& mode) {
    // A file that somebody made meanwhile is replaced with all that an old one passes on.
    bool done = WriteOnce(from, rest, bytes, mode);
    for (int i = 1; i < MostTries && !done && IoErr() == ErrorObjectExists; ++i)
        done = WriteOnce(from, rest, bytes, mode);
    return done;
}

bool CreateNow(const HostLock& from, const std::string& rest, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Keep, mode, spot))
        return false;
    if (spot.Object) {
        SetIoErr(ErrorObjectExists);
        return false;
    }
    if (!mode.Commit())
        return Refuse(ENOMEDIUM, Operation::Write);
    SidecarFile sidecar;
    const int drawer = spot.Drawer.Get();
    if (!FindSidecar(drawer, spot.Name, sidecar))
        return Refuse(errno, Operation::Write);
    const OwnChange change(drawer);
    if (Host().Mkdirat(drawer, spot.Name.c_str(), 0777) != 0)
        return Refuse(errno, Operation::Write);
    change.End({}, spot.Name);
    if (FinishSidecar(spot, sidecar))
        return true;
    const int error = errno;
    const OwnChange back(drawer);
    if (Host().Unlinkat(drawer, spot.Name.c_str(), AT_REMOVEDIR) == 0)
        back.End(spot.Name, {});
    return Refuse(error, Operation::Write);
}

} // namespace

bool FinishSidecar(const Spot& spot, const SidecarFile& sidecar) {
    const int drawer = spot.Drawer.Get();
    if (spot.Object)
        return RefreshSidecar(drawer, spot.Name, sidecar);
    return BeginSidecar(drawer, spot.Name, sidecar, spot.On->Info.Metadata);
}

bool CreateHostDrawer(const LockRef& start, std::string_view rest) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(
        from, [from, rest = std::string(rest)](WalkMode& mode) { return CreateNow(*from, rest, mode); });
}

bool WriteHostFile(const LockRef& start, std::string_view rest, std::string_view bytes) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<bool>(from, [from, rest = std::string(rest), bytes = std::string(bytes)](WalkMode& mode) {
        return WriteNow(*from, rest, bytes, mode);
    });
}

} // namespace dos
