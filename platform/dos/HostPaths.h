// The border between AmigaDOS paths and the host's own: both ways, file: URLs included.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dos {

// The host path of an object that exists or could be made, aliases resolved; a soft link at the end
// is not followed. Nothing with IoErr when the drawer it would lie in is not there or the device
// has no host path.
[[nodiscard]] std::optional<std::string> HostPath(std::string_view path);

// The shortest volume path for a host path or file: URL; "~" and "~/..." are at the user's home. A path
// of a known device, volume or assign comes back unchanged, and so does what cannot be understood.
// Relative host paths need the drawer they start from, in which "~" may be a name as any other. Never waits
// for a disk that does not answer.
[[nodiscard]] std::string FromHostPath(std::string_view hostPathOrUrl,
                                       std::string_view hostCurrentDirectory = {});

} // namespace dos
