#include "platform/dos/Patterns.h"

#include "platform/dos/Errors.h"

#include <gtest/gtest.h>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

using dos::Pattern, dos::PatternCase, dos::PatternStar;

struct Row {
    std::string_view Source;
    int Parsed;
    std::vector<std::string_view> Matched, Refused;
    PatternCase Rule = PatternCase::Ignore;
    PatternStar Star = PatternStar::Ordinary;
};

int Parse(const Row& row, std::string& tokens) {
    const std::size_t size = dos::PatternBufferSize(row.Source.size());
    return row.Rule == PatternCase::Ignore ? dos::ParsePatternNoCase(row.Source, tokens, size, row.Star)
                                           : dos::ParsePattern(row.Source, tokens, size, row.Star);
}

bool Match(const Row& row, const std::string& tokens, std::string_view text) {
    return row.Rule == PatternCase::Ignore ? dos::MatchPatternNoCase(tokens, text)
                                           : dos::MatchPattern(tokens, text);
}

// More letters than the quick ways of matching take, in an alternative that nothing matches.
const std::string ManyLetters = "|~#?" + std::string(70, 'x');

// The same with an alternative that needs the other way of matching; a last "~" would mean something else.
std::string WithLanes(std::string_view source) {
    return source.ends_with('~') ? std::string(source) : "(%" + std::string(source) + "%" + ManyLetters + ")";
}

// Each row by tokens, by a Pattern, and by a Pattern that is matched the other way.
void ExpectRow(const Row& row) {
    std::string tokens;
    EXPECT_EQ(Parse(row, tokens), row.Parsed) << row.Source;
    const auto pattern = Pattern::Parse(row.Source, row.Rule, row.Star);
    const auto other = Pattern::Parse(WithLanes(row.Source), row.Rule, row.Star);
    ASSERT_TRUE(pattern && other) << row.Source;
    EXPECT_EQ(pattern->HasWildcards(), row.Parsed == 1) << row.Source;
    const auto expect = [&](std::string_view text, bool matched) {
        EXPECT_EQ(Match(row, tokens, text), matched) << row.Source << " tokens: " << text;
        EXPECT_EQ(pattern->Matches(text), matched) << row.Source << " : " << text;
        EXPECT_EQ(other->Matches(text), matched) << row.Source << " lanes: " << text;
    };
    for (const std::string_view text : row.Matched)
        expect(text, true);
    for (const std::string_view text : row.Refused)
        expect(text, false);
}

void ExpectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows)
        ExpectRow(row);
}

TEST(PatternsTest, LettersRepeatsAndAlternativesMatchWholeTexts) {
    ExpectRows({
        {"", 0, {""}, {"a"}},
        {"Readme", 0, {"README", "readme"}, {"readme.txt", "Readm", ""}},
        {"?", 1, {"a"}, {"", "ab"}},
        {"#?", 1, {"", "a", "a.b"}, {}},
        {"??#?", 1, {"ab", "abc"}, {"a", ""}},
        {"#a", 1, {"", "a", "aaa"}, {"aab"}},
        {"A#BC", 1, {"AC", "ABC", "ABBBC"}, {"ABBD"}},
        {"#(AB)C", 1, {"C", "ABC", "ABABC"}, {"ABAC"}},
        {"ABC#?", 1, {"ABC", "abcd"}, {"xABC"}},
        {"#?.info", 1, {".info", "Disk.info"}, {"a.info.bak"}},
        {"(a|b)c", 1, {"ac", "bc"}, {"abc", "c"}},
        {"a(b|%)c", 1, {"ac", "abc"}, {"axc"}},
        {"(a|b|)", 1, {"a", "b", ""}, {"c"}},
        {"(abc)", 1, {"abc"}, {"ab", "(abc)"}},
        {"()", 1, {""}, {"a", "()"}},
        {"#(jpg|png)", 1, {"", "jpg", "jpgpng"}, {"pngx"}},
        {"#?.(jpg|jpeg|png)", 1, {"a.JPG", ".png"}, {"c.gif"}},
        {"#?a#?b", 1, {"ab", "xaxb"}, {"ba"}},
        {"(Foo|Bar) #?", 1, {"Foo x"}, {"Barx"}},
        {"##a", 1, {"", "aa"}, {"b"}},
        {"#(#a#b)c", 1, {"c", "abbac"}, {"abx"}},
        {"%", 0, {""}, {"%", "a"}},
        {"a%b", 0, {"ab"}, {"a%b"}},
        {"Work:a/#?", 1, {"Work:a/b/c"}, {"Work:a"}},
    });
}

TEST(PatternsTest, NegationTakesAllThatItsItemDoesNotMatch) {
    ExpectRows({
        {"~(#?.info)", 1, {"a.txt", "info", ""}, {"a.info", ".info"}},
        {"~a", 1, {"b", "aa", "ab", ""}, {"a"}},
        {"~#?", 1, {}, {"a", ""}},
        {"~~a", 1, {"a"}, {"b", "", "aa"}},
        {"#~a", 1, {"", "b", "aa", "bb"}, {"a"}},
        {"a~bc", 1, {"ac", "axc", "abbc", "axxc"}, {"abc"}},
        {"~(#?.(c|h))", 1, {"a.o"}, {"a.c", "a.h"}},
        {"~(a|b)", 1, {"c", "ab"}, {"a", "b"}},
        {"~(~(a|b))", 1, {"a", "b"}, {"c", ""}},
        {"~(#?.info|#?.bak)", 1, {"x.txt"}, {"x.info", "x.bak"}},
        {"#?~(.info)", 1, {"a.info", "a.txt", ""}, {}},
        {"#?[~o].c", 1, {"bar.c"}, {"foo.c"}},
        {"~(~a~b)", 1, {}, {"", "a", "b", "ab", "abc"}}, // each text splits into a not-a and a not-b
        {"~(x~(a~bc)y)", 1, {"xaxcy", "xy0", "x"}, {"xabcy", "xy", "xzzy"}},
        {"~", 0, {"~"}, {"", "a"}},
        {"a~", 0, {"a~"}, {"a"}},
        {"#~", 1, {"", "~~"}, {"a"}},
    });
}

TEST(PatternsTest, ClassesTakeOneCharacter) {
    ExpectRows({
        {"[abc]#?", 1, {"apple", "Banana"}, {"date", ""}},
        {"[a-c]", 1, {"b", "B"}, {"d", "-"}},
        {"[a-c]", 1, {"b"}, {"B"}, PatternCase::Respect},
        {"[~a-c]", 1, {"d", "1"}, {"b", "", "dd"}},
        {"[a-]", 1, {"a", "b", "z"}, {"-"}},
        {"[-a]", 1, {"-", "a"}, {"b"}},
        {"[^a]", 1, {"^", "a"}, {"b"}},
        {"[']a]", 1, {"]", "a"}, {"b", "'"}},
        {"[]a]", 1, {"]", "a"}, {"b"}},
        {"[a'-c]", 1, {"a", "-", "c"}, {"b", "'"}},
        {"['a]", 1, {"'", "a"}, {"b"}},
        {"[c-a]", 1, {}, {"a", "b", "c"}},
        {"[#?]", 1, {"#", "?"}, {"a", ""}},
        {"[a*]", 1, {"a", "*"}, {"b"}, PatternCase::Ignore, PatternStar::Anything},
        {"file#[0-9].txt", 1, {"file.txt", "file12.txt"}, {"file1a.txt"}},
    });
}

TEST(PatternsTest, QuotesAndStarsAreOrdinaryWhereTheyMustBe) {
    constexpr PatternStar anything = PatternStar::Anything;
    ExpectRows({
        {"'#?", 1, {"#a"}, {"#", "xa"}},
        {"a'?b", 0, {"a?b"}, {"axb"}},
        {"Don''t", 0, {"Don't"}, {"Don''t"}},
        {"Don't#?", 1, {"Don't stop"}, {"Dont stop"}},
        {"''", 0, {"'"}, {"''", ""}},
        {"'*", 0, {"*"}, {"a"}},
        {"'*", 0, {"*"}, {"a"}, PatternCase::Ignore, anything},
        {"*", 0, {"*"}, {"a", ""}},
        {"*.info", 0, {"*.info"}, {"a.info"}},
        {"*", 1, {"*", "a", ""}, {}, PatternCase::Ignore, anything},
        {"*.info", 1, {"*.info", "a.info"}, {"a.info.bak"}, PatternCase::Ignore, anything},
        {"~*", 1, {}, {"", "*"}, PatternCase::Respect, anything},
        {"]-", 0, {"]-"}, {"]"}},
    });
    const auto quote = Pattern::Parse("'", PatternCase::Respect);
    ASSERT_TRUE(quote);
    EXPECT_TRUE(quote->Matches("'"));
    EXPECT_FALSE(quote->HasWildcards());
}

TEST(PatternsTest, CharactersAreThoseOfUtf8) {
    ExpectRows({
        {"?", 1, {"é", "€", "😀", "\xE9", "\x80"}, {"\xC3\xC3", "éé"}},
        {"ÄÖ#?", 1, {"äö", "ÄöÜ"}, {"ao"}},
        {"ÄÖ", 0, {"ÄÖ"}, {"äö"}, PatternCase::Respect},
        {"[à-ü]", 1, {"é", "É"}, {"e", "\xE9"}},
        {"#Я", 1, {"яЯ", ""}, {"R"}},
        {"Σ", 0, {"ς", "σ"}, {"s"}},
        {"[x-]", 1, {"x", "é", "\xFF"}, {"w"}},
        {"\xE9", 0, {"\xE9"}, {"é", "\xC9"}},
        {"[\xE0-\xEF]?", 1, {"\xE9t"}, {"ét", "\xFFt"}},
    });
}

TEST(PatternsTest, BadPatternsAreRefused) {
    const std::string deep(dos::MaxPatternDepth + 1, '(');
    const std::string closed = deep + std::string(deep.size(), ')');
    for (const std::string& source :
         std::initializer_list<std::string>{"a|b", "[ab", "#", "a#", "#)", "(~)", "(a", "a)", "(a|b", "|",
                                            "[]", "[~", "[a-", "(#|a)", "(~", deep, closed}) {
        std::string tokens = "left over";
        dos::SetIoErr(0);
        EXPECT_EQ(dos::ParsePattern(source, tokens, dos::PatternBufferSize(source.size())), -1) << source;
        EXPECT_EQ(dos::IoErr(), dos::ErrorBadTemplate) << source;
        EXPECT_EQ(tokens, "");
        EXPECT_FALSE(dos::MatchPattern(source, source)) << source;
    }
}

TEST(PatternsTest, TokensFitTwiceTheLengthAndLittleMore) {
    std::string tokens;
    EXPECT_EQ(dos::ParsePattern("***", tokens, dos::PatternBufferSize(3), PatternStar::Anything), 1);
    EXPECT_EQ(dos::ParsePattern("", tokens, dos::PatternBufferSize(0)), 0);
    EXPECT_EQ(dos::ParsePattern("#?", tokens, 3), 1);
    dos::SetIoErr(0);
    EXPECT_EQ(dos::ParsePattern("#?", tokens, 2), -1);
    EXPECT_EQ(dos::IoErr(), dos::ErrorBufferOverflow);
    EXPECT_EQ(dos::ParsePattern("", tokens, 0), -1);
    const std::string longest(dos::MaxPatternLength, 'a');
    EXPECT_EQ(dos::ParsePattern(longest, tokens, dos::PatternBufferSize(longest.size())), 0);
    EXPECT_TRUE(dos::MatchPattern(tokens, longest));
    const std::string stars(dos::MaxPatternLength, '*');
    EXPECT_EQ(dos::ParsePattern(stars, tokens, dos::PatternBufferSize(stars.size()), PatternStar::Anything),
              1);
    EXPECT_TRUE(dos::MatchPattern(tokens, "ab"));
    dos::SetIoErr(0);
    EXPECT_EQ(dos::ParsePattern(longest + 'a', tokens, 3 * longest.size()), -1);
    EXPECT_EQ(dos::IoErr(), dos::ErrorBufferOverflow);
}

TEST(PatternsTest, TokensWithoutCaseNeverMatchLowerCaseWithIt) {
    std::string tokens;
    for (const std::string_view source : {"read#?", "[q-s]ead#?", "(read|x)#?"}) {
        ASSERT_EQ(dos::ParsePatternNoCase(source, tokens, 100), 1);
        EXPECT_TRUE(dos::MatchPatternNoCase(tokens, "readme"));
        EXPECT_TRUE(dos::MatchPattern(tokens, "READme"));
        EXPECT_FALSE(dos::MatchPattern(tokens, "readme"));
    }
}

TEST(PatternsTest, LongPatternsAndTextsMatchExactly) {
    std::string names = "(";
    for (int i = 0; i < 200; ++i)
        names += "name" + std::to_string(i) + '|';
    const auto list = Pattern::Parse(names + "x)#?", PatternCase::Respect);
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->Matches("name199.txt"));
    EXPECT_FALSE(list->Matches("nam"));
    const std::string text(1000, 'a');
    const auto inner = Pattern::Parse("(~(#?~(#a)b)c" + ManyLetters + ")", PatternCase::Respect);
    ASSERT_TRUE(inner);
    EXPECT_TRUE(inner->Matches(text + "c"));
    EXPECT_FALSE(inner->Matches(text + "bbc"));
    EXPECT_TRUE(inner->Matches("bc")); // nothing before the b is no not-#a
    dos::SetIoErr(0);
    EXPECT_FALSE(inner->Matches(std::string(1 << 20, 'a')));
    EXPECT_EQ(dos::IoErr(), dos::ErrorBufferOverflow);
}

TEST(PatternsTest, EmptyPatternMatchesNothing) {
    EXPECT_FALSE(Pattern().Matches(""));
    EXPECT_FALSE(Pattern().HasWildcards());
}

TEST(PatternsTest, OnePatternServesManyThreads) {
    const auto pattern = Pattern::Parse("#?~(.info)x", PatternCase::Ignore);
    ASSERT_TRUE(pattern);
    std::vector<int> wrong(4);
    std::vector<std::jthread> threads;
    for (int& count : wrong)
        threads.emplace_back([&count, copy = *pattern] {
            for (int i = 0; i < 2000; ++i)
                count += copy.Matches(std::string(static_cast<std::size_t>(i % 90), 'a') + "X") ? 0 : 1;
        });
    threads.clear();
    EXPECT_EQ(wrong, std::vector<int>(4));
}

// A pattern made by chance together with what it means, matched in the most simple way.
struct Sample {
    char Kind = 'a'; // a letter, '?', '[' not a, '%', '#', '~', '|' or '+' sequence
    std::vector<Sample> Parts;
};

using Positions = std::set<std::size_t>;

Positions Follow(const Sample& sample, std::string_view text, std::size_t at);

Positions FollowAll(const Sample& sample, std::string_view text, const Positions& starts) {
    Positions ends;
    for (const std::size_t start : starts)
        ends.merge(Follow(sample, text, start));
    return ends;
}

Positions FollowRepeat(const Sample& sample, std::string_view text, std::size_t at) {
    Positions ends{at};
    for (std::size_t before = 0; before != ends.size();) {
        before = ends.size();
        ends.merge(FollowAll(sample.Parts[0], text, ends));
    }
    return ends;
}

Positions FollowNegation(const Sample& sample, std::string_view text, std::size_t at) {
    const Positions refused = Follow(sample.Parts[0], text, at);
    Positions ends;
    for (std::size_t end = at; end <= text.size(); ++end)
        if (!refused.contains(end))
            ends.insert(end);
    return ends;
}

bool TakesLetter(char kind, char letter) {
    return kind == '?' || kind == letter || (kind == '[' && letter != 'a');
}

// Where a match that begins at a place can end.
Positions Follow(const Sample& sample, std::string_view text, std::size_t at) {
    Positions ends;
    switch (sample.Kind) {
    case '%':
        return {at};
    case '#':
        return FollowRepeat(sample, text, at);
    case '~':
        return FollowNegation(sample, text, at);
    case '|':
        for (const Sample& part : sample.Parts)
            ends.merge(Follow(part, text, at));
        return ends;
    case '+':
        ends = {at};
        for (const Sample& part : sample.Parts)
            ends = FollowAll(part, text, ends);
        return ends;
    default:
        if (at < text.size() && TakesLetter(sample.Kind, text[at]))
            ends.insert(at + 1);
        return ends;
    }
}

std::string Write(const Sample& sample) {
    std::string text;
    switch (sample.Kind) {
    case '[':
        return "[~a]";
    case '#':
    case '~':
        return sample.Kind + Write(sample.Parts[0]);
    case '|':
    case '+':
        for (const Sample& part : sample.Parts)
            text += (text.empty() ? "(" : sample.Kind == '|' ? "|" : "") + Write(part);
        return text + ')';
    default:
        return {sample.Kind};
    }
}

class Chance {
public:
    std::size_t Below(std::size_t end) { return Engine() % end; }
    Sample MakeSample(int depth) {
        constexpr std::string_view kinds = "aabb?[%##~~||++++";
        Sample sample{kinds[Below(depth == 0 ? 7 : kinds.size())], {}};
        const bool isList = sample.Kind == '|' || sample.Kind == '+';
        const std::size_t parts = isList ? 1 + Below(3) : sample.Kind == '#' || sample.Kind == '~' ? 1 : 0;
        for (std::size_t i = 0; i < parts; ++i)
            sample.Parts.push_back(MakeSample(depth - 1));
        return sample;
    }
    std::string MakeText() {
        std::string text(Below(8), 'a');
        for (char& c : text)
            c = "aab"[Below(3)];
        return text;
    }

private:
    std::mt19937 Engine{20};
};

TEST(PatternsTest, PatternsMadeByChanceMatchAsTheirMeaningSays) {
    Chance chance;
    int matches = 0;
    for (int i = 0; i < 6000; ++i) {
        const Sample sample = chance.MakeSample(4);
        const std::string source = Write(sample);
        const auto pattern = Pattern::Parse(source, PatternCase::Respect);
        const auto lanes = Pattern::Parse("~(a#?)(" + source + ManyLetters + ")", PatternCase::Respect);
        ASSERT_TRUE(pattern && lanes) << source;
        for (int n = 0; n < 6; ++n) {
            const std::string text = chance.MakeText();
            const bool expected = Follow(sample, text, 0).contains(text.size());
            ASSERT_EQ(pattern->Matches(text), expected) << source << " : " << text;
            matches += expected ? 1 : 0;
            const Sample prefixed{'+', {{'~', {{'+', {{'a', {}}, {'#', {{'?', {}}}}}}}}, sample}};
            const bool behind = Follow(prefixed, text, 0).contains(text.size());
            ASSERT_EQ(lanes->Matches(text), behind) << "~(a#?)(" << source << "|~#?) : " << text;
        }
    }
    EXPECT_GT(matches, 6000);
    EXPECT_LT(matches, 30000);
}

} // namespace
