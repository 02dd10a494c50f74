// Threads of this folder that serve tasks without being one. They take no signals of the host, those
// are for the main thread. For the sources of this folder.
#pragma once

#include <functional>
#include <thread>

namespace exec {

// Not joinable when the host has no thread left.
[[nodiscard]] std::thread StartHostThread(std::function<void()> body);

} // namespace exec
