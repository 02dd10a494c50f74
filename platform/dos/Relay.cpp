#include "platform/dos/Relay.h"

#include "platform/dos/Limits.h"

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace dos {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto PollInterval = std::chrono::milliseconds(20);
constexpr auto AnswerLimit = std::chrono::milliseconds(AnswerLimitMilliseconds);
constexpr auto FlushLimit = std::chrono::minutes(10);

// How long a host call has been waited for.
class Patience {
public:
    explicit Patience(const HostWatch& watch) : Watch(watch) { Renew(); }

    void Renew() {
        Seen = Watch.Calls;
        Since = Clock::now();
    }
    [[nodiscard]] bool HasMoved() const { return Watch.Calls != Seen; }
    // isEnding: since somebody wanted the end, no disk is waited for any longer than that.
    bool IsOver(bool isEnding) {
        if (HasMoved())
            Renew();
        return Clock::now() - Since >
               (Watch.Flushes > 0 && !isEnding ? Clock::duration(FlushLimit) : Clock::duration(AnswerLimit));
    }

private:
    const HostWatch& Watch;
    std::uint64_t Seen = 0;
    Clock::time_point Since;
};

} // namespace

RelayEnd Relay::Run(std::function<void(Relay&)> work, const std::function<bool()>& goesOn,
                    const std::function<bool()>& waitsOn) {
    auto relay = std::make_shared<Relay>();
    try {
        std::thread([relay, job = std::move(work)]() mutable {
            SetThreadWatch(&relay->Watch);
            job(*relay);
            job = nullptr; // what it held may lie on the disk
            SetThreadWatch(nullptr);
            const std::lock_guard hold(relay->Guard);
            relay->IsDone = true;
            relay->Changed.notify_all();
        }).detach();
    } catch (const std::system_error&) {
        SetIoErr(ErrorNoFreeStore);
        return RelayEnd::NotBegun;
    }
    return relay->Serve(goesOn, waitsOn);
}

RelayEnd Relay::Serve(const std::function<bool()>& goesOn, const std::function<bool()>& waitsOn) {
    std::unique_lock hold(Guard);
    try {
        return Attend(hold, goesOn, waitsOn);
    } catch (...) {
        if (!hold.owns_lock())
            hold.lock();
        Watch.IsLeft = true;
        Asked = nullptr;
        Changed.notify_all();
        throw;
    }
}

RelayEnd Relay::Attend(std::unique_lock<std::mutex>& hold, const std::function<bool()>& goesOn,
                       const std::function<bool()>& waitsOn) {
    Patience patience(Watch);
    bool wasEnding = false;
    Clock::time_point next = Clock::now() + PollInterval;
    while (!IsDone) {
        if (Asked) {
            Answer(hold);
            patience.Renew();
        } else {
            Changed.wait_until(hold, next, [this] { return IsDone || Asked; });
        }
        // Work that asks without a pause hears of the end too.
        if (IsDone || Clock::now() < next)
            continue;
        next = Clock::now() + PollInterval;
        hold.unlock();
        if (!goesOn())
            IsEnding = true;
        hold.lock();
        if (IsEnding && !std::exchange(wasEnding, true))
            patience.Renew();
        if (IsDone || Asked || !patience.IsOver(IsEnding))
            continue;
        if (!IsEnding && (MayWaitOn(hold, waitsOn) || patience.HasMoved())) {
            patience.Renew();
        } else if (!IsDone) {
            Watch.IsLeft = true;
            return IsEnding ? RelayEnd::Cancelled : RelayEnd::NoAnswer;
        }
    }
    return RelayEnd::Done;
}

bool Relay::MayWaitOn(std::unique_lock<std::mutex>& hold, const std::function<bool()>& waitsOn) {
    if (!waitsOn)
        return false;
    hold.unlock();
    const bool mayWait = waitsOn();
    hold.lock();
    return mayWait;
}

void Relay::Answer(std::unique_lock<std::mutex>& hold) {
    const std::function<void()>& deed = *Asked;
    hold.unlock();
    deed();
    hold.lock();
    Asked = nullptr;
    Changed.notify_all();
}

bool Relay::Ask(const std::function<void()>& deed) {
    std::unique_lock hold(Guard);
    if (Watch.IsLeft)
        return false;
    Asked = &deed;
    Changed.notify_all();
    Changed.wait(hold, [this] { return !Asked; });
    return !Watch.IsLeft;
}

} // namespace dos
