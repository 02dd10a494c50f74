#include "platform/exec/Ports.h"

#include "platform/exec/TaskState.h"

#include <utility>

namespace exec {

MsgPort::MsgPort() : MsgPort(ShareTask()) {}

MsgPort::MsgPort(std::shared_ptr<Task> owner) : Owner(std::move(owner)), SignalNumber(Owner->Allocate()) {}

MsgPort::~MsgPort() {
    while (auto message = GetMsg(*this)) {
        if (message->ReplyPort != this) { // else it is a reply itself
            ReplyMsg(std::move(message));
        }
    }
    if (IsOpen()) {
        Owner->Release(SignalNumber);
    }
}

SignalMask MsgPort::Mask() const noexcept {
    return IsOpen() ? SignalMask{1} << SignalNumber : 0;
}

void PutMsg(MsgPort& port, std::unique_ptr<Message> message) {
    // The signal goes out under the guard: whoever finds the message may end the port right away.
    const std::lock_guard lock(port.Guard);
    port.Queue.push_back(std::move(message));
    port.Owner->Set(port.Mask());
}

std::unique_ptr<Message> GetMsg(MsgPort& port) {
    const std::lock_guard lock(port.Guard);
    if (port.Queue.empty()) {
        return nullptr;
    }
    auto message = std::move(port.Queue.front());
    port.Queue.pop_front();
    return message;
}

void ReplyMsg(std::unique_ptr<Message> message) {
    MsgPort* const port = message != nullptr ? message->ReplyPort : nullptr;
    if (port != nullptr) {
        PutMsg(*port, std::move(message));
    }
}

void WaitPort(MsgPort& port) {
    const auto isEmpty = [&port] {
        const std::lock_guard lock(port.Guard);
        return port.Queue.empty();
    };
    while (isEmpty() && port.Mask() != 0) {
        Wait(port.Mask());
    }
}

} // namespace exec
