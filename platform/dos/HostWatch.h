// Whether threads that work on a disk still get answers from it, as another thread sees it, and whether
// anybody still waits for theirs. Counts only; who waits and for how long is the work of Relay.h. Private
// to platform/dos.
#pragma once

#include <atomic>
#include <cstdint>

namespace dos {

struct HostWatch {
    std::atomic<std::uint64_t> Calls{0}; // of the host, begun so far
    std::atomic<int> Flushes{0};         // deeds under way that last until a disk has stored much
    std::atomic<bool> IsLeft{false};     // nobody waits for the work any more
};

// The watch of the calling thread; null without one. It must outlive the thread's work.
[[nodiscard]] HostWatch* ThreadWatch() noexcept;
void SetThreadWatch(HostWatch* watch) noexcept;

// Does somebody still wait for the work of the calling thread? To be asked before each step that changes
// something, since the host call before it may have hung. False with errno ENOMEDIUM: no further
// step is begun, only what is half made is taken back.
[[nodiscard]] bool IsAwaited() noexcept;

// Stands around host calls that can wait for a disk to store what it was given before. It takes as
// long as there is much of that, so it tells nothing of a disk that is dead.
class FlushScope {
public:
    FlushScope() noexcept : Watch(ThreadWatch()) {
        if (Watch)
            ++Watch->Flushes;
    }
    FlushScope(const FlushScope&) = delete;
    FlushScope& operator=(const FlushScope&) = delete;
    ~FlushScope() {
        if (Watch)
            --Watch->Flushes;
    }

private:
    HostWatch* Watch;
};

} // namespace dos
