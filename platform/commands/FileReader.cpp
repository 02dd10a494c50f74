#include "platform/commands/FileReader.h"

#include "platform/dos/Errors.h"

#include <algorithm>
#include <span>

namespace commands {

FileReader::FileReader(std::string_view path) : File(dos::Open(path, dos::OpenMode::Old)) {}

bool FileReader::IsOpen() const noexcept {
    return static_cast<bool>(File);
}

bool FileReader::HasFailed() const noexcept {
    if (Error != 0)
        dos::SetIoErr(Error);
    return Error != 0;
}

// Adds a block behind what is left of the last one; false at the end.
bool FileReader::Fill() {
    if (IsOver)
        return false;
    Block.erase(0, At);
    At = 0;
    const std::size_t before = Block.size();
    Block.resize(before + BlockSize);
    const std::int64_t got =
        dos::Read(File, std::as_writable_bytes(std::span(Block.data() + before, BlockSize)));
    if (got < 0)
        Error = dos::IoErr();
    Block.resize(before + static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
    IsOver = got <= 0;
    return !IsOver;
}

bool FileReader::Take(std::size_t many, std::string& bytes) {
    while (Block.size() - At < many && Fill()) {
    }
    const std::size_t size = std::min(many, Block.size() - At);
    bytes.assign(Block, At, size);
    At += size;
    return size != 0;
}

bool FileReader::Line(std::string& line) {
    std::size_t looked = 0; // bytes behind At that hold no line end
    while (true) {
        const std::size_t end = Block.find('\n', At + looked);
        if (end != std::string::npos) {
            line.assign(Block, At, end - At);
            At = end + 1;
            return true;
        }
        looked = Block.size() - At;
        if (looked >= LongestLine || !Fill())
            return Take(looked, line);
    }
}

} // namespace commands
