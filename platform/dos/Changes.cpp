#include "platform/dos/Changes.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/HostPaths.h"

namespace dos {

namespace {

bool RefuseBy(long error) {
    SetIoErr(error);
    return false;
}

bool Change(std::string_view path, const MetadataChange& change) {
    return AtEachPlaceToChange(path, [&](const DeviceWalk& walk) {
        if (walk.Owner().Change)
            return walk.Owner().Change(walk.Start(), walk.Rest(), change);
        return RefuseBy(ErrorActionNotKnown);
    });
}

} // namespace

bool Delete(std::string_view path) {
    return AtEachPlaceToChange(path, [](const DeviceWalk& walk) {
        if (walk.Owner().Delete)
            return walk.Owner().Delete(walk.Start(), walk.Rest());
        return RefuseBy(ErrorActionNotKnown);
    });
}

bool Rename(std::string_view from, std::string_view to) {
    return AtEachPlaceToChange(from, [to](const DeviceWalk& source) {
        return AtEachPlaceToChange(to, [&source](const DeviceWalk& target) {
            if (&source.Owner() != &target.Owner())
                return RefuseBy(ErrorRenameAcrossDevices);
            if (source.Owner().Rename)
                return source.Owner().Rename(source.Start(), source.Rest(), target.Start(), target.Rest());
            return RefuseBy(ErrorActionNotKnown);
        });
    });
}

bool MakeLink(std::string_view name, std::string_view target) {
    SoftTarget leadsTo;
    if (target.empty() || target.find('\0') != std::string_view::npos)
        return RefuseBy(ErrorInvalidComponentName);
    if (target.size() > LongestPath)
        return RefuseBy(ErrorLineTooLong);
    if (target.find(':') == std::string_view::npos) {
        leadsTo.Relative = target;
    } else if (auto path = HostPath(target)) {
        leadsTo.HostPath = std::move(*path);
    } else {
        return false;
    }
    return AtEachPlaceToChange(name, [&](const DeviceWalk& walk) {
        if (walk.Owner().MakeSoftLink)
            return walk.Owner().MakeSoftLink(walk.Start(), walk.Rest(), leadsTo);
        return RefuseBy(ErrorActionNotKnown);
    });
}

bool MakeLink(std::string_view name, const FileLock& target) {
    if (!target)
        return RefuseBy(ErrorInvalidLock);
    return AtEachPlaceToChange(name, [&](const DeviceWalk& walk) {
        if (walk.Owner().MakeHardLink)
            return walk.Owner().MakeHardLink(walk.Start(), walk.Rest(), target.Body());
        return RefuseBy(ErrorActionNotKnown);
    });
}

bool SetProtection(std::string_view path, std::uint32_t bits) {
    return Change(path, {.Protection = bits});
}

bool SetComment(std::string_view path, std::string_view comment) {
    return Change(path, {.Comment = std::string(comment.substr(0, comment.find('\0')))});
}

bool SetDate(std::string_view path, std::uint32_t amigaSeconds) {
    return Change(path, {.Date = amigaSeconds});
}

} // namespace dos
