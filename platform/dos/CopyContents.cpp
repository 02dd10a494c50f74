#include "platform/dos/CopyContents.h"

#include "platform/dos/HostCalls.h"
#include "platform/dos/HostWatch.h"
#include "platform/dos/HostWriting.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t BlockSize = 16384;           // bytes read and written at once
constexpr std::size_t LargestSmall = 1u << 17;     // bytes; up to here one block is the whole file
constexpr std::uint64_t RangeStep = 1u << 20;      // bytes the host copies between two questions to stop
constexpr std::uint64_t LeastToClone = 1u << 12;   // bytes; below it a question costs more than it gives
constexpr std::uint64_t LargestUnsized = 1u << 24; // bytes; some of the host's made up files never end

bool IsUnsupported(int hostError) {
    return hostError == ENOTSUP || hostError == EXDEV || hostError == ENOTTY || hostError == ENOSYS ||
           hostError == EINVAL;
}

std::int64_t ReadSome(int file, char* buffer, std::size_t size) {
    long got = -1;
    do
        got = Host().Read(file, buffer, size);
    while (got < 0 && errno == EINTR);
    return got;
}

// Reads a file that should have so many bytes; the buffer has room for one more, which tells whether
// it has grown.
std::int64_t ReadWhole(int file, char* buffer, std::size_t size) {
    std::size_t have = 0;
    while (have < std::max<std::size_t>(size, 1)) {
        const std::int64_t got = ReadSome(file, buffer + have, size + 1 - have);
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        have += static_cast<std::size_t>(got);
    }
    return static_cast<std::int64_t>(have);
}

bool Put(int to, std::string_view bytes) {
    const FlushScope flush;
    return WriteAll(to, bytes);
}

long CopyRange(int from, int to, std::uint64_t at, std::uint64_t size) {
    const FlushScope flush;
    const auto offset = static_cast<std::int64_t>(at);
    return Host().CopyRange(from, offset, to, offset, size);
}

bool Clone(int from, int to) {
    const FlushScope flush;
    return Host().Clone(from, to) == 0;
}

bool SetSize(int file, std::uint64_t size) {
    const FlushScope flush;
    return Host().Ftruncate(file, static_cast<std::int64_t>(size)) == 0;
}

std::int64_t SeekTo(int file, std::uint64_t offset, int how) {
    return Host().Lseek(file, static_cast<std::int64_t>(offset), how);
}

// Has the source still that size?
ContentsEnd CheckSize(int from, std::uint64_t size) {
    struct statx now {};
    if (Host().Statx(from, "", AT_EMPTY_PATH, STATX_SIZE, &now) != 0)
        return ContentsEnd::ReadFailed;
    return now.stx_size == size ? ContentsEnd::Done : ContentsEnd::Changed;
}

} // namespace

ContentsCopier::ContentsCopier(CopyProgress tell) : Progress(std::move(tell)) {}

ContentsEnd ContentsCopier::Run(int from, int to, std::uint64_t size, std::uint64_t kept) {
    if (MayClone && size >= LeastToClone) {
        if (Clone(from, to))
            return Tell(size) ? CheckSize(from, size) : ContentsEnd::Stopped;
        MayClone = !IsUnsupported(errno);
    }
    if (kept < size && size > BlockSize)
        return CopyWithHoles(from, to, size);
    if (size < LargestSmall)
        return CopySmall(from, to, size);
    const ContentsEnd end = CopySpan(from, to, 0, size);
    return end == ContentsEnd::Done ? CheckSize(from, size) : end;
}

ContentsEnd ContentsCopier::CopySmall(int from, int to, std::uint64_t size) {
    Buffer.resize(LargestSmall);
    const std::int64_t got = ReadWhole(from, Buffer.data(), static_cast<std::size_t>(size));
    if (got < 0)
        return ContentsEnd::ReadFailed;
    if (static_cast<std::uint64_t>(got) != size)
        return size == 0 ? CopyUnsized(from, to) : ContentsEnd::Changed;
    if (!Put(to, std::string_view(Buffer).substr(0, static_cast<std::size_t>(size))))
        return ContentsEnd::WriteFailed;
    return Tell(size) ? ContentsEnd::Done : ContentsEnd::Stopped;
}

// Files that the host makes up as they are read have no size before.
ContentsEnd ContentsCopier::CopyUnsized(int from, int to) {
    if (const ContentsEnd still = CheckSize(from, 0); still != ContentsEnd::Done)
        return still;
    if (SeekTo(from, 0, SEEK_SET) < 0)
        return ContentsEnd::ReadFailed;
    const ContentsEnd end = CopyBlocks(from, to, 0, LargestUnsized);
    if (end == ContentsEnd::Done) { // there may be more
        errno = EFBIG;
        return ContentsEnd::ReadFailed;
    }
    return end == ContentsEnd::Changed ? ContentsEnd::Done : end;
}

// Copies the parts that hold something; the ends are set by the size.
ContentsEnd ContentsCopier::CopyWithHoles(int from, int to, std::uint64_t size) {
    for (std::uint64_t at = 0; at < size;) {
        const std::int64_t data = SeekTo(from, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break; // nothing but a hole up to the end
        const std::int64_t hole = data < 0 ? -1 : SeekTo(from, static_cast<std::uint64_t>(data), SEEK_HOLE);
        const bool isKnown = data >= 0 && hole > data;
        const std::uint64_t begin = isKnown ? static_cast<std::uint64_t>(data) : at;
        const std::uint64_t end = isKnown ? std::min(static_cast<std::uint64_t>(hole), size) : size;
        if (begin >= size)
            break;
        if (const ContentsEnd result = CopySpan(from, to, begin, end); result != ContentsEnd::Done)
            return result;
        at = end;
    }
    if (!SetSize(to, size))
        return ContentsEnd::WriteFailed;
    return CheckSize(from, size);
}

ContentsEnd ContentsCopier::CopySpan(int from, int to, std::uint64_t at, std::uint64_t end) {
    while (MayCopyRange && at < end) {
        const long put = CopyRange(from, to, at, std::min(end - at, RangeStep));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            MayCopyRange = !IsUnsupported(errno);
        if (put <= 0)
            break; // block by block it shows on which side the trouble is
        at += static_cast<std::uint64_t>(put);
        if (!Tell(static_cast<std::uint64_t>(put)))
            return ContentsEnd::Stopped;
    }
    return at < end ? CopyBlocks(from, to, at, end) : ContentsEnd::Done;
}

ContentsEnd ContentsCopier::CopyBlocks(int from, int to, std::uint64_t at, std::uint64_t end) {
    Buffer.resize(LargestSmall);
    if (SeekTo(from, at, SEEK_SET) < 0)
        return ContentsEnd::ReadFailed;
    if (SeekTo(to, at, SEEK_SET) < 0)
        return ContentsEnd::WriteFailed;
    while (at < end) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(end - at, BlockSize));
        const std::int64_t got = ReadSome(from, Buffer.data(), wanted);
        if (got < 0)
            return ContentsEnd::ReadFailed;
        if (got == 0)
            return ContentsEnd::Changed;
        const auto count = static_cast<std::size_t>(got);
        if (!Put(to, std::string_view(Buffer).substr(0, count)))
            return ContentsEnd::WriteFailed;
        at += count;
        if (!Tell(count))
            return ContentsEnd::Stopped;
    }
    return ContentsEnd::Done;
}

} // namespace dos
