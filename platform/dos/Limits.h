// Questions to file systems that may never answer: asked on a thread of their own, given up after
// two seconds without progress. Private to platform/dos.
#pragma once

#include "platform/dos/Errors.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace dos {

inline constexpr int AnswerLimitMilliseconds = 2000;

// Long work tells through it that it still gets answers. Work that changes something asks Commit
// first: after that its end is awaited however long it takes, and without it nothing may be
// changed, since the caller has been told of a failure.
class Progress {
public:
    void Beat() noexcept { Beats.fetch_add(1, std::memory_order_relaxed); }
    [[nodiscard]] unsigned Count() const noexcept { return Beats.load(std::memory_order_relaxed); }
    [[nodiscard]] bool Commit() noexcept { return Settle(Fate::Committed); }
    [[nodiscard]] bool GiveUp() noexcept { return Settle(Fate::GivenUp); }

private:
    enum class Fate { Open, Committed, GivenUp };
    bool Settle(Fate wanted) noexcept {
        Fate was = Fate::Open;
        return Outcome.compare_exchange_strong(was, wanted) || was == wanted;
    }

    std::atomic<unsigned> Beats{0};
    std::atomic<Fate> Outcome{Fate::Open};
};

// Runs work on another thread. False when it did not end in time, or when an earlier question to
// the same file system (key) still hangs; the work then goes on alone, so it may touch only what it
// owns itself.
[[nodiscard]] bool RunWithLimit(const std::string& key, std::function<void(Progress&)> work);

// The same for work that must be done in any case, letting go of something: it is begun even while
// an earlier question hangs, and then nobody waits for it.
void EndWithLimit(const std::string& key, std::function<void(Progress&)> work);

// As RunWithLimit for work with a result; an empty one with IoErr 226 when there is no answer. IoErr of
// the work becomes the caller's.
template <typename Result>
[[nodiscard]] Result AskWithLimit(const std::string& key, std::function<Result(Progress&)> work) {
    struct Answer {
        Result Value{};
        long Error = 0;
    };
    auto answer = std::make_shared<Answer>();
    const bool ended = RunWithLimit(key, [answer, question = std::move(work)](Progress& progress) {
        answer->Value = question(progress);
        answer->Error = IoErr();
    });
    SetIoErr(ended ? answer->Error : ErrorNoDisk);
    return ended ? std::move(answer->Value) : Result{};
}

} // namespace dos
