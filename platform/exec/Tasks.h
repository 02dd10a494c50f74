// Tasks, their signals and the one place that waits. A task is a thread of this process with 32
// signal bits and a process port; what other processes send arrives as a signal too (PublicPorts.h).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace exec {

class ChildTask;
class MsgPort;
class Task;

using SignalMask = std::uint32_t;

// The break signals, bits 12 to 15 of every task (Control-C to Control-F): never given out by AllocSignal.
inline constexpr SignalMask BreakSignals = 0xF000;
inline constexpr SignalMask BreakControlC = 0x1000; // please end

// What stands behind Wait in a task with a window: the event loop of the window system.
struct EventPump {
    // Handles the events that are there; with `wait` and none there it sleeps for the first one.
    // Runs on the task itself and may come back here: handlers may call Wait.
    std::function<void(bool wait)> Run;
    // Makes the Run(true) under way return, or the next one when none is: a call is never lost.
    // Comes from any thread, must not block and must not call this module.
    std::function<void()> Wake;
};

// The calling thread's task, made at first use. It ends with its thread; ports, timers and signal
// sources of the task must be gone by then.
[[nodiscard]] Task* FindTask();

// A signal number 0..31 of the calling task for the caller's own use, cleared; -1 when none is free.
[[nodiscard]] int AllocSignal();
// Gives it back; -1 and numbers that are not allocated are ignored.
void FreeSignal(int number);

// Sets signals of a task and wakes it when it waits. From any thread; the task must be alive.
void Signal(Task* task, SignalMask signals);
// Sets the bits under `mask` of the calling task's signals to those of `newBits`; returns all
// signals as they were. SetSignal(0, 0) reads them.
SignalMask SetSignal(SignalMask newBits, SignalMask mask);
// Sleeps until one of `mask` is set; returns those that are and clears them. The pump runs before
// it returns, also when nothing need be waited for, so a busy signal source starves no window.
// A mask of 0 would sleep for ever: it returns 0 at once.
SignalMask Wait(SignalMask mask);
// The same without sleeping: runs the pump once over what is there, 0 when none of `mask` is set.
SignalMask CheckSignal(SignalMask mask);
// Puts the pump behind Wait of the calling task; an empty one takes it away. When this returns no
// other thread is inside the old pump's Wake.
void SetEventPump(EventPump pump);

// A child: a thread with its own task. Its process port exists before the body runs and outlives
// the body; messages still in it when the object goes are replied.
class ChildTask {
    struct Thread;

public:
    explicit ChildTask(std::unique_ptr<Thread> thread) noexcept; // for CreateTask
    // Waits for the body to return.
    ~ChildTask();
    ChildTask(const ChildTask&) = delete;
    ChildTask& operator=(const ChildTask&) = delete;

    // For Signal; valid as long as this object.
    [[nodiscard]] Task* GetTask() const noexcept;

private:
    friend std::unique_ptr<ChildTask> CreateTask(std::string_view, std::function<void()>);
    std::unique_ptr<Thread> Running;
};

// Starts `body` as a child called `name` (the host shows 15 bytes of it); null when the host has no
// thread left. The body must not throw. A Forbid that it leaves open ends with it.
[[nodiscard]] std::unique_ptr<ChildTask> CreateTask(std::string_view name, std::function<void()> body);

// The port that every task has from the start; a child usually gets its first orders there.
[[nodiscard]] MsgPort& ProcessPort(Task* task) noexcept;
[[nodiscard]] MsgPort& ProcessPort(ChildTask& child) noexcept;

} // namespace exec
