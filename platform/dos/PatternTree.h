// What a pattern is once it is parsed: a tree of nodes. Private to the pattern sources; how it is matched
// stands there.
#pragma once

#include "platform/dos/Patterns.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace dos {

inline constexpr std::uint32_t NoNode = UINT32_MAX; // no node
inline constexpr char32_t LastLetter = utility::InvalidByteBase + 0xFF;

enum class PatternKind : std::uint8_t {
    Letter,   // one character of a set
    Empty,    // nothing
    Sequence, // its children one after the other
    Choice,   // one of its children
    Repeat,   // its child, zero or more times
    Negation, // all that its child does not match
};

struct PatternNode {
    PatternKind Kind;
    bool Nullable = false;        // matches the empty text
    std::uint32_t First = NoNode; // the first child
    std::uint32_t Next = NoNode;  // the next child of the same parent
    std::uint32_t Index =
        NoNode;              // of a Letter its set, of a Negation its number (NoNode: left out of the tree)
    std::uint32_t Scope = 0; // number + 1 of the Negation it is in, 0 outside
};

// Both ends count. A single letter has both ends alike, folded when case is ignored; the ends of a range are
// upper case then.
struct PatternRange {
    char32_t Low, High;
};

struct PatternSet {
    std::uint32_t First = 0, Count = 0; // of the ranges
    bool Negated = false;
};

// One character of a text in the two forms that ranges are made for; the same twice when case counts.
struct FoldedLetter {
    char32_t Upper, Folded;
};

[[nodiscard]] inline FoldedLetter MakePatternLetter(char32_t code, PatternCase rule) {
    if (rule == PatternCase::Respect)
        return {code, code};
    const char32_t upper = utility::ToUpper(code);
    return {upper, utility::ToLower(upper)};
}

struct PatternTree {
    std::vector<PatternNode> Nodes;
    std::vector<PatternRange> Ranges;
    std::vector<PatternSet> Sets;
    std::uint32_t Root = NoNode;
    std::uint32_t Negations = 0;       // Negation nodes
    std::uint32_t NestedNegations = 0; // those within another one
    bool Inverted = false;             // matches what Root does not: a "~" before the whole is kept here
    PatternCase Rule = PatternCase::Respect;
    bool Wildcards = false;

    [[nodiscard]] bool IsIn(const FoldedLetter& letter, const PatternSet& set) const {
        const auto first = Ranges.begin() + set.First;
        const bool found = std::any_of(first, first + set.Count, [&letter](const PatternRange& range) {
            return range.Low == range.High ? letter.Folded == range.Low
                                           : letter.Upper >= range.Low && letter.Upper <= range.High;
        });
        return found != set.Negated;
    }
};

} // namespace dos
