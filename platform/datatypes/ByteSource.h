// Random access to the bytes of a file or of memory for parsers that walk over headers. Reads go
// through one small window, so that parsers may ask for a few bytes at a time.
#pragma once

#include "platform/datatypes/Bytes.h"

#include <memory>
#include <string>
#include <vector>

namespace datatypes {

class ByteSource {
public:
    static constexpr std::size_t WindowSize = 4096; // the most that At() gives

    virtual ~ByteSource() = default;

    // Up to count bytes from offset; fewer, down to none, at the end or on a read error. Valid
    // until the next call.
    [[nodiscard]] Bytes At(std::uint64_t offset, std::size_t count);
    [[nodiscard]] std::uint64_t Size() const noexcept { return Length; }

protected:
    explicit ByteSource(std::uint64_t length) noexcept : Length(length) {}
    virtual std::size_t Read(std::uint64_t offset, std::span<std::byte> into) = 0;

private:
    std::uint64_t Length;
    std::uint64_t WindowStart = 0;
    std::vector<std::byte> Window;
};

// The bytes must outlive the source.
[[nodiscard]] std::unique_ptr<ByteSource> SourceFromMemory(Bytes bytes);
// Null with IoErr when the host file is not there, is no regular file (212) or may not be read.
[[nodiscard]] std::unique_ptr<ByteSource> SourceFromHostFile(const std::string& hostPath);

} // namespace datatypes
