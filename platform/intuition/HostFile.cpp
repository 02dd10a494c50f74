#include "platform/intuition/HostFile.h"

#include "platform/dos/HostPaths.h"

namespace intuition {

std::optional<std::string> HostFile(std::string_view path) {
    return path.starts_with('/') ? std::string(path) : dos::HostPath(path);
}

} // namespace intuition
