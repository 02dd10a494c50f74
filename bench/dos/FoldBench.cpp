// Looking names up on a volume where case does not count: 100,000 that are not in a drawer of 100,000, and
// as many that are there in another case. Beside them what the host itself takes to say no as often.
//   solvane_fold [options of the benchmark library]
#include "platform/dos/Locks.h"
#include "platform/dos/Volumes.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace {

constexpr int NameCount = 100'000;

// A drawer of empty files under the temporary directory, for the run of the program.
class FullDrawer {
public:
    FullDrawer() {
        std::string pattern = (std::filesystem::temp_directory_path() / "solvane-fold-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            return;
        Root = pattern;
        for (int i = 0; i < NameCount; ++i)
            std::ofstream(Root + "/File" + std::to_string(i));
    }
    FullDrawer(const FullDrawer&) = delete;
    FullDrawer& operator=(const FullDrawer&) = delete;
    ~FullDrawer() {
        std::error_code ignored;
        std::filesystem::remove_all(Root, ignored);
    }

    std::string Root; // empty when it could not be made
};

void LookUp(benchmark::State& state, const std::string& stem, int expected) {
    for ([[maybe_unused]] auto round : state) {
        int found = 0;
        for (int i = 0; i < NameCount; ++i)
            found += dos::Lock(stem + std::to_string(i)) ? 1 : 0;
        if (found != expected)
            state.SkipWithError("not what was expected to be found");
    }
}

void AskTheHost(benchmark::State& state, const std::string& root) {
    for ([[maybe_unused]] auto round : state)
        for (int i = 0; i < NameCount; ++i) {
            struct stat about {};
            benchmark::DoNotOptimize(::stat((root + "/None" + std::to_string(i)).c_str(), &about));
        }
}

} // namespace

int main(int count, char** arguments) {
    const FullDrawer drawer;
    if (drawer.Root.empty() ||
        !dos::AddVolume(
            {.Device = "TD0", .Volume = "Fold", .HostRoot = drawer.Root, .Names = dos::NameRule::Fold})) {
        std::fputs("no drawer to measure with\n", stderr);
        return 1;
    }
    const auto unit = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("HostMisses", AskTheHost, drawer.Root)->Unit(unit);
    benchmark::RegisterBenchmark("FoldMisses", LookUp, "Fold:None", 0)->Unit(unit);
    benchmark::RegisterBenchmark("FoldHits", LookUp, "Fold:fILE", NameCount)->Unit(unit);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
