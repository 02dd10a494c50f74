#include "platform/dos/HostDirectory.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace dos {

namespace {

constexpr std::size_t BlockSize = 1u << 18; // bytes; some thousand names

// The fixed part of an entry as the kernel lays it out.
constexpr std::size_t LengthOffset = 16;
constexpr std::size_t TypeOffset = 18;
constexpr std::size_t NameOffset = 19;

bool IsDotOrDotDot(const char* name, std::size_t length) {
    return name[0] == '.' && (length == 1 || (length == 2 && name[1] == '.'));
}

} // namespace

HostFd OpenForListing(int drawer) {
    return HostFd(Host().Openat(drawer, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0));
}

long NameBlock::Fill(int openDrawer) {
    // Most drawers fill little of it: the room stays with the thread, the block keeps what was read.
    thread_local const auto room = std::make_unique_for_overwrite<std::byte[]>(BlockSize);
    Found.clear();
    const long got = Host().Getdents(openDrawer, room.get(), BlockSize);
    if (got <= 0)
        return got;
    const auto size = static_cast<std::size_t>(got);
    Bytes = std::make_unique_for_overwrite<std::byte[]>(size);
    std::memcpy(Bytes.get(), room.get(), size);
    for (std::size_t at = 0; at + NameOffset < size;) {
        std::uint16_t length = 0;
        std::memcpy(&length, Bytes.get() + at + LengthOffset, sizeof(length));
        if (length <= NameOffset || length > size - at) {
            errno = EIO;
            return -1;
        }
        const char* name = reinterpret_cast<const char*>(Bytes.get() + at + NameOffset);
        const auto nameLength = static_cast<std::uint16_t>(::strnlen(name, length - NameOffset));
        if (nameLength > 0 && !IsDotOrDotDot(name, nameLength))
            Found.push_back({name, nameLength, static_cast<std::uint8_t>(Bytes[at + TypeOffset])});
        at += length;
    }
    return got;
}

} // namespace dos
