#include "platform/dos/LinkText.h"

#include "platform/dos/Aliases.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/HostNames.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/VolumeTable.h"

#include <algorithm>
#include <fcntl.h>
#include <linux/openat2.h>
#include <vector>

namespace dos {

namespace {

std::vector<std::string_view> PartsOf(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0 && path.substr(0, end) != ".")
            parts.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

// How an entry is shown of the drawer to which the host path before it leads from that of the link. Other
// disks are not asked, they may not answer.
std::string Shown(int linkDrawer, const std::string& before, std::string_view hostName, MetadataRule rule) {
    std::string name = OwnNameOf(rule, hostName);
    const bool needsAlias = NeedsAlias(name);
    if (!needsAlias && (rule != MetadataRule::Uaem || name != hostName || !NeedsEscape(name)))
        return name;
    const HostFd drawer(Host().Openat2(linkDrawer, before.empty() ? "." : before.c_str(),
                                       O_PATH | O_DIRECTORY | O_CLOEXEC,
                                       RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV));
    if (drawer)
        return ShownName(drawer.Get(), hostName, rule);
    return needsAlias ? MakeAlias(hostName, 0) : name;
}

std::string AbsoluteTarget(std::string_view hostTarget) {
    const std::string clean = CleanHostPath(hostTarget);
    const VolumeRef volume = VolumeOfHostPath(clean);
    return PathNameOf(volume) + ":" + PathBelow(RootAbove(*volume, clean), clean, volume->Info.Metadata);
}

} // namespace

std::string CleanHostPath(std::string_view hostPath) {
    std::vector<std::string_view> kept;
    for (const std::string_view part : PartsOf(hostPath)) {
        if (part != "..")
            kept.push_back(part);
        else if (!kept.empty())
            kept.pop_back();
    }
    std::string clean;
    for (const std::string_view part : kept)
        clean.append("/").append(part);
    return clean.empty() ? "/" : clean;
}

std::string AmigaLinkTarget(int drawer, std::string_view hostTarget, MetadataRule rule) {
    if (hostTarget.starts_with('/'))
        return AbsoluteTarget(hostTarget);
    std::string path;
    std::string before; // the part, as the host has it
    bool afterName = false;
    for (const std::string_view part : PartsOf(hostTarget)) {
        if (part == "..") {
            // An extra slash is one step up; behind a name one more separates the two.
            path.append(afterName ? "//" : "/");
            afterName = false;
        } else {
            path.append(afterName ? "/" : "").append(Shown(drawer, before, part, rule));
            afterName = true;
        }
        before.append(before.empty() ? "" : "/").append(part);
    }
    return path;
}

} // namespace dos
