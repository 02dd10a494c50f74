#include "platform/dos/Paths.h"

#include "platform/dos/Errors.h"

#include <algorithm>

namespace dos {
namespace {

// Where the last component begins.
std::size_t FileStart(std::string_view path) noexcept {
    const std::size_t separator = path.find_last_of(":/");
    return separator == std::string_view::npos ? 0 : separator + 1;
}

bool NeedsSlash(std::string_view dir) noexcept {
    return !dir.empty() && dir.back() != ':' && dir.back() != '/';
}

// A file that begins with "/" brings a step to the parent: its slash stays behind the one that ends
// dir.
std::string Join(std::string_view dir, std::string_view file) {
    const std::size_t colon = file.find(':');
    if (colon != std::string_view::npos && colon > 0)
        return std::string(file);
    std::string path(dir);
    if (colon == 0) {
        const std::size_t device = dir.find(':');
        path.resize(device == std::string_view::npos ? 0 : device);
    } else if (!file.empty() && NeedsSlash(dir)) {
        path += '/';
    }
    return path.append(file);
}

} // namespace

std::string_view FilePart(std::string_view path) noexcept {
    return path.substr(FileStart(path));
}

std::string_view PathPart(std::string_view path) noexcept {
    const std::size_t start = FileStart(path);
    if (start == 0 || path[start - 1] == ':')
        return path.substr(0, start);
    // Of the slashes that end the part only those are kept that step up from the current drawer or
    // a root.
    const std::string_view part = path.substr(0, start);
    const bool onlySteps = part.substr(part.rfind(':') + 1).find_first_not_of('/') == std::string_view::npos;
    return onlySteps ? part : part.substr(0, start - 1);
}

std::optional<std::string> AddPart(std::string_view dir, std::string_view file, std::size_t size) {
    std::string path = Join(dir, file);
    if (path.size() >= size) {
        SetIoErr(ErrorLineTooLong);
        return std::nullopt;
    }
    return path;
}

long SplitName(std::string_view name, char separator, std::string& out, long position, std::size_t size) {
    const std::size_t start =
        position < 0 ? name.size() : std::min(static_cast<std::size_t>(position), name.size());
    const std::size_t end = name.find(separator, start);
    const std::string_view part = name.substr(start, end == std::string_view::npos ? end : end - start);
    out = part.substr(0, size == 0 ? 0 : size - 1);
    return end == std::string_view::npos ? -1 : static_cast<long>(end) + 1;
}

} // namespace dos
