// The least work that lists a drawer or walks a tree: the yardstick for everything that reads drawers. It
// keeps names and facts in memory and does nothing with them.
//   solvane_walk DRAWER [RUNS]         names; names and facts on one core; the same on all cores
//   solvane_walk --tree DRAWER [RUNS]  names and facts of everything below, links not followed
// Prints the median, the least and the most of RUNS runs (15), in milliseconds and nanoseconds per entry.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t ReadSize = std::size_t{256} << 10;
constexpr int DefaultRuns = 15;

struct Facts {
    std::uint64_t Size;
    std::int64_t Date;
    std::uint16_t Mode;
};

class Drawer {
public:
    Drawer(int parent, const char* name)
        : Descriptor(openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW)) {}
    Drawer(const Drawer&) = delete;
    Drawer& operator=(const Drawer&) = delete;
    ~Drawer() {
        if (Descriptor >= 0) {
            close(Descriptor);
        }
    }
    const int Descriptor;
};

struct Names {
    std::vector<std::string> All;
    std::vector<std::size_t> Drawers; // which of them the directory itself calls a drawer
};

// The kernel's records are read as it packs them; the C library would make two copies of each name.
void ReadNames(const Drawer& drawer, Names& names) {
    std::vector<char> buffer(ReadSize);
    for (;;) {
        const long got = syscall(SYS_getdents64, drawer.Descriptor, buffer.data(), buffer.size());
        for (long at = 0; at < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += entry->d_reclen;
            const std::string_view name(&entry->d_name[0]);
            if (name == "." || name == "..") {
                continue;
            }
            if (entry->d_type == DT_DIR) {
                names.Drawers.push_back(names.All.size());
            }
            names.All.emplace_back(name);
        }
        if (got <= 0) {
            return;
        }
    }
}

void ReadFacts(const Drawer& drawer, const Names& names, std::size_t first, std::size_t end,
               std::vector<Facts>& facts) {
    for (std::size_t i = first; i < end; ++i) {
        struct statx found {};
        if (statx(drawer.Descriptor, names.All[i].c_str(),
                  AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC,
                  STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME, &found) == 0) {
            facts[i] = {found.stx_size, found.stx_mtime.tv_sec, found.stx_mode};
        }
    }
}

void ReadFactsOnAllCores(const Drawer& drawer, const Names& names, std::vector<Facts>& facts) {
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t share = names.All.size() / cores + 1;
    std::vector<std::jthread> threads;
    for (std::size_t first = 0; first < names.All.size(); first += share) {
        const std::size_t end = std::min(first + share, names.All.size());
        threads.emplace_back([&, first, end] { ReadFacts(drawer, names, first, end, facts); });
    }
}

std::size_t WalkTree(int parent, const char* name) {
    const Drawer drawer(parent, name);
    Names names;
    ReadNames(drawer, names);
    std::vector<Facts> facts(names.All.size());
    ReadFacts(drawer, names, 0, names.All.size(), facts);
    std::size_t count = names.All.size();
    for (const std::size_t child : names.Drawers) {
        count += WalkTree(drawer.Descriptor, names.All[child].c_str());
    }
    return count;
}

using Job = std::function<std::size_t(const char* path)>;

void Measure(std::string_view label, const char* path, int runs, const Job& job) {
    std::vector<double> times;
    std::size_t entries = 0;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        entries = job(path);
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
        times.push_back(passed.count());
    }
    std::ranges::sort(times);
    const double median = times[times.size() / 2];
    std::printf("%-26s %8zu entries %9.2f ms [%.2f - %.2f] %7.0f ns/entry\n", label.data(), entries, median,
                times.front(), times.back(), entries > 0 ? median * 1e6 / static_cast<double>(entries) : 0.0);
}

std::size_t ListNames(const char* path) {
    Names names;
    ReadNames(Drawer(AT_FDCWD, path), names);
    return names.All.size();
}

std::size_t ListFacts(const char* path, bool allCores) {
    const Drawer drawer(AT_FDCWD, path);
    Names names;
    ReadNames(drawer, names);
    std::vector<Facts> facts(names.All.size());
    if (allCores) {
        ReadFactsOnAllCores(drawer, names, facts);
    } else {
        ReadFacts(drawer, names, 0, names.All.size(), facts);
    }
    return names.All.size();
}

} // namespace

int main(int argc, char** argv) {
    const bool tree = argc > 1 && std::strcmp(argv[1], "--tree") == 0;
    const int pathAt = tree ? 2 : 1;
    if (argc <= pathAt || access(argv[pathAt], R_OK | X_OK) != 0) {
        std::fputs("usage: solvane_walk [--tree] DRAWER [RUNS]\n", stderr);
        return 2;
    }
    int runs = DefaultRuns;
    if (argc > pathAt + 1) {
        const std::string_view text(argv[pathAt + 1]);
        std::from_chars(text.data(), text.data() + text.size(), runs);
    }
    const char* path = argv[pathAt];
    runs = std::max(runs, 1);
    if (tree) {
        Measure("tree", path, runs, [](const char* root) { return WalkTree(AT_FDCWD, root); });
        return 0;
    }
    Measure("names", path, runs, ListNames);
    Measure("names, facts", path, runs, [](const char* drawer) { return ListFacts(drawer, false); });
    Measure("names, facts, all cores", path, runs,
            [](const char* drawer) { return ListFacts(drawer, true); });
    return 0;
}
