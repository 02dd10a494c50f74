#include "platform/dos/Patterns.h"

#include "platform/dos/Errors.h"
#include "platform/dos/PatternLanes.h"
#include "platform/dos/PatternTable.h"
#include "platform/dos/PatternTree.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

namespace dos {
namespace {

constexpr std::string_view Specials = "#?~()|[]%*'";
constexpr std::size_t WordBits = 64;
constexpr std::size_t AsciiEnd = 128;

// A tree without Negation and with fewer than 64 letters as an automaton whose states are the bits of a word.
// Bit 0 is the start, bit i + 1 stands behind letter i.
struct BitProgram {
    std::array<std::uint64_t, WordBits> Follow{}; // per state: the letters that may come next
    std::array<std::uint64_t, AsciiEnd> Ascii{};  // per character: the letters that take it
    std::uint64_t Accept = 0;
};

} // namespace

struct Pattern::Program : PatternTree {
    std::optional<BitProgram> Bits;
    std::optional<PatternTable> Table; // of a tree with Negation, where one can be made
};

// Builds the tree of a pattern. The steps give NoNode when the pattern is bad.
class PatternParser {
public:
    PatternParser(std::string_view source, PatternCase rule, PatternStar star) : Source(source), Star(star) {
        Tree.Rule = rule;
    }
    bool Parse();
    [[nodiscard]] std::string Tokens() const;
    [[nodiscard]] Pattern Compile() &&;
    [[nodiscard]] bool HasWildcards() const { return Tree.Wildcards; }

private:
    [[nodiscard]] bool AtEnd() const { return At >= Source.size(); }
    [[nodiscard]] bool Sees(char c) const { return !AtEnd() && Source[At] == c; }
    [[nodiscard]] bool EndsAlternative() const { return Sees(')') || Sees('|'); }
    char32_t Next();
    char32_t NextQuoted(std::string_view specials);
    std::uint32_t ParseSequence(std::size_t depth);
    std::uint32_t ParseItem(std::size_t depth);
    std::uint32_t ParseRepeat(std::size_t depth);
    std::uint32_t ParseNegation(std::size_t depth);
    std::uint32_t ParseGroup(std::size_t depth);
    std::uint32_t ParseStar();
    std::uint32_t ParseClass();
    bool ParseMember();
    std::uint32_t Add(PatternKind kind, std::uint32_t child = NoNode);
    std::uint32_t AddSet(std::uint32_t firstRange, bool negated);
    std::uint32_t AddLetter(char32_t code);
    std::uint32_t AddAny() { return AddSet(static_cast<std::uint32_t>(Tree.Ranges.size()), true); }
    void AddRange(char32_t low, char32_t high);
    std::uint32_t Close(std::uint32_t parent);
    void SetScopes(std::uint32_t node, std::uint32_t scope);

    std::string_view Source;
    PatternStar Star;
    std::size_t At = 0;
    std::vector<std::size_t> Stars; // where "*" stands for "#?"
    PatternTree Tree;
};

char32_t PatternParser::Next() {
    const utility::Character c = utility::Decode(Source, At);
    At += c.Length;
    return c.Code;
}

// The next character, or the special one that a quote before it makes an ordinary one.
char32_t PatternParser::NextQuoted(std::string_view specials) {
    if (Sees('\'') && At + 1 < Source.size() && specials.find(Source[At + 1]) != std::string_view::npos)
        ++At;
    return Next();
}

std::uint32_t PatternParser::Add(PatternKind kind, std::uint32_t child) {
    PatternNode node{kind};
    node.First = child;
    node.Nullable = kind == PatternKind::Negation ? !Tree.Nodes[child].Nullable
                                                  : kind == PatternKind::Empty || kind == PatternKind::Repeat;
    Tree.Nodes.push_back(node);
    return static_cast<std::uint32_t>(Tree.Nodes.size() - 1);
}

std::uint32_t PatternParser::AddSet(std::uint32_t firstRange, bool negated) {
    const std::uint32_t node = Add(PatternKind::Letter);
    Tree.Nodes[node].Index = static_cast<std::uint32_t>(Tree.Sets.size());
    Tree.Sets.push_back({firstRange, static_cast<std::uint32_t>(Tree.Ranges.size()) - firstRange, negated});
    return node;
}

void PatternParser::AddRange(char32_t low, char32_t high) {
    const FoldedLetter first = MakePatternLetter(low, Tree.Rule);
    const FoldedLetter last = MakePatternLetter(high, Tree.Rule);
    if (first.Upper == last.Upper)
        Tree.Ranges.push_back({first.Folded, first.Folded});
    else
        Tree.Ranges.push_back({first.Upper, last.Upper});
}

std::uint32_t PatternParser::AddLetter(char32_t code) {
    const auto firstRange = static_cast<std::uint32_t>(Tree.Ranges.size());
    AddRange(code, code);
    return AddSet(firstRange, false);
}

// Ends a Sequence or Choice whose children are linked: one child stands for itself, none is Empty.
std::uint32_t PatternParser::Close(std::uint32_t parent) {
    PatternNode& node = Tree.Nodes[parent];
    if (node.First == NoNode) {
        node.Kind = PatternKind::Empty;
        node.Nullable = true;
        return parent;
    }
    if (Tree.Nodes[node.First].Next == NoNode)
        return node.First;
    std::size_t children = 0;
    std::size_t nullable = 0;
    for (std::uint32_t child = node.First; child != NoNode; child = Tree.Nodes[child].Next, ++children)
        nullable += Tree.Nodes[child].Nullable ? 1 : 0;
    node.Nullable = node.Kind == PatternKind::Sequence ? nullable == children : nullable > 0;
    return parent;
}

std::uint32_t PatternParser::ParseSequence(std::size_t depth) {
    if (depth > MaxPatternDepth)
        return NoNode;
    const std::uint32_t sequence = Add(PatternKind::Sequence);
    std::uint32_t last = NoNode;
    while (!AtEnd() && (depth == 0 || !EndsAlternative())) {
        const std::uint32_t item = ParseItem(depth);
        if (item == NoNode)
            return NoNode;
        (last == NoNode ? Tree.Nodes[sequence].First : Tree.Nodes[last].Next) = item;
        last = item;
    }
    return Close(sequence);
}

std::uint32_t PatternParser::ParseGroup(std::size_t depth) {
    Tree.Wildcards = true;
    const std::uint32_t choice = Add(PatternKind::Choice);
    std::uint32_t last = NoNode;
    do {
        ++At;
        const std::uint32_t alternative = ParseSequence(depth + 1);
        if (alternative == NoNode || AtEnd())
            return NoNode;
        (last == NoNode ? Tree.Nodes[choice].First : Tree.Nodes[last].Next) = alternative;
        last = alternative;
    } while (Sees('|'));
    ++At;
    return Close(choice);
}

std::uint32_t PatternParser::ParseRepeat(std::size_t depth) {
    Tree.Wildcards = true;
    while (Sees('#')) // "##x" is "#x"
        ++At;
    const std::uint32_t item = AtEnd() ? NoNode : ParseItem(depth + 1);
    return item == NoNode ? NoNode : Add(PatternKind::Repeat, item);
}

std::uint32_t PatternParser::ParseNegation(std::size_t depth) {
    ++At;
    if (AtEnd())
        return AddLetter('~');
    Tree.Wildcards = true;
    const std::uint32_t item = ParseItem(depth + 1);
    if (item == NoNode)
        return NoNode;
    const PatternNode& node = Tree.Nodes[item];
    return node.Kind == PatternKind::Negation ? node.First : Add(PatternKind::Negation, item);
}

std::uint32_t PatternParser::ParseStar() {
    Tree.Wildcards = true;
    Stars.push_back(At++);
    return Add(PatternKind::Repeat, AddAny());
}

// One letter or range of a class; false when the class is not closed.
bool PatternParser::ParseMember() {
    constexpr std::string_view specials = "#?~()|[]%*'-";
    const char32_t low = NextQuoted(specials);
    if (!Sees('-')) {
        AddRange(low, low);
        return true;
    }
    ++At;
    if (AtEnd())
        return false;
    AddRange(low, Sees(']') ? LastLetter : NextQuoted(specials));
    return true;
}

std::uint32_t PatternParser::ParseClass() {
    Tree.Wildcards = true;
    ++At;
    const bool negated = Sees('~');
    if (negated)
        ++At;
    const auto firstRange = static_cast<std::uint32_t>(Tree.Ranges.size());
    do {
        if (AtEnd() || !ParseMember())
            return NoNode;
    } while (!Sees(']'));
    ++At;
    return AddSet(firstRange, negated);
}

std::uint32_t PatternParser::ParseItem(std::size_t depth) {
    if (depth > MaxPatternDepth)
        return NoNode;
    switch (Source[At]) {
    case '#':
        return ParseRepeat(depth);
    case '~':
        return ParseNegation(depth);
    case '(':
        return ParseGroup(depth);
    case ')':
    case '|':
        return NoNode;
    case '[':
        return ParseClass();
    case '?':
        Tree.Wildcards = true;
        ++At;
        return AddAny();
    case '%':
        ++At;
        return Add(PatternKind::Empty);
    case '*':
        if (Star == PatternStar::Anything)
            return ParseStar();
        break;
    default:
        break;
    }
    return AddLetter(NextQuoted(Specials));
}

// Numbers the negations that are left in the tree and tells each node which one it is in.
void PatternParser::SetScopes(std::uint32_t node, std::uint32_t scope) {
    PatternNode& at = Tree.Nodes[node];
    at.Scope = scope;
    if (at.Kind == PatternKind::Negation) {
        Tree.NestedNegations += scope != 0 ? 1 : 0;
        at.Index = Tree.Negations++;
        scope = at.Index + 1;
    }
    for (std::uint32_t child = at.First; child != NoNode; child = Tree.Nodes[child].Next)
        SetScopes(child, scope);
}

bool PatternParser::Parse() {
    Tree.Nodes.reserve(Source.size() + 2);
    Tree.Root = ParseSequence(0);
    if (Tree.Root == NoNode)
        return false;
    if (Tree.Nodes[Tree.Root].Kind == PatternKind::Negation) {
        Tree.Inverted = true;
        Tree.Root = Tree.Nodes[Tree.Root].First;
    }
    SetScopes(Tree.Root, 0);
    return true;
}

// The tokens are a pattern again: without "*" that stands for more, and in upper case when case is ignored.
std::string PatternParser::Tokens() const {
    std::string tokens;
    auto star = Stars.begin();
    for (std::size_t at = 0; at < Source.size();) {
        const utility::Character c = utility::Decode(Source, at);
        if (star != Stars.end() && *star == at) {
            tokens += "#?";
            ++star;
        } else if (Tree.Rule == PatternCase::Respect || c.Code >= utility::InvalidByteBase) {
            tokens += Source.substr(at, c.Length);
        } else {
            utility::AppendUtf8(tokens, utility::ToUpper(c.Code));
        }
        at += c.Length;
    }
    return tokens;
}

namespace {

// Which letters a part of the tree can begin and end with, as bits of a BitProgram.
struct Ends {
    std::uint64_t First = 0, Last = 0;
};

class BitCompiler {
public:
    explicit BitCompiler(const PatternTree& tree) : Tree(tree) {}
    BitProgram Compile();
    static std::uint64_t Takers(const PatternTree& tree, char32_t code);

private:
    Ends Visit(std::uint32_t node);
    Ends VisitChildren(const PatternNode& parent);
    void Link(std::uint64_t from, std::uint64_t to);

    const PatternTree& Tree;
    BitProgram Program;
};

// The letters of the tree that take a character.
std::uint64_t BitCompiler::Takers(const PatternTree& tree, char32_t code) {
    const FoldedLetter letter = MakePatternLetter(code, tree.Rule);
    std::uint64_t takers = 0;
    for (std::size_t set = 0; set < tree.Sets.size(); ++set)
        if (tree.IsIn(letter, tree.Sets[set]))
            takers |= std::uint64_t{2} << set;
    return takers;
}

void BitCompiler::Link(std::uint64_t from, std::uint64_t to) {
    for (; from != 0; from &= from - 1)
        Program.Follow[static_cast<std::size_t>(std::countr_zero(from))] |= to;
}

Ends BitCompiler::VisitChildren(const PatternNode& parent) {
    Ends all;
    bool nullable = true; // all children before this one
    for (std::uint32_t child = parent.First; child != NoNode; child = Tree.Nodes[child].Next) {
        const Ends ends = Visit(child);
        if (parent.Kind != PatternKind::Sequence) {
            all = {all.First | ends.First, all.Last | ends.Last};
            continue;
        }
        Link(all.Last, ends.First);
        all.First |= nullable ? ends.First : 0;
        all.Last = ends.Last | (Tree.Nodes[child].Nullable ? all.Last : 0);
        nullable = nullable && Tree.Nodes[child].Nullable;
    }
    return all;
}

Ends BitCompiler::Visit(std::uint32_t node) {
    const PatternNode& at = Tree.Nodes[node];
    if (at.Kind == PatternKind::Letter) {
        const std::uint64_t bit = std::uint64_t{2} << at.Index;
        return {bit, bit};
    }
    const Ends ends = VisitChildren(at);
    if (at.Kind == PatternKind::Repeat)
        Link(ends.Last, ends.First);
    return ends;
}

BitProgram BitCompiler::Compile() {
    const Ends ends = Visit(Tree.Root);
    Program.Follow[0] = ends.First;
    Program.Accept = ends.Last | (Tree.Nodes[Tree.Root].Nullable ? 1U : 0U);
    for (std::size_t c = 0; c < AsciiEnd; ++c)
        Program.Ascii[c] = Takers(Tree, static_cast<char32_t>(c));
    return Program;
}

bool RunBits(const PatternTree& tree, const BitProgram& program, std::string_view text) {
    std::uint64_t states = 1;
    for (std::size_t at = 0; at < text.size() && states != 0;) {
        std::uint64_t next = 0;
        for (; states != 0; states &= states - 1)
            next |= program.Follow[static_cast<std::size_t>(std::countr_zero(states))];
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte < AsciiEnd) {
            states = next & program.Ascii[byte];
            ++at;
        } else {
            const utility::Character c = utility::Decode(text, at);
            states = next & BitCompiler::Takers(tree, c.Code);
            at += c.Length;
        }
    }
    return (states & program.Accept) != 0;
}

// Refuses a text that is too long before any work is done on it.
bool FitsLimit(std::string_view source, std::size_t limit) {
    if (source.size() <= limit)
        return true;
    SetIoErr(ErrorBufferOverflow);
    return false;
}

std::optional<Pattern> ParseWithin(std::size_t limit, std::string_view source, PatternCase rule,
                                   PatternStar star) {
    if (!FitsLimit(source, limit))
        return std::nullopt;
    PatternParser parser(source, rule, star);
    if (!parser.Parse()) {
        SetIoErr(ErrorBadTemplate);
        return std::nullopt;
    }
    return std::move(parser).Compile();
}

// Tokens may be longer than the longest pattern, since a "*" becomes "#?" in them.
bool MatchTokens(std::string_view tokens, std::string_view text, PatternCase rule) {
    thread_local std::string lastTokens;
    thread_local PatternCase lastRule = PatternCase::Respect;
    thread_local std::optional<Pattern> last;
    if (!last || lastRule != rule || lastTokens != tokens) {
        last = ParseWithin(PatternBufferSize(MaxPatternLength), tokens, rule, PatternStar::Ordinary);
        lastTokens = tokens;
        lastRule = rule;
    }
    return last && last->Matches(text);
}

int ParseTokens(std::string_view source, std::string& tokens, std::size_t size, PatternCase rule,
                PatternStar star) {
    tokens.clear();
    if (!FitsLimit(source, MaxPatternLength))
        return -1;
    PatternParser parser(source, rule, star);
    if (!parser.Parse()) {
        SetIoErr(ErrorBadTemplate);
        return -1;
    }
    std::string made = parser.Tokens();
    if (made.size() >= size) {
        SetIoErr(ErrorBufferOverflow);
        return -1;
    }
    tokens = std::move(made);
    return parser.HasWildcards() ? 1 : 0;
}

} // namespace

Pattern PatternParser::Compile() && {
    auto program = std::make_shared<Pattern::Program>();
    static_cast<PatternTree&>(*program) = std::move(Tree);
    if (program->Negations == 0 && program->Sets.size() < WordBits)
        program->Bits = BitCompiler(*program).Compile();
    else if (program->Negations > 0)
        program->Table = MakePatternTable(*program);
    Pattern pattern;
    pattern.Code = std::move(program);
    return pattern;
}

std::optional<Pattern> Pattern::Parse(std::string_view source, PatternCase rule, PatternStar star) {
    return ParseWithin(MaxPatternLength, source, rule, star);
}

bool Pattern::HasWildcards() const noexcept {
    return Code != nullptr && Code->Wildcards;
}

bool Pattern::Matches(std::string_view text) const {
    if (Code == nullptr)
        return false;
    if (Code->Bits)
        return RunBits(*Code, *Code->Bits, text) != Code->Inverted;
    if (Code->Table)
        if (const auto matches = MatchByTable(*Code, *Code->Table, text))
            return *matches != Code->Inverted;
    if (!LanesAreAffordable(*Code, text.size())) {
        SetIoErr(ErrorBufferOverflow);
        return false;
    }
    return MatchByLanes(*Code, text) != Code->Inverted;
}

int ParsePattern(std::string_view source, std::string& tokens, std::size_t size, PatternStar star) {
    return ParseTokens(source, tokens, size, PatternCase::Respect, star);
}

int ParsePatternNoCase(std::string_view source, std::string& tokens, std::size_t size, PatternStar star) {
    return ParseTokens(source, tokens, size, PatternCase::Ignore, star);
}

bool MatchPattern(std::string_view tokens, std::string_view text) {
    return MatchTokens(tokens, text, PatternCase::Respect);
}

bool MatchPatternNoCase(std::string_view tokens, std::string_view text) {
    return MatchTokens(tokens, text, PatternCase::Ignore);
}

} // namespace dos
