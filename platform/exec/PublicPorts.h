// Named ports that other processes of this user find and send text commands to. Each is a socket and
// a lock file in the runtime directory; the lock is held as long as the owner lives, so the port of
// a process that died is known as dead and its name is free at once. Names compare without case.
#pragma once

#include "platform/exec/Forbid.h"
#include "platform/exec/Tasks.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace exec {

inline constexpr std::size_t MaxPortName = 255;           // bytes
inline constexpr std::size_t MaxCommandSize = 64 * 1024;  // bytes
inline constexpr std::size_t MaxResultSize = 1024 * 1024; // bytes
inline constexpr int UnansweredCommandRc = 20;            // RC of a command that nobody replied to
inline constexpr int WaitWithoutLimit = -1;               // a timeout

class Descriptor;
class PortService;

// A command from another process, or from this one.
class RemoteMessage {
public:
    RemoteMessage(std::shared_ptr<PortService> service, std::uint64_t number, std::string text);
    // Replies with UnansweredCommandRc unless Reply has been called.
    ~RemoteMessage();
    RemoteMessage(const RemoteMessage&) = delete;
    RemoteMessage& operator=(const RemoteMessage&) = delete;

    [[nodiscard]] const std::string& Command() const noexcept { return Text; }
    // Sends the outcome without waiting for the sender to read it. A result of more than
    // MaxResultSize is cut at a whole character; only the first call counts, and none after the
    // end of the port, which answers what it still owes with UnansweredCommandRc.
    void Reply(int rc, std::string_view result);

private:
    std::shared_ptr<PortService> Service; // null once replied
    std::uint64_t Number;                 // of the connection
    std::string Text;
};

// A port of this process. It belongs to the task that makes it and holds one of its signals; a
// small thread of its own accepts and reads, so a peer that stalls holds nobody up.
class PublicPort {
    struct State;

public:
    explicit PublicPort(std::unique_ptr<State> state) noexcept; // for Create
    // Claims the name. Null when it is taken, no name (empty, too long, control characters), the
    // runtime directory is not trusted, or the host lacks something.
    [[nodiscard]] static std::unique_ptr<PublicPort> Create(std::string_view name);
    // Gives the name free.
    ~PublicPort();
    PublicPort(const PublicPort&) = delete;
    PublicPort& operator=(const PublicPort&) = delete;

    // Set when a command has arrived.
    [[nodiscard]] SignalMask Mask() const noexcept;
    [[nodiscard]] const std::string& Name() const noexcept;
    // The oldest command, null when there is none. One signal may stand for several.
    [[nodiscard]] std::unique_ptr<RemoteMessage> Get();

private:
    std::unique_ptr<State> Own;
};

// True while a living process has the port. Leftovers of a dead one are removed in passing.
[[nodiscard]] bool FindPort(std::string_view name);
// The names of all living ports as their owners wrote them, in the order of their claims.
[[nodiscard]] std::vector<std::string> ListPorts();

struct RemoteReply {
    int Rc;             // 0, 5 warning, 10 error, 20 failure
    std::string Result; // text that came with it
};

// Sends a command and waits for the outcome, the pump not running; a timeout that is negative waits
// as long as the owner lives. Nothing when there is no such port, its owner dies or refuses, the
// command is too long, or the time is over: the owner may then still act on the command. Never for
// a port of the calling task, which could not answer.
[[nodiscard]] std::optional<RemoteReply> SendCommand(std::string_view port, std::string_view command,
                                                     int timeoutMilliseconds);
// Sends a command and does not wait for its outcome; also for a port of the calling task. False
// when it could not be handed over within a second.
[[nodiscard]] bool PostCommand(std::string_view port, std::string_view command);

// A command that has been handed over and whose outcome is still to come.
class RemoteCall {
public:
    // Hands the command over as PostCommand does. Null where that fails.
    [[nodiscard]] static std::unique_ptr<RemoteCall> Start(std::string_view port, std::string_view command);
    explicit RemoteCall(std::unique_ptr<Descriptor> socket) noexcept; // for Start
    RemoteCall(const RemoteCall&) = delete;
    RemoteCall& operator=(const RemoteCall&) = delete;
    ~RemoteCall();

    // Waits for the outcome as long as the owner lives, the pump not running. Nothing when the owner dies or
    // after GiveUp. For one thread, once.
    [[nodiscard]] std::optional<RemoteReply> Wait();
    // Ends the wait, now or when it begins; the owner acts on the command all the same. From any thread.
    void GiveUp() noexcept;

private:
    std::unique_ptr<Descriptor> Socket;
};

} // namespace exec
