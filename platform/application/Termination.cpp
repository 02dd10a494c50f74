#include "platform/application/Termination.h"

#include <atomic>
#include <csignal>
#include <pthread.h>

namespace application {

namespace {

sigset_t WatchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR2}) {
        sigaddset(&signals, number);
    }
    return signals;
}

// Ends on SIGUSR2, which is how the watch is told to stop. From outside it is a wish to end like the others.
void Watch(exec::Task* task, const std::atomic<bool>& stop) {
    const sigset_t signals = WatchedSignals();
    int number = 0;
    while (sigwait(&signals, &number) == 0 && !stop) {
        exec::Signal(task, exec::BreakControlC);
    }
}

} // namespace

TerminationWatch::TerminationWatch() {
    const sigset_t signals = WatchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    Watcher = std::thread([this, task = exec::FindTask()] { Watch(task, Stopping); });
}

TerminationWatch::~TerminationWatch() {
    Stopping = true;
    pthread_kill(Watcher.native_handle(), SIGUSR2);
    Watcher.join();
}

} // namespace application
