// Work on a thread of its own that asks the calling one for what must happen there: questions to a
// person, progress. For disks that may not answer. Private to platform/dos.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace dos {

class Relay {
public:
    // Returns when the work has ended. After EndSoon it waits for two seconds more and then leaves
    // the work behind, which owns whatever it uses; false then, or when there is no thread for it.
    [[nodiscard]] static bool Run(std::function<void(Relay&)> work);

    // For the work: has a deed done on the calling thread; false when nobody waits any more.
    [[nodiscard]] bool Ask(const std::function<void()>& deed);
    // For a deed: the work is to end, whether the disk answers or not.
    void EndSoon();

private:
    bool Serve();

    std::mutex Guard;
    std::condition_variable Changed;
    const std::function<void()>* Asked = nullptr;
    bool IsDone = false;
    bool IsEnding = false;
    bool IsLeft = false;
};

} // namespace dos
