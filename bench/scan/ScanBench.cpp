// Scanning and sorting one drawer, beside the least work that lists it, in one run.
//   solvane_scan DRAWER [options of the benchmark library]
// Time per entry is the counter "entries"; the scans' own memory is "bytes/entry".
#include "bench/scan/WalkLimits.h"
#include "content/ColumnInfo.h"
#include "content/Drawers.h"
#include "content/SortKeys.h"
#include "content/SortLists.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/Volumes.h"
#include "sak/Memory.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <malloc.h>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace solvane {

namespace {

std::string HostDrawer;

void CountEntries(benchmark::State& state, std::size_t entries) {
    state.counters["entries"] =
        benchmark::Counter(static_cast<double>(entries),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void LimitWalk(benchmark::State& state) {
    std::size_t entries = 0;
    for ([[maybe_unused]] auto round : state) {
        entries = BareWalk(HostDrawer);
    }
    CountEntries(state, entries);
}

void LimitWalkAndRead(benchmark::State& state) {
    std::size_t entries = 0;
    for ([[maybe_unused]] auto round : state) {
        entries = BareWalkAndRead(HostDrawer);
    }
    CountEntries(state, entries);
}

std::size_t BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// A scan as a window does it, rows included.
void Scan(benchmark::State& state) {
    Prefs.DetermineDatatype = static_cast<std::int32_t>(state.range(0));
    std::size_t before = 0;
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        FreeContentList(1);
        before = BytesInUse();
        CurrentPath = "Bench:";
        state.ResumeTiming();
        if (!ScanDrawer()) {
            state.SkipWithError("cannot scan");
            return;
        }
    }
    const std::size_t entries = SAK_GenericListCount(*ContentList);
    CountEntries(state, entries);
    state.counters["bytes/entry"] =
        static_cast<double>(BytesInUse() - before) / static_cast<double>(std::max<std::size_t>(entries, 1));
}

enum Arrival { Random, Sorted, Reversed };

// The records of the last scan in the order of an arrival by that column.
std::vector<ContentNode*> ArrivalsOf(DetailsColumn column, std::int64_t arrival) {
    std::vector<ContentNode*> arrivals;
    for (ContentNode& node : *ContentList) {
        arrivals.push_back(&node);
    }
    OrderByKey(arrivals, column, SortOrder::Ascending);
    if (arrival == Reversed) {
        std::reverse(arrivals.begin(), arrivals.end());
    } else if (arrival == Random) {
        std::shuffle(arrivals.begin(), arrivals.end(), std::mt19937(1));
    }
    return arrivals;
}

// Runs sort once a round over the list in the order of that arrival; what puts it there is not timed.
template <class SortRoutine>
void SortArrivals(benchmark::State& state, SortRoutine sort) {
    const std::vector<ContentNode*> arrivals =
        ArrivalsOf(static_cast<DetailsColumn>(state.range(0)), state.range(1));
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        if (!SAK_ReorderGenericList(*ContentList, arrivals)) {
            state.SkipWithError("the list has lost a record");
            return;
        }
        state.ResumeTiming();
        sort();
    }
    CountEntries(state, arrivals.size());
}

// The list as a window sorts it: the records found, sorted and linked again.
void Sort(benchmark::State& state) {
    Prefs.ContentViewStyle = ViewDetails;
    Prefs.ContentDetailsCISortColumn = static_cast<std::int32_t>(state.range(0));
    SortArrivals(state, [&] { SortContentList(state.range(2) == 0 ? 0 : 1); });
}

// The least that a sort by the column costs: the keys alone, by std::sort.
template <class Key>
void SortKeys(benchmark::State& state, std::vector<Key> keys) {
    std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    for ([[maybe_unused]] auto round : state) {
        std::vector<Key> sorted = keys;
        std::sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    }
    CountEntries(state, keys.size());
}

std::uint64_t NumberOf(const ContentNode& node, DetailsColumn column) {
    switch (column) {
    case DetailsColumn::Size:
        return node.EntrySize;
    case DetailsColumn::Date:
        return node.DateSeconds;
    case DetailsColumn::Time:
        return TagsOf(node).TagTimeSeconds;
    case DetailsColumn::BitRate:
        return TagsOf(node).TagBitRate;
    case DetailsColumn::SampleRate:
        return TagsOf(node).TagSampleRate;
    default:
        return static_cast<std::uint64_t>(node.VersionNumber + 1); // -1 for drawers
    }
}

// The same keys by std::sort again, but out of the records of the list and with the records linked again.
template <class Key, class KeyOf>
void SortGathered(benchmark::State& state, KeyOf keyOf) {
    SortArrivals(state, [keyOf] {
        std::vector<std::pair<Key, ContentNode*>> keys;
        for (ContentNode& node : *ContentList) {
            keys.emplace_back(keyOf(node), &node);
        }
        std::sort(keys.begin(), keys.end());
        ListNode* before = nullptr;
        for (const auto& [key, node] : keys) {
            node->Links.Predecessor = before;
            before = node;
        }
        benchmark::ClobberMemory();
    });
}

void LimitSortGathered(benchmark::State& state) {
    const auto column = static_cast<DetailsColumn>(state.range(0));
    if (IsNumberColumn(column)) {
        SortGathered<std::uint64_t>(state,
                                    [column](const ContentNode& node) { return NumberOf(node, column); });
    } else {
        SortGathered<std::string_view>(state,
                                       [column](const ContentNode& node) { return TextKey(node, column); });
    }
}

void LimitSort(benchmark::State& state) {
    const auto column = static_cast<DetailsColumn>(state.range(0));
    std::vector<std::string> texts;
    std::vector<std::uint64_t> numbers;
    for (const ContentNode& node : *ContentList) {
        texts.emplace_back(TextKey(node, column));
        numbers.push_back(NumberOf(node, column));
    }
    if (IsNumberColumn(column)) {
        SortKeys(state, std::move(numbers));
    } else {
        SortKeys(state, std::move(texts));
    }
}

void Register() {
    const auto add = [](const char* name, void (*run)(benchmark::State&)) {
        return benchmark::RegisterBenchmark(name, run)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->UseRealTime();
    };
    add("LimitWalk", LimitWalk);
    add("LimitWalkAndRead", LimitWalkAndRead);
    add("ScanWithoutTyping", Scan)->Arg(2);
    add("ScanWithTyping", Scan)->Arg(0);
    add("LimitSort", LimitSort)->ArgName("column")->DenseRange(1, DetailsColumnCount - 1);
    add("LimitSortGathered", LimitSortGathered)
        ->ArgNames({"column", "arrival"})
        ->ArgsProduct(
            {benchmark::CreateDenseRange(1, DetailsColumnCount - 1, 1), {Random, Sorted, Reversed}});
    add("Sort", Sort)
        ->ArgNames({"column", "arrival", "descending"})
        ->ArgsProduct(
            {benchmark::CreateDenseRange(1, DetailsColumnCount - 1, 1), {Random, Sorted, Reversed}, {0, 1}});
}

bool SetUp(const char* drawer) {
    HostDrawer = std::filesystem::absolute(drawer).string();
    dos::VolumeInfo volume;
    volume.Device = "BD0";
    volume.Volume = "Bench";
    volume.HostRoot = HostDrawer;
    if (!dos::AddVolume(volume) || !SAK_MemorySetup(SAK_ThresholdSize, SAK_PuddleSize)) {
        return false;
    }
    ContentList = SAK_CreateGenericList<ContentNode>();
    LinksList = SAK_CreateGenericList<LinksNode>();
    ShowDetailsColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
    Prefs.MonitorDrawer = 0;
    Prefs.EffectiveDateFormat = "%d-%b-%y %T";
    return CreateColumnInfoAll();
}

void CleanUp() {
    FreeContentList(1);
    ContentList.reset();
    LinksList.reset();
    ShowDetailsColumnsList.reset();
}

} // namespace

} // namespace solvane

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (count != 2 || !solvane::SetUp(arguments[1])) {
        std::fprintf(stderr, "usage: solvane_scan DRAWER [benchmark options]\n");
        return 2;
    }
    std::printf("sizeof(ContentNode) %zu\n", sizeof(solvane::ContentNode));
    solvane::Register();
    benchmark::RunSpecifiedBenchmarks();
    solvane::CleanUp();
    return 0;
}
