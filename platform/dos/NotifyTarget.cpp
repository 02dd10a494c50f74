#include "platform/dos/NotifyTarget.h"

#include "platform/dos/HostLocks.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

std::int64_t Nanoseconds(const struct statx_timestamp& time) {
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

TargetStamp StampNow(const HostLock& lock) {
    struct statx raw {};
    TargetStamp stamp;
    stamp.IsThere = Host().Statx(lock.Object.Get(), "", AT_EMPTY_PATH, STATX_MTIME | STATX_CTIME, &raw) == 0;
    stamp.Id = lock.Facts.Id;
    stamp.Modified = Nanoseconds(raw.stx_mtime);
    stamp.Changed = Nanoseconds(raw.stx_ctime);
    return stamp;
}

TargetStamp StampOf(const HostLockRef& lock) {
    if (lock->SlowMount.empty())
        return StampNow(*lock);
    return AskWithLimit<TargetStamp>(lock->SlowMount, [lock](Progress&) { return StampNow(*lock); });
}

void SplitPath(const std::string& hostPath, NotifyTarget& target) {
    const std::size_t slash = hostPath.rfind('/');
    if (slash == std::string::npos || hostPath.size() == 1)
        return;
    target.DrawerPath = slash == 0 ? "/" : hostPath.substr(0, slash);
    target.Leaf = hostPath.substr(slash + 1);
}

} // namespace

NotifyTarget FindNotifyTarget(const std::string& path) {
    NotifyTarget target;
    const bool requesters = SetRequesters(false);
    if (const FileLock lock = Lock(path); lock && lock.Body()->Owner == &HostHandler) {
        const HostLockRef object = AsHostLock(lock.Body());
        target.Stamp = StampOf(object);
        target.IsDrawer = IsDrawerMode(object->Facts.Mode);
        target.IsSlow = !object->SlowMount.empty();
        target.SelfPath = HostPathOf(object->Object.Get());
        SplitPath(target.SelfPath, target);
    } else if (const auto hostPath = HostPath(path)) {
        SplitPath(*hostPath, target);
    }
    SetRequesters(requesters);
    return target;
}

} // namespace dos
