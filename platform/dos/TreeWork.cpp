#include "platform/dos/TreeWork.h"

#include "platform/dos/Errors.h"

#include <algorithm>
#include <chrono>
#include <system_error>

namespace dos {

namespace {

constexpr std::size_t MostWaiting = 32;  // jobs
constexpr std::size_t LargestShare = 16; // entries
constexpr auto PollInterval = std::chrono::milliseconds(20);

// Nothing that leads out of the drawer.
bool IsOneName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

} // namespace

void TreeTally::Skip(long error) {
    ++Skipped;
    long none = 0;
    FirstError.compare_exchange_strong(none, error);
}

TreeQueue::TreeQueue() {
    try {
        Thread = std::thread([this] { Serve(); });
    } catch (const std::system_error&) {
        // The caller does all by itself.
    }
}

TreeQueue::~TreeQueue() {
    {
        const std::lock_guard hold(Guard);
        IsEnding = true;
    }
    Changed.notify_all();
    if (Thread.joinable())
        Thread.join();
}

bool TreeQueue::DoOne(std::unique_lock<std::mutex>& hold, Worker who) {
    if (Waiting.empty())
        return false;
    // The caller takes what it has just looked at, the helper the oldest.
    Job job = std::move(who == Worker::Caller ? Waiting.back() : Waiting.front());
    if (who == Worker::Caller)
        Waiting.pop_back();
    else
        Waiting.pop_front();
    ++Running;
    hold.unlock();
    job(who);
    job = nullptr;
    hold.lock();
    --Running;
    if (Running == 0 && Waiting.empty())
        Changed.notify_all();
    return true;
}

void TreeQueue::Serve() {
    std::unique_lock hold(Guard);
    while (true) {
        Changed.wait(hold, [this] { return IsEnding || !Waiting.empty(); });
        if (!DoOne(hold, Worker::Helper))
            return;
    }
}

void TreeQueue::Push(Job job) {
    std::unique_lock hold(Guard);
    Waiting.push_back(std::move(job));
    Changed.notify_one();
    if (Waiting.size() > MostWaiting || !Thread.joinable())
        DoOne(hold, Worker::Caller);
}

void TreeQueue::Drain(const std::function<void()>& poll) {
    std::unique_lock hold(Guard);
    while (Running > 0 || !Waiting.empty()) {
        if (!DoOne(hold, Worker::Caller))
            Changed.wait_for(hold, PollInterval);
        hold.unlock();
        poll();
        hold.lock();
    }
}

void TreeTalk::Poll() {
    std::vector<std::pair<std::string, bool>> names;
    if (WantsNames()) {
        const std::lock_guard hold(Guard);
        names.swap(Names);
    }
    for (const auto& [path, isDrawer] : names)
        Control.Finished(path, isDrawer);
    if (Control.Progress && !Control.Progress({Tally.Objects, Tally.Bytes}))
        Tally.IsStopped = true;
}

TroubleAnswer TreeTalk::Ask(const TreeTrouble& trouble) {
    const TroubleAnswer answer = Control.Trouble ? Control.Trouble(trouble) : TroubleAnswer::Skip;
    if (answer == TroubleAnswer::Abort)
        Tally.IsStopped = true;
    return answer;
}

ConflictReply TreeTalk::Ask(const TreeConflict& conflict) {
    ConflictReply reply = Control.Conflict ? Control.Conflict(conflict) : ConflictReply();
    if (reply.Answer == ConflictAnswer::Abort)
        Tally.IsStopped = true;
    if (reply.Answer == ConflictAnswer::Rename && !IsOneName(reply.NewName))
        reply.Answer = ConflictAnswer::Skip;
    return reply;
}

void TreeTalk::NoteFinished(std::string path, bool isDrawer) {
    const std::lock_guard hold(Guard);
    Names.emplace_back(std::move(path), isDrawer);
}

TreeResult TreeTalk::Result() const {
    TreeResult result;
    result.IsCancelled = Tally.IsStopped;
    result.Done = {Tally.Objects, Tally.Bytes};
    result.Skipped = Tally.Skipped;
    result.Lost = Tally.Lost;
    result.FirstError = Tally.FirstError;
    result.IsWhole = !result.IsCancelled && result.Skipped == 0;
    return result;
}

std::size_t ShareOf(std::size_t entries) {
    return std::clamp<std::size_t>((entries + 1) / 2, 1, LargestShare);
}

} // namespace dos
