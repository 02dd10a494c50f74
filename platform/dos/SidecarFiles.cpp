#include "platform/dos/SidecarFiles.h"

#include "platform/dos/Dates.h"
#include "platform/dos/Examine.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::uint32_t NanosecondsPerTick = 1'000'000'000u / TicksPerSecond;

bool IsNoSidecar(int hostError) {
    return hostError == ENOENT || hostError == ENOTDIR || hostError == ENAMETOOLONG;
}

// A link, a socket or the like is none of ours.
bool IsForeign(int hostError) {
    return hostError == ELOOP || hostError == ENXIO || hostError == EISDIR;
}

} // namespace

std::string SidecarNameOf(std::string_view owner) {
    return std::string(owner).append(SidecarSuffix);
}

std::uint8_t HundredthsOf(std::uint32_t nanoseconds) noexcept {
    return static_cast<std::uint8_t>(nanoseconds / NanosecondsPerTick * 2);
}

bool FindSidecar(int drawer, std::string_view owner, SidecarFile& sidecar) {
    sidecar = SidecarFile();
    HostFd file(Host().Openat(drawer, SidecarNameOf(owner).c_str(),
                              O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0));
    if (!file) {
        sidecar.State = IsForeign(errno) ? SidecarState::Foreign : SidecarState::None;
        sidecar.HasNoRoom = errno == ENAMETOOLONG;
        return IsForeign(errno) || IsNoSidecar(errno);
    }
    ObjectFacts about;
    if (!FactsOf(file.Get(), about))
        return false;
    sidecar.State = SidecarState::Foreign;
    if (!IsFileMode(about.Mode))
        return true;
    std::string text;
    if (!ReadToEnd(file.Get(), text, LargestSidecar))
        return false;
    SidecarFacts facts = ParseSidecar(text);
    if (!facts.Protection)
        return true;
    sidecar = {SidecarState::Ours, std::move(file), std::move(facts)};
    return true;
}

bool IsSidecarInUse(int drawer, std::string_view hostName) {
    if (!hostName.ends_with(SidecarSuffix) || hostName == SidecarSuffix)
        return false;
    const std::string owner(hostName.substr(0, hostName.size() - SidecarSuffix.size()));
    struct statx about {};
    if (Host().Statx(drawer, owner.c_str(), AT_SYMLINK_NOFOLLOW, STATX_TYPE, &about) != 0)
        return !IsNoSidecar(errno);
    SidecarFile sidecar;
    return !FindSidecar(drawer, owner, sidecar) || sidecar.State == SidecarState::Ours;
}

bool LetsRead(int drawer, std::string_view owner, SidecarFile& sidecar) {
    if (!FindSidecar(drawer, owner, sidecar)) {
        if (errno != EACCES && errno != EPERM)
            return Refuse(errno, Operation::Read);
        sidecar.State = SidecarState::Foreign;
    }
    if (sidecar.State != SidecarState::Ours || (*sidecar.Facts.Protection & ProtectRead) == 0)
        return true;
    SetIoErr(ErrorReadProtected);
    return false;
}

bool LetsRead(const HostFd& object) {
    const std::string path = HostPathOf(object.Get());
    SidecarFile sidecar;
    return path.empty() || LetsRead(AT_FDCWD, path, sidecar); // empty: its sidecar was removed with it
}

bool WriteSidecar(int drawer, std::string_view owner, const SidecarFile& old, const SidecarFacts& facts,
                  Flush flush) {
    const std::string name = SidecarNameOf(owner);
    const int before = old.Object ? old.Object.Get() : NoDescriptor;
    return ReplaceBytes(drawer, name, before, FormatSidecar(facts), flush);
}

bool RefreshSidecar(int drawer, std::string_view owner, const SidecarFile& sidecar) {
    if (sidecar.State != SidecarState::Ours)
        return true;
    struct statx now {};
    if (Host().Statx(drawer, std::string(owner).c_str(), AT_SYMLINK_NOFOLLOW, STATX_MTIME, &now) != 0)
        return false;
    SidecarFacts facts = sidecar.Facts;
    facts.Protection = *facts.Protection & ~ProtectArchive;
    facts.Date = AmigaSecondsFromUnix(now.stx_mtime.tv_sec);
    facts.Hundredths = HundredthsOf(now.stx_mtime.tv_nsec);
    return WriteSidecar(drawer, owner, sidecar, facts);
}

bool BeginSidecar(int drawer, std::string_view owner, const SidecarFile& sidecar, MetadataRule rule) {
    const bool isWanted = rule == MetadataRule::Uaem && !owner.ends_with(SidecarSuffix) && !sidecar.HasNoRoom;
    if (sidecar.State != SidecarState::None || !isWanted)
        return RefreshSidecar(drawer, owner, sidecar);
    SidecarFile first;
    first.State = SidecarState::Ours;
    first.Facts.Protection = 0;
    return RefreshSidecar(drawer, owner, first);
}

} // namespace dos
