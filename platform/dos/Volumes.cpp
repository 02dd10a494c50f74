#include "platform/dos/Volumes.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <fcntl.h>
#include <mutex>

namespace dos {

namespace {

struct AssignRow {
    std::string Name;
    AssignKind Kind;
    std::vector<AssignTarget> Targets;
};

struct Table {
    std::vector<VolumeRef> Fixed; // made at set-up or by AddVolume, in that order
    std::vector<VolumeRef> Disks; // mounted by the host, made from SeenMounts
    MountRows SeenMounts;
    std::vector<AssignRow> Assigns;
    std::string ProgramDrawer; // PROGDIR:
    std::string Problem;
};

struct TableState : Table {
    std::mutex Guard;
};

TableState& State() {
    static TableState state;
    return state;
}

bool SameName(std::string_view a, std::string_view b) {
    return utility::Stricmp(a, b) == 0;
}

bool IsGoodName(std::string_view name) {
    return !name.empty() && name.size() <= 100 &&
           name.find_first_of(std::string_view("/:\0", 3)) == std::string_view::npos;
}

// The host's name of a drawer without links on the way; empty when it is none or does not answer.
std::string RealDrawer(const std::string& hostPath, const std::string& slowMount) {
    const auto ask = [hostPath] {
        const HostFd drawer(Host().Openat(AT_FDCWD, hostPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
        if (!drawer)
            SetIoErr(ErrorFromErrno(errno, Operation::Lookup));
        return drawer ? HostPathOf(drawer.Get()) : std::string();
    };
    if (slowMount.empty())
        return ask();
    return AskWithLimit<std::string>(slowMount, [ask](Progress&) { return ask(); });
}

std::string SlowMountOf(std::string_view hostPath) {
    const MountRows rows = Mounts();
    const MountRow* row = MountOf(*rows, hostPath);
    return row && row->Slow ? row->Point : std::string();
}

VolumeRef HostRootVolume() {
    static const auto volume =
        std::make_shared<const Volume>(Volume{{.Device = "DH2", .Volume = "Host", .HostRoot = "/"}, "/", {}});
    return volume;
}

bool HasDevice(const std::vector<VolumeRef>& volumes, std::string_view device) {
    return std::ranges::any_of(
        volumes, [&](const VolumeRef& volume) { return SameName(volume->Info.Device, device); });
}

// A mounted disk keeps its record, and so its device name, as long as it stays.
VolumeRef KeptDisk(const std::vector<VolumeRef>& old, const VolumeInfo& info) {
    for (const VolumeRef& disk : old)
        if (disk->Info.HostRoot == info.HostRoot && disk->Info.MountSource == info.MountSource)
            return disk;
    return nullptr;
}

void NameFreely(VolumeInfo& info, const std::vector<VolumeRef>& fixed, const std::vector<VolumeRef>& disks) {
    const std::string stem = info.Device.substr(0, info.Device.find_first_of("0123456789"));
    for (unsigned unit = info.Unit; HasDevice(fixed, info.Device) || HasDevice(disks, info.Device);)
        info.Device = stem + std::to_string(++unit);
}

// Takes what the host has mounted meanwhile into the table. The guard is held.
void RefreshDisks(TableState& state) {
    const MountRows rows = Mounts();
    if (rows == state.SeenMounts)
        return;
    state.SeenMounts = rows;
    const std::vector<VolumeRef> old = std::move(state.Disks);
    state.Disks.clear();
    std::vector<VolumeInfo> newDisks;
    for (VolumeInfo& info : DisksOf(*rows)) {
        if (std::ranges::any_of(state.Fixed,
                                [&](const VolumeRef& volume) { return volume->RealRoot == info.HostRoot; }))
            continue;
        if (VolumeRef kept = KeptDisk(old, info))
            state.Disks.push_back(std::move(kept));
        else
            newDisks.push_back(std::move(info));
    }
    for (VolumeInfo& info : newDisks) {
        NameFreely(info, state.Fixed, state.Disks);
        const MountRow* row = MountOf(*rows, info.HostRoot);
        const std::string root = info.HostRoot;
        state.Disks.push_back(std::make_shared<const Volume>(
            Volume{std::move(info), root, row && row->Slow ? row->Point : std::string()}));
    }
}

VolumeRef FindIn(const std::vector<VolumeRef>& volumes, std::string_view name) {
    for (const auto field : {&VolumeInfo::Device, &VolumeInfo::Volume})
        for (const VolumeRef& volume : volumes)
            if (SameName(volume->Info.*field, name))
                return volume;
    return nullptr;
}

// Takes the volume when its root lies above the path and below that of the best so far.
void TakeDeeper(const VolumeRef& volume, std::string_view hostPath, VolumeRef& best,
                std::size_t& bestLength) {
    for (const std::string* root : {&volume->RealRoot, &volume->Info.HostRoot})
        if (root->size() > bestLength && LiesUnder(hostPath, *root)) {
            best = volume;
            bestLength = root->size();
        }
}

AssignRow* FindRow(TableState& state, std::string_view name) {
    const auto row = std::ranges::find_if(
        state.Assigns, [&](const AssignRow& assign) { return SameName(assign.Name, name); });
    return row == state.Assigns.end() ? nullptr : &*row;
}

bool BindAll(std::vector<AssignTarget>& targets) {
    for (AssignTarget& target : targets) {
        target.Bound = Lock(target.Path);
        if (!target.Bound)
            return false;
    }
    return true;
}

} // namespace

VolumeRef FindVolume(std::string_view name) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (VolumeRef volume = FindIn(state.Fixed, name))
        return volume;
    RefreshDisks(state);
    return FindIn(state.Disks, name);
}

VolumeRef VolumeOfHostPath(std::string_view hostPath) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    VolumeRef best;
    std::size_t bestLength = 0;
    for (const auto* list : {&state.Fixed, &state.Disks})
        for (const VolumeRef& volume : *list)
            TakeDeeper(volume, hostPath, best, bestLength);
    return best ? best : HostRootVolume();
}

std::optional<std::vector<AssignTarget>> FindAssign(std::string_view name) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (SameName(name, "PROGDIR") && !state.ProgramDrawer.empty())
        return std::vector<AssignTarget>{{FileLock(), state.ProgramDrawer}};
    if (const AssignRow* row = FindRow(state, name))
        return row->Targets;
    return {};
}

void BindTarget(std::string_view name, const std::string& path, const FileLock& lock) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    AssignRow* row = FindRow(state, name);
    if (!row || row->Kind != AssignKind::Late)
        return;
    for (AssignTarget& target : row->Targets)
        if (!target.Bound && target.Path == path)
            target.Bound = lock;
}

void SetProgramDrawer(const std::string& path) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    state.ProgramDrawer = path;
}

void ResetVolumeTable() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    static_cast<Table&>(state) = Table();
    ForgetMounts();
}

void AddSetUpProblem(const std::string& text) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    state.Problem += (state.Problem.empty() ? "" : "\n") + text;
}

std::string SetUpProblem() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    return state.Problem;
}

std::vector<VolumeInfo> Volumes() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    std::vector<VolumeInfo> all;
    for (const auto* list : {&state.Fixed, &state.Disks})
        for (const VolumeRef& volume : *list)
            all.push_back(volume->Info);
    return all;
}

std::vector<AssignInfo> Assigns() {
    std::vector<AssignRow> rows;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        rows = state.Assigns;
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
    if (!IsGoodName(name)) {
        SetIoErr(ErrorInvalidComponentName);
        return false;
    }
    AssignRow row{std::string(name), kind, {}};
    for (std::string& target : targets)
        row.Targets.push_back({FileLock(), std::move(target)});
    if (kind == AssignKind::Directory && !BindAll(row.Targets))
        return false;
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    if (HasDevice(state.Fixed, name) || HasDevice(state.Disks, name) || SameName(name, "NIL") ||
        SameName(name, "PROGDIR")) {
        SetIoErr(ErrorObjectInUse);
        return false;
    }
    AssignRow* old = FindRow(state, name);
    if (row.Targets.empty())
        std::erase_if(state.Assigns, [&](const AssignRow& each) { return &each == old; });
    else if (old)
        *old = std::move(row);
    else
        state.Assigns.push_back(std::move(row));
    return true;
}

bool AddVolume(VolumeInfo info) {
    if (!IsGoodName(info.Device) || !IsGoodName(info.Volume) || info.HostRoot.empty() ||
        info.HostRoot.front() != '/') {
        SetIoErr(ErrorInvalidComponentName);
        return false;
    }
    const std::string slow = SlowMountOf(info.HostRoot);
    std::string real = RealDrawer(info.HostRoot, slow);
    if (real.empty() && slow.empty())
        return false;
    if (real.empty()) // a disk that does not answer now may do so later
        real = info.HostRoot;
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (HasDevice(state.Fixed, info.Device) || HasDevice(state.Disks, info.Device) ||
        SameName(info.Device, "NIL") || SameName(info.Device, "PROGDIR")) {
        SetIoErr(ErrorObjectExists);
        return false;
    }
    state.Fixed.push_back(std::make_shared<const Volume>(Volume{std::move(info), real, slow}));
    state.SeenMounts.reset();
    return true;
}

} // namespace dos
