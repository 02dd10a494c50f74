// Paths on their way to the toolkit, which knows only the host's. Private to this service.
#pragma once

#include <optional>
#include <string>
#include <string_view>

class QString;

namespace intuition {

// The host path of a volume path; a path that begins with "/" is one already. Nothing: IoErr.
[[nodiscard]] std::optional<std::string> HostFile(std::string_view path);

// Where a dialog of the toolkit begins for a drawer: there, or in the user's home when the drawer is nowhere
// or on a disk that may never answer, since the dialog looks at disks while the window waits.
[[nodiscard]] QString DialogStart(std::string_view drawer);

} // namespace intuition
