// Paths on their way to the toolkit, which knows only the host's.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace intuition {

// The host path of a volume path; a path that begins with "/" is one already. Nothing: IoErr.
[[nodiscard]] std::optional<std::string> HostFile(std::string_view path);

} // namespace intuition
