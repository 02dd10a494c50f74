#include "platform/dos/PatternTable.h"

#include <algorithm>
#include <map>
#include <set>

namespace dos {
namespace {

constexpr std::size_t MostLetters = 64;
constexpr std::size_t MostStates = 512;
constexpr std::size_t MostSteps = 20000; // of making a table; some milliseconds

using Term = std::uint32_t; // an expression, by its number; equal ones have the same
using Terms = std::vector<Term>;

// The letters that take a character, one bit for each.
std::uint64_t TakersOf(const PatternTree& tree, char32_t code) {
    const FoldedLetter letter = MakePatternLetter(code, tree.Rule);
    std::uint64_t takers = 0;
    for (std::size_t set = 0; set < tree.Sets.size(); ++set)
        if (tree.IsIn(letter, tree.Sets[set]))
            takers |= std::uint64_t{1} << set;
    return takers;
}

// What is left to match of a pattern behind a character is a pattern again. Simple rules keep the
// number of different ones small: each is a state of the table.
class TableMaker {
public:
    explicit TableMaker(const PatternTree& tree) : Tree(tree) {
        Nothing = Intern(PatternKind::Choice, {}, false);
        Anything = Intern(PatternKind::Negation, {Nothing}, true);
        Empty = Intern(PatternKind::Empty, {}, true);
    }
    [[nodiscard]] bool Make(PatternTable& table);

private:
    struct Expression {
        PatternKind Kind;
        bool Nullable;
        Terms Parts; // of a Letter its number
    };

    Term Intern(PatternKind kind, Terms parts, bool nullable);
    Term Chain(Term first, Term then);
    Term Choose(const Terms& parts);
    Term Repeat(Term part);
    Term Negate(Term part);
    Term Build(std::uint32_t node);
    Term BuildSequence(const PatternNode& node);
    Term Behind(Term term, std::uint64_t takers);
    Term FindBehind(Term term, std::uint64_t takers);
    void FindClasses(PatternTable& table) const;
    [[nodiscard]] bool IsTooLarge() const { return Steps > MostSteps || States.size() > MostStates; }
    std::uint16_t StateOf(Term term);

    const PatternTree& Tree;
    std::vector<Expression> Expressions;
    std::map<std::pair<PatternKind, Terms>, Term> Known;
    std::map<std::pair<Term, std::uint64_t>, Term> Found; // what is behind a term, by takers
    std::vector<Term> States;
    std::map<Term, std::uint16_t> StateNumbers;
    Term Nothing = 0;  // matches no text
    Term Anything = 0; // matches all
    Term Empty = 0;
    std::size_t Steps = 0;
};

Term TableMaker::Intern(PatternKind kind, Terms parts, bool nullable) {
    Steps += 1 + parts.size() / 8;
    const auto [at, isNew] =
        Known.try_emplace({kind, std::move(parts)}, static_cast<Term>(Expressions.size()));
    if (isNew)
        Expressions.push_back({kind, nullable, at->first.second});
    return at->second;
}

// Sequences are pairs of a head that is none and the rest.
Term TableMaker::Chain(Term first, Term then) {
    if (first == Nothing || then == Nothing)
        return Nothing;
    if (first == Empty)
        return then;
    if (then == Empty || (first == Anything && then == Anything))
        return first;
    const Expression& head = Expressions[first];
    if (head.Kind == PatternKind::Sequence) {
        const Terms parts = head.Parts;
        return Chain(parts[0], Chain(parts[1], then));
    }
    return Intern(PatternKind::Sequence, {first, then}, head.Nullable && Expressions[then].Nullable);
}

Term TableMaker::Choose(const Terms& parts) {
    std::set<Term> flat;
    for (const Term part : parts) {
        const Expression& each = Expressions[part];
        if (each.Kind == PatternKind::Choice)
            flat.insert(each.Parts.begin(), each.Parts.end());
        else
            flat.insert(part);
    }
    if (flat.contains(Anything))
        return Anything;
    if (flat.size() == 1)
        return *flat.begin();
    const bool nullable = std::ranges::any_of(flat, [&](Term part) { return Expressions[part].Nullable; });
    return Intern(PatternKind::Choice, Terms(flat.begin(), flat.end()), nullable);
}

Term TableMaker::Repeat(Term part) {
    const Expression& each = Expressions[part];
    if (part == Nothing || part == Empty)
        return Empty;
    if (part == Anything || each.Kind == PatternKind::Repeat)
        return part;
    if (each.Kind == PatternKind::Letter) { // "#?"
        const PatternSet& set = Tree.Sets[each.Parts[0]];
        if (set.Negated && set.Count == 0)
            return Anything;
    }
    return Intern(PatternKind::Repeat, {part}, true);
}

Term TableMaker::Negate(Term part) {
    const Expression& each = Expressions[part];
    return each.Kind == PatternKind::Negation ? each.Parts[0]
                                              : Intern(PatternKind::Negation, {part}, !each.Nullable);
}

Term TableMaker::BuildSequence(const PatternNode& node) {
    Terms parts;
    for (std::uint32_t child = node.First; child != NoNode; child = Tree.Nodes[child].Next)
        parts.push_back(Build(child));
    Term all = Empty;
    for (; !parts.empty(); parts.pop_back())
        all = Chain(parts.back(), all);
    return all;
}

Term TableMaker::Build(std::uint32_t node) {
    const PatternNode& at = Tree.Nodes[node];
    Terms parts;
    switch (at.Kind) {
    case PatternKind::Letter:
        return Intern(PatternKind::Letter, {at.Index}, false);
    case PatternKind::Empty:
        return Empty;
    case PatternKind::Sequence:
        return BuildSequence(at);
    case PatternKind::Choice:
        for (std::uint32_t child = at.First; child != NoNode; child = Tree.Nodes[child].Next)
            parts.push_back(Build(child));
        return Choose(parts);
    case PatternKind::Repeat:
        return Repeat(Build(at.First));
    case PatternKind::Negation:
        return Negate(Build(at.First));
    }
    return Nothing;
}

Term TableMaker::FindBehind(Term term, std::uint64_t takers) {
    const Expression at = Expressions[term]; // a copy: the list grows meanwhile
    Terms parts;
    switch (at.Kind) {
    case PatternKind::Letter:
        return (takers >> at.Parts[0] & 1) != 0 ? Empty : Nothing;
    case PatternKind::Empty:
        return Nothing;
    case PatternKind::Sequence: {
        const Term through = Chain(Behind(at.Parts[0], takers), at.Parts[1]);
        if (!Expressions[at.Parts[0]].Nullable)
            return through;
        return Choose({through, Behind(at.Parts[1], takers)});
    }
    case PatternKind::Choice:
        for (const Term part : at.Parts)
            parts.push_back(Behind(part, takers));
        return Choose(parts);
    case PatternKind::Repeat:
        return Chain(Behind(at.Parts[0], takers), term);
    case PatternKind::Negation:
        return Negate(Behind(at.Parts[0], takers));
    }
    return Nothing;
}

// What is left to match of a term behind a character of these takers.
Term TableMaker::Behind(Term term, std::uint64_t takers) {
    ++Steps;
    if (IsTooLarge())
        return Nothing; // the table is not used
    if (const auto found = Found.find({term, takers}); found != Found.end())
        return found->second;
    const Term behind = FindBehind(term, takers);
    Found[{term, takers}] = behind;
    return behind;
}

std::uint16_t TableMaker::StateOf(Term term) {
    const auto [at, isNew] = StateNumbers.try_emplace(term, static_cast<std::uint16_t>(States.size()));
    if (isNew)
        States.push_back(term);
    return at->second;
}

// Every character below 128, and of the others those at the ends of the pattern's ranges.
void TableMaker::FindClasses(PatternTable& table) const {
    std::vector<char32_t> codes = {0x80, 0xA0, 0x100, 0x3000, 0x10000, utility::InvalidByteBase, LastLetter};
    for (char32_t code = 0; code < 128; ++code)
        codes.push_back(code);
    for (const PatternRange& range : Tree.Ranges)
        for (const char32_t end : {range.Low, range.High})
            for (const std::uint32_t code : {end - 1u, end + 0u, end + 1u})
                codes.push_back(std::min<char32_t>(code, LastLetter));
    std::set<std::uint64_t> takers;
    for (const char32_t code : codes)
        takers.insert(TakersOf(Tree, code));
    for (const std::uint64_t each : takers)
        table.Classes.emplace_back(each, static_cast<std::uint16_t>(table.Classes.size()));
    for (char32_t code = 0; code < 128; ++code)
        table.AsciiClass[code] =
            std::ranges::lower_bound(table.Classes, TakersOf(Tree, code), {}, [](const auto& row) {
                return row.first;
            })->second;
}

bool TableMaker::Make(PatternTable& table) {
    FindClasses(table);
    StateOf(Build(Tree.Root));
    for (std::size_t state = 0; state < States.size(); ++state) {
        const Term term = States[state];
        table.Accepts.push_back(Expressions[term].Nullable);
        for (const auto& [takers, number] : table.Classes)
            table.Next.push_back(StateOf(Behind(term, takers)));
        if (IsTooLarge())
            return false;
    }
    return true;
}

} // namespace

std::optional<PatternTable> MakePatternTable(const PatternTree& tree) {
    if (tree.Sets.size() > MostLetters)
        return {};
    PatternTable table;
    return TableMaker(tree).Make(table) ? std::optional(std::move(table)) : std::nullopt;
}

std::optional<bool> MatchByTable(const PatternTree& tree, const PatternTable& table, std::string_view text) {
    std::size_t state = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        std::size_t kind = 0;
        if (byte < table.AsciiClass.size()) {
            kind = table.AsciiClass[byte];
            ++at;
        } else {
            const utility::Character c = utility::Decode(text, at);
            const std::uint64_t takers = TakersOf(tree, c.Code);
            const auto row = std::ranges::lower_bound(table.Classes, takers, {},
                                                      [](const auto& each) { return each.first; });
            if (row == table.Classes.end() || row->first != takers)
                return {};
            kind = row->second;
            at += c.Length;
        }
        state = table.Next[state * table.Classes.size() + kind];
    }
    return table.Accepts[state];
}

} // namespace dos
