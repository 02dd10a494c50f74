// Makes an IFF stream in memory: chunks and groups are opened, filled and closed, sizes and padding
// come by themselves.
#pragma once

#include "platform/iffparse/Chunks.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace iffparse {

inline constexpr std::size_t MaxIffSize = 0xFFFFFFFF; // bytes that the sizes of chunks can state

// A step that does not fit (a chunk outside of a group, a wrong id, more than limit bytes) makes
// the writer fail for good; so Finish is the one place to ask.
class IffWriter {
public:
    explicit IffWriter(std::size_t limit = MaxIffSize) : Limit(limit) {}

    // Opens a group: FORM, LIST, CAT or PROP.
    void PushChunk(ChunkId type, ChunkId id);
    // Opens a chunk of data.
    void PushChunk(ChunkId id);
    // Closes what was opened last.
    void PopChunk();

    // Into the chunk of data that is open.
    void Write(std::string_view bytes);
    void WriteByte(std::uint8_t number) { WriteNumber(number, 1); }
    void WriteWord(std::uint16_t number) { WriteNumber(number, 2); }
    void WriteLong(std::uint32_t number) { WriteNumber(number, 4); }
    void WriteQuad(std::uint64_t number) { WriteNumber(number, 8); }
    // A text field of `size` bytes, zeros behind the text; a text that leaves no room for one of
    // them is cut at a whole character.
    void WriteField(std::string_view text, std::size_t size);

    [[nodiscard]] bool Failed() const noexcept { return HasFailed; }
    // The stream, whole; nothing when a step has failed, something is still open, or nothing was
    // written. The writer is spent.
    [[nodiscard]] std::optional<std::string> Finish();

private:
    struct Open {
        ChunkId Id;
        std::size_t Data; // where its data begin
    };

    void Begin(ChunkId id, bool fits);
    void Append(std::string_view bytes);
    void AppendNumber(std::uint64_t number, std::size_t size);
    void WriteNumber(std::uint64_t number, std::size_t size);
    [[nodiscard]] bool IsDataOpen() const { return !Chunks.empty() && !IsGroupId(Chunks.back().Id); }

    std::size_t Limit;
    std::string Bytes;
    std::vector<Open> Chunks;
    bool HasFailed = false;
};

} // namespace iffparse
