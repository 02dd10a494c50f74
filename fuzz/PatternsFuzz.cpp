// Exercises the pattern parser and both ways of matching: the first line of the input is a pattern, the rest
// the text, the first byte of it chooses the rules. Tokens mean what the pattern means, "~" turns every
// answer round, and an alternative that nothing matches changes none.
#include "platform/dos/Errors.h"
#include "platform/dos/Patterns.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Expect(bool holds) {
    if (!holds)
        std::abort();
}

// What the pattern in parentheses says, the same or the opposite; nothing to say where they change its
// meaning or make it too long or deep.
void ExpectSame(const std::string& source, dos::PatternCase rule, dos::PatternStar star,
                std::string_view text, bool matches) {
    const auto other = dos::Pattern::Parse(source, rule, star);
    dos::SetIoErr(0);
    if (other && other->Matches(text) != matches)
        Expect(dos::IoErr() == dos::ErrorBufferOverflow);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const auto rule = (data[0] & 1) != 0 ? dos::PatternCase::Ignore : dos::PatternCase::Respect;
    const auto star = (data[0] & 2) != 0 ? dos::PatternStar::Anything : dos::PatternStar::Ordinary;
    const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t split = std::min(input.find('\n'), input.size());
    const std::string source(input.substr(0, split));
    const std::string_view text = input.substr(std::min(split + 1, input.size()));
    const std::size_t room = dos::PatternBufferSize(source.size());
    const auto pattern = dos::Pattern::Parse(source, rule, star);
    std::string tokens;
    const int parsed = rule == dos::PatternCase::Ignore ? dos::ParsePatternNoCase(source, tokens, room, star)
                                                        : dos::ParsePattern(source, tokens, room, star);
    Expect(pattern.has_value() == (parsed >= 0));
    if (!pattern)
        return 0;
    Expect(pattern->HasWildcards() == (parsed == 1));
    dos::SetIoErr(0);
    const bool matches = pattern->Matches(text);
    if (dos::IoErr() != 0)
        return 0;
    if (tokens.size() <= dos::MaxPatternLength)
        Expect(matches == (rule == dos::PatternCase::Ignore ? dos::MatchPatternNoCase(tokens, text)
                                                            : dos::MatchPattern(tokens, text)));
    if (source.ends_with('~') || source.ends_with('\''))
        return 0;
    ExpectSame("(" + source + "|~#?)", rule, star, text, matches);
    ExpectSame("~(" + source + ")", rule, star, text, !matches);
    ExpectSame("~(~(" + source + ")~(?#?))", rule, star, text, matches); // "~(?#?)" matches nothing but ""
    return 0;
}
