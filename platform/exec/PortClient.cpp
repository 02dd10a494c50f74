// The sender's side of public ports.
#include "platform/exec/PortFiles.h"
#include "platform/exec/PortSockets.h"
#include "platform/exec/PublicPorts.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <utility>

namespace exec {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto TimeToStartUp = 1s;  // of an owner that has the name but does not listen yet
constexpr auto TimeToHandOver = 1s; // of a command that nobody waits for
constexpr auto FirstPause = 1ms;    // between attempts to connect; they grow longer
constexpr auto LongestPause = 20ms;
constexpr int LongestPoll = 60 * 1000; // ms; a wait without limit is made of these

Clock::time_point EndOf(int timeoutMilliseconds) {
    return timeoutMilliseconds < 0 ? Clock::time_point::max()
                                   : Clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
}

// The owner is there but too busy (its queue is full), or about to listen.
bool IsWorthAnotherTry(int error, Clock::time_point start) {
    return error == EAGAIN || error == EINTR ||
           ((error == ENOENT || error == ECONNREFUSED) && Clock::now() < start + TimeToStartUp);
}

// Not open when no living process has the port or the time is over.
Descriptor ConnectToPort(std::string_view port, Clock::time_point end) {
    const Descriptor directory = OpenPortDirectory();
    if (!directory.IsOpen() || !IsPortName(port)) {
        return {};
    }
    const std::string stem = PortFileStem(port);
    const auto start = Clock::now();
    auto pause = Clock::duration(FirstPause);
    while (IsPortAlive(directory, stem)) {
        Descriptor socket = ConnectTo(directory, stem);
        if (socket.IsOpen() || !IsWorthAnotherTry(errno, start) || Clock::now() >= end) {
            return socket;
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(pause, end - Clock::now()));
        pause = std::min<Clock::duration>(pause * 2, LongestPause);
    }
    return {};
}

// Sleeps until the socket can go on; false when the time is over.
bool WaitForSocket(const Descriptor& socket, short event, Clock::time_point end) {
    while (true) {
        const auto left = std::max<Clock::duration>(end - Clock::now(), 0s);
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(
            std::min<Clock::duration>(left, std::chrono::milliseconds(LongestPoll)));
        struct pollfd watched {
            socket.Get(), event, 0
        };
        const int ready = poll(&watched, 1, static_cast<int>(milliseconds.count()));
        if (ready > 0) {
            return true;
        }
        if ((ready < 0 && errno != EINTR) || Clock::now() >= end) {
            return false;
        }
    }
}

bool SendAll(const Descriptor& socket, std::string_view frame, Clock::time_point end) {
    std::size_t sent = 0;
    Transfer transfer = Transfer::Again;
    while ((transfer = SendRest(socket, frame, sent)) == Transfer::Again) {
        if (!WaitForSocket(socket, POLLOUT, end)) {
            return false;
        }
    }
    return transfer == Transfer::Done;
}

bool ReceiveAll(const Descriptor& socket, std::string& bytes, std::size_t size, Clock::time_point end) {
    Transfer transfer = Transfer::Again;
    while ((transfer = Receive(socket, bytes, size)) == Transfer::Again) {
        if (!WaitForSocket(socket, POLLIN, end)) {
            return false;
        }
    }
    return transfer == Transfer::Done;
}

// A socket over which the owner has been sent the command; not open on failure.
Descriptor HandOver(std::string_view port, std::string_view command, Clock::time_point end) {
    if (command.size() > MaxCommandSize) {
        return {};
    }
    Descriptor socket = ConnectToPort(port, end);
    if (!socket.IsOpen() || !SendAll(socket, CommandFrame(command), end)) {
        return {};
    }
    return socket;
}

std::optional<RemoteReply> ReceiveOutcome(const Descriptor& socket, Clock::time_point end) {
    std::string frame;
    if (!ReceiveAll(socket, frame, OutcomeHeaderSize, end)) {
        return std::nullopt;
    }
    const std::size_t length = NumberAt(frame, 4);
    if (length > MaxResultSize || !ReceiveAll(socket, frame, OutcomeHeaderSize + length, end)) {
        return std::nullopt;
    }
    return RemoteReply{std::bit_cast<int>(NumberAt(frame, 0)), frame.substr(OutcomeHeaderSize)};
}

} // namespace

std::optional<RemoteReply> SendCommand(std::string_view port, std::string_view command,
                                       int timeoutMilliseconds) {
    const auto end = EndOf(timeoutMilliseconds);
    const Descriptor socket = HandOver(port, command, end);
    return socket.IsOpen() ? ReceiveOutcome(socket, end) : std::nullopt;
}

bool PostCommand(std::string_view port, std::string_view command) {
    return HandOver(port, command, Clock::now() + TimeToHandOver).IsOpen();
}

std::unique_ptr<RemoteCall> RemoteCall::Start(std::string_view port, std::string_view command) {
    Descriptor socket = HandOver(port, command, Clock::now() + TimeToHandOver);
    return socket.IsOpen() ? std::make_unique<RemoteCall>(std::make_unique<Descriptor>(std::move(socket)))
                           : nullptr;
}

RemoteCall::RemoteCall(std::unique_ptr<Descriptor> socket) noexcept : Socket(std::move(socket)) {}

RemoteCall::~RemoteCall() = default;

std::optional<RemoteReply> RemoteCall::Wait() {
    return ReceiveOutcome(*Socket, Clock::time_point::max());
}

void RemoteCall::GiveUp() noexcept {
    // A reader finds the end of the stream, be it there already or still to come.
    shutdown(Socket->Get(), SHUT_RDWR);
}

} // namespace exec
