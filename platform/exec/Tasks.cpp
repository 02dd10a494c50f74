#include "platform/exec/Tasks.h"

#include "platform/exec/Ports.h"
#include "platform/exec/TaskState.h"
#include "platform/utility/Text.h"

#include <bit>
#include <limits>
#include <pthread.h>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace exec {

namespace {

constexpr std::size_t MaxHostThreadName = 15; // bytes that the kernel keeps

thread_local std::shared_ptr<Task> Current; // null until the thread first asks for its task

SignalMask MaskOf(int number) {
    return SignalMask{1} << number;
}

bool IsSignalNumber(int number) {
    return number >= 0 && number < std::numeric_limits<SignalMask>::digits;
}

} // namespace

// The process port belongs to the task, so it must not own it in turn.
Task::Task() : Process(std::shared_ptr<Task>(std::shared_ptr<Task>(), this)) {}

int Task::Allocate() {
    const std::lock_guard lock(Guard);
    const int number = std::numeric_limits<SignalMask>::digits - 1 - std::countl_one(Allocated);
    if (number < 0) {
        return -1;
    }
    Allocated |= MaskOf(number);
    Pending &= ~MaskOf(number);
    return number;
}

void Task::Release(int number) {
    const std::lock_guard lock(Guard);
    Allocated &= ~MaskOf(number);
    Pending &= ~MaskOf(number);
}

// Wake is called under the guard, so that SetPump cannot take the pump away below it.
void Task::Set(SignalMask signals) {
    const std::lock_guard lock(Guard);
    if ((Pending & signals) == signals) {
        return; // whoever set them has woken the task
    }
    Pending |= signals;
    if (EventLoop != nullptr) {
        EventLoop->Wake();
    } else {
        Woken.notify_all();
    }
}

SignalMask Task::Change(SignalMask newBits, SignalMask mask) {
    const std::lock_guard lock(Guard);
    const SignalMask old = Pending;
    Pending = (Pending & ~mask) | (newBits & mask);
    // An event handler may do this while its own task waits behind the pump.
    if ((Pending & ~old) != 0 && EventLoop != nullptr) {
        EventLoop->Wake();
    }
    return old;
}

SignalMask Task::Take(SignalMask mask) {
    const std::lock_guard lock(Guard);
    const SignalMask taken = Pending & mask;
    Pending &= ~taken;
    return taken;
}

void Task::Sleep(SignalMask mask) {
    std::unique_lock lock(Guard);
    Woken.wait(lock, [&] { return (Pending & mask) != 0 || EventLoop != nullptr; });
}

void Task::SetPump(EventPump pump) {
    auto fresh = pump.Run && pump.Wake ? std::make_shared<const EventPump>(std::move(pump)) : nullptr;
    const std::lock_guard lock(Guard);
    EventLoop.swap(fresh);
}

std::shared_ptr<const EventPump> Task::Pump() const {
    const std::lock_guard lock(Guard);
    return EventLoop;
}

std::shared_ptr<Task> ShareTask() {
    if (Current == nullptr) {
        Current = std::make_shared<Task>();
    }
    return Current;
}

Task* FindTask() {
    return ShareTask().get();
}

int AllocSignal() {
    return FindTask()->Allocate();
}

void FreeSignal(int number) {
    if (IsSignalNumber(number)) {
        FindTask()->Release(number);
    }
}

void Signal(Task* task, SignalMask signals) {
    task->Set(signals);
}

SignalMask SetSignal(SignalMask newBits, SignalMask mask) {
    return FindTask()->Change(newBits, mask);
}

SignalMask Wait(SignalMask mask) {
    if (mask == 0) {
        return 0;
    }
    Task& task = *FindTask();
    while (true) {
        // The copy keeps the pump alive when a handler takes it away.
        if (const auto pump = task.Pump()) {
            pump->Run((task.Change(0, 0) & mask) == 0);
        } else {
            task.Sleep(mask);
        }
        if (const SignalMask taken = task.Take(mask); taken != 0) {
            return taken;
        }
    }
}

SignalMask CheckSignal(SignalMask mask) {
    Task& task = *FindTask();
    if (const auto pump = task.Pump()) {
        pump->Run(false);
    }
    return task.Take(mask);
}

void SetEventPump(EventPump pump) {
    FindTask()->SetPump(std::move(pump));
}

struct ChildTask::Thread {
    std::shared_ptr<Task> Own = std::make_shared<Task>();
    std::thread Host;
};

ChildTask::ChildTask(std::unique_ptr<Thread> thread) noexcept : Running(std::move(thread)) {}

ChildTask::~ChildTask() {
    Running->Host.join();
}

Task* ChildTask::GetTask() const noexcept {
    return Running->Own.get();
}

std::unique_ptr<ChildTask> CreateTask(std::string_view name, std::function<void()> body) {
    auto thread = std::make_unique<ChildTask::Thread>();
    const std::string hostName(name.substr(0, utility::CutLength(name, MaxHostThreadName)));
    try {
        thread->Host = std::thread([own = thread->Own, hostName, work = std::move(body)] {
            Current = own;
            // Only a courtesy to who looks at the process from outside.
            static_cast<void>(pthread_setname_np(pthread_self(), hostName.c_str()));
            work();
        });
    } catch (const std::system_error&) {
        return nullptr;
    }
    return std::make_unique<ChildTask>(std::move(thread));
}

MsgPort& ProcessPort(Task* task) noexcept {
    return task->Process;
}

MsgPort& ProcessPort(ChildTask& child) noexcept {
    return child.GetTask()->Process;
}

} // namespace exec
