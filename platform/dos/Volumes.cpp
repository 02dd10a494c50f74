#include "platform/dos/Volumes.h"

#include "platform/dos/DiskEvents.h"
#include "platform/dos/DiskVolumes.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/HostWriting.h"
#include "platform/dos/Limits.h"
#include "platform/dos/MountFile.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/UserHome.h"
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

// A disk of which the user has declared something, mounted or not.
struct DeclaredDisk {
    VolumeInfo Info;        // name, root and rules count
    bool IsRefused = false; // the name was taken when the disk was mounted
};

// What went wrong, for a person; texts without measure are only counted out.
struct ProblemList {
    std::string Text;
    std::size_t More = 0; // that Text has no room for

    void Add(const std::string& problem) {
        if (Text.size() + problem.size() > LargestProblem)
            ++More;
        else
            Text += (Text.empty() ? "" : "\n") + problem;
    }
};

struct Table {
    std::vector<VolumeRef> Fixed; // made at set-up or by AddVolume, in that order
    std::vector<VolumeRef> Disks; // mounted by the host, made from SeenMounts
    std::vector<PastDisk> Past;   // the last of them at the end
    std::vector<DeclaredDisk> Declared;
    MountRows SeenMounts;
    std::vector<VolumeLabel> Labels;
    std::vector<std::string> KeptFree; // names of assigns, made or not
    std::string MountFile;             // host path; keeps the labels
    ProblemList Problems;
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
    const auto passes = [&](const VolumeRef& volume) { return test(*volume); };
    return std::ranges::any_of(state.Fixed, passes) || std::ranges::any_of(state.Disks, passes);
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
VolumeRef KeptDisk(const std::vector<VolumeRef>& old, const VolumeInfo& info) {
    for (const VolumeRef& disk : old)
        if (disk->Info.HostRoot == info.HostRoot && disk->Info.MountSource == info.MountSource &&
            disk->Own == info.Volume)
            return disk;
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

void RememberGone(TableState& state, const std::vector<VolumeRef>& old) {
    for (const VolumeRef& disk : old) {
        const VolumeInfo& info = disk->Info;
        if (std::ranges::find(state.Disks, disk) != state.Disks.end())
            continue;
        std::erase_if(state.Past, [&](const PastDisk& past) {
            return past.Source == info.MountSource && past.Label == disk->Own;
        });
        state.Past.push_back({info.MountSource, disk->Own, info.Device, info.Volume});
    }
    if (std::ssize(state.Past) > MostPastDisks)
        state.Past.erase(state.Past.begin(), state.Past.end() - MostPastDisks);
}

// A network may have been mounted over a volume's drawer, or taken away from it.
void RefreshFixed(TableState& state, const std::vector<MountRow>& rows) {
    for (VolumeRef& volume : state.Fixed) {
        Volume changed = *volume;
        changed.SlowMount = SlowMountOf(rows, volume->RealRoot);
        if (changed.SlowMount != volume->SlowMount)
            volume = std::make_shared<const Volume>(std::move(changed));
    }
}

// What the user has declared of a disk counts.
void Obey(TableState& state, VolumeInfo& info) {
    for (DeclaredDisk& declared : state.Declared) {
        if (declared.Info.HostRoot != info.HostRoot)
            continue;
        info.Names = declared.Info.Names;
        info.Metadata = declared.Info.Metadata;
        declared.IsRefused = IsTaken(state, declared.Info.Volume);
        if (!declared.IsRefused)
            info.Volume = declared.Info.Volume;
    }
}

void AddDisk(TableState& state, VolumeInfo info, const std::vector<MountRow>& rows) {
    Volume disk{{}, info.HostRoot, SlowMountOf(rows, info.HostRoot), info.Volume};
    GiveNames(state, info);
    Obey(state, info);
    disk.Info = std::move(info);
    state.Disks.push_back(std::make_shared<const Volume>(std::move(disk)));
}

// Takes what the host has mounted meanwhile into the table. The guard is held.
void RefreshDisks(TableState& state) {
    const MountRows rows = Mounts();
    if (rows == state.SeenMounts)
        return;
    state.SeenMounts = rows;
    RefreshFixed(state, *rows);
    const std::vector<VolumeRef> old = std::move(state.Disks);
    state.Disks.clear();
    std::vector<VolumeInfo> newDisks;
    for (VolumeInfo& info : DisksOf(*rows)) {
        if (std::ranges::any_of(state.Fixed,
                                [&](const VolumeRef& volume) { return volume->RealRoot == info.HostRoot; }))
            continue;
        const VolumeRef kept = KeptDisk(old, info);
        if (!kept) {
            newDisks.push_back(std::move(info));
            continue;
        }
        state.Disks.push_back(kept);
        if (kept->Info.WriteProtected != info.WriteProtected) { // mounted anew in place
            Volume changed = *kept;
            changed.Info.WriteProtected = info.WriteProtected;
            state.Disks.back() = std::make_shared<const Volume>(std::move(changed));
        }
    }
    RememberGone(state, old);
    for (VolumeInfo& info : newDisks)
        AddDisk(state, std::move(info), *rows);
}

std::vector<VolumeRef> AllVolumes(const TableState& state) {
    std::vector<VolumeRef> all = state.Fixed;
    all.insert(all.end(), state.Disks.begin(), state.Disks.end());
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
    std::string Now;
};

// False with IoErr when there is no such volume or it cannot have the name.
bool FindRenaming(std::string_view name, const std::string& newName, Renaming& found) {
    found = {FindVolume(name), newName};
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
    return true;
}

// The declaration of a volume. Null when it has none, or when it shares its place with another and the
// declaration tells by neither device nor name which one it means.
const MountFileVolume* DeclarationOf(const TableState& state, const MountFile& file, const Volume& volume) {
    const MountFileVolume* row = volume.IsOfSystem ? nullptr : FindDeclaration(file, volume.Info);
    if (!row || !row->Info.Device.empty() || SameName(row->Info.Volume, volume.Info.Volume))
        return row;
    const auto isThere = [&](const VolumeRef& each) { return each->RealRoot == volume.RealRoot; };
    return std::ranges::count_if(state.Fixed, isThere) <= 1 ? row : nullptr;
}

// Remembers the name in the mount file; false with IoErr.
bool KeepName(const Renaming& renaming, bool& isDeclared) {
    const std::string path = LabelFile();
    if (path.empty())
        return Fail(ErrorActionNotKnown);
    const auto text = ReadHostText(path, LargestMountFile);
    if (!text && errno != ENOENT)
        return Fail(ErrorFromErrno(errno, Operation::Read));
    const std::string home = HomeOfUser();
    const MountFile file = ParseMountFile(text.value_or(""), home);
    const MountFileVolume* declared = nullptr;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        declared = DeclarationOf(state, file, *renaming.Before);
    }
    const auto changed = RelabelInMountFile(text.value_or(""), declared, renaming.Before->Own, renaming.Now);
    if (!changed)
        return Fail(ErrorObjectWrongType);
    // Another declaration, of a disk that is not mounted, may have the name.
    if (ParseMountFile(*changed, home).Problems.size() > file.Problems.size())
        return Fail(ErrorObjectExists);
    isDeclared = declared != nullptr;
    return ReplaceHostText(path, *changed) || Fail(ErrorFromErrno(errno, Operation::Write));
}

void PutLabel(TableState& state, const std::string& own, std::string_view name) {
    std::erase_if(state.Labels, [&](const VolumeLabel& label) { return SameName(label.Volume, own); });
    state.Labels.push_back({own, std::string(name)});
}

void PutName(TableState& state, const Renaming& renaming) {
    Volume changed = *renaming.Before;
    changed.Info.Volume = renaming.Now;
    const VolumeRef now = std::make_shared<const Volume>(std::move(changed));
    std::ranges::replace(state.Fixed, renaming.Before, now);
    const auto disk = std::ranges::find(state.Disks, renaming.Before);
    if (disk == state.Disks.end())
        return;
    *disk = now;
    for (DeclaredDisk& declared : state.Declared)
        if (declared.Info.HostRoot == now->Info.HostRoot)
            declared.Info.Volume = renaming.Now;
}

// What disks will be called that are mounted after the file was changed.
void PutNamesOfDisksToCome(TableState& state, const MountFile& file) {
    for (DeclaredDisk& declared : state.Declared)
        if (const MountFileVolume* row = FindDeclaration(file, declared.Info))
            declared.Info.Volume = row->Info.Volume;
    for (PastDisk& past : state.Past)
        if (const std::string& name = LabelIn(file.Labels, past.Label);
            name != LabelIn(state.Labels, past.Label))
            past.Volume = name;
}

// The volumes that mounts.toml calls otherwise than it did.
std::vector<Renaming> WishedNames(const TableState& state, const MountFile& file) {
    std::vector<Renaming> wishes;
    for (const VolumeRef& volume : AllVolumes(state)) {
        const auto isTwin = [&](const VolumeRef& each) {
            return each != volume && SameName(each->Own, volume->Own);
        };
        const bool isDisk = std::ranges::find(state.Disks, volume) != state.Disks.end();
        const std::string& label = LabelIn(file.Labels, volume->Own);
        if (const MountFileVolume* declared = DeclarationOf(state, file, *volume))
            wishes.push_back({volume, declared->Info.Volume});
        else if (label != LabelIn(state.Labels, volume->Own) &&
                 !(isDisk && std::ranges::any_of(state.Disks, isTwin)))
            wishes.push_back({volume, label});
    }
    return wishes;
}

bool AddFixed(Volume volume) {
    VolumeInfo& info = volume.Info;
    if (!IsDeviceText(info.Device) || !IsDeviceText(info.Volume) || !info.HostRoot.starts_with('/'))
        return Fail(ErrorInvalidComponentName);
    const MountRows rows = Mounts();
    const std::string slow = SlowMountOf(*rows, info.HostRoot);
    volume.RealRoot = RealDrawer(info.HostRoot, slow);
    if (volume.RealRoot.empty() && slow.empty())
        return false;
    if (volume.RealRoot.empty()) // a disk that does not answer now may do so later
        volume.RealRoot = info.HostRoot;
    volume.SlowMount = SlowMountOf(*rows, volume.RealRoot);
    if (const MountRow* row = MountOf(*rows, volume.RealRoot))
        DescribeFileSystem(info, *row);
    volume.Own = info.Volume;
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    if (HasDevice(state, info.Device) || SameName(info.Device, "NIL") || SameName(info.Device, "CON") ||
        SameName(info.Device, "PROGDIR"))
        return Fail(ErrorObjectExists);
    if (const std::string& name = LabelIn(state.Labels, volume.Own); volume.IsOfSystem) {
        if (IsTaken(state, name))
            state.Problems.Add("mounts.toml: " + volume.Own + ": " + NameIsTaken(name));
        else
            info.Volume = name;
    }
    state.Fixed.push_back(std::make_shared<const Volume>(std::move(volume)));
    state.SeenMounts.reset();
    return true;
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
        for (const auto* volumes : {&state.Fixed, &state.Disks})
            for (const VolumeRef& volume : *volumes)
                if (SameName(volume->Info.*field, name))
                    return field == &VolumeInfo::Volume && IsAssign(name) ? nullptr : volume;
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
    for (const VolumeRef& disk : state.Disks)
        TakeDeeper(disk, hostPath, best, bestLength);
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
    state.Problems.Add(text);
}

std::string SetUpProblem() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    RefreshDisks(state);
    ProblemList problems = state.Problems;
    for (const DeclaredDisk& declared : state.Declared)
        if (declared.IsRefused)
            problems.Add("mounts.toml: " + declared.Info.HostRoot + ": " + NameIsTaken(declared.Info.Volume));
    if (problems.More == 0)
        return problems.Text;
    return problems.Text + "\nand " + std::to_string(problems.More) + " more";
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

bool AddVolume(VolumeInfo volume) {
    return AddFixed({.Info = std::move(volume), .RealRoot = {}, .SlowMount = {}});
}

bool AddSystemVolume(VolumeInfo volume) {
    return AddFixed({.Info = std::move(volume), .RealRoot = {}, .SlowMount = {}, .IsOfSystem = true});
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
    state.Declared.push_back({std::move(declared)});
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

std::string LabelFile() {
    TableState& state = State();
    const std::lock_guard hold(state.Guard);
    return state.MountFile;
}

std::vector<VolumeRename> TakeNewNames() {
    const auto text = ReadHostText(LabelFile(), LargestMountFile);
    MountFile file = ParseMountFile(text.value_or(""), HomeOfUser());
    std::vector<VolumeRename> taken;
    if (!text || !file.Problems.empty())
        return taken;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        RefreshDisks(state);
        for (const Renaming& wish : WishedNames(state, file)) {
            const std::string& before = wish.Before->Info.Volume;
            if (before == wish.Now || (!SameName(before, wish.Now) && IsTaken(state, wish.Now)))
                continue;
            PutName(state, wish);
            taken.push_back({before, wish.Now});
        }
        PutNamesOfDisksToCome(state, file);
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
    if (!FindRenaming(volume, std::string(name), renaming) || !KeepName(renaming, isDeclared))
        return false;
    {
        TableState& state = State();
        const std::lock_guard hold(state.Guard);
        PutName(state, renaming);
        if (!isDeclared)
            PutLabel(state, renaming.Before->Own, name);
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
