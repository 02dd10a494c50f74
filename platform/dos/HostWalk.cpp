#include "platform/dos/HostLocks.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/NameIndex.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
#include <mutex>
#include <vector>

namespace dos {

namespace {

constexpr int MostLinks = 40; // soft links on one way before it counts as a circle

enum class StepKind {
    Name,     // a name of an AmigaDOS path: may be folded or an alias
    Parent,   // an extra "/" of such a path: not above the root of a volume
    HostName, // a name in the text of a soft link
    HostParent,
};

struct Step {
    StepKind Kind;
    std::string Name;
};

bool Fail(int hostError) {
    errno = hostError;
    SetIoErr(ErrorFromErrno(hostError, Operation::Lookup));
    return false;
}

// Neither exists as a name on an Amiga; on the host both would lead astray.
bool IsDots(std::string_view name) {
    return name == "." || name == "..";
}

// A second colon is no part of a name, and the host would take a NUL for the end of the path.
bool HasForbidden(std::string_view rest) {
    return rest.find_first_of(std::string_view(":\0", 2)) != std::string_view::npos;
}

// Takes an AmigaDOS path without a device apart; each extra "/" is a step up.
std::vector<Step> StepsOf(std::string_view rest) {
    std::vector<Step> steps;
    while (!rest.empty()) {
        if (rest.front() == '/') {
            steps.push_back({StepKind::Parent, {}});
            rest.remove_prefix(1);
            continue;
        }
        const std::size_t end = std::min(rest.find('/'), rest.size());
        steps.push_back({StepKind::Name, std::string(rest.substr(0, end))});
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return steps;
}

std::vector<Step> StepsOfLink(std::string_view target) {
    std::vector<Step> steps;
    while (!target.empty()) {
        const std::size_t end = std::min(target.find('/'), target.size());
        const std::string_view name = target.substr(0, end);
        if (name == "..")
            steps.push_back({StepKind::HostParent, {}});
        else if (!name.empty() && name != ".")
            steps.push_back({StepKind::HostName, std::string(name)});
        target.remove_prefix(std::min(end + 1, target.size()));
    }
    return steps;
}

// Can the whole path be handed to the host as it stands?
bool IsPlainPath(std::string_view rest) {
    if (rest.empty() || rest.front() == '/' || rest.size() >= PATH_MAX ||
        rest.find("//") != std::string_view::npos)
        return false;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        if (IsDots(rest.substr(0, end)))
            return false;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return true;
}

// Does the host call the objects on the way as the path does?
bool IsOfHostNames(std::string_view rest, MetadataRule rule) {
    while (rule == MetadataRule::Uaem && !rest.empty()) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        if (NeedsEscape(rest.substr(0, end)))
            return false;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return true;
}

std::string ParentOfHostPath(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

// One walk, step by step. Where it stands is an object (Here) and the drawer in which that was
// found (Above).
class Walker {
public:
    Walker(const HostLock& start, WalkMode& mode)
        : Here(DuplicateFd(start.Object)),
          Facts(start.Facts),
          On(start.On),
          SlowMount(start.SlowMount),
          Mode(mode) {}

    bool Run(std::string_view rest, LastLink last);
    void Deliver(Spot& spot);

private:
    bool Take(const Step& step);
    bool TakeName(const Step& step);
    bool TakeLink(HostFd link);
    bool TakeParent();
    bool TakeHostParent();
    bool Enter(HostFd next, const ObjectFacts& facts, std::string name);
    HostFd OpenName(const std::string& name);
    HostFd OpenAcross(const std::string& name, const std::string& hostPath);
    const VolumeRef& CurrentVolume();
    [[nodiscard]] VolumeRef VolumeHere() const;

    HostFd Here;  // empty when the last name is missing
    HostFd Above; // empty where the walk began
    std::string Name;
    ObjectFacts Facts;
    VolumeRef On;
    bool HasJumped = false; // a link led on, so On is to be found anew
    std::string SlowMount;
    WalkMode& Mode;
    LastLink Last = LastLink::Follow;
    int Links = 0;
    std::vector<Step> Pending; // the next step is the last of it
};

bool Walker::Run(std::string_view rest, LastLink last) {
    Last = last;
    if (!Here)
        return Fail(errno);
    if (HasForbidden(rest)) {
        SetIoErr(ErrorInvalidComponentName);
        return false;
    }
    Pending = StepsOf(rest);
    std::reverse(Pending.begin(), Pending.end());
    while (!Pending.empty()) {
        const Step step = std::move(Pending.back());
        Pending.pop_back();
        if (!Take(step))
            return false;
    }
    return true;
}

void Walker::Deliver(Spot& spot) {
    if (HasJumped) {
        const std::string path = HostPathOf(Here ? Here.Get() : Above.Get());
        On = VolumeOfHostPath(path);
    }
    spot.Drawer = std::move(Above);
    spot.Name = std::move(Name);
    spot.Object = std::move(Here);
    spot.Facts = Facts;
    spot.On = std::move(On);
    spot.SlowMount = std::move(SlowMount);
}

bool Walker::Take(const Step& step) {
    switch (step.Kind) {
    case StepKind::Parent:
        return TakeParent();
    case StepKind::HostParent:
        return TakeHostParent();
    case StepKind::Name:
        return IsDots(step.Name) ? Fail(ENOENT) : TakeName(step);
    case StepKind::HostName:
        return TakeName(step);
    }
    return false;
}

bool Walker::Enter(HostFd next, const ObjectFacts& facts, std::string name) {
    Above = std::move(Here);
    Here = std::move(next);
    Facts = facts;
    Name = std::move(name);
    return true;
}

bool Walker::TakeName(const Step& step) {
    if (!IsDrawerMode(Facts.Mode))
        return Fail(ENOTDIR);
    std::string name = step.Name;
    HostFd next;
    if (step.Kind == StepKind::Name)
        next = OpenMeant(Here.Get(), VolumeHere()->Info, step.Name, name,
                         [this](const std::string& as) { return OpenName(as); });
    else
        next = OpenName(name);
    ObjectFacts facts;
    if (!next && errno == ENOENT && Pending.empty())
        return Enter(HostFd(), facts, std::move(name));
    if (!next || !FactsOf(next.Get(), facts))
        return Fail(errno);
    if (IsLinkMode(facts.Mode) && (!Pending.empty() || Last == LastLink::Follow))
        return TakeLink(std::move(next));
    return Enter(std::move(next), facts, std::move(name));
}

bool Walker::TakeLink(HostFd link) {
    if (++Links > MostLinks)
        return Fail(ELOOP);
    const std::string target = ReadLinkText(link.Get(), "");
    if (target.empty())
        return Fail(errno ? errno : ENOENT);
    if (target.front() == '/') {
        Here = HostFd(Host().Openat(AT_FDCWD, "/", O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
        if (!Here || !FactsOf(Here.Get(), Facts))
            return Fail(errno);
        Above = HostFd();
        Name.clear();
        SlowMount.clear();
        HasJumped = true;
    }
    std::vector<Step> steps = StepsOfLink(target);
    Pending.insert(Pending.end(), std::make_move_iterator(steps.rbegin()),
                   std::make_move_iterator(steps.rend()));
    return true;
}

const VolumeRef& Walker::CurrentVolume() {
    if (HasJumped)
        On = VolumeOfHostPath(HostPathOf(Here.Get()));
    HasJumped = false;
    return On;
}

// The way may lead on into another one, so nothing is settled by it.
VolumeRef Walker::VolumeHere() const {
    return HasJumped ? VolumeOfHostPath(HostPathOf(Here.Get())) : On;
}

bool Walker::TakeParent() {
    if (!IsDrawerMode(Facts.Mode)) { // "file//" is the drawer that holds the file
        if (!Above)
            return Fail(ENOTDIR);
        Here = std::move(Above);
        Above = HostFd();
        return FactsOf(Here.Get(), Facts) || Fail(errno);
    }
    if (HostPathOf(Here.Get()) == CurrentVolume()->RealRoot)
        return Fail(ENOENT);
    return TakeHostParent();
}

bool Walker::TakeHostParent() {
    HostFd up(Host().Openat2(Here.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC,
                             RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV));
    if (!up && (errno == EXDEV || errno == ENOSYS || errno == EPERM)) {
        const std::string path = HostPathOf(Here.Get());
        if (path.empty())
            return Fail(errno);
        HasJumped = HasJumped || path == On->RealRoot;
        up = OpenAcross("..", ParentOfHostPath(path));
    } else if (up && HostPathOf(Here.Get()) == On->RealRoot) {
        HasJumped = true;
    }
    if (!up || !FactsOf(up.Get(), Facts))
        return Fail(errno);
    Here = std::move(up);
    Above = HostFd();
    Name.clear();
    return true;
}

// Opens what lies on another disk, after a look at the list of mounts whether that may hang.
HostFd Walker::OpenAcross(const std::string& name, const std::string& hostPath) {
    const MountRows rows = Mounts();
    const MountRow* row = MountOf(*rows, hostPath);
    const bool slow = row && row->Slow;
    if (slow && !Mode.MayWait) {
        Mode.WantsLimit = row->Point;
        errno = EAGAIN;
        return HostFd();
    }
    SlowMount = slow ? row->Point : std::string();
    return HostFd(Host().Openat(Here.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
}

HostFd Walker::OpenName(const std::string& name) {
    HostFd next(Host().Openat2(Here.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC,
                               RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV));
    if (next || (errno != EXDEV && errno != ENOSYS && errno != EPERM))
        return next;
    const std::string path = HostPathOf(Here.Get());
    return path.empty() ? HostFd() : OpenAcross(name, path + (path == "/" ? "" : "/") + name);
}

HostLockRef MakeLock(VolumeRef on, HostFd object, const ObjectFacts& facts, std::string slow) {
    return std::make_shared<const HostLock>(std::move(on), std::move(object), facts, std::move(slow));
}

// Do all disks on the way answer? A way without links is as its text says.
bool AnswersAllTheWay(const HostLock& start, const std::string& rest) {
    const std::string from = HostPathOf(start.Object.Get());
    if (from.empty() || !start.SlowMount.empty())
        return false;
    const std::string path = (from == "/" ? "" : from) + "/" + rest;
    const MountRows rows = Mounts();
    return std::ranges::none_of(*rows,
                                [&](const MountRow& row) { return row.Slow && LiesUnder(path, row.Point); });
}

// The whole path in one call; nothing when that cannot give the answer.
HostLockRef FindAtOnce(const HostLock& start, const std::string& rest, LastLink last) {
    const int flags = O_PATH | O_CLOEXEC | (last == LastLink::Keep ? O_NOFOLLOW : 0);
    const auto open = [&](std::uint64_t rules) {
        return HostFd(Host().Openat2(start.Object.Get(), rest.c_str(), flags,
                                     RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS | rules));
    };
    HostFd object = open(RESOLVE_NO_XDEV);
    if (!object && errno == EXDEV && AnswersAllTheWay(start, rest))
        object = open(0);
    ObjectFacts facts;
    if (!object || !FactsOf(object.Get(), facts))
        return nullptr;
    return MakeLock(start.On, std::move(object), facts, start.SlowMount);
}

// Locks of roots that were asked for lately.
struct RootLocks {
    std::mutex Guard;
    std::vector<HostLockRef> Kept;
};

RootLocks& Roots() {
    static RootLocks roots;
    return roots;
}

constexpr std::size_t MostRoots = 8;

// Null when the root is not kept or when its path leads to something else by now.
HostLockRef KeptRoot(const VolumeRef& volume) {
    HostLockRef known;
    {
        const std::lock_guard hold(Roots().Guard);
        const auto place = std::ranges::find(Roots().Kept, volume, &HostLock::On);
        if (place != Roots().Kept.end())
            known = *place;
    }
    ObjectFacts now;
    const bool isOld = known && known->MadeUnder != KnownMounts();
    const std::string& path = volume->RealRoot;
    if (!known || (!isOld && (path == "/" || (FactsAt(path, now) && now.Id == known->Facts.Id))))
        return known;
    const std::lock_guard hold(Roots().Guard);
    std::erase(Roots().Kept, known);
    return nullptr;
}

// Only of the disk on which the host itself runs: another one could not be taken out any more.
void KeepRoot(const HostLockRef& lock) {
    const MountRow* row = lock->MadeUnder ? MountOf(*lock->MadeUnder, lock->On->RealRoot) : nullptr;
    if (!row || row->Point != "/" || !lock->SlowMount.empty())
        return;
    const std::lock_guard hold(Roots().Guard);
    if (Roots().Kept.size() == MostRoots)
        Roots().Kept.erase(Roots().Kept.begin());
    Roots().Kept.push_back(lock);
}

} // namespace

bool FindSpot(const HostLock& start, std::string_view rest, LastLink last, WalkMode& mode, Spot& spot) {
    Walker walker(start, mode);
    if (!walker.Run(rest, last))
        return false;
    walker.Deliver(spot);
    return true;
}

namespace {

HostLockRef FindByWalk(const HostLock& start, std::string_view rest, LastLink last, WalkMode& mode) {
    Spot spot;
    if (!FindSpot(start, rest, last, mode, spot))
        return nullptr;
    if (!spot.Object) {
        Fail(ENOENT);
        return nullptr;
    }
    return MakeLock(std::move(spot.On), std::move(spot.Object), spot.Facts, std::move(spot.SlowMount));
}

// For one name that the drawer does not hold as it stands.
HostLockRef FindFoldedAtOnce(const HostLockRef& start, const std::string& name, LastLink last,
                             WalkMode& mode) {
    const auto real = FindRealName(start->Object.Get(), name, NameMatch::Folded, start->On->Info.Metadata);
    if (!real) {
        Fail(ENOENT);
        return nullptr;
    }
    HostLockRef lock = FindAtOnce(*start, *real, last);
    return lock ? lock : FindByWalk(*start, name, last, mode);
}

} // namespace

HostLockRef FindObject(const HostLockRef& start, std::string_view rest, LastLink last, WalkMode& mode) {
    if (rest.empty())
        return start;
    if (IsPlainPath(rest) && !HasForbidden(rest) && IsOfHostNames(rest, start->On->Info.Metadata)) {
        const std::string path(rest.substr(0, rest.size() - (rest.ends_with('/') ? 1 : 0)));
        if (HostLockRef lock = FindAtOnce(*start, path, last))
            return lock;
        if (errno == ENOENT && start->On->Info.Names == NameRule::Fold && path.find('/') == path.npos)
            return FindFoldedAtOnce(start, path, last, mode);
        // On an exact volume only an alias could still lead on, and each has a "~".
        if (errno == ENOENT && start->On->Info.Names == NameRule::Exact &&
            rest.find('~') == std::string_view::npos) {
            Fail(ENOENT);
            return nullptr;
        }
    }
    return FindByWalk(*start, rest, last, mode);
}

bool IsMounted(const HostLock& lock) {
    const MountRows rows = Mounts();
    // A mount that the list did not show then either is merely hidden from this process.
    if (rows == lock.MadeUnder || !lock.MadeUnder || !HasVanished(lock.Object.Get(), *rows) ||
        HasVanished(lock.Object.Get(), *lock.MadeUnder))
        return true;
    SetIoErr(ErrorDeviceNotMounted);
    return false;
}

void ForgetRoots() {
    const std::lock_guard hold(Roots().Guard);
    Roots().Kept.clear();
}

HostLockRef RootLock(const VolumeRef& volume) {
    if (HostLockRef known = KeptRoot(volume))
        return known;
    const auto open = [volume]() -> HostLockRef {
        HostFd root(Host().Openat(AT_FDCWD, volume->RealRoot.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
        ObjectFacts facts;
        if (!root || !FactsOf(root.Get(), facts)) {
            Fail(errno);
            return nullptr;
        }
        HostLockRef lock = MakeLock(volume, std::move(root), facts, volume->SlowMount);
        KeepRoot(lock);
        return lock;
    };
    if (volume->SlowMount.empty())
        return open();
    return AskWithLimit<HostLockRef>(volume->SlowMount, [open](Progress&) { return open(); });
}

} // namespace dos
