#include "platform/datatypes/HostPlace.h"

#include "platform/datatypes/HostFiles.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/MountInfo.h"

namespace datatypes {

HostPlace PlaceOf(std::string hostPath) {
    std::string slowMount = dos::SlowMountOf(*dos::Mounts(), hostPath);
    return {std::move(hostPath), std::move(slowMount)};
}

// A soft link on a disk that answers can lead to one that does not, so dos follows it.
std::optional<HostPlace> FindObject(std::string_view path) {
    auto hostPath = path.starts_with('/') ? std::optional<std::string>(path) : dos::HostPath(path);
    if (!hostPath) {
        return std::nullopt;
    }
    HostPlace place = PlaceOf(std::move(*hostPath));
    if (!place.SlowMount.empty() || path.starts_with('/') || !IsHostLink(place.Path)) {
        return place;
    }
    const dos::FileLock target = dos::Lock(path);
    hostPath = target ? dos::HostPath(dos::NameFromLock(target)) : std::nullopt;
    return hostPath ? std::optional(PlaceOf(std::move(*hostPath))) : std::nullopt;
}

} // namespace datatypes
