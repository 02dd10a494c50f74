#include "platform/dos/Info.h"

#include "platform/dos/DeviceWalk.h"

namespace dos {

std::optional<InfoData> Info(const FileLock& lock) {
    if (!lock || !lock.Body()->Owner->Info) {
        SetIoErr(lock ? ErrorActionNotKnown : ErrorInvalidLock);
        return {};
    }
    InfoData info;
    if (!lock.Body()->Owner->Info(lock.Body(), info))
        return {};
    return info;
}

std::optional<InfoData> Info(std::string_view path) {
    const FileLock lock = Lock(path);
    return lock ? Info(lock) : std::nullopt;
}

} // namespace dos
