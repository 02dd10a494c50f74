// Locks on objects of the host and the walk that finds them. Private to platform/dos.
#pragma once

#include "platform/dos/Handler.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace dos {

struct HostLock final : LockBody {
    HostLock(VolumeRef on, HostFd object, const ObjectFacts& facts, std::string slowMount)
        : LockBody(HostHandler),
          On(std::move(on)),
          Object(std::move(object)),
          Facts(facts),
          SlowMount(std::move(slowMount)),
          MadeUnder(KnownMounts()) {}

    VolumeRef On;          // on which volume it was found
    HostFd Object;         // O_PATH
    ObjectFacts Facts;     // as they were when the lock was made; the file type never changes
    std::string SlowMount; // not empty: questions about it are asked with a limit
    MountRows MadeUnder;   // what was mounted then; may be null
};
using HostLockRef = std::shared_ptr<const HostLock>;

// Whether a walk may enter file systems that may not answer, and whether it has come upon one.
struct WalkMode {
    bool MayWait = false;      // the walk runs where it may hang
    std::string WantsLimit{};  // the slow mount before which it stopped
    Progress* Asked = nullptr; // of the question that it belongs to

    // To be asked before anything is changed; on no, the deed fails.
    [[nodiscard]] bool Commit() const noexcept { return !Asked || Asked->Commit(); }
};

// An object found, or the place where one of that name could be made.
struct Spot {
    HostFd Drawer;     // O_PATH, in which Name lies; empty for the place where the walk began
    std::string Name;  // as the host has it
    HostFd Object;     // O_PATH; empty when nothing of that name is there
    ObjectFacts Facts; // of the object
    VolumeRef On;
    std::string SlowMount;
};

// Finds what the path leads to. False with IoErr; a missing last name is no failure, its Spot has
// no Object.
[[nodiscard]] bool FindSpot(const HostLock& start, std::string_view rest, LastLink last, WalkMode& mode,
                            Spot& spot);

// Finds what is there, in one step where no link, alias or other disk lies on the way. Null with
// IoErr.
[[nodiscard]] HostLockRef FindObject(const HostLockRef& start, std::string_view rest, LastLink last,
                                     WalkMode& mode);

// The lock of a root on the host's own disk, which cannot be taken away, is kept for the next caller.
[[nodiscard]] HostLockRef RootLock(const VolumeRef& volume);
// Lets go of the roots that are kept.
void ForgetRoots();

// Is the disk of the lock still mounted? The host lets an object be used on when its disk was taken
// away under it; here that is 218 in IoErr, before anything is done with it. Asks no file system.
[[nodiscard]] bool IsMounted(const HostLock& lock);

[[nodiscard]] inline HostLockRef AsHostLock(const LockRef& lock) {
    return std::static_pointer_cast<const HostLock>(lock);
}

// Runs a deed that walks from start: at once on disks that answer, with a limit on those that may
// not. The deed owns what it uses, since it can be left behind hanging.
template <typename Result>
[[nodiscard]] Result OnHost(const HostLockRef& start, std::function<Result(WalkMode&)> deed) {
    if (!IsMounted(*start))
        return Result{};
    WalkMode mode;
    mode.WantsLimit = start->SlowMount;
    if (mode.WantsLimit.empty()) {
        Result result = deed(mode);
        if (mode.WantsLimit.empty())
            return result;
    }
    return AskWithLimit<Result>(mode.WantsLimit, [deed = std::move(deed)](Progress& progress) {
        WalkMode patient{.MayWait = true, .WantsLimit = {}, .Asked = &progress};
        return deed(patient);
    });
}

} // namespace dos
