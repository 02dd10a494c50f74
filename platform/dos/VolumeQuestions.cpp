#include "platform/dos/VolumeQuestions.h"

#include "platform/dos/Locks.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

namespace dos {

namespace {

constexpr int MostWorkers = 32; // so many volumes may hang before others have to wait for them

}

// What the task and the threads share; the last of them drops it.
struct VolumeQuestions::Board {
    std::mutex Guard;
    std::condition_variable Answered;
    std::deque<VolumeQuestion> Waiting; // not taken by a thread yet
    std::set<std::string> Open;         // devices of those waiting or under way
    std::vector<VolumeAnswer> Answers;
    int Workers = 0;
    bool IsAwaited = false; // the task stands in Ask
    exec::Task* Task = nullptr;
    exec::SignalMask Signals = 0;

    void Work();
    bool StartWorker(const std::shared_ptr<Board>& self);
};

// Serves what waits and ends. Guard is free when it is called.
void VolumeQuestions::Board::Work() {
    SetRequesters(false);
    std::unique_lock hold(Guard);
    while (!Waiting.empty()) {
        VolumeQuestion question = std::move(Waiting.front());
        Waiting.pop_front();
        hold.unlock();
        std::optional<InfoData> info = Info(question.Device + ":");
        hold.lock();
        Open.erase(question.Device);
        Answers.push_back({std::move(question.Device), std::move(question.Volume), info});
        if (IsAwaited)
            Answered.notify_all();
        else if (Task)
            exec::Signal(Task, Signals);
    }
    --Workers;
}

// Guard is held.
bool VolumeQuestions::Board::StartWorker(const std::shared_ptr<Board>& self) {
    try {
        std::thread([self] { self->Work(); }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    ++Workers;
    return true;
}

VolumeQuestions::VolumeQuestions() : Shared(std::make_shared<Board>()) {}

VolumeQuestions::~VolumeQuestions() {
    const std::lock_guard hold(Shared->Guard);
    Shared->Waiting.clear();
    Shared->Task = nullptr;
}

void VolumeQuestions::SetListener(exec::Task* task, exec::SignalMask signals) {
    const std::lock_guard hold(Shared->Guard);
    Shared->Task = task;
    Shared->Signals = signals;
}

std::vector<VolumeAnswer> VolumeQuestions::Ask(const std::vector<VolumeQuestion>& questions,
                                               std::chrono::milliseconds limit) {
    Board& board = *Shared;
    std::unique_lock hold(board.Guard);
    std::vector<std::string> asked;
    for (const VolumeQuestion& question : questions) {
        if (!board.Open.insert(question.Device).second)
            continue;
        board.Waiting.push_back(question);
        asked.push_back(question.Device);
        if (board.Workers < MostWorkers && !board.StartWorker(Shared) && board.Workers == 0) {
            board.Open.clear(); // no thread is to be had: nobody knows
            for (VolumeQuestion& lost : board.Waiting)
                board.Answers.push_back({std::move(lost.Device), std::move(lost.Volume), std::nullopt});
            board.Waiting.clear();
        }
    }
    board.IsAwaited = true;
    board.Answered.wait_for(hold, limit, [&] {
        return std::ranges::none_of(asked, [&](const auto& device) { return board.Open.contains(device); });
    });
    board.IsAwaited = false;
    return std::exchange(board.Answers, {});
}

std::vector<VolumeAnswer> VolumeQuestions::Take() {
    const std::lock_guard hold(Shared->Guard);
    return std::exchange(Shared->Answers, {});
}

} // namespace dos
