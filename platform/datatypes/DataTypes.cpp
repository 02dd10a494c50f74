#include "platform/datatypes/DataTypes.h"

#include "platform/datatypes/HostFiles.h"
#include "platform/datatypes/Pictures.h"
#include "platform/dos/Errors.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Limits.h"
#include "platform/dos/Locks.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <functional>
#include <memory>
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

// Where an object lies and whether it may be asked without a limit.
struct HostPlace {
    std::string Path;
    std::string SlowMount; // empty: on a disk that answers
};

HostPlace PlaceOf(std::string path) {
    const dos::MountRows rows = dos::Mounts();
    const dos::MountRow* row = dos::MountOf(*rows, path);
    return {std::move(path), row != nullptr && row->Slow ? row->Point : std::string()};
}

// The place of what the path leads to. A soft link on a disk that answers can lead to one that does not, so
// dos follows it.
std::optional<HostPlace> FindObject(std::string_view path) {
    auto hostPath = dos::HostPath(path);
    if (!hostPath) {
        return std::nullopt;
    }
    HostPlace place = PlaceOf(std::move(*hostPath));
    if (!place.SlowMount.empty() || !IsHostLink(place.Path)) {
        return place;
    }
    const dos::FileLock target = dos::Lock(path);
    hostPath = target ? dos::HostPath(dos::NameFromLock(target)) : std::nullopt;
    return hostPath ? std::optional(PlaceOf(std::move(*hostPath))) : std::nullopt;
}

// Asks about the file, with a limit where it lies on a disk that may not answer; nothing when it does not.
template <typename Result>
Result AskFile(std::string_view path, const std::function<Result(const std::string& hostPath)>& ask) {
    std::optional<HostPlace> place = FindObject(path);
    if (!place) {
        return Result{};
    }
    if (place->SlowMount.empty()) {
        return ask(place->Path);
    }
    return dos::AskWithLimit<Result>(
        place->SlowMount, [ask, hostPath = std::move(place->Path)](dos::Progress&) { return ask(hostPath); });
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
