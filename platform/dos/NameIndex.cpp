#include "platform/dos/NameIndex.h"

#include "platform/dos/HostDirectory.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/NameEscapes.h"
#include "platform/dos/Sidecar.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <list>
#include <mutex>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace dos {

namespace {

constexpr std::size_t KeptDrawers = 8;
constexpr std::size_t MostEndedChanges = 10'000; // during one reading
// A drawer changed so shortly before it was read may change again without a new time (the host's
// clock ticks at 10 ms at most, times of some file systems are whole or even seconds).
constexpr std::int64_t FineTick = 20'000'000;      // nanoseconds
constexpr std::int64_t CoarseTick = 2'100'000'000; // nanoseconds
// A change of another process within the tick of an own one leaves no trace, so what was carried over is
// believed for a while only: so long that reading anew takes a tenth of the time at most.
constexpr std::int64_t ShortestTrust = 100'000'000;  // nanoseconds
constexpr std::int64_t LongestTrust = 2'000'000'000; // nanoseconds
constexpr std::int64_t TrustPerReading = 10;

struct Contents {
    DrawerStamp State;
    MetadataRule Rule = MetadataRule::Xattr; // by which names are read
    std::int64_t ReadAt = 0;                 // nanoseconds since 1970
    std::int64_t ReadingTook = 0;            // nanoseconds
    bool IsPatched = false;                  // changes of our own were written in since
    AliasTable Aliases;
    bool HasFolded = false;
    std::unordered_map<std::string, std::string> Folded; // host's name by folded own one
    std::unordered_set<std::string> Twins;               // folded names that more than one entry has
};

using ContentsRef = std::shared_ptr<Contents>;

// A change of our own that was ended while its drawer was being read.
struct EndedChange {
    DrawerStamp Before;
    DrawerStamp After;
    std::string Gone;
    std::string Made;
};

// A reading of a drawer under way: its names may have been read before such a change or after it.
struct Reading {
    ObjectId Drawer;
    std::vector<EndedChange> Changes;
    bool IsSpoiled = false; // a change is not among them
};

struct IndexState {
    std::mutex Guard;               // also over what the contents hold
    std::list<ContentsRef> Drawers; // the one used last in front
    std::list<Reading> Readings;
};

IndexState& State() {
    static IndexState state;
    return state;
}

std::int64_t Now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::int64_t Nanoseconds(const struct statx_timestamp& time) {
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

bool StampOf(int drawer, DrawerStamp& stamp) {
    struct statx raw {};
    if (Host().Statx(drawer, "", AT_EMPTY_PATH, STATX_INO | STATX_MTIME | STATX_CTIME, &raw) != 0)
        return false;
    stamp.Id = {(static_cast<std::uint64_t>(raw.stx_dev_major) << 32) | raw.stx_dev_minor, raw.stx_ino};
    stamp.Modified = Nanoseconds(raw.stx_mtime);
    stamp.Changed = Nanoseconds(raw.stx_ctime);
    return true;
}

// Had the clock passed the drawer's last change when it was read?
bool IsSettled(const Contents& contents) {
    const std::int64_t modified = contents.State.Modified;
    return modified < contents.ReadAt - (modified % 1'000'000'000 == 0 ? CoarseTick : FineTick);
}

bool IsTrusted(const Contents& contents, const DrawerStamp& now, NameMatch match) {
    if (contents.State != now || (match == NameMatch::Folded && !contents.HasFolded))
        return false;
    if (contents.IsPatched)
        return Now() - contents.ReadAt <
               std::clamp(TrustPerReading * contents.ReadingTook, ShortestTrust, LongestTrust);
    return IsSettled(contents) || now.Modified > Now() + CoarseTick;
}

std::string FoldedKey(const Contents& contents, std::string_view hostName) {
    return utility::Fold(OwnNameOf(contents.Rule, hostName));
}

// An entry whose name is an escape goes before one that has the name itself, which is under an alias.
bool GoesBefore(const Contents& contents, std::string_view name, std::string_view other) {
    if (contents.Rule == MetadataRule::Uaem && IsEscape(name) != IsEscape(other))
        return IsEscape(name);
    // What may be a sidecar hides no object.
    if (contents.Rule == MetadataRule::Uaem &&
        name.ends_with(SidecarSuffix) != other.ends_with(SidecarSuffix))
        return other.ends_with(SidecarSuffix);
    return name < other;
}

void AddFolded(Contents& contents, std::string_view name) {
    const auto [place, isNew] = contents.Folded.try_emplace(FoldedKey(contents, name), name);
    if (isNew || name == place->second)
        return;
    contents.Twins.insert(place->first);
    if (GoesBefore(contents, name, place->second))
        place->second = name;
}

// False when only a new reading can tell what is left.
bool RemoveFolded(Contents& contents, std::string_view name) {
    const std::string folded = FoldedKey(contents, name);
    if (contents.Twins.contains(folded))
        return false;
    // What was read after the change may hold another spelling already.
    if (const auto known = contents.Folded.find(folded);
        known != contents.Folded.end() && known->second == name)
        contents.Folded.erase(known);
    return true;
}

bool ReadContents(int drawer, NameMatch match, Contents& contents) {
    contents.ReadAt = Now();
    AliasFinder aliases(contents.Rule);
    const bool complete = ForEachName(drawer, [&](std::string_view name) {
        aliases.Add(name);
        if (match == NameMatch::Folded)
            AddFolded(contents, name);
    });
    contents.Aliases = aliases.Table();
    contents.HasFolded = match == NameMatch::Folded;
    contents.ReadingTook = Now() - contents.ReadAt;
    return complete;
}

// What is remembered of a drawer in this state; null when it must be read, and then isOwn tells whether the
// last change known was one of ours. The guard is held.
ContentsRef Recall(IndexState& state, const DrawerStamp& now, NameMatch match, MetadataRule rule,
                   bool& isOwn) {
    const auto entry = std::ranges::find_if(state.Drawers, [&](const ContentsRef& known) {
        return known->State.Id == now.Id && known->Rule == rule;
    });
    if (entry == state.Drawers.end())
        return nullptr;
    if (!IsTrusted(**entry, now, match)) {
        isOwn = (*entry)->IsPatched && (*entry)->State == now;
        state.Drawers.erase(entry);
        return nullptr;
    }
    state.Drawers.splice(state.Drawers.begin(), state.Drawers, entry);
    return state.Drawers.front();
}

// Rare: the aliases of the whole drawer are weighed anew.
bool TouchesAliases(const Contents& contents, std::string_view hostName) {
    const std::string name = OwnNameOf(contents.Rule, hostName);
    if (NeedsAlias(name) || LooksLikeAlias(name))
        return true;
    // One beside it may have or lose the name for which it stands. Every file has a sidecar.
    const bool isSidecar = hostName.ends_with(SidecarSuffix);
    if (contents.Rule != MetadataRule::Uaem || isSidecar || !NeedsEscape(name))
        return false;
    const auto known = contents.Folded.find(utility::Fold(name));
    return !contents.HasFolded || (known != contents.Folded.end() && known->second != hostName);
}

// False when only a new reading can tell what is in the drawer.
bool Patch(Contents& contents, std::string_view gone, std::string_view made) {
    if (TouchesAliases(contents, gone) || TouchesAliases(contents, made))
        return false;
    if (!contents.HasFolded)
        return true;
    if (!gone.empty() && !RemoveFolded(contents, gone))
        return false;
    if (!made.empty())
        AddFolded(contents, made);
    return true;
}

// Carries an own change over into what is remembered; false when that is to be forgotten.
bool Follow(Contents& contents, const DrawerStamp& before, const DrawerStamp& now, std::string_view gone,
            std::string_view made) {
    const NameMatch match = contents.HasFolded ? NameMatch::Folded : NameMatch::AliasOnly;
    // One that is to be read anew soon is followed too: then it is known whose the last change was.
    const bool isKnown = contents.IsPatched ? contents.State == before : IsTrusted(contents, before, match);
    if (!isKnown || !Patch(contents, gone, made))
        return false;
    contents.State = now;
    contents.IsPatched = true;
    return true;
}

// Takes part in what is ended while a drawer is read. Begun before the first name is read.
class ReadingScope {
public:
    // The guard is held.
    ReadingScope(IndexState& state, const ObjectId& drawer)
        : State(state), Own(state.Readings.insert(state.Readings.end(), Reading{drawer, {}, false})) {}
    ReadingScope(const ReadingScope&) = delete;
    ReadingScope& operator=(const ReadingScope&) = delete;
    ~ReadingScope() {
        const std::lock_guard hold(State.Guard);
        State.Readings.erase(Own);
    }

    // Carries over what happened meanwhile; false when the contents may lack some of it. The guard is held.
    [[nodiscard]] bool CatchUp(Contents& contents) const {
        return !Own->IsSpoiled && std::ranges::all_of(Own->Changes, [&](const EndedChange& change) {
            return Follow(contents, change.Before, change.After, change.Gone, change.Made);
        });
    }

private:
    IndexState& State;
    std::list<Reading>::iterator Own;
};

// The contents of a drawer as they are now; null when it cannot be read. Reads without the guard,
// since the disk may hang.
ContentsRef ContentsOf(int drawer, NameMatch match, MetadataRule rule) {
    IndexState& state = State();
    auto fresh = std::make_shared<Contents>();
    fresh->Rule = rule;
    bool isOwn = false;
    if (!StampOf(drawer, fresh->State))
        return nullptr;
    std::optional<ReadingScope> reading;
    {
        const std::lock_guard hold(state.Guard);
        if (ContentsRef known = Recall(state, fresh->State, match, rule, isOwn))
            return known;
        reading.emplace(state, fresh->State.Id);
    }
    if (!ReadContents(drawer, match, *fresh))
        return nullptr;
    const std::lock_guard hold(state.Guard);
    // Else a row of own changes would have it read at each of them.
    fresh->IsPatched = isOwn && !IsSettled(*fresh);
    if (fresh->IsPatched && !reading->CatchUp(*fresh))
        fresh->IsPatched = false;
    std::erase_if(state.Drawers, [&](const ContentsRef& known) {
        return known->State.Id == fresh->State.Id && known->Rule == rule;
    });
    state.Drawers.push_front(fresh);
    if (state.Drawers.size() > KeptDrawers)
        state.Drawers.pop_back();
    return fresh;
}

// A folded search for an alias; aliases are few.
std::optional<std::string> FindFoldedAlias(const AliasTable& aliases, std::string_view name) {
    for (const auto& [alias, real] : aliases.RealOf)
        if (utility::Stricmp(alias, name) == 0)
            return real;
    return {};
}

bool IsMissing(int hostError, bool isOtherName) {
    return hostError == ENOENT || (isOtherName && hostError == ENAMETOOLONG);
}

std::optional<std::string> FindRemembered(int drawer, std::string_view name, NameMatch match,
                                          MetadataRule rule) {
    const bool mayBeAlias =
        LooksLikeAlias(match == NameMatch::Folded ? utility::Fold(name) : std::string(name));
    if (match == NameMatch::AliasOnly && !mayBeAlias)
        return {};
    const ContentsRef contents = ContentsOf(drawer, match, rule);
    if (!contents)
        return {};
    const std::lock_guard hold(State().Guard);
    if (const auto real = contents->Aliases.RealOf.find(name); real != contents->Aliases.RealOf.end())
        return real->second;
    if (match == NameMatch::AliasOnly)
        return {};
    if (const auto real = contents->Folded.find(utility::Fold(name)); real != contents->Folded.end())
        return real->second;
    return mayBeAlias ? FindFoldedAlias(contents->Aliases, name) : std::nullopt;
}

} // namespace

HostFd OpenMeant(int drawer, const VolumeInfo& on, std::string_view name, std::string& hostName,
                 const EntryOpener& open) {
    hostName = HostNameFor(on.Metadata, name);
    const bool isEscaped = hostName != name;
    HostFd found = open(hostName);
    if (found || !IsMissing(errno, isEscaped))
        return found;
    const int error = errno;
    // Somebody who knows nothing of escapes may have given the name as it is.
    if (isEscaped && !IsEscape(name) && !IsSidecarInUse(drawer, name)) {
        found = open(std::string(name));
        if (found || errno != ENOENT) {
            hostName = name;
            return found;
        }
    }
    const NameMatch match = on.Names == NameRule::Fold ? NameMatch::Folded : NameMatch::AliasOnly;
    if (auto real = FindRealName(drawer, name, match, on.Metadata)) {
        hostName = std::move(*real);
        return open(hostName);
    }
    errno = error;
    return found;
}

HostFd OpenMeant(int drawer, const VolumeInfo& on, std::string_view name, std::string& hostName) {
    return OpenMeant(drawer, on, name, hostName, [drawer](const std::string& as) {
        return HostFd(Host().Openat(drawer, as.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC, 0));
    });
}

std::optional<std::string> FindRealName(int drawer, std::string_view name, NameMatch match,
                                        MetadataRule rule) {
    std::optional<std::string> real = FindRemembered(drawer, name, match, rule);
    const bool isObject = !real || rule != MetadataRule::Uaem || !IsSidecarInUse(drawer, *real);
    return isObject ? real : std::nullopt;
}

std::string ShownName(int drawer, std::string_view hostName, MetadataRule rule) {
    std::string name = OwnNameOf(rule, hostName);
    struct statx raw {};
    const bool needsAlias = NeedsAlias(name);
    // The name belongs to an escape where there is one of it.
    const bool isShadowed = rule == MetadataRule::Uaem && !needsAlias && name == hostName &&
                            NeedsEscape(name) &&
                            Host().Statx(drawer, EscapedName(name).c_str(),
                                         AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &raw) == 0;
    if (!needsAlias && !isShadowed)
        return name;
    if (const ContentsRef contents = ContentsOf(drawer, NameMatch::AliasOnly, rule)) {
        const std::lock_guard hold(State().Guard);
        if (const auto alias = contents->Aliases.AliasOf.find(hostName);
            alias != contents->Aliases.AliasOf.end())
            return alias->second;
    }
    return MakeAlias(hostName, 0);
}

OwnChange::OwnChange(int drawer) : Drawer(drawer) {
    IndexState& state = State();
    {
        const std::lock_guard hold(state.Guard);
        if (state.Drawers.empty() && state.Readings.empty())
            return;
    }
    if (!StampOf(drawer, Before))
        Before = DrawerStamp();
}

void EndMove(const OwnChange& out, std::string_view from, const OwnChange& in, std::string_view to) {
    if (out.Before.Id == in.Before.Id && out.Before.Id != ObjectId())
        return in.End(from, to);
    out.End(from, {});
    in.End({}, to);
}

void OwnChange::End(std::string_view gone, std::string_view made) const {
    IndexState& state = State();
    {
        // A reading may have begun since.
        const std::lock_guard hold(state.Guard);
        if (state.Drawers.empty() && state.Readings.empty())
            return;
    }
    DrawerStamp now;
    const bool isKnown = StampOf(Drawer, now);
    const std::lock_guard hold(state.Guard);
    std::erase_if(state.Drawers, [&](const ContentsRef& known) {
        return !isKnown || (known->State.Id == now.Id && !Follow(*known, Before, now, gone, made));
    });
    for (Reading& reading : state.Readings) {
        if (isKnown && reading.Drawer != now.Id)
            continue;
        reading.IsSpoiled |= !isKnown || reading.Changes.size() == MostEndedChanges;
        if (!reading.IsSpoiled)
            reading.Changes.push_back({Before, now, std::string(gone), std::string(made)});
    }
}

void ForgetDrawer(const ObjectId& drawer) {
    IndexState& state = State();
    const std::lock_guard hold(state.Guard);
    std::erase_if(state.Drawers, [&](const ContentsRef& known) { return known->State.Id == drawer; });
    for (Reading& reading : state.Readings)
        reading.IsSpoiled |= reading.Drawer == drawer;
}

} // namespace dos
