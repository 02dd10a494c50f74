// What a task consists of, for the sources of this folder. Others know Task by pointer only.
#pragma once

#include "platform/exec/Ports.h"
#include "platform/exec/Tasks.h"

#include <condition_variable>
#include <memory>
#include <mutex>

namespace exec {

class Task {
public:
    Task();

    int Allocate();
    void Release(int number);
    void Set(SignalMask signals);
    SignalMask Change(SignalMask newBits, SignalMask mask);
    // Those of `mask` that are set, cleared by this.
    SignalMask Take(SignalMask mask);
    // Sleeps without a pump until one of `mask` is set, or returns at once when there is a pump.
    void Sleep(SignalMask mask);
    void SetPump(EventPump pump);
    [[nodiscard]] std::shared_ptr<const EventPump> Pump() const;

private:
    mutable std::mutex Guard;
    std::condition_variable Woken;
    SignalMask Pending = 0;
    SignalMask Allocated = BreakSignals;
    std::shared_ptr<const EventPump> EventLoop; // null without a pump

public:
    MsgPort Process; // last: it takes its signal from the fields above
};

// The calling thread's task, shared so that what signals it late does not reach into freed memory.
[[nodiscard]] std::shared_ptr<Task> ShareTask();

} // namespace exec
