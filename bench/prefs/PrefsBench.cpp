// Loading and saving the preferences document, beside reading its bytes alone.
//   solvane_prefs_bench [options of the benchmark library]
// The argument is the number of bookmarks in it.
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/dos/Files.h"
#include "platform/dos/Volumes.h"
#include "prefs/LoadSavePrefs.h"
#include "prefs/PrefsLists.h"
#include "sak/Format.h"
#include "sak/Memory.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace solvane {

namespace {

constexpr std::size_t LargestDocument = 4U << 20U; // bytes

bool WriteDocument(std::int64_t bookmarks) {
    if (!DefaultPrefs() || !RestoreDefaultToolbar() || !RestoreDefaultFavorites()) {
        return false;
    }
    SAK_ClearGenericList(*MasterBookmarksList);
    for (std::int64_t at = 0; at < bookmarks; ++at) {
        auto node = SAK_CreateGenericListNode<BookmarksNode>();
        node->Name = FormatText("bookmark %lu", at);
        node->Path = FormatText("Home:some/drawer/of/usual/length/%lu", at);
        SAK_AddGenericListNode(*MasterBookmarksList, std::move(node));
    }
    return SavePrefs(1);
}

void LimitRead(benchmark::State& state) {
    if (!WriteDocument(state.range(0))) {
        state.SkipWithError("cannot save");
        return;
    }
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(dos::ReadWhole(DefaultPrefsFile, LargestDocument));
    }
}

void Load(benchmark::State& state) {
    if (!WriteDocument(state.range(0))) {
        state.SkipWithError("cannot save");
        return;
    }
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(LoadPrefs());
    }
}

void Save(benchmark::State& state) {
    if (!WriteDocument(state.range(0))) {
        state.SkipWithError("cannot save");
        return;
    }
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(SavePrefs(1));
    }
}

bool SetUp(const std::string& drawer) {
    std::filesystem::create_directory(drawer + "/Solvane");
    dos::VolumeInfo volume;
    volume.Device = "BD0";
    volume.Volume = "Bench";
    volume.HostRoot = drawer;
    ProgramPrefsFile = DefaultPrefsFile;
    return dos::AddVolume(volume) && dos::SetAssign("ENVARC", dos::AssignKind::Directory, {"Bench:"}) &&
           SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize) && CreatePrefsLists();
}

} // namespace

} // namespace solvane

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    std::string drawer = (std::filesystem::temp_directory_path() / "solvane-bench-XXXXXX").string();
    if (count != 1 || mkdtemp(drawer.data()) == nullptr || !solvane::SetUp(drawer)) {
        std::fprintf(stderr, "usage: solvane_prefs_bench [benchmark options]\n");
        return 2;
    }
    const auto add = [](const char* name, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, run)
            ->Unit(benchmark::kMillisecond)
            ->Arg(20)
            ->Arg(2000)
            ->UseRealTime();
    };
    add("LimitRead", solvane::LimitRead);
    add("Load", solvane::Load);
    add("Save", solvane::Save);
    benchmark::RunSpecifiedBenchmarks();
    solvane::FreePrefsLists();
    std::filesystem::remove_all(drawer);
    return 0;
}
