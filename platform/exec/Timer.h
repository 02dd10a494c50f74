// One-shot timers that set a signal, and the wait in ticks. All timers of the process share one
// thread, which exists as long as there is a timer.
#pragma once

#include "platform/exec/Tasks.h"

#include <cstdint>
#include <memory>

namespace exec {

inline constexpr std::uint32_t TicksPerSecond = 50;

// Belongs to the task that makes it and holds one of its signals; used by that task only.
class Timer {
public:
    explicit Timer();
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    // The signal that is set when the time is over; 0 when the task had none left, or the host no
    // thread: such a timer never fires.
    [[nodiscard]] SignalMask Mask() const noexcept;
    // Fires once in that many milliseconds, on a clock that nobody sets. A running timer starts
    // anew and a signal not fetched yet is taken back.
    void Start(std::uint32_t milliseconds);
    // After this no signal comes, and none is pending.
    void Stop();

private:
    struct State;
    std::unique_ptr<State> Own;
};

// Sleeps for that many fiftieths of a second; the pump of the calling task runs meanwhile. Signals
// that arrive stay pending.
void Delay(std::uint32_t ticks);

} // namespace exec
