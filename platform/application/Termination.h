// The host's wish that the program end (a signal from a terminal, a logout, a service manager), told to the
// program as the break signal that Amiga programs know.
#pragma once

#include "platform/exec/Tasks.h"

#include <atomic>
#include <thread>

namespace application {

// While it lives, a wish to end sets BreakControlC of the task that made it. Make it before any other thread
// is started, so that no thread takes the host's signal first.
class TerminationWatch {
public:
    TerminationWatch();
    TerminationWatch(const TerminationWatch&) = delete;
    TerminationWatch& operator=(const TerminationWatch&) = delete;
    ~TerminationWatch();

private:
    std::atomic<bool> Stopping = false;
    std::thread Watcher;
};

} // namespace application
