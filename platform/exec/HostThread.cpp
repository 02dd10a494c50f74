#include "platform/exec/HostThread.h"

#include <signal.h>
#include <system_error>
#include <utility>

namespace exec {

std::thread StartHostThread(std::function<void()> body) {
    sigset_t all{};
    sigset_t before{};
    sigfillset(&all);
    // The new thread inherits the mask of its maker.
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread(std::move(body));
    } catch (const std::system_error&) {
        // Told by the thread that is not joinable.
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace exec
