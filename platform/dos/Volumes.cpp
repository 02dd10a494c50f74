#include "platform/dos/Volumes.h"

#include "platform/dos/DiskEvents.h"
#include "platform/dos/DiskVolumes.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountFile.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/VolumeTable.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <set>

namespace dos {

namespace {

constexpr std::size_t LargestProblem = 8192; // bytes
constexpr std::ptrdiff_t MostPastDisks = 64;

// What a disk that has gone was called, so that it is called so again.
struct PastDisk {
    std::string Source;
    std::string Label;
    std::string Device;
    std::string Volume;
};

// A disk together with its label, which its volume name may not be.
struct MountedDisk {
    VolumeRef Ref;
    std::string Label;
};

struct Table {
    std::vector<VolumeRef> Fixed;     // made at set-up or by AddVolume, in that order
    std::vector<MountedDisk> Disks;   // mounted by the host, made from SeenMounts
    std::vector<PastDisk> Past;       // the last of them at the end
    std::vector<VolumeInfo> Declared; // of disks, mounted or not: name, root and rules
    MountRows SeenMounts;
    std::vector<VolumeLabel> Labels;
    std::vector<std::string> KeptFree; // names of assigns, made or not
    std::string MountFile;             // host path; keeps the labels
    std::string Problem;
    std::size_t MoreProblems = 0; // that Problem has no room for
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

// The host's name of a drawer without links on the way; empty when it is none or does not answer.
std::string RealDrawer(const std::string& hostPath, const std::string& slowMount) {
    const auto ask = [hostPath] {
        const HostFd drawer(Host().Openat(AT_FDCWD, hostPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC, 0));
        if (!drawer)
            SetIoErr(ErrorFromErrno(errno, Operation::Lookup));
        return drawer ? HostPathOf(drawer.Get()) : std::string();
    };
    // Links may lead to a disk that the path does not tell of.
    return AskWithLimit<std::string>(slowMount.empty() ? hostPath : slowMount,
                                     [ask](Progress&) { return ask(); });
}

VolumeRef HostRootVolume() {
    static const auto volume =
        std::make_shared<const Volume>(Volume{{.Device = "DH2", .Volume = "Host", .HostRoot = "/"}, "/", {}});
    return volume;
}

template <typename Test>
bool AnyVolume(const TableState& state, Test test) {
    const auto ofDisk = [&](const MountedDisk& disk) { return test(*disk.Ref); };
    return std::ranges::any_of(state.Fixed, [&](const VolumeRef& volume) { return test(*volume); }) ||
           std::ranges::any_of(state.Disks, ofDisk);
}

// Names that other handlers answer to, now or later.
bool IsReserved(std::string_view name) {
    static constexpr std::array<std::string_view, 8> Reserved = {"NIL", "PROGDIR", "CON",      "CONSOLE",
                                                                 "RAW", "TCP",     "FTPMount", "PRT"};
    return std::ranges::any_of(Reserved, [&](std::string_view each) { return SameName(each, name); });
}

bool HasDevice(const TableState& state, std::string_view device) {
    return AnyVolume(state, [&](const Volume& volume) { return SameName(volume.Info.Device, device); });
}

bool IsTaken(const TableState& state, std::string_view name) {
    const auto isIt = [&](std::string_view each) { return SameName(each, name); };
    return IsReserved(name) || IsAssign(name) || std::ranges::any_of(state.KeptFree, isIt) ||
           HasDevice(state, name) ||
           AnyVolume(state, [&](const Volume& volume) { return SameName(volume.Info.Volume, name); });
}

// A mounted disk keeps its record, and so its names, as long as it stays.
const MountedDisk* KeptDisk(const std::vector<MountedDisk>& old, const VolumeInfo& info) {
    for (const MountedDisk& disk : old)
        if (disk.Ref->Info.HostRoot == info.HostRoot && disk.Ref->Info.MountSource == info.MountSource &&
            disk.Label == info.Volume)
            return &disk;
    return nullptr;
}

const PastDisk* FindPast(const TableState& state, const VolumeInfo& info) {
    for (const PastDisk& past : state.Past)
        if (past.Source == info.MountSource && past.Label == info.Volume &&
            past.Device.starts_with(info.Device))
            return &past;
    return nullptr;
}

// Turns the stem of a device name into one that is free.
void GiveDevice(const TableState& state, VolumeInfo& info) {
    const std::string stem = info.Device;
    const bool isLone = stem == "ONEDRIVE"; // known by its bare name
    for (info.Unit = 0;; ++info.Unit) {
        info.Device = isLone && info.Unit == 0 ? stem : stem + std::to_string(info.Unit);
        if (!IsTaken(state, info.Device))
            return;
    }
}

const std::string& LabelIn(const std::vector<VolumeLabel>& labels, const std::string& ownName) {
    for (const VolumeLabel& label : labels)
        if (SameName(label.Volume, ownName))
            return label.Name;
    return ownName;
}

// Paths begin with volume names, so no two disks share one and none is called like something else.
void GiveVolume(const TableState& state, VolumeInfo& info) {
    if (SameName(info.Volume, info.Device) || !IsTaken(state, info.Volume))
        return;
    const std::string tail = "_" + info.Device;
    info.Volume.resize(utility::CutLength(info.Volume, LongestDeviceText - tail.size()));
    info.Volume += tail;
    if (IsTaken(state, info.Volume))
        info.Volume = info.Device;
}

void GiveNames(const TableState& state, VolumeInfo& info) {
    const PastDisk* past = FindPast(state, info);
    if (past && !IsTaken(state, past->Device) && !IsTaken(state, past->Volume)) {
        info.Unit = 0;
        const std::string_view digits = std::string_view(past->Device).substr(info.Device.size());
        std::from_chars(digits.data(), digits.data() + digits.size(), info.Unit);
        info.Device = past->Device;
        info.Volume = past->Volume;
        return;
    }
    GiveDevice(state, info);
    info.Volume = LabelIn(state.Labels, info.Volume);
    GiveVolume(state, info);
}

void RememberGone(TableState& state, const std::vector<MountedDisk>& old) {
    for (const MountedDisk& disk : old) {
        const VolumeInfo& info = disk.Ref->Info;
        if (std::ranges::any_of(state.Disks, [&](const MountedDisk& now) { return now.Ref == disk.Ref; }))
            continue;
        std::erase_if(state.Past, [&](const PastDisk& past) {
            return past.Source == info.MountSource && past.Label == disk.Label;
        });
        state.Past.push_back({info.MountSource, disk.Label, info.Device, info.Volume});
    }
    if (std::ssize(state.Past) > MostPastDisks)
        state.Past.erase(state.Past.begin(), state.Past.end() - MostPastDisks);
}

// A network may have been mounted over a volume's drawer, or taken away from it.
void RefreshFixed(TableState& state, const std::vector<MountRow>& rows) {
    for (VolumeRef& volume : state.Fixed) {
        std::string slow = SlowMountOf(rows, volume->RealRoot);
        if (slow != volume->SlowMount)
            volume = std::make_shared<const Volume>(Volume{volume->Info, volume->RealRoot, std::move(slow)});
    }
}

// What the user has declared of a disk counts.
void Obey(const TableState& state, VolumeInfo& info) {
    for (const VolumeInfo& declared : state.Declared) {
        if (declared.HostRoot != info.HostRoot)
            continue;
        info.Names = declared.Names;
        info.Metadata = declared.Metadata;
        if (!IsTaken(state, declared.Volume))
            info.Volume = LabelIn(state.Labels, declared.Volume);
    }
}

void AddDisk(TableState& state, VolumeInfo info, const std::vector<MountRow>& rows) {
    std::string label = info.Volume;
    GiveNames(state, info);
    Obey(state, info);
    const std::string root = info.HostRoot;
    state.Disks.push_back(
        {std::make_shared<const Volume>(Volume{std::move(info), root, SlowMountOf(rows, root)}),
         std::move(label)});
}

// Takes what the host has mounted meanwhile into the table. The guard is held.
void RefreshDisks(TableState& state) {
    const MountRows rows = Mounts();
    if (rows == state.SeenMounts)
        return;
    state.SeenMounts = rows;
    RefreshFixed(state, *rows);
    const std::vector<MountedDisk> old = std::move(state.Disks);
    state.Disks.clear();
    std::vector<VolumeInfo> newDisks;
    for (VolumeInfo& info : DisksOf(*rows)) {
        if (std::ranges::any_of(state.Fixed,
                                [&](const VolumeRef& volume) { return volume->RealRoot == info.HostRoot; }))
            continue;
        const MountedDisk* kept = KeptDisk(old, info);
        if (!kept) {
            newDisks.push_back(std::move(info));
            continue;
        }
        state.Disks.push_back(*kept);
        if (kept->Ref->Info.WriteProtected != info.WriteProtected) { // mounted anew in place
            Volume changed = *kept->Ref;
            changed.Info.WriteProtected = info.WriteProtected;
            state.Disks.back().Ref = std::make_shared<const Volume>(std::move(changed));
        }
    }
    RememberGone(state, old);
    for (VolumeInfo& info : newDisks)
        AddDisk(state, std::move(info), *rows);
}

std::vector<VolumeRef> AllVolumes(const TableState& state) {
    std::vector<VolumeRef> all = state.Fixed;
    for (const MountedDisk& disk : state.Disks)
        all.push_back(disk.Ref);
    return all;
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

bool Fail(long error) {
    SetIoErr(error);
    return false;
}

// A volume that is to be called otherwise.
struct Renaming {
    VolumeRef Before;
    std::string Own{}; // what the disk or the system calls it
    std::string MountFile{};
    std::string Now{}; // where the file wishes it
};

// The name by which a volume of the system is known to its label.
std::string OwnNameIn(const TableState& state, const std::string& name) {
    for (const VolumeLabel& label : state.Labels)
        if (SameName(label.Name, name))
            return label.Volume;
    return name;
}

// False with IoErr when there is no such volume or it cannot have the name.
bool FindRenaming(std::string_view name, std::string_view newName, Renaming& found) {
    found.Before = FindVolume(name);
    if (!found.Before)
        return Fail(ErrorDeviceNotMounted);
    if (!IsDeviceText(newName) || FitVolumeName(newName) != newName)
        return Fail(ErrorInvalidComponentName);
    if (found.Before->Info.WriteProtected)
        return Fail(ErrorDiskWriteProtected);
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (!SameName(found.Before->Info.Volume, newName) && IsTaken(state, newName))
        return Fail(ErrorObjectExists);
    found.MountFile = state.MountFile;
    found.Own = OwnNameIn(state, found.Before->Info.Volume);
    for (const MountedDisk& disk : state.Disks)
        if (disk.Ref == found.Before)
            found.Own = disk.Label;
    return true;
}

// Remembers the name in the mount file; false with IoErr.
bool KeepName(const Renaming& renaming, std::string_view name, bool& isDeclared) {
    if (renaming.MountFile.empty())
        return Fail(ErrorActionNotKnown);
    const auto text = ReadHostText(renaming.MountFile, LargestMountFile);
    if (!text && errno != ENOENT)
        return Fail(ErrorFromErrno(errno, Operation::Read));
    const auto changed =
        RelabelInMountFile(text.value_or(""), renaming.Before->Info.Volume, renaming.Own, name);
    if (!changed)
        return Fail(ErrorObjectWrongType);
    isDeclared = changed->IsDeclared;
    return ReplaceHostText(renaming.MountFile, changed->Text) ||
           Fail(ErrorFromErrno(errno, Operation::Write));
}

void PutLabel(TableState& state, const std::string& own, std::string_view name) {
    std::erase_if(state.Labels, [&](const VolumeLabel& label) { return SameName(label.Volume, own); });
    state.Labels.push_back({own, std::string(name)});
}

void PutName(TableState& state, const Renaming& renaming, std::string_view name) {
    Volume changed = *renaming.Before;
    changed.Info.Volume = name;
    const auto now = std::make_shared<const Volume>(std::move(changed));
    std::ranges::replace(state.Fixed, renaming.Before, now);
    for (MountedDisk& disk : state.Disks)
        if (disk.Ref == renaming.Before)
            disk.Ref = now;
    for (VolumeInfo& declared : state.Declared)
        if (SameName(declared.Volume, renaming.Before->Info.Volume))
            declared.Volume = name;
}

// What mounts.toml calls a volume that it declares; null when it does not tell which one it means.
const std::string* DeclaredName(const TableState& state, const MountFile& file, const VolumeInfo& info) {
    const auto isAt = [&info](const auto& each) { return each->Info.HostRoot == info.HostRoot; };
    const bool isAlone = std::ranges::count_if(state.Fixed, isAt) <= 1;
    for (const MountFileVolume& row : file.Volumes)
        if (row.Info.HostRoot == info.HostRoot &&
            (row.Info.Device.empty() ? isAlone : SameName(row.Info.Device, info.Device)))
            return &row.Info.Volume;
    return nullptr;
}

// The volumes that mounts.toml calls otherwise than it did.
std::vector<Renaming> WishedNames(const TableState& state, const MountFile& file) {
    std::vector<Renaming> wishes;
    const auto wish = [&](const VolumeRef& volume, const std::string& own) {
        const std::string& now = LabelIn(file.Labels, own);
        if (now != LabelIn(state.Labels, own))
            wishes.push_back({.Before = volume, .Own = own, .Now = now});
    };
    for (const VolumeRef& volume : state.Fixed) {
        if (const std::string* declared = DeclaredName(state, file, volume->Info))
            wishes.push_back({.Before = volume, .Now = *declared});
        else
            wish(volume, OwnNameIn(state, volume->Info.Volume));
    }
    for (const MountedDisk& disk : state.Disks) {
        const auto isTwin = [&disk](const MountedDisk& each) { return SameName(each.Label, disk.Label); };
        if (const std::string* declared = DeclaredName(state, file, disk.Ref->Info))
            wishes.push_back({.Before = disk.Ref, .Now = LabelIn(file.Labels, *declared)});
        else if (std::ranges::count_if(state.Disks, isTwin) == 1)
            wish(disk.Ref, disk.Label);
    }
    return wishes;
}

} // namespace

bool IsDeviceText(std::string_view name) noexcept {
    return !name.empty() && name.size() <= LongestDeviceText &&
           name.find_first_of(std::string_view("/:\0", 3)) == std::string_view::npos;
}

VolumeRef FindVolume(std::string_view name) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    for (const auto field : {&VolumeInfo::Device, &VolumeInfo::Volume}) {
        for (const VolumeRef& volume : state.Fixed)
            if (SameName(volume->Info.*field, name))
                return field == &VolumeInfo::Volume && IsAssign(name) ? nullptr : volume;
        for (const MountedDisk& disk : state.Disks)
            if (SameName(disk.Ref->Info.*field, name))
                return field == &VolumeInfo::Volume && IsAssign(name) ? nullptr : disk.Ref;
    }
    return nullptr;
}

bool IsDeviceName(std::string_view name) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    // A user may have an assign FTPMount, and then sites are looked for there.
    return HasDevice(state, name) || (IsReserved(name) && !SameName(name, "FTPMount"));
}

VolumeRef VolumeOfHostPath(std::string_view hostPath) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    VolumeRef best;
    std::size_t bestLength = 0;
    for (const VolumeRef& volume : state.Fixed)
        TakeDeeper(volume, hostPath, best, bestLength);
    for (const MountedDisk& disk : state.Disks)
        TakeDeeper(disk.Ref, hostPath, best, bestLength);
    return best ? best : HostRootVolume();
}

void ResetVolumeTable() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    static_cast<Table&>(state) = Table();
    ResetAssigns();
    ForgetRoots();
    ForgetMounts();
}

void AddSetUpProblem(const std::string& text) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (state.Problem.size() + text.size() > LargestProblem)
        ++state.MoreProblems;
    else
        state.Problem += (state.Problem.empty() ? "" : "\n") + text;
}

std::string SetUpProblem() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (state.MoreProblems == 0)
        return state.Problem;
    return state.Problem + "\nand " + std::to_string(state.MoreProblems) + " more";
}

std::vector<VolumeInfo> Volumes() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    std::vector<VolumeInfo> all;
    for (const VolumeRef& volume : AllVolumes(state)) {
        all.push_back(volume->Info);
        all.back().MayHang = !volume->SlowMount.empty();
    }
    return all;
}

std::vector<VolumeInfo> EmptyDrives() {
    std::vector<VolumeInfo> drives = DrivesWithoutMedium();
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    std::set<std::string, std::less<>> given;
    for (VolumeInfo& drive : drives) {
        const std::string stem = drive.Device;
        for (drive.Unit = 0;; ++drive.Unit) {
            drive.Device = stem + std::to_string(drive.Unit);
            if (!IsTaken(state, drive.Device) && given.insert(drive.Device).second)
                break;
        }
    }
    return drives;
}

bool AddVolume(VolumeInfo info) {
    if (!IsDeviceText(info.Device) || !IsDeviceText(info.Volume) || !info.HostRoot.starts_with('/'))
        return Fail(ErrorInvalidComponentName);
    const MountRows rows = Mounts();
    std::string slow = SlowMountOf(*rows, info.HostRoot);
    std::string real = RealDrawer(info.HostRoot, slow);
    if (real.empty() && slow.empty())
        return false;
    if (real.empty()) // a disk that does not answer now may do so later
        real = info.HostRoot;
    slow = SlowMountOf(*rows, real);
    if (const MountRow* row = MountOf(*rows, real))
        DescribeFileSystem(info, *row);
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (HasDevice(state, info.Device) || SameName(info.Device, "NIL") || SameName(info.Device, "CON") ||
        SameName(info.Device, "PROGDIR"))
        return Fail(ErrorObjectExists);
    state.Fixed.push_back(std::make_shared<const Volume>(Volume{std::move(info), real, slow}));
    state.SeenMounts.reset();
    return true;
}

void KeepNamesFree(std::vector<std::string> names) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    state.KeptFree.insert(state.KeptFree.end(), std::make_move_iterator(names.begin()),
                          std::make_move_iterator(names.end()));
}

void DeclareDisk(VolumeInfo declared) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    state.Declared.push_back(std::move(declared));
    state.Disks.clear(); // to be made anew
    state.SeenMounts.reset();
}

VolumeRef PresentRecord(const VolumeRef& volume) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    for (const VolumeRef& now : AllVolumes(state))
        if (now->Info.Device == volume->Info.Device && now->RealRoot == volume->RealRoot)
            return now;
    return volume;
}

void SetVolumeLabels(std::vector<VolumeLabel> labels, const std::string& mountFile) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    state.Labels = std::move(labels);
    state.MountFile = mountFile;
}

std::string LabelOf(const std::string& ownName) {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    return LabelIn(state.Labels, ownName);
}

std::string LabelFile() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    return state.MountFile;
}

std::vector<VolumeRename> TakeNewNames() {
    const auto text = ReadHostText(LabelFile(), LargestMountFile);
    MountFile file = ParseMountFile(text.value_or(""), {});
    std::vector<VolumeRename> taken;
    if (!text || !file.Problems.empty())
        return taken;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        for (const Renaming& wish : WishedNames(state, file)) {
            const std::string& before = wish.Before->Info.Volume;
            if (before == wish.Now || (!SameName(before, wish.Now) && IsTaken(state, wish.Now)))
                continue;
            PutName(state, wish, wish.Now);
            taken.push_back({before, wish.Now});
        }
        state.Labels = std::move(file.Labels);
    }
    for (const VolumeRename& each : taken)
        RenameInAssigns(each.Before, each.Now);
    return taken;
}

bool Relabel(std::string_view volume, std::string_view name) {
    if (volume.ends_with(':'))
        volume.remove_suffix(1);
    Renaming renaming;
    bool isDeclared = false;
    if (!FindRenaming(volume, name, renaming) || !KeepName(renaming, name, isDeclared))
        return false;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        PutName(state, renaming, name);
        if (!isDeclared)
            PutLabel(state, renaming.Own, name);
    }
    RenameInAssigns(renaming.Before->Info.Volume, name);
    TellDiskWatches();
    return true;
}

std::string DosTypeText(std::uint32_t dosType) {
    std::string text;
    for (int shift = 24; shift > 0; shift -= 8)
        text.push_back(static_cast<char>((dosType >> shift) & 0xFF));
    const std::uint32_t last = dosType & 0xFF;
    if (last > ' ')
        return text + static_cast<char>(last);
    static constexpr std::string_view Digits = "0123456789abcdef";
    return text + '\\' + Digits[last >> 4] + Digits[last & 15];
}

} // namespace dos
