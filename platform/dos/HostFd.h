// Descriptors that close themselves, and the few questions about one that every part of dos asks.
// Private to platform/dos.
#pragma once

#include "platform/dos/HostCalls.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace dos {

class HostFd {
public:
    HostFd() = default;
    explicit HostFd(int descriptor) noexcept : Descriptor(descriptor) {}
    HostFd(HostFd&& other) noexcept : Descriptor(std::exchange(other.Descriptor, NoDescriptor)) {}
    HostFd& operator=(HostFd&& other) noexcept;
    HostFd(const HostFd&) = delete;
    HostFd& operator=(const HostFd&) = delete;
    ~HostFd();

    explicit operator bool() const noexcept { return Descriptor >= 0; }
    [[nodiscard]] int Get() const noexcept { return Descriptor; }

private:
    int Descriptor = NoDescriptor;
};

// Which object of the host it is: equal for the same object under any name.
struct ObjectId {
    std::uint64_t Device = 0;
    std::uint64_t Inode = 0;
    bool operator==(const ObjectId&) const = default;
};

struct ObjectFacts {
    ObjectId Id;
    unsigned Mode = 0; // file type and permissions as the host keeps them
};

inline constexpr unsigned PermissionBits = 07777; // of a mode, without its type
inline constexpr unsigned PrivilegeBits = 06000;  // run as the owner or the group of the file

[[nodiscard]] bool IsDrawerMode(unsigned mode) noexcept;
[[nodiscard]] bool IsLinkMode(unsigned mode) noexcept;
[[nodiscard]] bool IsFileMode(unsigned mode) noexcept;

// The host's device that takes all and gives nothing; NoDescriptor with errno.
[[nodiscard]] int OpenNothing();
[[nodiscard]] HostFd DuplicateFd(const HostFd& descriptor);
// What the descriptor (an O_PATH one too) stands for; false with errno.
[[nodiscard]] bool FactsOf(int descriptor, ObjectFacts& facts);
// The same of what a host path leads to now.
[[nodiscard]] bool FactsAt(const std::string& hostPath, ObjectFacts& facts);
// The host path under which the object is known now; empty with errno when it is gone or too deep.
[[nodiscard]] std::string HostPathOf(int descriptor);
// The text of a link; empty with errno on failure. An empty name means the O_PATH descriptor.
[[nodiscard]] std::string ReadLinkText(int drawer, const char* name);
// "/proc/self/fd/N": a host path that leads to the very object of the descriptor.
[[nodiscard]] std::string DescriptorPath(int descriptor);

// The text of a small regular host file; nothing with errno, EFBIG when it is larger than limit.
[[nodiscard]] std::optional<std::string> ReadHostText(const std::string& hostPath, std::size_t limit);
// Reads to the end of the file or to limit bytes; false with errno.
[[nodiscard]] bool ReadToEnd(int descriptor, std::string& out, std::size_t limit);

} // namespace dos
