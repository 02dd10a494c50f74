#include "platform/iffparse/IffWriter.h"

#include "platform/utility/Text.h"

#include <utility>

namespace iffparse {
namespace {

std::string BigEndian(std::uint64_t number, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t at = size; at-- > 0; number >>= 8)
        bytes[at] = static_cast<char>(number & 0xFF);
    return bytes;
}

// Which chunks a group may hold.
bool MayHold(ChunkId group, ChunkId id) {
    if (group == IdProp)
        return !IsGroupId(id);
    if (group == IdForm)
        return id != IdProp;
    return IsGroupId(id) && (id != IdProp || group == IdList);
}

} // namespace

void IffWriter::Append(std::string_view bytes) {
    if (HasFailed || bytes.size() > Limit - Bytes.size())
        HasFailed = true;
    else
        Bytes += bytes;
}

void IffWriter::AppendNumber(std::uint64_t number, std::size_t size) {
    Append(BigEndian(number, size));
}

void IffWriter::Begin(ChunkId id, bool fits) {
    if (!fits || !IsChunkId(id) || (!Chunks.empty() && !MayHold(Chunks.back().Id, id)))
        HasFailed = true;
    AppendNumber(id, 4);
    AppendNumber(0, 4); // known when it is closed
    if (!HasFailed)
        Chunks.push_back({id, Bytes.size()});
}

void IffWriter::PushChunk(ChunkId type, ChunkId id) {
    const bool fits = Chunks.empty() ? Bytes.empty() && id != IdProp : !IsDataOpen();
    Begin(id, fits && IsGroupId(id) && IsChunkId(type));
    AppendNumber(type, GroupTypeSize);
}

void IffWriter::PushChunk(ChunkId id) {
    Begin(id, !Chunks.empty() && !IsDataOpen() && !IsGroupId(id));
}

void IffWriter::PopChunk() {
    if (HasFailed || Chunks.empty()) {
        HasFailed = true;
        return;
    }
    const std::size_t data = Chunks.back().Data;
    const std::size_t size = Bytes.size() - data;
    Bytes.replace(data - 4, 4, BigEndian(size, 4));
    Chunks.pop_back();
    if (size % 2 != 0)
        Append(std::string_view("\0", 1));
}

void IffWriter::Write(std::string_view bytes) {
    if (IsDataOpen())
        Append(bytes);
    else
        HasFailed = true;
}

void IffWriter::WriteNumber(std::uint64_t number, std::size_t size) {
    Write(BigEndian(number, size));
}

void IffWriter::WriteField(std::string_view text, std::size_t size) {
    std::string field(text.substr(0, size == 0 ? 0 : utility::CutLength(text, size - 1)));
    field.resize(size, '\0');
    Write(field);
}

std::optional<std::string> IffWriter::Finish() {
    const bool isWhole = !HasFailed && Chunks.empty() && !Bytes.empty();
    HasFailed = true;
    return isWhole ? std::optional(std::move(Bytes)) : std::nullopt;
}

} // namespace iffparse
