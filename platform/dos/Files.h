// Contents of files: whole ones and streams. Only regular files, NIL: and CON: are ever opened, so that
// nothing here waits for a pipe or a device. New contents go to a temporary file beside the target
// and take its place when they are whole.
//
// What that means for the object that is replaced: modes, attributes, access lists and the comment
// stay, the archive bit is cleared. A file with several hard links is replaced under this name
// only; its other names keep the old contents. Another's file keeps its owner where the host lets
// us set it, and otherwise becomes ours.
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

// Makes or replaces a file; on failure the old one stands as it was. False with IoErr: 222 or 223
// for a protected file, 212 for a drawer. A soft link is written through. When only the ".uaem"
// file of the new contents cannot follow, the file is new and whole and the result false.
[[nodiscard]] bool WriteWhole(std::string_view path, std::string_view bytes);

// One new drawer; 203 when the name is taken.
[[nodiscard]] bool CreateDir(std::string_view path);
// The same with all drawers on the way; true when it is there already. False with IoErr: 212 for a
// file of that name; some drawers can be made then.
[[nodiscard]] bool CreateDirs(std::string_view path);

enum class SeekFrom { Beginning, Current, End };

enum class OpenMode {
    Old,       // what is there, to read and, from the first Write on, to change
    New,       // empty; replaces what is there
    ReadWrite, // as Old, but a missing file is made
};

// An open file. A handle that is destroyed without Close drops what was written.
class FileHandle {
public:
    FileHandle();
    explicit FileHandle(std::unique_ptr<Stream> source);
    FileHandle(FileHandle&&) noexcept;
    FileHandle& operator=(FileHandle&&) noexcept;
    ~FileHandle();

    explicit operator bool() const noexcept { return Source != nullptr; }

private:
    friend Stream* StreamOf(FileHandle& file) noexcept;
    friend std::int64_t Read(FileHandle& file, std::span<std::byte> buffer);
    friend std::int64_t Write(FileHandle& file, std::span<const std::byte> bytes);
    friend std::int64_t Seek(FileHandle& file, std::int64_t offset, SeekFrom from);
    friend std::int64_t SetFileSize(FileHandle& file, std::int64_t offset, SeekFrom from);
    friend bool Close(FileHandle& file);

    std::unique_ptr<Stream> Source;
};

// False with IoErr: 205, 212 for what is no file, 224; for New 222 when the old file is protected
// from deletion and 223 when it is from writing. A new file is seen under its name from Close on.
[[nodiscard]] FileHandle Open(std::string_view path, OpenMode mode);
[[nodiscard]] FileHandle OpenOld(std::string_view path);
// Bytes read, 0 at the end, -1 with IoErr.
[[nodiscard]] std::int64_t Read(FileHandle& file, std::span<std::byte> buffer);
// All bytes or -1 with IoErr, 223 for a protected file. The first one to an old file copies its
// contents to the temporary file. After a failure Close fails too.
[[nodiscard]] std::int64_t Write(FileHandle& file, std::span<const std::byte> bytes);
// The new position from the beginning, -1 with IoErr 219 outside of the file.
[[nodiscard]] std::int64_t Seek(FileHandle& file, std::int64_t offset, SeekFrom from);
// Cuts the file or lengthens it by zeros; the position stays within. The new size or -1 with IoErr.
[[nodiscard]] std::int64_t SetFileSize(FileHandle& file, std::int64_t offset, SeekFrom from);
// Puts what was written under its name; the handle is empty afterwards. False with IoErr, and then
// the old file stands as it was: 203 when another has taken the name of a new file meanwhile. As
// with WriteWhole a sidecar that cannot follow gives false over a file that is new and whole.
[[nodiscard]] bool Close(FileHandle& file);

} // namespace dos
