#include "platform/exec/Timer.h"

#include "platform/exec/HostThread.h"
#include "platform/exec/TaskState.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace exec {

namespace {

using Clock = std::chrono::steady_clock;

// The thread behind all timers. It lives as long as one of them holds it.
class TimerService {
public:
    // The running one or a new one; null when the host has no thread left.
    static std::shared_ptr<TimerService> Obtain();
    TimerService() = default;
    ~TimerService();
    TimerService(const TimerService&) = delete;
    TimerService& operator=(const TimerService&) = delete;

    // Signals `task` at `time`; the order is known by `owner`, whose earlier one is dropped.
    void Schedule(const void* owner, Clock::time_point time, std::shared_ptr<Task> task, SignalMask mask);
    // After this the owner's signal is not set any more.
    void Cancel(const void* owner);

private:
    struct Order {
        const void* Owner;
        std::shared_ptr<Task> Receiver;
        SignalMask Mask;
    };

    void Run();
    void Drop(const void* owner);

    std::mutex Guard;
    std::condition_variable Changed;
    std::multimap<Clock::time_point, Order> Orders;
    bool Stopping = false;
    std::thread Worker;
};

std::mutex RunningGuard;
std::weak_ptr<TimerService> Running;

std::shared_ptr<TimerService> TimerService::Obtain() {
    const std::lock_guard lock(RunningGuard);
    auto service = Running.lock();
    if (service == nullptr) {
        service = std::make_shared<TimerService>();
        service->Worker = StartHostThread([own = service.get()] { own->Run(); });
        if (!service->Worker.joinable()) {
            return nullptr;
        }
        Running = service;
    }
    return service;
}

TimerService::~TimerService() {
    if (Worker.joinable()) {
        {
            const std::lock_guard lock(Guard);
            Stopping = true;
        }
        Changed.notify_one();
        Worker.join();
    }
}

void TimerService::Schedule(const void* owner, Clock::time_point time, std::shared_ptr<Task> task,
                            SignalMask mask) {
    const std::lock_guard lock(Guard);
    Drop(owner);
    Orders.emplace(time, Order{owner, std::move(task), mask});
    Changed.notify_one();
}

void TimerService::Cancel(const void* owner) {
    const std::lock_guard lock(Guard);
    Drop(owner);
}

// A process has a handful of timers, so a walk is all the search there need be.
void TimerService::Drop(const void* owner) {
    std::erase_if(Orders, [owner](const auto& entry) { return entry.second.Owner == owner; });
}

// Signals are set under the guard, so that none comes after a Cancel.
void TimerService::Run() {
    std::unique_lock lock(Guard);
    while (!Stopping) {
        if (Orders.empty()) {
            Changed.wait(lock);
        } else if (const auto next = Orders.begin(); next->first > Clock::now()) {
            const auto time = next->first;
            Changed.wait_until(lock, time);
        } else {
            next->second.Receiver->Set(next->second.Mask);
            Orders.erase(next);
        }
    }
}

} // namespace

struct Timer::State {
    std::shared_ptr<Task> Owner = ShareTask();
    int SignalNumber = Owner->Allocate();
    std::shared_ptr<TimerService> Service = TimerService::Obtain();
};

Timer::Timer() : Own(std::make_unique<State>()) {}

Timer::~Timer() {
    Stop();
    if (Own->SignalNumber >= 0) {
        Own->Owner->Release(Own->SignalNumber);
    }
}

SignalMask Timer::Mask() const noexcept {
    const bool works = Own->SignalNumber >= 0 && Own->Service != nullptr;
    return works ? SignalMask{1} << Own->SignalNumber : 0;
}

void Timer::Start(std::uint32_t milliseconds) {
    if (Mask() == 0) {
        return;
    }
    Stop();
    const auto time = Clock::now() + std::chrono::milliseconds(milliseconds);
    Own->Service->Schedule(Own.get(), time, Own->Owner, Mask());
}

void Timer::Stop() {
    if (Mask() != 0) {
        Own->Service->Cancel(Own.get());
        Own->Owner->Change(0, Mask());
    }
}

void Delay(std::uint32_t ticks) {
    if (ticks == 0) {
        return;
    }
    const std::chrono::milliseconds time(std::int64_t{ticks} * 1000 / TicksPerSecond);
    Timer timer;
    if (timer.Mask() == 0) {
        std::this_thread::sleep_for(time);
        return;
    }
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        constexpr std::int64_t longest = 24 * 60 * 60 * 1000; // ms, well inside Start's number
        timer.Start(static_cast<std::uint32_t>(std::clamp<std::int64_t>(left.count(), 0, longest)));
        Wait(timer.Mask());
    }
}

} // namespace exec
