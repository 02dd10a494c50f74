// The contents of a file block by block or line by line. Private to platform/commands.
#pragma once

#include "platform/dos/Files.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace commands {

class FileReader {
public:
    static constexpr std::size_t BlockSize = 65536;         // bytes read at one go
    static constexpr std::size_t LongestLine = 1024 * 1024; // bytes; a longer one is given in pieces

    explicit FileReader(std::string_view path);

    // False with IoErr.
    [[nodiscard]] bool IsOpen() const noexcept;
    // Up to so many bytes, fewer at the end only (many: at most BlockSize); false when there are none.
    [[nodiscard]] bool Take(std::size_t many, std::string& bytes);
    // The next line without its end; false at the end of the file.
    [[nodiscard]] bool Line(std::string& line);
    // Whether reading ended before the end of the file, with IoErr.
    [[nodiscard]] bool HasFailed() const noexcept;

private:
    bool Fill();

    dos::FileHandle File;
    std::string Block;
    std::size_t At = 0;
    bool IsOver = false;
    long Error = 0;
};

} // namespace commands
