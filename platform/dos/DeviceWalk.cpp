#include "platform/dos/DeviceWalk.h"

#include "platform/dos/VolumeRequest.h"
#include "platform/utility/Text.h"

namespace dos {

namespace {

constexpr int DeepestAssign = 16; // assigns that lead to assigns; more is a circle

thread_local int AssignDepth = 0;

LockRef RootOfDevice(std::string_view device) {
    for (const Handler* handler : Handlers())
        if (handler->Knows(device))
            return handler->Root(device);
    SetIoErr(ErrorDeviceNotMounted);
    return nullptr;
}

FileLock LockTarget(const std::string& path) {
    if (AssignDepth >= DeepestAssign) {
        SetIoErr(ErrorTooManyLevels);
        return FileLock();
    }
    ++AssignDepth;
    FileLock lock = Lock(path);
    --AssignDepth;
    return lock;
}

} // namespace

DeviceWalk::DeviceWalk(std::string_view path) {
    const std::size_t colon = path.find(':');
    HasColon = colon != std::string_view::npos;
    Device = HasColon ? path.substr(0, colon) : std::string_view();
    RestText = HasColon ? path.substr(colon + 1) : path;
}

bool DeviceWalk::Next() {
    if (!HasBegun) {
        HasBegun = true;
        return Begin();
    }
    if (Targets)
        return NextTarget();
    SetIoErr(ErrorNoMoreEntries);
    return false;
}

bool DeviceWalk::IsOfAssign(std::string_view name) const {
    return Targets && utility::Stricmp(Device, name) == 0;
}

bool DeviceWalk::Begin() {
    if (Device.empty())
        return BeginAtCurrent(HasColon);
    while (!BeginAtDevice()) {
        // Of an assign the disk of the target has been asked for.
        if (Targets || IoErr() != ErrorDeviceNotMounted || !RequestVolume(Device))
            return false;
    }
    return true;
}

bool DeviceWalk::BeginAtCurrent(bool atRoot) {
    const FileLock current = CurrentDirLock();
    if (!current) {
        Device = "SYS";
        return Begin();
    }
    const Handler& owner = *current.Body()->Owner;
    if (atRoot && !owner.RootOf) {
        RefuseAction();
        return false;
    }
    Place = atRoot ? owner.RootOf(current.Body()) : current.Body();
    return Place != nullptr;
}

bool DeviceWalk::BeginAtDevice() {
    Targets = FindAssign(Device);
    if (Targets) {
        NextIndex = 0;
        return NextTarget();
    }
    Place = RootOfDevice(Device);
    return Place != nullptr;
}

bool DeviceWalk::NextTarget() {
    while (NextIndex < Targets->size()) {
        const AssignTarget& target = (*Targets)[NextIndex++];
        const FileLock lock = target.Bound ? target.Bound : LockTarget(target.Path);
        if (!lock && IoErr() != ErrorObjectNotFound)
            return false;
        if (!lock)
            continue;
        if (!target.Bound)
            BindTarget(Device, target.Path, lock);
        Place = lock.Body();
        return true;
    }
    SetIoErr(ErrorNoMoreEntries);
    return false;
}

} // namespace dos
