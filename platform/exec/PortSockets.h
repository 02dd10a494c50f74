// The sockets of public ports and what goes over them: one command there, one outcome back, each a
// frame of little-endian 32-bit numbers and bytes. No call here blocks. For the sources of this folder.
#pragma once

#include "platform/exec/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace exec {

// A command frame: length of the command, command.
inline constexpr std::size_t CommandHeaderSize = 4;
// An outcome frame: RC, length of the result, result.
inline constexpr std::size_t OutcomeHeaderSize = 8;

// A listening socket at the stem's place; not open on failure.
[[nodiscard]] Descriptor ListenAt(const Descriptor& directory, const std::string& stem);
// The next caller of this user; callers of other users are turned away. Not open when there is none
// or the host fails, the reason in errno.
[[nodiscard]] Descriptor AcceptFrom(const Descriptor& listener);
// A socket connected to the stem's owner; not open on failure, the reason in errno.
[[nodiscard]] Descriptor ConnectTo(const Descriptor& directory, const std::string& stem);

// How a transfer stands.
enum class Transfer { Done, Again, Failed }; // Again: the other side must move first

// Reads until `bytes` holds `size` bytes, never more. Failed also at the end of the stream.
[[nodiscard]] Transfer Receive(const Descriptor& socket, std::string& bytes, std::size_t size);
// Sends what of `bytes` is behind the first `sent`, and moves that on.
[[nodiscard]] Transfer SendRest(const Descriptor& socket, std::string_view bytes, std::size_t& sent);

void AppendNumber(std::string& frame, std::uint32_t number);
// The number at frame[at], which must hold 4 bytes there.
[[nodiscard]] std::uint32_t NumberAt(std::string_view frame, std::size_t at);

[[nodiscard]] std::string CommandFrame(std::string_view command);
// A result that is too long is cut.
[[nodiscard]] std::string OutcomeFrame(int rc, std::string_view result);

} // namespace exec
