// Exercises the translation of ARexx scripts: lines stay lines, nothing but the words that differ changes its
// length, and what a script asks of its host is asked before and after.
#include "platform/rexx/ScriptSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::size_t LongestGrowth = 12; // bytes that one word gains: " NAME " with a condition

void Expect(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const auto translated = rexx::TranslateSource(source);
    Expect(std::count(source.begin(), source.end(), '\n') ==
           std::count(translated.begin(), translated.end(), '\n'));
    Expect(translated.size() <= size * (1 + LongestGrowth));
    Expect(rexx::WishesOf(translated).WantsResults == rexx::WishesOf(source).WantsResults);
    Expect(source.starts_with(rexx::WithoutMark(source)));
    return 0;
}
