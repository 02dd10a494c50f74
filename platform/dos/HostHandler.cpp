#include "platform/dos/Handler.h"
#include "platform/dos/HostChanges.h"
#include "platform/dos/HostCopy.h"
#include "platform/dos/HostFiles.h"
#include "platform/dos/HostLister.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostNames.h"
#include "platform/dos/Metadata.h"
#include "platform/dos/MountInfo.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>

namespace dos {

namespace {

LockRef Root(std::string_view device) {
    const VolumeRef volume = FindVolume(device);
    if (!volume)
        SetIoErr(ErrorDeviceNotMounted);
    return volume ? RootLock(volume) : nullptr;
}

LockRef RootOf(const LockRef& lock) {
    return RootLock(AsHostLock(lock)->On);
}

LockRef Locate(const LockRef& start, std::string_view rest, LastLink last) {
    const HostLockRef from = AsHostLock(start);
    if (!IsMounted(*from))
        return nullptr;
    if (from->SlowMount.empty()) {
        WalkMode mode;
        HostLockRef found = FindObject(from, rest, last, mode);
        if (found || mode.WantsLimit.empty())
            return found;
    }
    return OnHost<LockRef>(from, [from, rest = std::string(rest), last](WalkMode& mode) -> LockRef {
        return FindObject(from, rest, last, mode);
    });
}

// Why the host gives no path: one that lies too deep is no matter of a name.
long ErrorOfPath(int hostError) {
    return hostError == ENAMETOOLONG ? ErrorLineTooLong : ErrorFromErrno(hostError, Operation::Lookup);
}

// Splits at the last slash; the parent of "/a" is "/".
std::string_view DrawerOf(std::string_view hostPath) {
    const std::size_t slash = hostPath.rfind('/');
    return hostPath.substr(0, slash == 0 ? 1 : slash);
}

std::string_view LeafOf(std::string_view hostPath) {
    return hostPath.substr(hostPath.rfind('/') + 1);
}

HostFd OpenDrawerOf(const std::string& hostPath) {
    const std::string drawer(DrawerOf(hostPath));
    return HostFd(Host().Openat(AT_FDCWD, drawer.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
}

bool IsRoot(const HostLock& lock, const std::string& hostPath) {
    return hostPath == lock.On->RealRoot;
}

LockRef ParentOf(const HostLockRef& lock, WalkMode& mode) {
    if (IsDrawerMode(lock->Facts.Mode))
        return FindObject(lock, "/", LastLink::Keep, mode);
    HostFd drawer = OpenDrawerOf(HostPathOf(lock->Object.Get()));
    ObjectFacts facts;
    if (!drawer || !FactsOf(drawer.Get(), facts)) {
        SetIoErr(ErrorFromErrno(errno, Operation::Lookup));
        return nullptr;
    }
    return std::make_shared<const HostLock>(lock->On, std::move(drawer), facts, lock->SlowMount);
}

LockRef Parent(const LockRef& lock) {
    const HostLockRef from = AsHostLock(lock);
    if (!IsMounted(*from))
        return nullptr;
    if (IsRoot(*from, HostPathOf(from->Object.Get()))) {
        SetIoErr(0);
        return nullptr;
    }
    return OnHost<LockRef>(from, [from](WalkMode& mode) { return ParentOf(from, mode); });
}

bool Same(const LockBody& a, const LockBody& b) {
    return static_cast<const HostLock&>(a).Facts.Id == static_cast<const HostLock&>(b).Facts.Id;
}

std::string NameOf(const LockBody& body, NameForm form) {
    const auto& lock = static_cast<const HostLock&>(body);
    if (form == NameForm::DeviceOnly)
        return lock.On->Info.Device;
    if (!IsMounted(lock))
        return {};
    const std::string path = HostPathOf(lock.Object.Get());
    if (path.empty()) {
        SetIoErr(ErrorOfPath(errno));
        return {};
    }
    const VolumeRef on = LiesUnder(path, lock.On->RealRoot) ? PresentRecord(lock.On) : VolumeOfHostPath(path);
    const std::string name = form == NameForm::Device ? on->Info.Device : PathNameOf(on);
    return name + ":" + PathBelow(on->RealRoot, path, on->Info.Metadata);
}

bool ExamineNow(const HostLock& lock, ExamineData& object) {
    const std::string path = HostPathOf(lock.Object.Get());
    const int pathError = errno;
    ObjectRecord record;
    const MetadataRule rule = lock.On->Info.Metadata;
    ExamineEntry(lock.Object.Get(), "", DT_UNKNOWN, {.Names = rule}, record);
    if (path.empty() || record.IsGone) {
        SetIoErr(path.empty() ? ErrorOfPath(pathError) : ErrorObjectNotFound);
        return false;
    }
    if (IsRoot(lock, path)) {
        object.Name = PresentRecord(lock.On)->Info.Volume;
    } else {
        ApplySidecar(AT_FDCWD, path, record);
        object.Name = ShownNameAt(std::string(DrawerOf(path)), LeafOf(path), rule);
    }
    FillExamineData(std::move(record), object);
    return true;
}

bool Examine(const LockRef& lock, ExamineData& object) {
    const HostLockRef from = AsHostLock(lock);
    if (!IsMounted(*from))
        return false;
    if (from->SlowMount.empty())
        return ExamineNow(*from, object);
    using Answer = std::optional<ExamineData>;
    Answer answer = AskWithLimit<Answer>(from->SlowMount, [from](Progress&) -> Answer {
        ExamineData data;
        return ExamineNow(*from, data) ? Answer(std::move(data)) : std::nullopt;
    });
    if (answer)
        object = std::move(*answer);
    return answer.has_value();
}

std::string HostNameNow(const HostLock& from, const std::string& rest, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(from, rest, LastLink::Keep, mode, spot))
        return {};
    std::string path = HostPathOf(spot.Object ? spot.Object.Get() : spot.Drawer.Get());
    if (path.empty())
        SetIoErr(ErrorFromErrno(errno, Operation::Lookup));
    else if (!spot.Object)
        path.append(path == "/" ? "" : "/").append(spot.Name);
    return path;
}

std::string HostName(const LockRef& start, std::string_view rest) {
    const HostLockRef from = AsHostLock(start);
    return OnHost<std::string>(
        from, [from, rest = std::string(rest)](WalkMode& mode) { return HostNameNow(*from, rest, mode); });
}

} // namespace

const Handler HostHandler{
    .Name = "host files",
    .Knows = [](std::string_view device) { return FindVolume(device) != nullptr; },
    .Root = Root,
    .RootOf = RootOf,
    .Locate = Locate,
    .Parent = Parent,
    .Same = Same,
    .NameOf = NameOf,
    .Examine = Examine,
    .List = [](const LockRef& lock) { return ListHostDrawer(AsHostLock(lock)); },
    .Open = OpenHostFile,
    .CreateDrawer = CreateHostDrawer,
    .WriteWhole = WriteHostFile,
    .Delete = DeleteHostEntry,
    .Rename = RenameHostEntry,
    .Copy = CopyHostEntry,
    .MakeSoftLink = MakeHostSoftLink,
    .MakeHardLink = MakeHostHardLink,
    .Change = ChangeHostEntry,
    .Info = InfoOfHost,
    .HostName = HostName,
};

} // namespace dos
