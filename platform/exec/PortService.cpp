#include "platform/exec/PortService.h"

#include "platform/exec/HostThread.h"
#include "platform/exec/PortSockets.h"
#include "platform/exec/PublicPorts.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace exec {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t MaxConnections = 256;
constexpr int CallersPerRound = 64; // so that the others have their turn
constexpr auto TimeToSendCommand = 5s;
constexpr auto TimeToReadOutcome = 10s;
constexpr auto TimeToReadLastOutcome = 1s; // when the port goes
constexpr auto PauseAfterShortage = 100ms; // no descriptor or memory left for a caller

} // namespace

std::shared_ptr<PortService> PortService::Start(Descriptor listener, std::function<void()> arrived) {
    Descriptor wake(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
    if (!wake.IsOpen()) {
        return nullptr;
    }
    auto service = std::make_shared<PortService>(std::move(listener), std::move(wake), std::move(arrived));
    service->Worker = StartHostThread([own = service.get()] { own->Run(); });
    return service->Worker.joinable() ? service : nullptr;
}

PortService::PortService(Descriptor listener, Descriptor wake, std::function<void()> arrived)
    : Listener(std::move(listener)), Wake(std::move(wake)), Arrived(std::move(arrived)) {}

PortService::~PortService() {
    Stop();
}

std::optional<PortService::Arrival> PortService::Next() {
    const std::lock_guard lock(Guard);
    if (Arrivals.empty()) {
        return std::nullopt;
    }
    auto arrival = std::move(Arrivals.front());
    Arrivals.pop_front();
    return arrival;
}

void PortService::Answer(std::uint64_t number, int rc, std::string_view result) {
    const std::lock_guard lock(Guard);
    const auto found = Open.find(number);
    if (found != Open.end() && found->second.Now == Stage::Waiting) {
        SetOutcome(found->second, rc, result);
        WakeUp();
    }
}

void PortService::Stop() {
    if (!Worker.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(Guard);
        Stopping = true;
        Listener.Close();
        Arrivals.clear();
        std::erase_if(Open, [](const auto& entry) { return entry.second.Now == Stage::Reading; });
        for (auto& [number, connection] : Open) {
            if (connection.Now == Stage::Waiting) {
                SetOutcome(connection, UnansweredCommandRc, {});
            }
            connection.End = std::min(connection.End, Clock::now() + TimeToReadLastOutcome);
        }
    }
    WakeUp();
    Worker.join();
}

void PortService::Run() {
    std::vector<std::uint64_t> numbers;
    std::unique_lock lock(Guard);
    while (!IsOver()) {
        auto watched = Watched(numbers);
        const int timeout = MillisecondsToNextEnd();
        lock.unlock();
        const int ready = poll(watched.data(), watched.size(), timeout);
        lock.lock();
        if (ready > 0) {
            Serve(watched, numbers);
        }
        DropExpired();
    }
}

bool PortService::IsOver() const {
    return Stopping && Open.empty();
}

// The wake descriptor, the listener, then the connections of `numbers`. Those that wait for the
// task are left out: their peers may well be gone and the command counts all the same.
std::vector<struct pollfd> PortService::Watched(std::vector<std::uint64_t>& numbers) const {
    const bool accepts = Listener.IsOpen() && Clock::now() >= AcceptAgain;
    std::vector<struct pollfd> watched{{Wake.Get(), POLLIN, 0}, {accepts ? Listener.Get() : -1, POLLIN, 0}};
    numbers.clear();
    for (const auto& [number, connection] : Open) {
        if (connection.Now != Stage::Waiting) {
            const short event = connection.Now == Stage::Reading ? POLLIN : POLLOUT;
            watched.push_back({connection.Socket.Get(), event, 0});
            numbers.push_back(number);
        }
    }
    return watched;
}

int PortService::MillisecondsToNextEnd() const {
    const auto now = Clock::now();
    auto next = Clock::time_point::max();
    if (Listener.IsOpen() && AcceptAgain > now) {
        next = AcceptAgain;
    }
    for (const auto& [number, connection] : Open) {
        if (connection.Now != Stage::Waiting) {
            next = std::min(next, connection.End);
        }
    }
    if (next == Clock::time_point::max()) {
        return -1;
    }
    // At most TimeToReadOutcome, so it fits.
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(std::max(next - now, 0ns));
    return static_cast<int>(left.count());
}

void PortService::Serve(const std::vector<struct pollfd>& watched,
                        const std::vector<std::uint64_t>& numbers) {
    if (watched[0].revents != 0) {
        std::uint64_t count = 0;
        // Nothing to read is as good: only the waking counts.
        static_cast<void>(read(Wake.Get(), &count, sizeof count));
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto found = Open.find(numbers[i]);
        if (watched[i + 2].revents != 0 && found != Open.end() && !GoOn(found->first, found->second)) {
            Open.erase(found);
        }
    }
    if (watched[1].revents != 0 && Listener.IsOpen()) {
        AcceptCallers();
    }
}

void PortService::AcceptCallers() {
    for (int accepted = 0; accepted < CallersPerRound; ++accepted) {
        if (!MakeRoom()) {
            AcceptAgain = Clock::now() + PauseAfterShortage;
            return;
        }
        Descriptor caller = AcceptFrom(Listener);
        if (!caller.IsOpen()) {
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                AcceptAgain = Clock::now() + PauseAfterShortage;
            }
            return;
        }
        const std::uint64_t number = NextNumber++;
        auto& connection = Open[number];
        connection.Socket = std::move(caller);
        connection.End = Clock::now() + TimeToSendCommand;
        if (!GoOn(number, connection)) {
            Open.erase(number);
        }
    }
}

// Full of callers, the oldest that has not said what it wants goes; false when there is none.
bool PortService::MakeRoom() {
    if (Open.size() < MaxConnections) {
        return true;
    }
    const auto silent =
        std::ranges::find_if(Open, [](const auto& entry) { return entry.second.Now == Stage::Reading; });
    if (silent == Open.end()) {
        return false;
    }
    Open.erase(silent);
    return true;
}

// Reads or writes on; false when the connection is done with.
bool PortService::GoOn(std::uint64_t number, Connection& connection) {
    switch (connection.Now) {
    case Stage::Reading:
        return ReadCommand(number, connection);
    case Stage::Waiting:
        return true;
    case Stage::Writing:
        break;
    }
    return SendRest(connection.Socket, connection.Bytes, connection.Sent) == Transfer::Again;
}

bool PortService::ReadCommand(std::uint64_t number, Connection& connection) {
    Transfer transfer =
        Receive(connection.Socket, connection.Bytes, std::max(connection.Bytes.size(), CommandHeaderSize));
    if (transfer == Transfer::Done) {
        const std::size_t length = NumberAt(connection.Bytes, 0);
        if (length > MaxCommandSize) {
            return false;
        }
        transfer = Receive(connection.Socket, connection.Bytes, CommandHeaderSize + length);
    }
    if (transfer != Transfer::Done) {
        return transfer == Transfer::Again;
    }
    connection.Now = Stage::Waiting;
    Arrivals.push_back({number, connection.Bytes.substr(CommandHeaderSize)});
    connection.Bytes = {};
    Arrived();
    return true;
}

void PortService::SetOutcome(Connection& connection, int rc, std::string_view result) {
    connection.Now = Stage::Writing;
    connection.Bytes = OutcomeFrame(rc, result);
    connection.Sent = 0;
    connection.End = Clock::now() + TimeToReadOutcome;
}

void PortService::DropExpired() {
    const auto now = Clock::now();
    std::erase_if(Open, [now](const auto& entry) {
        return entry.second.Now != Stage::Waiting && entry.second.End <= now;
    });
}

void PortService::WakeUp() const {
    const std::uint64_t one = 1;
    // Only a full counter fails, and that wakes already.
    static_cast<void>(write(Wake.Get(), &one, sizeof one));
}

} // namespace exec
