#include "platform/rexx/ScriptStart.h"

#include "platform/dos/System.h"

#include <cstdlib>

namespace rexx {

namespace {

constexpr const char* HostVariable = "SOLVANE_AREXX_HOST";
constexpr const char* NoHost = "REXX";

} // namespace

bool StartScript(std::string_view line, std::string_view host) {
    dos::SystemOptions options;
    options.Environment.push_back(std::string(HostVariable) + "=" + std::string(host));
    return dos::StartSystem(line, options) == 0;
}

std::string TakeScriptHost() {
    const char* given = std::getenv(HostVariable);
    std::string host = given != nullptr && *given != '\0' ? given : NoHost;
    ::unsetenv(HostVariable);
    return host;
}

} // namespace rexx
