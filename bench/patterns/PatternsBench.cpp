// One pattern, parsed once, over 1,000,000 names as drawers have them; the hardest patterns of 60
// characters over names of the greatest length; and reading one line of arguments.
//   solvane_patterns [options of the benchmark library]
#include "platform/dos/Patterns.h"
#include "platform/dos/ReadArgs.h"

#include <array>
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t NameCount = 1'000'000;
constexpr std::size_t LongestName = 255; // bytes

// Names of 3 to 30 characters with the endings that files have.
std::vector<std::string> MakeNames() {
    constexpr std::array<std::string_view, 8> Endings = {"",     ".info", ".c",   ".bak",
                                                         ".txt", ".lha",  ".Jpg", "-ä"};
    std::mt19937 chance{1};
    std::vector<std::string> names(NameCount);
    for (std::string& name : names) {
        name.resize(3 + chance() % 22);
        for (char& letter : name)
            letter = static_cast<char>('a' + chance() % 26);
        name += Endings[chance() % Endings.size()];
    }
    return names;
}

void MillionNames(benchmark::State& state, const std::string& source) {
    static const std::vector<std::string> names = MakeNames();
    std::size_t matches = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto pattern = dos::Pattern::Parse(source, dos::PatternCase::Ignore);
        matches = 0;
        for (const std::string& name : names)
            matches += pattern && pattern->Matches(name) ? 1 : 0;
    }
    state.counters["matches"] = static_cast<double>(matches);
}

// One name after another of the greatest length; the time is that of a name.
void LongNames(benchmark::State& state, const std::string& source) {
    const auto pattern = dos::Pattern::Parse(source, dos::PatternCase::Ignore);
    std::vector<std::string> names;
    for (const std::string_view letters : {"a", "ab", "aab", "abcdefghi"}) {
        std::string& name = names.emplace_back();
        while (name.size() < LongestName)
            name += letters;
    }
    std::size_t at = 0;
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(pattern && pattern->Matches(names[at++ % names.size()]));
}

void Parsing(benchmark::State& state, const std::string& source) {
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(dos::Pattern::Parse(source, dos::PatternCase::Ignore));
}

void ReadingArguments(benchmark::State& state) {
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(dos::ReadArgs("FROM/A/M,TO/A,ALL/S,CLONE/S,BUF=BUFFER/K/N,PATTERN/K",
                                               "\"Work:some drawer/file\" b c to=RAM: all buf 200\n"));
}

} // namespace

int main(int count, char** arguments) {
    for (const char* source : {"#?.info", "~(#?.info)", "~(#?.info|#?.bak)", "#?.~(info)", "#?~(a)#?",
                               "#?~(.info)", "(a|b)~(#?c#?)#?", "#?.(jpg|jpeg|png)"})
        benchmark::RegisterBenchmark((std::string("MillionNames/") + source).c_str(), MillionNames, source)
            ->Unit(benchmark::kMillisecond);
    for (const char* source : {"#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a#?a",
                               "~(#?~(#?~(#?~(#?~(#?~(#?~(a)b)c)d)e)f)g)#?",
                               "#~(#~(#~(#~(#~(#~(a)b)a)b)a)b)#~(ab)#~(a?b)#~(a?a?b)",
                               "#(#(#(~a~b)~(ab)~(ba))~(aab|bba)~(a?#?b))#?",
                               "#?~(#?a????[~x]?)#?~(#?b???[~x]?)#?~(#?a??[~x]?)~(#?b[~x]?)~(#?a?[~x]?)#?",
                               "~(#?a???????????[~x]?)~(#?b??????????[~x]?)~(#?a?????????[~x]?)",
                               "#~(#a~(#b~(#a~(#b~(#a~(#b~(#a~(#b~(#a~(#b~(#a~(#b))))))))))))"}) {
        benchmark::RegisterBenchmark((std::string("LongNames/") + source).c_str(), LongNames, source)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((std::string("Parsing/") + source).c_str(), Parsing, source)
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("ReadingArguments", ReadingArguments);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
