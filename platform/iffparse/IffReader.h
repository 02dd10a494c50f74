// Walks over the chunks of an IFF stream in memory, group by group, and keeps the properties on the
// way. Every size is checked against the group around the chunk; a broken stream is usable up to
// its break.
#pragma once

#include "platform/iffparse/Chunks.h"

#include <optional>
#include <string_view>
#include <vector>

namespace iffparse {

inline constexpr std::size_t DefaultMaxDepth = 16; // groups inside each other

struct IffChunk {
    ChunkId Type = 0; // of the group around it; for a group its own
    ChunkId Id = 0;
    std::uint32_t Size = 0; // as stated; a group's counts its type
    std::string_view Data;  // what is there of it: shorter than Size when the chunk is cut off
    std::size_t Depth = 0;  // groups around it; 0 for the outer group
    [[nodiscard]] bool IsGroup() const noexcept { return IsGroupId(Id); }
    [[nodiscard]] bool IsCut() const noexcept { return Data.size() < Size; }
};

// The bytes must stay for the life of the reader and of what it gives out. Only the outer group is
// read; what follows it is ignored.
class IffReader {
public:
    explicit IffReader(std::string_view bytes, std::size_t maxDepth = DefaultMaxDepth)
        : Bytes(bytes), MaxDepth(maxDepth) {}

    // What Scan stops at: this chunk in groups of the type.
    void StopChunk(ChunkId type, ChunkId id) { Stops.push_back({type, id}); }
    // What is kept for FindProp when it is passed.
    void PropChunk(ChunkId type, ChunkId id) { PropIds.push_back({type, id}); }

    // The next chunk in the order of the file, groups before their contents; null at the end and
    // at a break, as Error tells. Valid until the next call. A chunk that is cut off is given out,
    // the break is told by the call after it.
    const IffChunk* Step();
    // The next one that StopChunk names.
    const IffChunk* Scan();
    // Passes over what is left of the group that was entered last.
    void SkipGroup();

    // The property that counts here: the last one before this place in the group itself, else in a
    // PROP of a list around it.
    [[nodiscard]] std::optional<std::string_view> FindProp(ChunkId type, ChunkId id) const;

    // Why Step gave null; None at the regular end.
    [[nodiscard]] IffError Error() const noexcept { return Problem; }

private:
    struct Name {
        ChunkId Type, Id;
        bool operator==(const Name&) const = default;
    };
    struct Group {
        ChunkId Type, Id;
        std::size_t End;  // of what is there of it
        std::size_t Next; // where the chunk after it begins
        IffError Break;   // why End lies before its stated end
    };
    struct Property {
        Name Which;
        std::string_view Data;
        std::size_t Scope; // goes with the group that is this deep
    };

    const IffChunk* Fail(IffError error);
    [[nodiscard]] bool LeaveFinishedGroups();
    void LeaveGroup();
    [[nodiscard]] bool MayStandHere(ChunkId id) const;
    const IffChunk* TakeChunk();
    bool EnterGroup(std::size_t next, IffError cut);
    void KeepProperty();

    std::string_view Bytes;
    std::size_t MaxDepth;
    std::vector<Name> Stops, PropIds;
    std::size_t At = 0;
    bool HasBegun = false;
    std::vector<Group> Groups;
    std::vector<Property> Properties;
    IffChunk Chunk;
    IffError AfterChunk = IffError::None; // the break behind the chunk that was given out
    IffError Problem = IffError::None;
};

} // namespace iffparse
