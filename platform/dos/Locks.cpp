#include "platform/dos/Locks.h"

#include "platform/dos/DeviceProcs.h"
#include "platform/dos/DeviceWalk.h"
#include "platform/dos/VolumeRequest.h"

#include <mutex>

namespace dos {

namespace {

thread_local FileLock Current;
thread_local bool RequestersOn = true;

struct RequestHook {
    std::mutex Guard;
    VolumeRequest Ask;
};

RequestHook& Hook() {
    static RequestHook hook;
    return hook;
}

LockRef LocateAt(const DeviceWalk& walk) {
    if (walk.Owner().Locate)
        return walk.Owner().Locate(walk.Start(), walk.Rest(), LastLink::Follow);
    RefuseAction();
    return nullptr;
}

std::string NameIn(const FileLock& lock, NameForm form) {
    const MountLook look;
    if (!lock) {
        SetIoErr(ErrorInvalidLock);
        return {};
    }
    if (lock.Body()->Owner->NameOf)
        return lock.Body()->Owner->NameOf(*lock.Body(), form);
    RefuseAction();
    return {};
}

} // namespace

bool RequestVolume(std::string_view volume) {
    VolumeRequest ask;
    {
        const std::lock_guard hold(Hook().Guard);
        ask = RequestersOn ? Hook().Ask : nullptr;
    }
    const bool again = ask && ask(volume);
    SetIoErr(ErrorDeviceNotMounted);
    return again;
}

void SetVolumeRequest(VolumeRequest request) {
    const std::lock_guard hold(Hook().Guard);
    Hook().Ask = std::move(request);
}

bool SetRequesters(bool on) {
    return std::exchange(RequestersOn, on);
}

FileLock Lock(std::string_view path) {
    return FileLock(AtEachPlace(path, LocateAt));
}

std::vector<FileLock> LockAllTargets(std::string_view path, bool* complete) {
    std::vector<FileLock> locks;
    DeviceWalk walk(path);
    while (walk.Next())
        if (LockRef lock = LocateAt(walk))
            locks.emplace_back(std::move(lock));
    if (complete)
        *complete = IoErr() == ErrorNoMoreEntries;
    return locks;
}

FileLock ParentDir(const FileLock& lock) {
    if (!lock || !lock.Body()->Owner->Parent) {
        SetIoErr(lock ? ErrorActionNotKnown : ErrorInvalidLock);
        return FileLock();
    }
    return FileLock(lock.Body()->Owner->Parent(lock.Body()));
}

bool SameLock(const FileLock& a, const FileLock& b) {
    if (a.Body() == b.Body())
        return true;
    if (!a || !b || a.Body()->Owner != b.Body()->Owner)
        return false;
    const auto same = a.Body()->Owner->Same;
    return same && same(*a.Body(), *b.Body());
}

std::string NameFromLock(const FileLock& lock) {
    return NameIn(lock, NameForm::Volume);
}

std::string DevNameFromLock(const FileLock& lock, DevName form) {
    return NameIn(lock, form == DevName::FullPath ? NameForm::Device : NameForm::DeviceOnly);
}

FileLock CurrentDir(FileLock newCurrent) {
    return std::exchange(Current, std::move(newCurrent));
}

FileLock CurrentDirLock() {
    return Current;
}

} // namespace dos
