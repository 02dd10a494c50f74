// The names of one drawer and the records of its objects, filled slice by slice by whichever
// threads have time. Private to platform/dos.
#pragma once

#include "platform/dos/Aliases.h"
#include "platform/dos/HostDirectory.h"
#include "platform/dos/Limits.h"
#include "platform/dos/Metadata.h"

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace dos {

inline constexpr std::size_t SliceSize = 256; // objects examined at one go

// A run of objects within one block of names.
struct Slice {
    std::size_t Block = 0;
    std::size_t From = 0;
    std::size_t To = 0;
    bool IsDone = false;
    std::vector<ObjectRecord> Records; // one per name, from the time it is done
};

class Listing {
public:
    Listing(HostFd openDrawer, MetadataRule rule);

    // Reads all names. Must be over before anything below is called. A drawer that cannot be read
    // to its end keeps what was found; its errno stands in ReadError.
    void ReadNames(Progress* progress);

    [[nodiscard]] std::size_t EntryCount() const noexcept { return Count; }
    [[nodiscard]] std::size_t SliceCount() const noexcept { return Slices.size(); }
    // The entries of a slice that is done.
    [[nodiscard]] Slice& At(std::size_t slice) noexcept { return *Slices[slice]; }
    [[nodiscard]] std::string_view NameAt(const Slice& slice, std::size_t entry) const noexcept;
    void GiveShownName(const Slice& slice, std::size_t entry, std::string& name) const;
    // Is it a temporary file, which is not the user's?
    [[nodiscard]] bool IsTemporaryAt(const Slice& slice, std::size_t entry) const;

    // Examines the next slice that nobody has taken; false when there is none within reach.
    // directory is the drawer, as a descriptor or as the calling thread's own directory.
    bool WorkOnNext(int directory, Progress* progress);
    // Returns when the slice is done, having worked on others meanwhile.
    void Finish(std::size_t slice, Progress* progress);
    // Lets go of a slice that the caller is through with; those far ahead come within reach.
    void Release(std::size_t slice);
    // No further slice is begun.
    void Cancel();

    [[nodiscard]] int Drawer() const noexcept { return Open.Get(); }
    [[nodiscard]] int ReadError() const noexcept { return Error; }

private:
    Slice* TakeNext();
    [[nodiscard]] bool IsSidecar(int directory, const BareEntry& entry, const ObjectRecord& record) const;
    void FindPairs();
    void FindTemporaries(const NameBlock& block);
    void FindAliases();

    HostFd Open;
    MetadataRule Rule;
    Attributes Kept = Attributes::Asked;
    int Error = 0;
    std::size_t Count = 0;
    std::vector<NameBlock> Blocks;
    std::unordered_set<std::string_view> WithSidecar; // names of files that have one
    AliasTable Aliases;
    std::unordered_set<std::string_view> Temporaries;

    std::mutex Guard; // over the slices' IsDone and what follows
    std::condition_variable Done;
    std::vector<std::unique_ptr<Slice>> Slices;
    std::size_t NextFree = 0;
    std::size_t Consumed = 0; // slices before it are let go
    bool IsCancelled = false;
};

} // namespace dos
