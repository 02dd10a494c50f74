// Exercises the walk over IFF chunks, whole and with groups passed over, its properties, and the writer: what
// was read without an error comes out the same when it is written and read again.
#include "platform/iffparse/IffReader.h"
#include "platform/iffparse/IffWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

using iffparse::IffChunk;
using iffparse::IffReader;

void Require(bool truth) {
    if (!truth)
        std::abort();
}

// Every chunk lies within the file and, with its header, behind the one before.
void CheckChunk(const IffChunk& chunk, std::string_view file, std::size_t& at) {
    const auto place = static_cast<std::size_t>(chunk.Data.data() - file.data());
    Require(place >= at + iffparse::ChunkHeaderSize && place + chunk.Data.size() <= file.size());
    Require(chunk.Data.size() <= chunk.Size && iffparse::IsChunkId(chunk.Id));
    Require(chunk.Depth + (chunk.IsGroup() ? 1 : 0) <= iffparse::DefaultMaxDepth);
    at = chunk.IsGroup() ? place + iffparse::GroupTypeSize : place + chunk.Data.size();
}

struct Item {
    iffparse::ChunkId Type, Id;
    std::size_t Depth;
    std::string_view Data; // empty for a group
    bool operator==(const Item&) const = default;
};

std::vector<Item> Walk(std::string_view file, iffparse::IffError& error) {
    IffReader reader(file);
    std::vector<Item> items;
    std::size_t at = 0;
    while (const IffChunk* chunk = reader.Step()) {
        CheckChunk(*chunk, file, at);
        items.push_back(
            {chunk->Type, chunk->Id, chunk->Depth, chunk->IsGroup() ? std::string_view() : chunk->Data});
    }
    error = reader.Error();
    return items;
}

void TryRewrite(const std::vector<Item>& items) {
    iffparse::IffWriter writer;
    std::size_t depth = 0;
    for (const Item& item : items) {
        for (; depth > item.Depth; --depth)
            writer.PopChunk();
        if (iffparse::IsGroupId(item.Id)) {
            writer.PushChunk(item.Type, item.Id);
            ++depth;
            continue;
        }
        writer.PushChunk(item.Id);
        writer.Write(item.Data);
        writer.PopChunk();
    }
    for (; depth > 0; --depth)
        writer.PopChunk();
    const auto bytes = writer.Finish();
    Require(bytes.has_value());
    iffparse::IffError error{};
    Require(Walk(*bytes, error) == items);
    Require(error == iffparse::IffError::None);
}

// Properties of every chunk of the first form's type, groups passed over now and then.
void TryProperties(std::string_view file, const std::vector<Item>& items) {
    IffReader reader(file);
    for (const Item& item : items)
        if (item.Depth < 3 && !iffparse::IsGroupId(item.Id))
            reader.PropChunk(item.Type, item.Id);
    reader.StopChunk(items.back().Type, items.back().Id);
    for (int turn = 0; const IffChunk* chunk = reader.Scan(); ++turn) {
        const auto data = reader.FindProp(chunk->Type, chunk->Id);
        Require(!data || data->data() + data->size() <= file.data() + file.size());
        if (turn % 3 == 2)
            reader.SkipGroup();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Memory of its own size, so that a step beyond the end is seen.
    const std::vector<char> copy(data, data + size);
    const std::string_view file(copy.data(), copy.size());
    iffparse::IffError error{};
    const std::vector<Item> items = Walk(file, error);
    Require(!items.empty() || error != iffparse::IffError::None);
    if (items.empty())
        return 0;
    TryRewrite(items);
    if (items.size() < 200)
        TryProperties(file, items);
    return 0;
}
