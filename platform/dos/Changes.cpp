#include "platform/dos/Changes.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/HostPaths.h"

#include <algorithm>

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

bool RenameAt(const DeviceWalk& source, const LockRef& place, std::string_view rest) {
    if (source.Owner().Rename)
        return source.Owner().Rename(source.Start(), source.Rest(), place, rest);
    return RefuseBy(ErrorActionNotKnown);
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
    const std::size_t colon = std::min(to.find(':'), to.size());
    return AtEachPlaceToChange(from, [to, colon](const DeviceWalk& source) {
        // Within an assign an object stays below the drawer in which it was found, where that can be.
        if (to.size() <= LongestPath && source.IsOfAssign(to.substr(0, colon))) {
            const bool done = RenameAt(source, source.Start(), to.substr(colon + 1));
            if (done || IoErr() != ErrorObjectNotFound)
                return done;
        }
        return AtEachPlaceToChange(to, [&source](const DeviceWalk& target) {
            return &source.Owner() == &target.Owner() ? RenameAt(source, target.Start(), target.Rest())
                                                      : RefuseBy(ErrorRenameAcrossDevices);
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

bool ChangeProtection(std::string_view path, std::uint32_t set, std::uint32_t clear) {
    const std::uint32_t kept = ProtectOwnBits & ~(set | clear);
    return Change(path, {.Protection = set & ProtectOwnBits, .KeptProtection = kept});
}

bool SetComment(std::string_view path, std::string_view comment) {
    return Change(path, {.Comment = std::string(comment.substr(0, comment.find('\0')))});
}

bool SetDate(std::string_view path, std::uint32_t amigaSeconds) {
    return Change(path, {.Date = amigaSeconds});
}

} // namespace dos
