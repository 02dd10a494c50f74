// The bytes of a file on their way into a new one: shared or copied by the host where it can, else
// in blocks; holes stay holes. Private to platform/dos.
#pragma once

#include "platform/dos/Copy.h"

#include <cstdint>
#include <string>

namespace dos {

enum class ContentsEnd { Done, ReadFailed, WriteFailed, Changed, Stopped };

// Serves one thread for many files; what the host cannot do is tried once.
class ContentsCopier {
public:
    // tell may be empty.
    explicit ContentsCopier(CopyProgress tell);

    // Copies an open file of that size, for which the host keeps that many bytes, into an empty one.
    // errno is set when reading or writing failed.
    [[nodiscard]] ContentsEnd Run(int from, int to, std::uint64_t size, std::uint64_t kept);
    // The question to stop, without any news.
    [[nodiscard]] bool GoesOn() { return Tell(0); }

private:
    ContentsEnd CopySmall(int from, int to, std::uint64_t size);
    ContentsEnd CopyUnsized(int from, int to);
    ContentsEnd CopyWithHoles(int from, int to, std::uint64_t size);
    ContentsEnd CopySpan(int from, int to, std::uint64_t at, std::uint64_t end);
    ContentsEnd CopyBlocks(int from, int to, std::uint64_t at, std::uint64_t end);
    bool Tell(std::uint64_t bytes) { return !Progress || Progress(bytes); }

    CopyProgress Progress;
    std::string Buffer;
    bool MayClone = true;
    bool MayCopyRange = true;
};

} // namespace dos
