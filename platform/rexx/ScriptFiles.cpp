// Where scripts lie.
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Paths.h"
#include "platform/rexx/Scripts.h"

namespace rexx {

namespace {

constexpr std::string_view Extension = ".rexx";
constexpr std::string_view ScriptDrawer = "REXX:";
constexpr std::string_view White = " \t\r\n";

// False with IoErr.
bool IsFile(const std::string& path) {
    const auto object = dos::ExamineObject(path);
    if (object && object->Type != dos::TypeFile) {
        dos::SetIoErr(dos::ErrorObjectWrongType);
        return false;
    }
    return object.has_value();
}

std::optional<std::string> FindIn(std::string_view drawer, std::string_view name) {
    const bool hasExtension = dos::FilePart(name).find('.') != std::string_view::npos;
    const std::string path = std::string(drawer).append(name);
    if (!hasExtension && IsFile(path + std::string(Extension))) {
        return path + std::string(Extension);
    }
    return IsFile(path) ? std::optional(path) : std::nullopt;
}

} // namespace

std::optional<std::string> FindScript(std::string_view name) {
    if (name.empty()) {
        dos::SetIoErr(dos::ErrorObjectNotFound);
        return std::nullopt;
    }
    if (name.front() == '/') {
        const std::string path = dos::FromHostPath(name);
        if (auto found = path != name ? FindIn("", path) : std::nullopt) {
            return found;
        }
    }
    auto found = FindIn("", name);
    if (!found && name.find_first_of(":/") == std::string_view::npos) {
        found = FindIn(ScriptDrawer, name);
    }
    return found;
}

std::optional<std::string> ReadScript(const std::string& path) {
    auto source = dos::ReadWhole(path, LongestScript);
    if (!source) {
        return std::nullopt;
    }
    const std::size_t start = source->find_first_not_of(White);
    if (start == std::string::npos || source->compare(start, 2, "/*") != 0) {
        dos::SetIoErr(dos::ErrorFileNotObject);
        return std::nullopt;
    }
    return source;
}

} // namespace rexx
