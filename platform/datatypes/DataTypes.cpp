#include "platform/datatypes/DataTypes.h"

#include "platform/datatypes/HostFiles.h"
#include "platform/datatypes/HostPlace.h"
#include "platform/datatypes/Pictures.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace datatypes {

namespace {

// Asks about the file that the path leads to.
template <typename Result>
Result AskFile(std::string_view path, const std::function<Result(const std::string& hostPath)>& ask) {
    const std::optional<HostPlace> place = FindObject(path);
    if (!place) {
        return Result{};
    }
    return AskAt<Result>(*place,
                         [ask](const std::string& hostPath, dos::Progress&) { return ask(hostPath); });
}

// Names that the drawer does not have as they stand are aliases of longer ones.
const DataType* TypeOtherwise(const std::string& drawer, std::string_view name) {
    const NoRequesters quiet;
    const auto path = dos::AddPart(drawer, name);
    return path ? ObtainDataType(*path) : nullptr;
}

// What a question that may be left behind hanging works on.
struct SlowBatch {
    std::string HostDrawer, Drawer;
    std::vector<std::string> Names;
    std::vector<const DataType*> Results{};

    void Run(dos::Progress& progress) {
        const std::vector<std::string_view> views(Names.begin(), Names.end());
        Results.resize(views.size());
        ObtainHostDrawerTypes(
            HostDrawer, views, Results,
            {.Otherwise = [this](std::string_view name) { return TypeOtherwise(Drawer, name); },
             .Typed = [&progress] { progress.Beat(); }});
    }
};

} // namespace

const DataType* ObtainDataType(std::string_view path) {
    return AskFile<const DataType*>(path, ObtainHostFileType);
}

void ObtainDataTypes(std::string_view drawer, std::span<const std::string_view> names,
                     std::span<const DataType*> results) {
    std::ranges::fill(results, nullptr);
    const std::optional<HostPlace> place = FindObject(drawer);
    if (!place) {
        return;
    }
    const std::string base(drawer);
    if (place->SlowMount.empty()) {
        ObtainHostDrawerTypes(place->Path, names, results, {.Otherwise = [&base](std::string_view name) {
                                  return TypeOtherwise(base, name);
                              }});
        return;
    }
    const auto batch =
        std::make_shared<SlowBatch>(SlowBatch{place->Path, base, {names.begin(), names.end()}});
    if (dos::RunWithLimit(place->SlowMount, [batch](dos::Progress& progress) { batch->Run(progress); })) {
        std::ranges::copy_n(batch->Results.begin(),
                            static_cast<std::ptrdiff_t>(std::min(results.size(), batch->Results.size())),
                            results.begin());
    }
}

std::optional<PictureSize> GetPictureSize(std::string_view path) {
    return AskFile<std::optional<PictureSize>>(path, HostPictureSize);
}

std::optional<std::uint32_t> CountFrames(std::string_view path, std::uint32_t limit) {
    return AskFile<std::optional<std::uint32_t>>(
        path, [limit](const std::string& hostPath) { return HostFrameCount(hostPath, limit); });
}

std::optional<std::uint32_t> GetFrameCount(std::string_view path) {
    return CountFrames(path, NoFrameLimit);
}

} // namespace datatypes
