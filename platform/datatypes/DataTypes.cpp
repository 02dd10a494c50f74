#include "platform/datatypes/DataTypes.h"

#include "platform/datatypes/HostFiles.h"
#include "platform/datatypes/Pictures.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <vector>

namespace datatypes {

namespace {

// While many files are typed nobody is asked for missing volumes: the question would come from a
// helper thread, and once per file.
class NoRequesters {
public:
    NoRequesters() : Before(dos::SetRequesters(false)) {}
    NoRequesters(const NoRequesters&) = delete;
    NoRequesters& operator=(const NoRequesters&) = delete;
    ~NoRequesters() { dos::SetRequesters(Before); }

private:
    bool Before;
};

std::string HostPathOr(std::string_view path, std::string otherwise) {
    const NoRequesters quiet;
    return dos::HostPath(path).value_or(std::move(otherwise));
}

} // namespace

const DataType* ObtainDataType(std::string_view path) {
    const auto hostPath = dos::HostPath(path);
    return hostPath ? ObtainHostFileType(*hostPath) : nullptr;
}

void ObtainDataTypes(std::span<const std::string> paths, std::span<const DataType*> results) {
    const std::size_t count = std::min(paths.size(), results.size());
    std::ranges::fill(results, nullptr);
    // Relative paths start at the drawer of this thread, which helpers do not share.
    std::vector<std::string> relative(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (paths[i].find(':') == std::string::npos) {
            relative[i] = HostPathOr(paths[i], {});
        }
    }
    TypeOnAllCores(results.first(count), [&](std::size_t i) -> const DataType* {
        const bool isRelative = paths[i].find(':') == std::string::npos;
        return ObtainHostFileType(isRelative ? relative[i] : HostPathOr(paths[i], {}));
    });
}

void ObtainDataTypes(std::string_view drawer, std::span<const std::string_view> names,
                     std::span<const DataType*> results) {
    std::ranges::fill(results, nullptr);
    const auto hostDrawer = dos::HostPath(drawer);
    if (!hostDrawer) {
        return;
    }
    // Names that the drawer does not have as they stand are aliases of longer ones.
    const std::string base(drawer);
    ObtainHostDrawerTypes(*hostDrawer, names, results, [&base](std::string_view name) {
        const auto path = dos::AddPart(base, name);
        return path ? HostPathOr(*path, {}) : std::string();
    });
}

std::optional<PictureSize> GetPictureSize(std::string_view path) {
    const auto hostPath = dos::HostPath(path);
    return hostPath ? HostPictureSize(*hostPath) : std::nullopt;
}

std::optional<std::uint32_t> CountFrames(std::string_view path, std::uint32_t limit) {
    const auto hostPath = dos::HostPath(path);
    return hostPath ? HostFrameCount(*hostPath, limit) : std::nullopt;
}

std::optional<std::uint32_t> GetFrameCount(std::string_view path) {
    return CountFrames(path, NoFrameLimit);
}

} // namespace datatypes
