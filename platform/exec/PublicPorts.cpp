#include "platform/exec/PublicPorts.h"

#include "platform/exec/PortFiles.h"
#include "platform/exec/PortService.h"
#include "platform/exec/PortSockets.h"
#include "platform/exec/TaskState.h"

#include <utility>

namespace exec {

namespace {

// A signal of a task that may already have ended when it is given back.
class TaskSignal {
public:
    TaskSignal() : Owner(ShareTask()), Number(Owner->Allocate()) {}
    ~TaskSignal() {
        if (Number >= 0) {
            Owner->Release(Number);
        }
    }
    TaskSignal(const TaskSignal&) = delete;
    TaskSignal& operator=(const TaskSignal&) = delete;

    [[nodiscard]] SignalMask Mask() const { return Number >= 0 ? SignalMask{1} << Number : 0; }
    [[nodiscard]] std::function<void()> Setter() const {
        return [task = Owner, mask = Mask()] { task->Set(mask); };
    }

private:
    std::shared_ptr<Task> Owner;
    int Number;
};

} // namespace

RemoteMessage::RemoteMessage(std::shared_ptr<PortService> service, std::uint64_t number, std::string text)
    : Service(std::move(service)), Number(number), Text(std::move(text)) {}

RemoteMessage::~RemoteMessage() {
    Reply(UnansweredCommandRc, {});
}

void RemoteMessage::Reply(int rc, std::string_view result) {
    if (const auto service = std::exchange(Service, nullptr)) {
        service->Answer(Number, rc, result);
    }
}

struct PublicPort::State {
    std::string Name;
    TaskSignal Arrival;
    std::shared_ptr<PortService> Service;
    std::optional<PortClaim> Claim;

    // The name is free before the last outcomes go out, which may take a moment.
    ~State() {
        Claim.reset();
        if (Service != nullptr) {
            Service->Stop(); // messages of it may still be about
        }
    }
};

PublicPort::PublicPort(std::unique_ptr<State> state) noexcept : Own(std::move(state)) {}

PublicPort::~PublicPort() = default;

std::unique_ptr<PublicPort> PublicPort::Create(std::string_view name) {
    auto state = std::make_unique<State>();
    state->Name = name;
    const ForbidScope forbidden;
    auto claim = state->Arrival.Mask() != 0 ? ClaimPort(name) : std::nullopt;
    if (!claim) {
        return nullptr;
    }
    state->Claim.emplace(*std::move(claim));
    Descriptor listener = ListenAt(state->Claim->Directory(), state->Claim->Stem());
    if (!listener.IsOpen()) {
        return nullptr;
    }
    state->Service = PortService::Start(std::move(listener), state->Arrival.Setter());
    return state->Service != nullptr ? std::make_unique<PublicPort>(std::move(state)) : nullptr;
}

SignalMask PublicPort::Mask() const noexcept {
    return Own->Arrival.Mask();
}

const std::string& PublicPort::Name() const noexcept {
    return Own->Name;
}

std::unique_ptr<RemoteMessage> PublicPort::Get() {
    auto arrival = Own->Service->Next();
    if (!arrival) {
        return nullptr;
    }
    return std::make_unique<RemoteMessage>(Own->Service, arrival->Number, std::move(arrival->Command));
}

bool FindPort(std::string_view name) {
    const Descriptor directory = OpenPortDirectory();
    return IsPortName(name) && directory.IsOpen() && IsPortAlive(directory, PortFileStem(name));
}

std::vector<std::string> ListPorts() {
    const Descriptor directory = OpenPortDirectory();
    return directory.IsOpen() ? LivingPorts(directory) : std::vector<std::string>();
}

} // namespace exec
