// The owner's side of a public port: a thread that accepts callers, reads their commands and sends
// the outcomes. It never waits for one caller, and tells the port's task by a callback.
#pragma once

#include "platform/exec/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

struct pollfd;

namespace exec {

class PortService {
public:
    // Serves the listener until Stop; `arrived` is called on the service's thread for each command
    // and must not come back here. Null when the host lacks something.
    [[nodiscard]] static std::shared_ptr<PortService> Start(Descriptor listener,
                                                            std::function<void()> arrived);
    PortService(Descriptor listener, Descriptor wake, std::function<void()> arrived);
    ~PortService();
    PortService(const PortService&) = delete;
    PortService& operator=(const PortService&) = delete;

    struct Arrival {
        std::uint64_t Number; // of the connection, for Answer
        std::string Command;
    };
    // The oldest command not fetched yet.
    [[nodiscard]] std::optional<Arrival> Next();
    // Sends the outcome of a command, once.
    void Answer(std::uint64_t number, int rc, std::string_view result);
    // Answers all that is still owed with UnansweredCommandRc, gives slow readers a last second and
    // ends the thread.
    void Stop();

private:
    using Clock = std::chrono::steady_clock;
    enum class Stage { Reading, Waiting, Writing };
    struct Connection {
        Descriptor Socket;
        Stage Now = Stage::Reading;
        std::string Bytes;     // the command frame as far as read, then the outcome frame
        std::size_t Sent = 0;  // of the outcome frame
        Clock::time_point End; // when it is given up; not while Waiting
    };
    using Connections = std::map<std::uint64_t, Connection>; // by age

    void Run();
    [[nodiscard]] bool IsOver() const;
    [[nodiscard]] std::vector<struct pollfd> Watched(std::vector<std::uint64_t>& numbers) const;
    [[nodiscard]] int MillisecondsToNextEnd() const;
    void Serve(const std::vector<struct pollfd>& watched, const std::vector<std::uint64_t>& numbers);
    void AcceptCallers();
    [[nodiscard]] bool MakeRoom();
    [[nodiscard]] bool GoOn(std::uint64_t number, Connection& connection);
    [[nodiscard]] bool ReadCommand(std::uint64_t number, Connection& connection);
    void SetOutcome(Connection& connection, int rc, std::string_view result);
    void DropExpired();
    void WakeUp() const;

    std::mutex Guard;    // of all below but the thread, the callback and the wake descriptor
    Descriptor Listener; // closed when stopping
    Connections Open;
    std::deque<Arrival> Arrivals;
    std::uint64_t NextNumber = 0;
    Clock::time_point AcceptAgain; // not before this, after the host ran out of something
    bool Stopping = false;

    Descriptor Wake;
    std::function<void()> Arrived;
    std::thread Worker;
};

} // namespace exec
