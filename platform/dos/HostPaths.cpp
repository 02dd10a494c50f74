#include "platform/dos/HostPaths.h"

#include "platform/dos/DeviceWalk.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostNames.h"
#include "platform/dos/LinkText.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/UserHome.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::string_view UrlScheme = "file:";

// The path of a file: URL of this machine; nothing for what is none.
std::optional<std::string> PathOfUrl(std::string_view text) {
    if (utility::Stricmp(text.substr(0, UrlScheme.size()), UrlScheme) != 0)
        return {};
    text.remove_prefix(UrlScheme.size());
    if (text.starts_with("//")) {
        const std::size_t end = text.find('/', 2);
        const std::string_view machine = text.substr(2, end == std::string_view::npos ? 0 : end - 2);
        if (end == std::string_view::npos ||
            (!machine.empty() && utility::Stricmp(machine, "localhost") != 0))
            return {};
        text.remove_prefix(end);
    }
    if (!text.starts_with('/'))
        return {};
    auto path = DecodePercents(text);
    return path && path->find('\0') == std::string::npos ? path : std::nullopt;
}

bool IsOnSlowMount(std::string_view hostPath) {
    return !SlowMountOf(*Mounts(), hostPath).empty();
}

bool IsThere(const std::string& hostPath) {
    struct statx raw {};
    return !IsOnSlowMount(CleanHostPath(hostPath)) &&
           Host().Statx(AT_FDCWD, hostPath.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE,
                        &raw) == 0;
}

// Position behind the last ".." component; 0 when there is none.
std::size_t EndOfLastParent(std::string_view path) {
    std::size_t end = 0;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t next = std::min(path.find('/', at), path.size());
        if (path.substr(at, next - at) == "..")
            end = next;
        at = next + 1;
    }
    return end;
}

// An absolute host path without "." and "..". A ".." behind a link leads to where the link's target
// lies, so the host is asked for it; a disk that may not answer is not.
std::string Straighten(const std::string& hostPath) {
    const std::size_t end = EndOfLastParent(hostPath);
    if (end == 0 || IsOnSlowMount(CleanHostPath(hostPath)))
        return CleanHostPath(hostPath);
    const HostFd drawer(
        Host().Openat(AT_FDCWD, hostPath.substr(0, end).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    const std::string real = drawer ? HostPathOf(drawer.Get()) : std::string();
    return real.empty() ? CleanHostPath(hostPath) : CleanHostPath(real + hostPath.substr(end));
}

std::string VolumePathOf(const std::string& hostPath) {
    const std::string path = Straighten(hostPath);
    const VolumeRef volume = VolumeOfHostPath(path);
    return PathNameOf(volume) + ":" + PathBelow(RootAbove(*volume, path), path, volume->Info.Metadata);
}

// Does the text begin with a name and a colon, as AmigaDOS paths do?
bool HasDevice(std::string_view text) {
    const std::size_t colon = text.find(':');
    return colon != std::string_view::npos && text.find('/') > colon;
}

// Does the text begin at the user's home, as a Shell would take it?
bool IsAtHome(std::string_view text) {
    return text == "~" || text.starts_with("~/");
}

} // namespace

std::string ShownNameAt(const std::string& drawerHostPath, std::string_view hostName, MetadataRule rule) {
    std::string name = OwnNameOf(rule, hostName);
    const bool needsAlias = NeedsAlias(name);
    if (!needsAlias && (rule != MetadataRule::Uaem || name != hostName || !NeedsEscape(name)))
        return name;
    if (IsOnSlowMount(drawerHostPath))
        return needsAlias ? MakeAlias(hostName, 0) : name;
    const HostFd drawer(Host().Openat(AT_FDCWD, drawerHostPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    if (drawer)
        return ShownName(drawer.Get(), hostName, rule);
    return needsAlias ? MakeAlias(hostName, 0) : name;
}

std::string PathBelow(std::string_view root, const std::string& hostPath, MetadataRule rule) {
    std::string path;
    std::size_t at = root == "/" ? 1 : root.size() + 1;
    while (at < hostPath.size()) {
        const std::size_t end = std::min(hostPath.find('/', at), hostPath.size());
        const std::string_view name = std::string_view(hostPath).substr(at, end - at);
        path.append(path.empty() ? "" : "/").append(ShownNameAt(hostPath.substr(0, at), name, rule));
        at = end + 1;
    }
    return path;
}

std::string PathNameOf(const VolumeRef& volume) {
    return FindVolume(volume->Info.Volume) == volume ? volume->Info.Volume : volume->Info.Device;
}

const std::string& RootAbove(const Volume& volume, std::string_view hostPath) {
    return LiesUnder(hostPath, volume.RealRoot) ? volume.RealRoot : volume.Info.HostRoot;
}

bool IsKnownDevice(std::string_view name) {
    if (FindAssign(name))
        return true;
    for (const Handler* handler : Handlers())
        if (handler->Knows(name))
            return true;
    return false;
}

std::optional<std::string> HostPath(std::string_view path) {
    const MountLook look;
    DeviceWalk walk(path);
    std::string could; // the first place where it could be made
    long error = ErrorObjectNotFound;
    while (walk.Next()) {
        if (!walk.Owner().HostName) {
            RefuseAction();
            return {};
        }
        std::string name = walk.Owner().HostName(walk.Start(), walk.Rest());
        if (!name.empty() && walk.Owner().Locate(walk.Start(), walk.Rest(), LastLink::Keep))
            return name;
        error = IoErr();
        if (could.empty())
            could = std::move(name);
        if (error != ErrorObjectNotFound)
            break;
    }
    if (!could.empty())
        return could;
    if (IoErr() == ErrorNoMoreEntries)
        SetIoErr(error);
    return {};
}

std::string FromHostPath(std::string_view hostPathOrUrl, std::string_view hostCurrentDirectory) {
    const MountLook look;
    const std::string text(hostPathOrUrl);
    if (text.empty() || text.find('\0') != std::string::npos)
        return text;
    if (text.front() == '/')
        return VolumePathOf(text);
    const std::size_t colon = text.find(':');
    if (HasDevice(text) && (colon == 0 || IsKnownDevice(text.substr(0, colon))))
        return text;
    if (const std::optional<std::string> path = PathOfUrl(text))
        return VolumePathOf(*path);
    const bool hasCurrent = hostCurrentDirectory.starts_with('/');
    const std::string full = std::string(hostCurrentDirectory).append("/").append(text);
    if (IsAtHome(text) && !(hasCurrent && IsThere(full))) {
        const std::string home = HomeOfUser();
        return home.empty() ? text : VolumePathOf(home + text.substr(1));
    }
    if (!hasCurrent)
        return text;
    return HasDevice(text) && !IsThere(full) ? text : VolumePathOf(full);
}

} // namespace dos
