// Contents of files: whole ones and streams. Only regular files and NIL: are ever opened, so that
// nothing here waits for a pipe or a device.
#pragma once

#include "platform/dos/Locks.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dos {

class Stream;

// All bytes of a file. Nothing with IoErr: 207 when it is larger than limit, 212 for what is no
// file.
[[nodiscard]] std::optional<std::string> ReadWhole(std::string_view path, std::size_t limit);

// Makes or replaces a file. The bytes go to a temporary name beside it and take its place when they
// are safely on disk; on failure the old file stands as it was. A soft link is written through;
// mode, owner and attributes of an old file stay.
[[nodiscard]] bool WriteWhole(std::string_view path, std::string_view bytes);

// One new drawer; 203 when the name is taken.
[[nodiscard]] bool CreateDir(std::string_view path);
// The same with all drawers on the way; true when it is there already.
[[nodiscard]] bool CreateDirs(std::string_view path);

enum class SeekFrom { Beginning, Current, End };

class FileHandle {
public:
    FileHandle();
    explicit FileHandle(std::unique_ptr<Stream> source);
    FileHandle(FileHandle&&) noexcept;
    FileHandle& operator=(FileHandle&&) noexcept;
    ~FileHandle();

    explicit operator bool() const noexcept { return Source != nullptr; }

private:
    friend std::int64_t Read(FileHandle& file, std::span<std::byte> buffer);
    friend std::int64_t Seek(FileHandle& file, std::int64_t offset, SeekFrom from);

    std::unique_ptr<Stream> Source;
};

// Opens an existing file for reading; false with IoErr.
[[nodiscard]] FileHandle OpenOld(std::string_view path);
// Bytes read, 0 at the end, -1 with IoErr.
[[nodiscard]] std::int64_t Read(FileHandle& file, std::span<std::byte> buffer);
// The new position from the beginning, -1 with IoErr 219.
[[nodiscard]] std::int64_t Seek(FileHandle& file, std::int64_t offset, SeekFrom from);

} // namespace dos
