// Opening 10,000 icons through dos and drawing them at 64 by 64, on one core; and looking a tool type up in
// as many. The icons are the .info files of a drawer, again and again.
//   solvane_icons DRAWER [options of the benchmark library]
#include "platform/dos/Volumes.h"
#include "platform/icon/Icon.h"
#include "platform/icon/IconPicture.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>

namespace {

constexpr std::size_t IconCount = 10'000;
constexpr std::uint32_t Side = 64; // pixels

using Names = std::vector<std::string>;

Names IconsIn(const std::string& drawer) {
    Names names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(drawer, error))
        if (entry.path().extension() == ".info" &&
            icon::GetDiskObject("Icons:" + entry.path().stem().string()))
            names.push_back("Icons:" + entry.path().stem().string());
    std::ranges::sort(names);
    return names;
}

void OpenAndDraw(benchmark::State& state, const Names& names) {
    for ([[maybe_unused]] auto round : state) {
        std::size_t drawn = 0;
        for (std::size_t i = 0; i < IconCount; ++i) {
            const auto object = icon::GetDiskObject(names[i % names.size()]);
            drawn += object && icon::DrawIcon(*object, Side, Side, icon::IconState::Normal) ? 1 : 0;
        }
        state.counters["drawn"] = static_cast<double>(drawn);
    }
}

void FindToolTypes(benchmark::State& state, const Names& names) {
    std::vector<icon::DiskObject> objects;
    for (const std::string& name : names)
        if (auto object = icon::GetDiskObject(name))
            objects.push_back(*std::move(object));
    for ([[maybe_unused]] auto round : state)
        for (std::size_t i = 0; i < IconCount; ++i)
            benchmark::DoNotOptimize(icon::FindToolType(objects[i % objects.size()], "DONOTWAIT"));
}

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    const std::string drawer = count == 2 ? std::filesystem::absolute(arguments[1]).string() : std::string();
    const bool isThere =
        !drawer.empty() && dos::AddVolume({.Device = "TD0", .Volume = "Icons", .HostRoot = drawer});
    const Names names = isThere ? IconsIn(drawer) : Names();
    if (names.empty()) {
        std::fputs("solvane_icons needs a drawer with icons\n", stderr);
        return 1;
    }
    benchmark::RegisterBenchmark("OpenAndDraw", OpenAndDraw, names)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("FindToolTypes", FindToolTypes, names)->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
