#pragma once

#include "platform/exec/Tasks.h"

#include <condition_variable>
#include <functional>
#include <mutex>

// A stand-in for a window system's loop: sleeps until woken, and a waking is never lost.
class Loop {
public:
    Loop() {
        exec::SetEventPump({.Run = [this](bool wait) { Run(wait); }, .Wake = [this] { Wake(); }});
    }
    ~Loop() { exec::SetEventPump({}); }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    std::function<void()> OnRun = [] {}; // what an event would bring about
    int Runs = 0;
    bool HasWaited = false;

private:
    void Run(bool wait) {
        std::unique_lock lock(Guard);
        Woken.wait(lock, [&] { return WakeCalled || !wait; });
        WakeCalled = false;
        lock.unlock();
        HasWaited = HasWaited || wait;
        ++Runs;
        OnRun();
    }
    void Wake() {
        const std::lock_guard lock(Guard);
        WakeCalled = true;
        Woken.notify_one();
    }

    std::mutex Guard;
    std::condition_variable Woken;
    bool WakeCalled = false;
};
