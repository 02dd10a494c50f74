#include "platform/dos/HostCopy.h"

#include "platform/dos/HostChanges.h"
#include "platform/dos/HostDirectory.h"
#include "platform/dos/HostFiles.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/dos/ObjectCopier.h"
#include "platform/dos/Relay.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/utility/Text.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

namespace dos {

namespace {

bool Fails(long error) {
    SetIoErr(error);
    return false;
}

bool FindSource(const HostLock& from, std::string_view rest, LastLink last, WalkMode& mode, Spot& source) {
    if (!FindSpot(from, rest, last, mode, source))
        return false;
    if (!source.Object)
        return Refuse(ENOENT, Operation::Lookup);
    if (!CompleteSpot(source)) {
        if (errno != EBUSY)
            return Refuse(errno, Operation::Lookup);
        source.Drawer = HostFd(); // a root: nothing lies beside it
    }
    const unsigned type = source.Facts.Mode;
    return IsFileMode(type) || IsDrawerMode(type) || IsLinkMode(type) || Fails(ErrorObjectWrongType);
}

// An object whose real name does not fit keeps it where the copy is asked for under its alias.
bool TakeRealName(const Spot& source, Spot& target) {
    if (!source.Drawer)
        return true;
    const MetadataRule rule = source.On->Info.Metadata;
    const std::string own = OwnNameOf(rule, source.Name);
    const std::string alias = ShownName(source.Drawer.Get(), source.Name, rule);
    const std::string asked = OwnNameOf(target.On->Info.Metadata, target.Name);
    const bool folds = target.On->Info.Names == NameRule::Fold;
    if (alias == own || (folds ? utility::Stricmp(alias, asked) != 0 : alias != asked))
        return true;
    target.Object = OpenMeant(target.Drawer.Get(), target.On->Info, own, target.Name);
    if (target.Object)
        return FactsOf(target.Object.Get(), target.Facts);
    return errno == ENOENT;
}

bool FindTarget(const HostLock& to, std::string_view rest, const Spot& source, WalkMode& mode, Spot& target) {
    const LastLink last = IsFileMode(source.Facts.Mode) ? LastLink::Follow : LastLink::Keep;
    if (!FindSpot(to, rest, last, mode, target))
        return false;
    if (!target.Object && !TakeRealName(source, target))
        return Refuse(errno, Operation::Write);
    if (target.Object && !target.Drawer && !CompleteSpot(target) && errno != EBUSY)
        return Refuse(errno, Operation::Write);
    return true;
}

// What is there already, and whether it may go.
bool MayTakePlace(CopyPlan& plan, const CopyOptions& options, DrawerThere rule) {
    const unsigned from = plan.Source.Facts.Mode;
    const unsigned there = plan.Target.Facts.Mode;
    plan.IsMerge = IsDrawerMode(from) && IsDrawerMode(there) && rule == DrawerThere::Merged;
    if (plan.IsMerge)
        return true;
    if (!options.Replaces || (IsDrawerMode(from) && IsDrawerMode(there)))
        return Fails(ErrorObjectExists);
    if (IsDrawerMode(from) || IsDrawerMode(there))
        return Fails(ErrorObjectWrongType);
    return IsLinkMode(there) || IsReplaceable(plan.Target);
}

// Found before anything is touched: the same object, or a drawer into itself.
bool IsApart(const CopyPlan& plan) {
    const ObjectId& source = plan.Source.Facts.Id;
    bool isWithin = plan.Target.Object && plan.Target.Facts.Id == source;
    if (!isWithin && IsDrawerMode(plan.Source.Facts.Mode)) {
        const HostFd& from = plan.Target.Drawer ? plan.Target.Drawer : plan.Target.Object;
        if (!LiesWithin(from.Get(), source, isWithin))
            return Refuse(errno, Operation::Lookup);
    }
    return !isWithin || Fails(ErrorObjectInUse);
}

CopyPlace PlaceOf(const Spot& target) {
    CopyPlace place;
    place.Drawer = target.Drawer.Get();
    place.On = target.On;
    place.Name = target.Name;
    place.Old = target.Object ? target.Object.Get() : NoDescriptor;
    place.HandsDownAccess = HandsDownAccess(place.Drawer);
    return place;
}

CopySource SourceOf(const Spot& spot, int object, const SidecarFile& sidecar) {
    return {.Object = object,
            .Drawer = spot.Drawer ? spot.Drawer.Get() : NoDescriptor,
            .On = spot.On,
            .Name = spot.Name,
            .MayHaveSidecar = sidecar.State != SidecarState::None};
}

// Opens what is to be copied, if its bits let us; empty with IoErr.
HostFd OpenSource(const Spot& spot, SidecarFile& sidecar) {
    if (spot.Drawer && IsFileMode(spot.Facts.Mode) && !LetsRead(spot.Drawer.Get(), spot.Name, sidecar))
        return HostFd();
    HostFd open = IsLinkMode(spot.Facts.Mode) ? DuplicateFd(spot.Object) : OpenObject(spot);
    if (!open)
        Refuse(errno, Operation::Read);
    return open;
}

// Has the object that was planned with still its name? False with IoErr, otherwise for another one.
bool IsStillThere(const Spot& spot, long otherwise) {
    const HostFd now(Host().Openat(spot.Drawer.Get(), spot.Name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    ObjectFacts facts;
    if (!now || !FactsOf(now.Get(), facts))
        return Refuse(errno, Operation::Rename);
    return facts.Id == spot.Facts.Id || Fails(otherwise);
}

// Brings the sidecars after their file: that of the source, or none.
bool FollowFile(const Spot& source, const SidecarFile& ofSource, const Spot& target,
                const SidecarFile& ofTarget) {
    const int from = source.Drawer.Get();
    const int to = target.Drawer.Get();
    const std::string old = SidecarNameOf(source.Name);
    const std::string name = SidecarNameOf(target.Name);
    if (ofSource.State != SidecarState::Ours && ofTarget.State != SidecarState::Ours)
        return true;
    if (ofTarget.State == SidecarState::Foreign || !IsAwaited())
        return false;
    const OwnChange out(from);
    const OwnChange in(to);
    if (ofSource.State == SidecarState::Ours) {
        if (Host().Renameat2(from, old.c_str(), to, name.c_str(), 0) != 0)
            return false;
        EndMove(out, old, in, name);
    } else {
        if (Host().Unlinkat(to, name.c_str(), 0) != 0)
            return false;
        in.End(name, {});
    }
    return true;
}

// Moves a file over another in one step; the sidecars follow. Nothing where disks do not let us.
std::optional<CopyResult> MoveOver(const Spot& source, const Spot& target, const CopyProgress& progress) {
    SidecarFile ofSource;
    SidecarFile ofTarget;
    const int from = source.Drawer.Get();
    const int to = target.Drawer.Get();
    if (!FindSidecar(from, source.Name, ofSource) || !FindSidecar(to, target.Name, ofTarget))
        return {};
    if (!IsStillThere(source, ErrorObjectNotFound))
        return CopyResult{CopyEnd::SourceRefused, 0};
    if (!IsStillThere(target, ErrorObjectInUse))
        return CopyResult{CopyEnd::TargetRefused, 0};
    const OwnChange out(from);
    const OwnChange in(to);
    if (progress && !progress(0)) { // the disk may have taken long to answer
        SetIoErr(ErrorBreak);
        return CopyResult{CopyEnd::Cancelled, 0};
    }
    if (Host().Renameat2(from, source.Name.c_str(), to, target.Name.c_str(), 0) != 0)
        return {};
    EndMove(out, source.Name, in, target.Name);
    const bool follows = FollowFile(source, ofSource, target, ofTarget);
    return CopyResult{CopyEnd::Done, follows ? 0 : LostProtection | LostComment | LostDate};
}

bool IsUnchanged(int file, const struct statx& before) {
    struct statx now {};
    return Host().Statx(file, "", AT_EMPTY_PATH, STATX_BASIC_STATS, &now) == 0 &&
           now.stx_size == before.stx_size && now.stx_mtime.tv_sec == before.stx_mtime.tv_sec &&
           now.stx_mtime.tv_nsec == before.stx_mtime.tv_nsec;
}

CopyResult CopyDrawer(ObjectCopier& copier, const CopySource& source, const CopyPlace& place) {
    HostFd made;
    CopyResult result = copier.MakeDrawer(place, made);
    if (!result)
        return result;
    const unsigned lost = copier.FinishDrawer(source, made.Get());
    result.Lost = copier.KeepSidecar(source, place, made.Get()).After(lost);
    return result;
}

CopyResult CopyPlanned(const CopyPlan& plan, const CopyOptions& options, const CopyProgress& progress) {
    const Spot& from = plan.Source;
    // What is renamed keeps all of its own.
    const bool keepsAll = options.Protection && options.Comment && options.Date;
    if (options.Moves && plan.Target.Object && keepsAll)
        if (const auto moved = MoveOver(from, plan.Target, progress))
            return *moved;
    SidecarFile sidecar;
    sidecar.State = SidecarState::Ours; // until it is looked for
    const HostFd open = OpenSource(from, sidecar);
    struct statx before {};
    if (!open)
        return {CopyEnd::SourceRefused, 0};
    if (Host().Statx(open.Get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &before) != 0) {
        Refuse(errno, Operation::Read);
        return {CopyEnd::SourceRefused, 0};
    }
    ObjectCopier copier(options, progress);
    const CopySource source = SourceOf(from, open.Get(), sidecar);
    const CopyPlace place = PlaceOf(plan.Target);
    CopyResult result = IsLinkMode(from.Facts.Mode)     ? copier.CopyLink(source, place)
                        : IsDrawerMode(from.Facts.Mode) ? CopyDrawer(copier, source, place)
                                                        : copier.CopyFile(source, place);
    if (result && options.Moves && !IsUnchanged(open.Get(), before)) {
        SetIoErr(ErrorObjectInUse);
        result.End = CopyEnd::SourceKept;
    }
    return result;
}

struct Answer {
    CopyResult Result{};
    long Error = 0;
};

// On a disk that may not answer the work has a thread of its own, so that a cancel is heard.
CopyResult CopyRelayed(const std::shared_ptr<CopyPlan>& plan, const CopyOptions& options,
                       const CopyProgress& progress) {
    auto answer = std::make_shared<Answer>();
    const CopyProgress* told = progress ? &progress : nullptr;
    const auto work = [plan, options, answer, told](Relay& relay) {
        const CopyProgress tell = [told, &relay](std::uint64_t bytes) {
            const bool isHeard = !told || bytes == 0 || relay.Ask([&] {
                if (!(*told)(bytes))
                    relay.EndSoon();
            });
            return isHeard && relay.GoesOn();
        };
        answer->Result = CopyPlanned(*plan, options, tell);
        answer->Error = IoErr();
    };
    switch (Relay::Run(work, [&] { return !progress || progress(0); })) {
    case RelayEnd::Done:
        SetIoErr(answer->Error);
        return answer->Result;
    case RelayEnd::Cancelled:
        SetIoErr(ErrorBreak);
        return {CopyEnd::Cancelled, 0};
    case RelayEnd::NoAnswer:
        SetIoErr(ErrorNoDisk);
        return {CopyEnd::ContentsFailed, 0};
    case RelayEnd::NotBegun:
        break;
    }
    return {CopyEnd::SourceRefused, 0};
}

} // namespace

bool LiesWithin(int drawer, const ObjectId& object, bool& isWithin) {
    isWithin = false;
    HostFd here(Host().Openat(drawer, ".", O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    ObjectFacts facts;
    ObjectId last;
    while (here && FactsOf(here.Get(), facts)) {
        isWithin = facts.Id == object;
        if (isWithin || facts.Id == last) // the parent of the host's root is the root
            return true;
        last = facts.Id;
        here = HostFd(Host().Openat(here.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
    }
    return false;
}

HostFd OpenObject(const Spot& spot) {
    if (IsDrawerMode(spot.Facts.Mode))
        return OpenForListing(spot.Object.Get());
    return HostFd(Host().Openat(AT_FDCWD, DescriptorPath(spot.Object.Get()).c_str(),
                                O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0));
}

CopyPlan PlanCopy(const HostLock& from, std::string_view rest, const HostLock& to, std::string_view toRest,
                  const CopyOptions& options, DrawerThere rule, WalkMode& mode) {
    CopyPlan plan;
    const LastLink last = options.FollowsLink ? LastLink::Follow : LastLink::Keep;
    if (!FindSource(from, rest, last, mode, plan.Source))
        return plan;
    plan.End = CopyEnd::TargetRefused;
    if (options.Moves && (IsDrawerMode(plan.Source.Facts.Mode) || !plan.Source.Drawer)) {
        SetIoErr(ErrorRenameAcrossDevices);
        return plan;
    }
    if (!FindTarget(to, toRest, plan.Source, mode, plan.Target) || !IsApart(plan) ||
        (plan.Target.Object && !MayTakePlace(plan, options, rule)))
        return plan;
    if (mode.Commit())
        plan.End = CopyEnd::Done;
    else
        Refuse(ENOMEDIUM, Operation::Write);
    return plan;
}

CopyResult CopyHostEntry(const LockRef& start, std::string_view rest, const LockRef& toStart,
                         std::string_view toRest, const CopyOptions& options, const CopyProgress& progress) {
    const HostLockRef from = AsHostLock(start);
    const HostLockRef to = AsHostLock(toStart);
    if (!IsMounted(*from) || !IsMounted(*to))
        return {CopyEnd::SourceRefused, 0};
    using PlanRef = std::shared_ptr<CopyPlan>;
    const PlanRef plan = OnHost<PlanRef>(
        to->SlowMount.empty() ? from : to,
        [from, rest = std::string(rest), to, toRest = std::string(toRest), options](WalkMode& mode) {
            return std::make_shared<CopyPlan>(
                PlanCopy(*from, rest, *to, toRest, options, DrawerThere::Refused, mode));
        });
    if (!plan || plan->End != CopyEnd::Done)
        return {plan ? plan->End : CopyEnd::SourceRefused, 0};
    const bool mayHang = !plan->Source.SlowMount.empty() || !plan->Target.SlowMount.empty();
    CopyResult result =
        mayHang ? CopyRelayed(plan, options, progress) : CopyPlanned(*plan, options, progress);
    // What was moved by one step is no longer there; the old name can lead to another object by now.
    if (result && options.Moves && !DeleteHostObject(start, rest, plan->Source.Facts.Id) &&
        IoErr() != ErrorObjectNotFound)
        result.End = CopyEnd::SourceKept;
    return result;
}

} // namespace dos
