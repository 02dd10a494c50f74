#include "platform/dos/Relay.h"

#include "platform/dos/Limits.h"

#include <chrono>
#include <system_error>
#include <thread>

namespace dos {

bool Relay::Run(std::function<void(Relay&)> work) {
    auto relay = std::make_shared<Relay>();
    try {
        std::thread([relay, job = std::move(work)] {
            job(*relay);
            const std::lock_guard hold(relay->Guard);
            relay->IsDone = true;
            relay->Changed.notify_all();
        }).detach();
    } catch (const std::system_error&) {
        SetIoErr(ErrorNoFreeStore);
        return false;
    }
    return relay->Serve();
}

bool Relay::Serve() {
    std::unique_lock hold(Guard);
    while (true) {
        const auto isCalled = [this] { return IsDone || Asked; };
        if (!IsEnding)
            Changed.wait(hold, isCalled);
        else if (!Changed.wait_for(hold, std::chrono::milliseconds(AnswerLimitMilliseconds), isCalled))
            break;
        if (IsDone)
            return true;
        const std::function<void()>& deed = *Asked;
        hold.unlock();
        deed();
        hold.lock();
        Asked = nullptr;
        Changed.notify_all();
    }
    IsLeft = true;
    return false;
}

bool Relay::Ask(const std::function<void()>& deed) {
    std::unique_lock hold(Guard);
    if (IsLeft)
        return false;
    Asked = &deed;
    Changed.notify_all();
    Changed.wait(hold, [this] { return !Asked; });
    return true;
}

void Relay::EndSoon() {
    const std::lock_guard hold(Guard);
    IsEnding = true;
}

} // namespace dos
