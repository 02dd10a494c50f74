// Change notices for a drawer or file: one signal per burst of changes. All watches live on one
// service thread; where the host gives no notices the drawer's date is looked at instead.
#pragma once

#include "platform/exec/Tasks.h"

#include <memory>
#include <string_view>

namespace dos {

struct Watch;

// One watch. The signal is sent when changes have been quiet for 200 ms, or have gone on for 1 s.
class Notification {
public:
    Notification();
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;
    ~Notification(); // ends it

    // Ends a running watch and begins one on path: a drawer (entries made, removed, renamed,
    // changed in it), a file, or a name that does not exist yet. A watched object that vanishes
    // gives one signal; one that comes back is watched again. False with IoErr for an unknown
    // volume.
    [[nodiscard]] bool Start(std::string_view path, exec::Task* task, int signal);
    // True when a signal was sent since the last call: several watches may share one.
    [[nodiscard]] bool TakeChange();
    // A resting watch goes on noting what the host tells it, but never looks at an object by itself: where
    // there are no notices it does so when the rest ends.
    void SetResting(bool resting);
    // After it no signal is sent any more. Harmless when nothing is watched.
    void End();

private:
    std::shared_ptr<Watch> Running;
};

} // namespace dos
