// The private directory of this user's running instances: ports, T:, RAM: and ENV: lie in it. It is
// made when missing and trusted only when nobody else can have a hand in it.
#pragma once

#include <string>
#include <string_view>

namespace exec {

// "$XDG_RUNTIME_DIR/solvane", or "/tmp/solvane-<uid>" when there is no such base or it belongs to
// another user (as after a change of user that keeps the environment). Empty when it cannot be
// trusted: it belongs to someone else, is a link or no directory, or others have rights on it.
// Nothing is repaired then; callers refuse to start. Found once and kept.
[[nodiscard]] const std::string& RuntimeDirectory();

// Puts another directory in its place, made when missing and examined in the same way; false, and
// RuntimeDirectory() is empty from then on, when it cannot be trusted. An empty path forgets what
// is kept, so that the environment is asked again. For tests, before any port is in use and while
// no other thread asks.
bool UseRuntimeDirectory(std::string_view path);

} // namespace exec
