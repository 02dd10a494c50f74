// Work on a thread of its own that asks the calling one for what must happen there: questions to a
// person, progress. For disks that may not answer. Private to platform/dos.
#pragma once

#include "platform/dos/HostWatch.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace dos {

enum class RelayEnd {
    Done,
    Cancelled, // but the work had not ended two seconds later
    NoAnswer,  // the host has not answered
    NotBegun,  // there is no thread for it
};

class Relay {
public:
    // Returns when the work has ended, or leaves it behind: two seconds after EndSoon, and when no
    // host call of it was answered for two seconds (ten minutes while a disk stores what it was
    // given). Work that is left behind goes on alone: it owns whatever it uses, and it is to end
    // before it changes anything more. goesOn is called on the calling thread, many times a second;
    // false is as EndSoon. waitsOn is asked there before work without an answer is left behind; true
    // gives the host as much time again, and work that got an answer meanwhile is not left.
    [[nodiscard]] static RelayEnd Run(std::function<void(Relay&)> work, const std::function<bool()>& goesOn,
                                      const std::function<bool()>& waitsOn = {});

    // For the work: has a deed done on the calling thread; false when nobody waits any more. What a deed,
    // goesOn or waitsOn throws ends Run, and the work is left behind.
    [[nodiscard]] bool Ask(const std::function<void()>& deed);
    // For the work: may it go on?
    [[nodiscard]] bool GoesOn() const noexcept { return !IsEnding && !Watch.IsLeft; }
    // For a deed: the work is to end, whether the disk answers or not.
    void EndSoon() noexcept { IsEnding = true; }

private:
    RelayEnd Serve(const std::function<bool()>& goesOn, const std::function<bool()>& waitsOn);
    RelayEnd Attend(std::unique_lock<std::mutex>& hold, const std::function<bool()>& goesOn,
                    const std::function<bool()>& waitsOn);
    bool MayWaitOn(std::unique_lock<std::mutex>& hold, const std::function<bool()>& waitsOn);
    void Answer(std::unique_lock<std::mutex>& hold);

    std::mutex Guard;
    std::condition_variable Changed;
    const std::function<void()>* Asked = nullptr;
    bool IsDone = false;
    std::atomic<bool> IsEnding{false};
    HostWatch Watch; // of the work's threads
};

} // namespace dos
