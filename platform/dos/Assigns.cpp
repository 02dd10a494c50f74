#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <mutex>

namespace dos {

namespace {

struct AssignRow {
    std::string Name;
    AssignKind Kind;
    std::vector<AssignTarget> Targets;
};

struct AssignState {
    std::mutex Guard; // nothing of dos that asks for a volume is called under it
    std::vector<AssignRow> Rows;
    std::string ProgramDrawer; // PROGDIR:
    MountRows SeenMounts;      // for which the locks have been looked at
};

AssignState& State() {
    static AssignState state;
    return state;
}

bool SameName(std::string_view a, std::string_view b) {
    return utility::Stricmp(a, b) == 0;
}

bool Fail(long error) {
    SetIoErr(error);
    return false;
}

const HostLock* HostLockOf(const FileLock& lock) {
    const bool isHost = lock && lock.Body()->Owner == &HostHandler;
    return isHost ? static_cast<const HostLock*>(lock.Body().get()) : nullptr;
}

// A lock keeps the host from letting a disk go, so drawers on those that come and go are known by
// name.
bool IsOnRemovable(const FileLock& lock) {
    const HostLock* held = HostLockOf(lock);
    if (!held)
        return false;
    const std::string path = HostPathOf(held->Object.Get());
    return !path.empty() && VolumeOfHostPath(path)->Info.Removable;
}

// The target as it stands once its drawer is known.
AssignTarget Settle(const std::string& path, const FileLock& lock) {
    const std::string name = NameFromLock(lock);
    return {IsOnRemovable(lock) ? FileLock() : lock, name.empty() ? path : name, true};
}

bool SettleAll(std::vector<AssignTarget>& targets) {
    for (AssignTarget& target : targets) {
        const FileLock lock = Lock(target.Path);
        if (!lock)
            return false;
        target = Settle(target.Path, lock);
    }
    return true;
}

AssignRow* FindRow(AssignState& state, std::string_view name) {
    const auto row =
        std::ranges::find_if(state.Rows, [&](const AssignRow& each) { return SameName(each.Name, name); });
    return row == state.Rows.end() ? nullptr : &*row;
}

// Locks on what is no longer mounted lead nowhere; their paths may lead to the disk when it is back.
// The guard is held.
void DropVanished(AssignState& state) {
    const MountRows rows = Mounts();
    if (rows == state.SeenMounts)
        return;
    state.SeenMounts = rows;
    for (AssignRow& row : state.Rows)
        for (AssignTarget& target : row.Targets)
            if (const HostLock* held = HostLockOf(target.Bound);
                held && HasVanished(held->Object.Get(), *rows))
                target.Bound = FileLock();
}

std::optional<AssignRow> CopyOfRow(std::string_view name) {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    DropVanished(state);
    const AssignRow* row = FindRow(state, name);
    return row ? std::optional(*row) : std::nullopt;
}

void PutRow(AssignRow row) {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    AssignRow* old = FindRow(state, row.Name);
    if (row.Targets.empty())
        std::erase_if(state.Rows, [&](const AssignRow& each) { return &each == old; });
    else if (old)
        *old = std::move(row);
    else
        state.Rows.push_back(std::move(row));
}

// Does the target lead to the drawer, by what is there or, where nothing is, by name?
bool IsTarget(const AssignTarget& target, std::string_view path, const FileLock& drawer) {
    if (SameName(target.Path, path))
        return true;
    if (!drawer)
        return false;
    const FileLock lock = target.Bound ? target.Bound : Lock(target.Path);
    return lock && SameLock(lock, drawer);
}

bool CheckName(std::string_view name) {
    if (!IsDeviceText(name))
        return Fail(ErrorInvalidComponentName);
    return !IsDeviceName(name) || Fail(ErrorObjectInUse);
}

} // namespace

bool IsAssign(std::string_view name) {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    return FindRow(state, name) != nullptr;
}

std::optional<std::vector<AssignTarget>> FindAssign(std::string_view name) {
    if (SameName(name, "PROGDIR")) {
        AssignState& state = State();
        const std::lock_guard hold(state.Guard);
        if (!state.ProgramDrawer.empty())
            return std::vector<AssignTarget>{{FileLock(), state.ProgramDrawer, true}};
    }
    std::optional<AssignRow> row = CopyOfRow(name);
    return row ? std::optional(std::move(row->Targets)) : std::nullopt;
}

void BindTarget(std::string_view name, const std::string& path, const FileLock& lock) {
    const std::optional<AssignRow> before = CopyOfRow(name);
    if (!before || before->Kind != AssignKind::Late)
        return;
    AssignTarget settled = Settle(path, lock);
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    AssignRow* row = FindRow(state, name);
    if (!row || row->Kind != AssignKind::Late)
        return;
    for (AssignTarget& target : row->Targets)
        if (!target.IsSettled && target.Path == path)
            target = settled;
    if (std::ranges::all_of(row->Targets, &AssignTarget::IsSettled))
        row->Kind = AssignKind::Directory;
}

void SetProgramDrawer(const std::string& path) {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    state.ProgramDrawer = path;
}

void ResetAssigns() {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    state.Rows.clear();
    state.ProgramDrawer.clear();
    state.SeenMounts.reset();
}

void RenameInAssigns(std::string_view volume, std::string_view name) {
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    const auto rename = [&](std::string& path) {
        const std::size_t colon = path.find(':');
        if (colon != std::string::npos && SameName(std::string_view(path).substr(0, colon), volume))
            path.replace(0, colon, name);
    };
    for (AssignRow& row : state.Rows)
        for (AssignTarget& target : row.Targets)
            rename(target.Path);
    rename(state.ProgramDrawer);
}

std::vector<AssignInfo> Assigns() {
    std::vector<AssignRow> rows;
    {
        AssignState& state = State();
        const std::lock_guard hold(state.Guard);
        DropVanished(state);
        rows = state.Rows;
    }
    std::vector<AssignInfo> all;
    for (const AssignRow& row : rows) {
        AssignInfo& info = all.emplace_back(AssignInfo{row.Name, row.Kind, {}});
        for (const AssignTarget& target : row.Targets) {
            const std::string now = target.Bound ? NameFromLock(target.Bound) : std::string();
            info.Targets.push_back(now.empty() ? target.Path : now);
        }
    }
    return all;
}

bool SetAssign(std::string_view name, AssignKind kind, std::vector<std::string> targets) {
    if (!CheckName(name))
        return false;
    if (kind == AssignKind::NonBinding && targets.size() > 1)
        return Fail(ErrorObjectWrongType);
    AssignRow row{std::string(name), kind, {}};
    for (std::string& target : targets)
        row.Targets.push_back({FileLock(), std::move(target), false});
    if (kind == AssignKind::Directory && !SettleAll(row.Targets))
        return false;
    PutRow(std::move(row));
    return true;
}

bool AddToAssign(std::string_view name, std::string_view path, AssignEnd end) {
    std::optional<AssignRow> row = CopyOfRow(name);
    if (!row)
        return SetAssign(name, AssignKind::Directory, {std::string(path)});
    if (row->Kind == AssignKind::NonBinding)
        return Fail(ErrorObjectWrongType);
    const FileLock drawer = Lock(path);
    if (!drawer)
        return false;
    const auto isSame = [&](const AssignTarget& target) { return IsTarget(target, path, drawer); };
    if (std::ranges::any_of(row->Targets, isSame))
        return true;
    AssignTarget target = Settle(std::string(path), drawer);
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    if (AssignRow* now = FindRow(state, name))
        now->Targets.insert(end == AssignEnd::First ? now->Targets.begin() : now->Targets.end(),
                            std::move(target));
    else // taken away meanwhile
        state.Rows.push_back({std::string(name), AssignKind::Directory, {std::move(target)}});
    return true;
}

bool RemoveFromAssign(std::string_view name, std::string_view path) {
    std::optional<AssignRow> row = CopyOfRow(name);
    if (!row)
        return Fail(ErrorObjectNotFound);
    const FileLock drawer = Lock(path);
    const auto isSame = [&](const AssignTarget& target) { return IsTarget(target, path, drawer); };
    const auto found = std::ranges::find_if(row->Targets, isSame);
    if (found == row->Targets.end())
        return Fail(ErrorObjectNotFound);
    AssignState& state = State();
    const std::lock_guard hold(state.Guard);
    if (AssignRow* now = FindRow(state, name)) {
        std::erase_if(now->Targets, [&](const AssignTarget& target) { return target.Path == found->Path; });
        std::erase_if(state.Rows, [](const AssignRow& each) { return each.Targets.empty(); });
    }
    return true;
}

} // namespace dos
