#include "platform/dos/UserHome.h"

#include "platform/dos/HostCalls.h"

#include <cstdlib>

namespace dos {

std::string DrawerFromEnvironment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    std::string path = value && *value == '/' ? value : otherwise;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

std::string HomeOfUser() {
    return DrawerFromEnvironment("HOME", Host().HomeOfUser());
}

} // namespace dos
