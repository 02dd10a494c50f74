#include "platform/exec/PortSockets.h"

#include "platform/exec/PortFiles.h"
#include "platform/exec/PublicPorts.h"
#include "platform/exec/RuntimeDirectory.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace exec {

namespace {

constexpr int CallersInQueue = 128; // connections that the kernel keeps until they are accepted

// The runtime directory may have a path of any length, a socket address holds 107 bytes: where the
// path is too long, the way leads through the open directory.
std::optional<sockaddr_un> AddressOf(const Descriptor& directory, const std::string& stem) {
    std::string path = RuntimeDirectory() + "/ports/" + SocketName(stem);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        path = "/proc/self/fd/" + std::to_string(directory.Get()) + "/" + SocketName(stem);
    }
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return std::nullopt;
    }
    std::ranges::copy(path, std::begin(address.sun_path));
    return address;
}

Descriptor MakeSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

const sockaddr* Generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

bool IsPeerOwnUser(const Descriptor& connected) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(connected.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

bool IsForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

} // namespace

Descriptor ListenAt(const Descriptor& directory, const std::string& stem) {
    const auto address = AddressOf(directory, stem);
    Descriptor listener = MakeSocket();
    if (!address || !listener.IsOpen() || bind(listener.Get(), Generic(*address), sizeof *address) != 0 ||
        listen(listener.Get(), CallersInQueue) != 0) {
        return {};
    }
    return listener;
}

Descriptor AcceptFrom(const Descriptor& listener) {
    while (true) {
        Descriptor caller(accept4(listener.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!caller.IsOpen() && (errno == EINTR || errno == ECONNABORTED)) {
            continue;
        }
        if (!caller.IsOpen() || IsPeerOwnUser(caller)) {
            return caller;
        }
    }
}

Descriptor ConnectTo(const Descriptor& directory, const std::string& stem) {
    const auto address = AddressOf(directory, stem);
    Descriptor socket = MakeSocket();
    if (!address || !socket.IsOpen() || connect(socket.Get(), Generic(*address), sizeof *address) != 0) {
        const int reason = errno; // the close may change it
        socket.Close();
        errno = reason;
        return {};
    }
    if (!IsPeerOwnUser(socket)) {
        socket.Close();
        errno = EPERM;
    }
    return socket;
}

Transfer Receive(const Descriptor& socket, std::string& bytes, std::size_t size) {
    while (bytes.size() < size) {
        const std::size_t have = bytes.size();
        bytes.resize(size);
        const ssize_t count = recv(socket.Get(), bytes.data() + have, size - have, 0);
        const int reason = errno;
        bytes.resize(have + (count > 0 ? static_cast<std::size_t>(count) : 0));
        if (count == 0 || (count < 0 && reason != EINTR && !IsForLater(reason))) {
            return Transfer::Failed;
        }
        if (count < 0 && reason != EINTR) {
            return Transfer::Again;
        }
    }
    return Transfer::Done;
}

Transfer SendRest(const Descriptor& socket, std::string_view bytes, std::size_t& sent) {
    while (sent < bytes.size()) {
        const ssize_t count = send(socket.Get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (IsForLater(errno)) {
            return Transfer::Again;
        } else if (errno != EINTR) {
            return Transfer::Failed;
        }
    }
    return Transfer::Done;
}

void AppendNumber(std::string& frame, std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
        frame += static_cast<char>(static_cast<unsigned char>(number >> shift));
    }
}

std::uint32_t NumberAt(std::string_view frame, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t byte = 4; byte-- > 0;) {
        number = number << 8 | static_cast<unsigned char>(frame[at + byte]);
    }
    return number;
}

std::string CommandFrame(std::string_view command) {
    std::string frame;
    AppendNumber(frame, static_cast<std::uint32_t>(command.size()));
    return frame.append(command);
}

std::string OutcomeFrame(int rc, std::string_view result) {
    const std::string_view kept = result.substr(0, utility::CutLength(result, MaxResultSize));
    std::string frame;
    AppendNumber(frame, std::bit_cast<std::uint32_t>(rc));
    AppendNumber(frame, static_cast<std::uint32_t>(kept.size()));
    return frame.append(kept);
}

} // namespace exec
