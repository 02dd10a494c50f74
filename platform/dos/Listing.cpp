#include "platform/dos/Listing.h"

#include "platform/dos/NameEscapes.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/dos/TemporaryNames.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>

namespace dos {

namespace {

constexpr std::size_t SlicesAhead = 128; // done before they are asked for, at most

// In which older emulators keep what others keep in sidecars, one in each drawer. It travels with its drawer.
constexpr std::string_view EmulatorTable = "_UAEFSDB.___";

bool IsSidecarName(std::string_view name) {
    return name.size() > SidecarSuffix.size() && name.ends_with(SidecarSuffix);
}

std::string_view OwnerOfSidecar(std::string_view name) {
    return name.substr(0, name.size() - SidecarSuffix.size());
}

void Beat(Progress* progress) {
    if (progress)
        progress->Beat();
}

} // namespace

Listing::Listing(HostFd openDrawer, MetadataRule rule) : Open(std::move(openDrawer)), Rule(rule) {}

void Listing::ReadNames(Progress* progress) {
    Kept = AttributesOf(Open.Get());
    while (true) {
        NameBlock block;
        const long got = block.Fill(Open.Get());
        if (got < 0)
            Error = errno;
        if (got <= 0)
            break;
        Beat(progress);
        const std::size_t entries = block.Entries().size();
        for (std::size_t from = 0; from < entries; from += SliceSize) {
            auto slice = std::make_unique<Slice>();
            slice->Block = Blocks.size();
            slice->From = from;
            slice->To = std::min(from + SliceSize, entries);
            Slices.push_back(std::move(slice));
        }
        Count += entries;
        FindTemporaries(block);
        Blocks.push_back(std::move(block));
    }
    FindPairs();
    FindAliases();
}

// Finds the files beside which a sidecar lies.
void Listing::FindPairs() {
    std::unordered_set<std::string_view> owners;
    for (const NameBlock& block : Blocks)
        for (const BareEntry& entry : block.Entries())
            if ((entry.Type == DT_REG || entry.Type == DT_UNKNOWN) && IsSidecarName(entry.View()))
                owners.insert(OwnerOfSidecar(entry.View()));
    if (owners.empty())
        return;
    for (const NameBlock& block : Blocks)
        for (const BareEntry& entry : block.Entries())
            if (owners.contains(entry.View()))
                WithSidecar.insert(entry.View());
}

// What a process that was ended left behind goes as soon as somebody looks.
void Listing::FindTemporaries(const NameBlock& block) {
    for (const BareEntry& entry : block.Entries()) {
        if (!IsTemporaryName(entry.View()))
            continue;
        Temporaries.insert(entry.View());
        RemoveIfStale(Open.Get(), std::string(entry.View()));
    }
}

void Listing::FindAliases() {
    AliasFinder finder(Rule);
    for (const NameBlock& block : Blocks)
        for (const BareEntry& entry : block.Entries())
            finder.Add(entry.View());
    Aliases = finder.Table();
}

std::string_view Listing::NameAt(const Slice& slice, std::size_t entry) const noexcept {
    return Blocks[slice.Block].Entries()[slice.From + entry].View();
}

void Listing::GiveShownName(const Slice& slice, std::size_t entry, std::string& name) const {
    const std::string_view hostName = NameAt(slice, entry);
    const auto alias = Aliases.AliasOf.empty() ? Aliases.AliasOf.end() : Aliases.AliasOf.find(hostName);
    if (alias != Aliases.AliasOf.end())
        name = alias->second;
    else if (Rule == MetadataRule::Uaem)
        name = UnescapedName(hostName);
    else
        name.assign(hostName);
}

// Told by its text: what is only called so is the user's own and must be seen.
bool Listing::IsSidecar(int directory, const BareEntry& entry, const ObjectRecord& record) const {
    const std::string_view name = entry.View();
    if (Rule == MetadataRule::Uaem && name == EmulatorTable)
        return record.Type == TypeFile;
    SidecarFile sidecar;
    return record.Type == TypeFile && !WithSidecar.empty() && IsSidecarName(name) &&
           WithSidecar.contains(OwnerOfSidecar(name)) &&
           FindSidecar(directory, OwnerOfSidecar(name), sidecar) && sidecar.State == SidecarState::Ours;
}

bool Listing::IsTemporaryAt(const Slice& slice, std::size_t entry) const {
    return !Temporaries.empty() && Temporaries.contains(NameAt(slice, entry));
}

Slice* Listing::TakeNext() {
    const std::lock_guard hold(Guard);
    if (IsCancelled || NextFree >= Slices.size() || NextFree > Consumed + SlicesAhead)
        return nullptr;
    return Slices[NextFree++].get();
}

bool Listing::WorkOnNext(int directory, Progress* progress) {
    Slice* slice = TakeNext();
    if (!slice)
        return false;
    std::vector<ObjectRecord> records(slice->To - slice->From);
    const std::vector<BareEntry>& entries = Blocks[slice->Block].Entries();
    for (std::size_t i = 0; i < records.size(); ++i) {
        const BareEntry& entry = entries[slice->From + i];
        ExamineEntry(directory, entry.Name, entry.Type, {Kept, Rule}, records[i]);
        records[i].IsSidecar = IsSidecar(directory, entry, records[i]);
        if (!WithSidecar.empty() && WithSidecar.contains(entry.View()))
            ApplySidecar(directory, entry.View(), records[i]);
        Beat(progress);
    }
    const std::lock_guard hold(Guard);
    slice->Records = std::move(records);
    slice->IsDone = true;
    Done.notify_all();
    return true;
}

void Listing::Finish(std::size_t slice, Progress* progress) {
    while (true) {
        {
            const std::lock_guard hold(Guard);
            if (Slices[slice]->IsDone)
                return;
        }
        if (WorkOnNext(Open.Get(), progress))
            continue;
        std::unique_lock hold(Guard); // another thread has taken it
        Done.wait(hold, [&] { return Slices[slice]->IsDone; });
        return;
    }
}

void Listing::Release(std::size_t slice) {
    const std::lock_guard hold(Guard);
    std::vector<ObjectRecord>().swap(Slices[slice]->Records);
    Consumed = slice + 1;
}

void Listing::Cancel() {
    const std::lock_guard hold(Guard);
    IsCancelled = true;
}

} // namespace dos
