#include "platform/iffparse/IffReader.h"

#include "platform/iffparse/ByteReader.h"

#include <algorithm>

namespace iffparse {

const IffChunk* IffReader::Fail(IffError error) {
    Problem = error;
    return nullptr;
}

void IffReader::LeaveGroup() {
    At = Groups.back().Next;
    Groups.pop_back();
    while (!Properties.empty() && Properties.back().Scope > Groups.size())
        Properties.pop_back();
}

// False at a break. A few zeros behind the last chunk are padding, whatever else is too short for a
// chunk is damage.
bool IffReader::LeaveFinishedGroups() {
    while (!Groups.empty() && Groups.back().End - At < ChunkHeaderSize) {
        const Group& group = Groups.back();
        const std::string_view rest = Bytes.substr(At, group.End - At);
        if (group.Break != IffError::None)
            Problem = group.Break;
        else if (rest.find_first_not_of('\0') != std::string_view::npos)
            Problem = IffError::Mangled;
        if (Problem != IffError::None)
            return false;
        LeaveGroup();
    }
    return true;
}

bool IffReader::MayStandHere(ChunkId id) const {
    if (Groups.empty())
        return IsGroupId(id) && id != IdProp;
    switch (Groups.back().Id) {
    case IdList:
        return IsGroupId(id);
    case IdCat:
        return IsGroupId(id) && id != IdProp;
    case IdProp:
        return !IsGroupId(id);
    default:
        return id != IdProp;
    }
}

bool IffReader::EnterGroup(std::size_t next, IffError cut) {
    ByteReader head(Chunk.Data);
    Chunk.Type = head.Long();
    if (Groups.size() == MaxDepth)
        Problem = IffError::TooDeep;
    else if (head.Failed() || !IsChunkId(Chunk.Type))
        Problem = head.Failed() && cut != IffError::None ? cut : IffError::Mangled;
    else
        Groups.push_back({Chunk.Type, Chunk.Id, At + Chunk.Data.size(), next, cut});
    At += GroupTypeSize;
    return Problem == IffError::None;
}

// Those of a PROP belong to the list around it and hold for all forms in that. A later one of the same scope
// takes the place of the one before, so that a file of many small chunks does not fill the memory.
void IffReader::KeepProperty() {
    const Name name = {Chunk.Type, Chunk.Id};
    if (std::ranges::find(PropIds, name) == PropIds.end())
        return;
    const std::size_t scope = Groups.size() - (Groups.back().Id == IdProp ? 1U : 0U);
    const auto same = std::ranges::find_if(Properties, [&](const Property& property) {
        return property.Which == name && property.Scope == scope;
    });
    if (same != Properties.end())
        same->Data = Chunk.Data;
    else
        Properties.push_back({name, Chunk.Data, scope});
}

// There is room for a header.
const IffChunk* IffReader::TakeChunk() {
    const std::size_t end = Groups.empty() ? Bytes.size() : Groups.back().End;
    ByteReader header(Bytes.substr(At, ChunkHeaderSize));
    Chunk = {.Type = Groups.empty() ? 0 : Groups.back().Type,
             .Id = header.Long(),
             .Size = header.Long(),
             .Data = {},
             .Depth = Groups.size()};
    if (!IsChunkId(Chunk.Id))
        return Fail(IffError::Mangled);
    if (!MayStandHere(Chunk.Id))
        return Fail(IffError::Syntax);
    At += ChunkHeaderSize;
    Chunk.Data = Bytes.substr(At, std::min<std::size_t>(Chunk.Size, end - At));
    // The pad byte may be missing at the end of a group.
    const std::size_t dataEnd = At + Chunk.Data.size();
    const std::size_t next = std::min(dataEnd + (Chunk.Size & 1U), end);
    IffError cut = IffError::None;
    if (Chunk.IsCut())
        cut = Chunk.Size > Bytes.size() - At ? IffError::Truncated : IffError::Mangled;
    if (Chunk.IsGroup())
        return EnterGroup(next, cut) ? &Chunk : nullptr;
    At = next;
    AfterChunk = cut;
    KeepProperty();
    return &Chunk;
}

const IffChunk* IffReader::Step() {
    if (Problem == IffError::None)
        Problem = AfterChunk;
    if (Problem != IffError::None)
        return nullptr;
    if (!HasBegun) {
        HasBegun = true;
        if (Bytes.size() < ChunkHeaderSize)
            return Fail(IffError::NotIff);
        const IffChunk* outer = TakeChunk();
        if (outer == nullptr && Problem != IffError::Truncated)
            Problem = IffError::NotIff;
        return outer;
    }
    if (!LeaveFinishedGroups() || Groups.empty())
        return nullptr;
    return TakeChunk();
}

const IffChunk* IffReader::Scan() {
    while (const IffChunk* chunk = Step())
        if (std::ranges::find(Stops, Name{chunk->Type, chunk->Id}) != Stops.end())
            return chunk;
    return nullptr;
}

void IffReader::SkipGroup() {
    if (!Groups.empty())
        At = Groups.back().End;
}

std::optional<std::string_view> IffReader::FindProp(ChunkId type, ChunkId id) const {
    const auto found = std::find_if(Properties.rbegin(), Properties.rend(), [&](const Property& property) {
        return property.Which == Name{type, id};
    });
    return found == Properties.rend() ? std::nullopt : std::optional(found->Data);
}

} // namespace iffparse
