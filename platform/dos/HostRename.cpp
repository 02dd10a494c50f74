#include "platform/dos/HostChanges.h"
#include "platform/dos/HostCopy.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/MetadataWriting.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"
#include "platform/utility/Text.h"

#include <cerrno>
#include <sys/stat.h>

namespace dos {

namespace {

enum class Aim { Refused, Nothing, Move };

bool Fails(long error) {
    SetIoErr(error);
    return false;
}

// The last name of a path as it was typed; empty for a path that ends in a step up.
std::string_view LastNameOf(std::string_view rest) {
    if (rest.ends_with('/'))
        rest.remove_suffix(1);
    return rest.substr(rest.rfind('/') + 1);
}

bool IsSameObject(const HostFd& a, const HostFd& b) {
    ObjectFacts one;
    ObjectFacts other;
    return a && b && FactsOf(a.Get(), one) && FactsOf(b.Get(), other) && one.Id == other.Id;
}

bool IsFolding(const Spot& spot) {
    return spot.On->Info.Names == NameRule::Fold;
}

bool IsSameName(const Spot& where, std::string_view a, std::string_view b) {
    return IsFolding(where) ? utility::Stricmp(a, b) == 0 : a == b;
}

// The object has the new name already: a change of case, nothing to do, or another's name.
Aim AimAtExisting(const Spot& source, const Spot& target, std::string_view typed, std::string& name) {
    const bool isItself =
        IsSameObject(source.Object, target.Object) && IsSameObject(source.Drawer, target.Drawer);
    if (isItself && target.Name == source.Name) {
        const std::string own = OwnNameOf(source.On->Info.Metadata, source.Name);
        name = HostNameFor(target.On->Info.Metadata, typed);
        const bool changesCase = typed != own && utility::Stricmp(typed, own) == 0;
        return changesCase ? Aim::Move : Aim::Nothing;
    }
    // Two spellings of one entry on a disk that folds by itself, or two links: the rename tells.
    if (isItself && utility::Stricmp(target.Name, source.Name) == 0) {
        name = target.Name;
        return Aim::Move;
    }
    SetIoErr(ErrorObjectExists);
    return Aim::Refused;
}

// Where the entry is to go: name is what it will be called in the drawer of target.
Aim FindAim(const Spot& source, const Spot& target, std::string_view typed, std::string& name) {
    if (target.Object)
        return AimAtExisting(source, target, typed, name);
    name = target.Name;
    const MetadataRule rule = source.On->Info.Metadata;
    const std::string own = OwnNameOf(rule, source.Name);
    const std::string shown = ShownName(source.Drawer.Get(), source.Name, rule);
    if (shown == own || !IsSameName(target, typed, shown))
        return Aim::Move;
    // An object that is asked for under its alias keeps its own name.
    if (!OpenMeant(target.Drawer.Get(), target.On->Info, own, name))
        return Aim::Move;
    SetIoErr(ErrorObjectExists);
    return Aim::Refused;
}

// False with errno where the host does not tell.
bool IsIntoItself(const Spot& source, const Spot& target, bool& isWithin) {
    isWithin = false;
    return !IsDrawerMode(source.Facts.Mode) || LiesWithin(target.Drawer.Get(), source.Facts.Id, isWithin);
}

bool MoveSidecar(const Spot& source, const Spot& target, const std::string& name) {
    const std::string from = SidecarNameOf(source.Name);
    const std::string to = SidecarNameOf(name);
    return RenameEntry(source.Drawer.Get(), from, target.Drawer.Get(), to, S_IFREG);
}

bool Move(const Spot& source, const Spot& target, const std::string& name) {
    SidecarFile sidecar;
    const int from = source.Drawer.Get();
    const int to = target.Drawer.Get();
    if (!FindSidecar(from, source.Name, sidecar))
        return Refuse(errno, Operation::Rename);
    if (!RenameEntry(from, source.Name, to, name, source.Facts.Mode))
        return Refuse(errno, Operation::Rename);
    if (sidecar.State != SidecarState::Ours || MoveSidecar(source, target, name))
        return true;
    const int error = errno;
    // The two belong together; the old name is still free.
    if (!RenameEntry(to, name, from, source.Name, source.Facts.Mode))
        static_cast<void>(RenameEntry(to, name, from, source.Name, source.Facts.Mode));
    return Refuse(error, Operation::Rename);
}

bool RenameNow(const HostLock& from, const std::string& rest, const HostLock& to, const std::string& toRest,
               WalkMode& mode) {
    Spot source;
    Spot target;
    if (!FindEntry(from, rest, LastLink::Keep, mode, source) ||
        !FindSpot(to, toRest, LastLink::Keep, mode, target))
        return false;
    if (target.Object && !target.Drawer && !CompleteSpot(target))
        return Refuse(errno == EBUSY ? EEXIST : errno, Operation::Rename);
    std::string name;
    switch (FindAim(source, target, LastNameOf(toRest), name)) {
    case Aim::Refused:
        return false;
    case Aim::Nothing:
        return true;
    case Aim::Move:
        break;
    }
    bool isWithin = false;
    if (!IsIntoItself(source, target, isWithin))
        return Refuse(errno, Operation::Rename);
    if (isWithin)
        return Fails(ErrorObjectInUse);
    return mode.Commit() ? Move(source, target, name) : Refuse(ENOMEDIUM, Operation::Rename);
}

} // namespace

bool RenameHostEntry(const LockRef& start, std::string_view rest, const LockRef& toStart,
                     std::string_view toRest) {
    const HostLockRef from = AsHostLock(start);
    const HostLockRef to = AsHostLock(toStart);
    // Whichever end may not answer has the limit.
    const HostLockRef& slower = to->SlowMount.empty() ? from : to;
    return IsMounted(*from) && IsMounted(*to) &&
           OnHost<bool>(slower, [from, rest = std::string(rest), to, toRest = std::string(toRest)](
                                    WalkMode& mode) { return RenameNow(*from, rest, *to, toRest, mode); });
}

} // namespace dos
