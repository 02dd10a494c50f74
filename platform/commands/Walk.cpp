#include "platform/commands/Walk.h"

#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Paths.h"
#include "platform/dos/Patterns.h"
#include "platform/dos/Volumes.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace commands {

namespace {

constexpr std::string_view SpecialCharacters = "#?~()|[]%'";

bool MayBePattern(std::string_view text) {
    return text.find_first_of(SpecialCharacters) != std::string_view::npos;
}

bool ComesBefore(const dos::ExamineData& a, const dos::ExamineData& b) {
    const int order = utility::Stricmp(a.Name, b.Name);
    return order != 0 ? order < 0 : a.Name < b.Name;
}

// A drawer on the way of a pattern.
struct Place {
    dos::FileLock Lock;
    std::string Text;
};

// The drawers that a path without wildcards means: several for a multi-assign.
std::vector<Place> PlacesOf(Context& context, std::string_view path, int& code) {
    bool isComplete = true;
    const std::vector<dos::FileLock> locks = dos::LockAllTargets(path, &isComplete);
    std::vector<Place> places;
    for (const dos::FileLock& lock : locks)
        places.push_back({lock, locks.size() == 1 ? std::string(path) : dos::NameFromLock(lock)});
    if (!isComplete || locks.empty()) {
        if (dos::IoErr() == dos::ErrorNoMoreEntries)
            dos::SetIoErr(dos::ErrorObjectNotFound);
        code = std::max(code, Complain(context, path));
    }
    return places;
}

bool Folds(const dos::FileLock& drawer) {
    const std::string device = dos::DevNameFromLock(drawer, dos::DevName::DeviceOnly);
    const std::vector<dos::VolumeInfo> all = dos::Volumes();
    return std::any_of(all.begin(), all.end(), [&](const dos::VolumeInfo& volume) {
        return volume.Names == dos::NameRule::Fold && utility::Stricmp(volume.Device, device) == 0;
    });
}

// Does the disk find an object by a name of another case?
bool IsFoundAs(const Place& place, const dos::ExamineData& data, std::string_view name) {
    const InDrawer current({place.Lock, {}, {}, {}});
    if (const dos::FileLock meant = dos::Lock(name))
        return dos::SameLock(meant, dos::Lock(data.Name));
    return (data.Type & dos::TypeLinkFlag) != 0 && Folds(place.Lock); // it leads nowhere
}

// The object whose name a part is as it stands; null when there is none.
const dos::ExamineData* FindSelf(const Place& place, const std::vector<dos::ExamineData>& all,
                                 std::string_view part) {
    const auto exact =
        std::find_if(all.begin(), all.end(), [&](const auto& data) { return data.Name == part; });
    if (exact != all.end())
        return &*exact;
    const auto folded = std::find_if(all.begin(), all.end(), [&](const auto& data) {
        return utility::Stricmp(data.Name, part) == 0 && IsFoundAs(place, data, part);
    });
    return folded == all.end() ? nullptr : &*folded;
}

// Walks the parts of one pattern, one after the other.
class Expander {
public:
    Expander(Context& own, Matches& all) : Where(own), Result(all) {}

    // What the first part means in each place. rest: the parts behind it.
    void Go(const std::vector<Place>& places, std::string_view part, std::string_view rest) {
        const auto pattern = dos::Pattern::Parse(part, dos::PatternCase::Ignore);
        BadPart* bad = nullptr;
        if (!pattern && part.find_first_of("#?") != std::string_view::npos)
            bad = &Bad.try_emplace(std::string(part), BadPart{dos::IoErr(), false}).first->second;
        for (const Place& place : places) {
            if (IsStopped(Where))
                return;
            auto all = ReadDrawer(Where, place.Lock, place.Text, Result.Code);
            if (!all)
                continue;
            const dos::ExamineData* self = FindSelf(place, *all, part);
            if (self && bad)
                bad->IsName = true;
            for (dos::ExamineData& data : *all) {
                if (self ? &data != self : !pattern || !pattern->Matches(data.Name))
                    continue;
                HasWildcards = HasWildcards || !self;
                Take(place, std::move(data), rest);
            }
        }
    }

    // Were all parts names as they stand?
    [[nodiscard]] bool IsPath() const { return !HasWildcards; }

    // Tells of the parts that are no patterns, unless they are the name of something.
    void ComplainOfBad() {
        for (const auto& [part, bad] : Bad) {
            if (bad.IsName)
                continue;
            dos::SetIoErr(bad.Error);
            Result.Code = std::max(Result.Code, Complain(Where, part));
        }
    }

private:
    void Take(const Place& place, dos::ExamineData data, std::string_view rest) {
        const std::string text = JoinText(place.Text, data.Name);
        if (rest.empty()) {
            Found found{place.Lock, data.Name, text, {}};
            found.Data = std::move(data);
            Result.Objects.push_back(std::move(found));
            return;
        }
        const Found here{place.Lock, data.Name, text, {}};
        const InDrawer current(here);
        if (!IsDrawer(data.Name))
            return;
        const std::size_t end = rest.find('/');
        const std::string_view part = rest.substr(0, end);
        const std::string_view behind =
            end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        Go({{dos::Lock(data.Name), text}}, part, behind);
    }

    struct BadPart {
        long Error;
        bool IsName; // in one place at least
    };

    Context& Where;
    Matches& Result;
    std::map<std::string, BadPart> Bad; // parts that are no patterns
    bool HasWildcards = false;          // in some part as it was taken
};

// Where the first part with wildcards begins and ends.
struct PatternPart {
    std::size_t From, To;
};

std::optional<PatternPart> FirstPattern(std::string_view argument) {
    const std::size_t colon = argument.find(':');
    std::size_t from = colon == std::string_view::npos ? 0 : colon + 1;
    while (from < argument.size()) {
        const std::size_t to = std::min(argument.find('/', from), argument.size());
        if (MayBePattern(argument.substr(from, to - from)))
            return PatternPart{from, to};
        from = to + 1;
    }
    return {};
}

// Visits objects, and what is below drawers, until one is the last.
struct Walker {
    Context& Where;
    const Visit& Do;
    Order How;
    int Code = ReturnOk;
    bool IsOver = false;

    void Take(const Found& object) {
        if (IsOver)
            return;
        const InDrawer current(object);
        const Outcome one = Do(object);
        Code = std::max(Code, one.Code);
        IsOver = one.IsLast;
    }
    void GoBelow(const Found& drawer);
};

void Walker::GoBelow(const Found& drawer) {
    struct Level {
        Found Self;
        dos::FileLock Lock;
        std::vector<dos::ExamineData> Objects;
        std::size_t Next = 0;
    };
    std::vector<Level> levels;
    const auto enter = [&](const Found& object) {
        const InDrawer current(object);
        const dos::FileLock lock = dos::Lock(object.Path);
        if (!lock)
            Code = std::max(Code, Complain(Where, object.Text));
        else if (auto all = ReadDrawer(Where, lock, object.Text, Code))
            levels.push_back({object, lock, std::move(*all)});
        else
            return false;
        return static_cast<bool>(lock);
    };
    enter(drawer);
    while (!levels.empty() && !IsOver) {
        Level& level = levels.back();
        if (level.Next == level.Objects.size()) {
            const Found self = std::move(level.Self);
            levels.pop_back();
            if (How == Order::DrawersLast && !levels.empty())
                Take(self);
            continue;
        }
        if (IsStopped(Where)) {
            Code = std::max(Code, Complain(Where));
            IsOver = true;
            return;
        }
        dos::ExamineData& data = level.Objects[level.Next++];
        Found object{level.Lock, data.Name, JoinText(level.Self.Text, data.Name), {}};
        object.Data = std::move(data);
        const bool isDrawer = object.Data->Type == dos::TypeDrawer;
        if (!isDrawer || How == Order::DrawersFirst)
            Take(object);
        if (isDrawer && !IsOver && !enter(object) && How == Order::DrawersLast)
            Take(object);
    }
}

} // namespace

std::optional<std::string> FullPath(const Found& object) {
    return object.Drawer ? dos::AddPart(dos::NameFromLock(object.Drawer), object.Path) : object.Path;
}

InDrawer::InDrawer(const Found& found) : IsSet(static_cast<bool>(found.Drawer)) {
    if (IsSet)
        Before = dos::CurrentDir(found.Drawer);
}

InDrawer::~InDrawer() {
    if (IsSet)
        dos::CurrentDir(Before);
}

std::string JoinText(std::string_view drawer, std::string_view name) {
    std::string text(drawer);
    if (!text.empty() && text.back() != ':' && text.back() != '/')
        text += '/';
    return text.append(name);
}

bool IsDrawer(std::string_view path) {
    const long error = dos::IoErr();
    const auto data = dos::ExamineObject(path);
    dos::SetIoErr(error);
    return data && data->Type == dos::TypeDrawer;
}

std::optional<std::vector<dos::ExamineData>> ReadDrawer(Context& context, const dos::FileLock& drawer,
                                                        std::string_view text, int& code) {
    dos::DirContext walk = dos::ObtainDirContext(drawer);
    if (!walk) {
        code = std::max(code, Complain(context, text));
        return {};
    }
    std::vector<dos::ExamineData> all;
    while (const dos::ExamineData* data = dos::ExamineDir(walk))
        all.push_back(*data);
    if (dos::IoErr() != dos::ErrorNoMoreEntries)
        code = std::max(code, Complain(context, text));
    std::sort(all.begin(), all.end(), ComesBefore);
    return all;
}

Outcome FailedChange(Context& context, std::string_view about) {
    const bool isLast = ConcernsDisk(dos::IoErr());
    return {Complain(context, about), isLast};
}

Matches Expand(Context& context, std::string_view argument) {
    Matches matches;
    const auto part = FirstPattern(argument);
    if (!part) {
        matches.Objects.push_back({{}, std::string(argument), std::string(argument), {}});
        return matches;
    }
    std::string_view before = argument.substr(0, part->From);
    // One slash only parts the drawer from the pattern; those at the front and after a slash lead up.
    if (before.size() > 1 && before.ends_with('/') && before[before.size() - 2] != '/')
        before.remove_suffix(1);
    const std::string_view text = argument.substr(part->From, part->To - part->From);
    const std::string_view rest =
        part->To < argument.size() ? argument.substr(part->To + 1) : std::string_view();
    matches.IsPattern = true;
    Expander expander(context, matches);
    expander.Go(PlacesOf(context, before, matches.Code), text, rest);
    expander.ComplainOfBad();
    // "old~" has no wildcards, "Notes (1)" may be meant as it stands: names of nothing.
    const bool isNothing = matches.Objects.empty() && argument.find_first_of("#?") == std::string_view::npos;
    if (matches.Code == ReturnOk && (isNothing || (!matches.Objects.empty() && expander.IsPath()))) {
        matches.IsPattern = false;
        matches.Objects.assign(1, {{}, std::string(argument), std::string(argument), {}});
    }
    return matches;
}

int ForEach(Context& context, std::string_view argument, Depth depth, const Visit& visit, Order order) {
    const Matches matches = Expand(context, argument);
    if (matches.Objects.empty() && matches.Code == ReturnOk) {
        dos::SetIoErr(dos::ErrorObjectNotFound);
        ComplainWith(context, argument, "no object matches");
        return ReturnWarn;
    }
    Walker walker{context, visit, order, matches.Code};
    for (const Found& object : matches.Objects) {
        if (walker.IsOver)
            break;
        if (IsStopped(context))
            return std::max(walker.Code, Complain(context));
        const InDrawer current(object);
        if (order == Order::DrawersFirst)
            walker.Take(object);
        const bool isDrawer = object.Data ? object.Data->Type == dos::TypeDrawer : IsDrawer(object.Path);
        if (depth == Depth::All && isDrawer && !walker.IsOver)
            walker.GoBelow(object);
        if (order == Order::DrawersLast)
            walker.Take(object);
    }
    return walker.Code;
}

} // namespace commands
