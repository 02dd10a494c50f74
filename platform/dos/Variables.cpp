#include "platform/dos/Variables.h"

#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/dos/Paths.h"

namespace dos {

namespace {

constexpr std::size_t LargestVariable = 65536; // bytes

// A name may go down into drawers, never up or to another device.
bool IsGoodName(std::string_view name) {
    const bool isGood = !name.empty() && name.find(':') == std::string_view::npos && name.front() != '/' &&
                        name.back() != '/' && name.find("//") == std::string_view::npos;
    if (!isGood)
        SetIoErr(ErrorInvalidComponentName);
    return isGood;
}

bool Store(std::string_view device, std::string_view name, std::string_view value) {
    const std::string path = std::string(device).append(name);
    const std::string drawer(PathPart(path));
    return (drawer.ends_with(':') || CreateDirs(drawer)) && WriteWhole(path, value);
}

} // namespace

std::optional<std::string> GetVar(std::string_view name) {
    if (!IsGoodName(name))
        return {};
    for (const std::string_view device : {"ENV:", "ENVARC:"}) {
        const auto text = ReadWhole(std::string(device).append(name), LargestVariable);
        if (text)
            return text->substr(0, text->find('\n'));
        if (IoErr() != ErrorObjectNotFound)
            break;
    }
    return {};
}

bool SetVar(std::string_view name, std::string_view value, VarScope scope) {
    if (!IsGoodName(name))
        return false;
    // The saved one first: when it cannot be kept, nothing has changed.
    return (scope == VarScope::Global || Store("ENVARC:", name, value)) && Store("ENV:", name, value);
}

} // namespace dos
