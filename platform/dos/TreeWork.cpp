#include "platform/dos/TreeWork.h"

#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/Relay.h"

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

// The control record for work on another thread. Progress is told without it.
TreeControl Relayed(const TreeControl& control, Relay& relay) {
    TreeControl relayed;
    if (control.Trouble)
        relayed.Trouble = [&](const TreeTrouble& trouble) {
            TroubleAnswer answer = TroubleAnswer::Abort;
            static_cast<void>(relay.Ask([&] { answer = control.Trouble(trouble); })); // else it ends
            return answer;
        };
    if (control.Conflict)
        relayed.Conflict = [&](const TreeConflict& conflict) {
            ConflictReply reply{ConflictAnswer::Abort};
            static_cast<void>(relay.Ask([&] { reply = control.Conflict(conflict); })); // else it ends
            return reply;
        };
    if (control.Finished)
        relayed.Finished = [&](const std::string& path, bool isDrawer) {
            static_cast<void>(relay.Ask([&] { control.Finished(path, isDrawer); })); // else nobody listens
        };
    return relayed;
}

} // namespace

void TreeTally::Skip(long error) {
    ++Skipped;
    long none = 0;
    FirstError.compare_exchange_strong(none, error);
}

TreeResult TreeTally::Result() const {
    TreeResult result;
    result.IsCancelled = IsStopped;
    result.Done = {Objects, Bytes};
    result.Skipped = Skipped;
    result.Lost = Lost;
    result.FirstError = FirstError;
    result.IsWhole = !result.IsCancelled && result.Skipped == 0;
    return result;
}

bool MayHang(const Spot& spot) {
    if (!spot.SlowMount.empty())
        return true;
    const MountRows rows = Mounts();
    const auto isSlow = [](const MountRow& row) { return row.Slow; };
    if (!spot.Object || std::ranges::none_of(*rows, isSlow))
        return false;
    const std::string path = HostPathOf(spot.Object.Get());
    return path.empty() || std::ranges::any_of(*rows, [&](const MountRow& row) {
               return row.Slow && LiesUnder(row.Point, path);
           });
}

TreeResult RunTree(Disks disks, TreeStep step, const TreeControl& control, TreeDeed deed) {
    auto tally = std::make_shared<TreeTally>();
    if (disks == Disks::Answer)
        return deed(control, *tally);
    auto answer = std::make_shared<TreeResult>();
    auto told = std::make_shared<const TreeControl>(control);
    const auto work = [tally, answer, told, own = std::move(deed)](Relay& relay) {
        *answer = own(Relayed(*told, relay), *tally);
    };
    const auto goesOn = [&] {
        if (control.Progress && !control.Progress({tally->Objects, tally->Bytes}))
            tally->IsStopped = true;
        return !tally->IsStopped;
    };
    const auto ask = [&](long error) {
        const TreeTrouble trouble{"", step, error, CopyEnd::ContentsFailed, true};
        const TroubleAnswer answer = control.Trouble ? control.Trouble(trouble) : TroubleAnswer::Skip;
        if (answer == TroubleAnswer::Abort)
            tally->IsStopped = true;
        return answer == TroubleAnswer::Retry;
    };
    const RelayEnd end = Relay::Run(work, goesOn, [&] { return ask(ErrorNoDisk); });
    if (end == RelayEnd::Done)
        return *answer;
    const bool isCancelled = tally->IsStopped.exchange(true);
    const long error = end == RelayEnd::NotBegun ? IoErr() : ErrorNoDisk;
    if (!isCancelled)
        tally->Skip(error);
    TreeResult result = tally->Result();
    result.IsCancelled = isCancelled;
    if (end == RelayEnd::NotBegun)
        static_cast<void>(ask(error)); // it would be no other when tried again
    return result;
}

TreeQueue::TreeQueue() {
    try {
        Thread = std::thread([this, watch = ThreadWatch()] {
            SetThreadWatch(watch);
            Serve();
        });
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

std::size_t ShareOf(std::size_t entries) {
    return std::clamp<std::size_t>((entries + 1) / 2, 1, LargestShare);
}

} // namespace dos
