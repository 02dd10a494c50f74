#include "platform/dos/PatternLanes.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

namespace dos {
namespace {

constexpr std::size_t WordBits = 64;

// Walks a text along any tree, one character after the other. Each node keeps where it was matched up to here
// ("Done") as a set of lanes: outside of a Negation there is lane 0 alone, inside of one lane k is the
// attempt that began before character k. So all attempts advance together, and a Negation is done for whoever
// entered it at k while its lane k is not.
class LaneMatcher {
public:
    LaneMatcher(const PatternTree& tree, std::size_t length);
    [[nodiscard]] bool Run(std::string_view text);

private:
    // The lanes of one Negation. Rows has for each lane of the scope around it the lanes that it entered
    // here.
    struct NegationLanes {
        std::vector<std::uint64_t> Begun;   // own lanes whose attempt can still come to an end
        std::vector<std::uint64_t> Alive;   // own lanes that have marks in the tree
        std::vector<std::uint64_t> Entered; // outer lanes with a row
        std::vector<std::uint64_t> Always;  // outer lanes that are done for good: one of theirs died
        std::vector<std::uint64_t> Rows;
    };

    std::uint64_t* Start(std::uint32_t node) { return &Marks[2 * Stride * node]; }
    std::uint64_t* Done(std::uint32_t node) { return Start(node) + Stride; }
    [[nodiscard]] bool Any(const std::uint64_t* lanes) const;
    void Or(std::uint64_t* to, const std::uint64_t* from) const;
    void Reach(std::uint32_t node, const std::uint64_t* start, std::uint64_t* next);
    void Step(std::uint32_t node, const std::uint64_t* start);
    void StepLetter(std::uint32_t node, const std::uint64_t* start);
    void StepSequence(std::uint32_t node, const std::uint64_t* start);
    void StepChoice(std::uint32_t node, const std::uint64_t* start);
    void StepRepeat(std::uint32_t node, const std::uint64_t* start);
    void StepNegation(std::uint32_t node, const std::uint64_t* start);
    void Enter(NegationLanes& lanes, const std::uint64_t* start);
    void Leave(NegationLanes& lanes, const std::uint64_t* body, std::uint64_t* done);
    void KeepAlive(std::uint32_t scope, const std::uint64_t* lanes);

    const PatternTree& Tree;
    const std::size_t Stride;  // words of a set of lanes
    std::size_t Words = 1;     // of them in use up to here
    std::size_t Character = 0; // number of the current character
    FoldedLetter Current{};
    std::vector<std::uint64_t> Marks; // Start and Done of each node
    std::vector<char> Live;           // nodes that have marks in or below them
    std::vector<NegationLanes> Negations;
    std::vector<std::uint64_t> Open, Dead; // scratch sets of Leave
};

LaneMatcher::LaneMatcher(const PatternTree& tree, std::size_t length)
    : Tree(tree),
      Stride(tree.Negations == 0 ? 1 : length / WordBits + 1),
      Marks(2 * tree.Nodes.size() * Stride),
      Live(tree.Nodes.size()),
      Negations(tree.Negations),
      Open(Stride),
      Dead(Stride) {
    for (const PatternNode& node : tree.Nodes) {
        if (node.Kind != PatternKind::Negation || node.Index == NoNode)
            continue;
        NegationLanes& lanes = Negations[node.Index];
        for (std::vector<std::uint64_t>* set : {&lanes.Begun, &lanes.Alive, &lanes.Entered, &lanes.Always})
            set->resize(Stride);
        lanes.Rows.resize((node.Scope == 0 ? 1 : length) * Stride);
    }
}

bool LaneMatcher::Any(const std::uint64_t* lanes) const {
    return std::any_of(lanes, lanes + Words, [](std::uint64_t word) { return word != 0; });
}

void LaneMatcher::Or(std::uint64_t* to, const std::uint64_t* from) const {
    for (std::size_t word = 0; word < Words; ++word)
        to[word] |= from[word];
}

void LaneMatcher::KeepAlive(std::uint32_t scope, const std::uint64_t* lanes) {
    if (scope != 0)
        Or(Negations[scope - 1].Alive.data(), lanes);
}

// The lanes that stand behind node when start stands before it.
void LaneMatcher::Reach(std::uint32_t node, const std::uint64_t* start, std::uint64_t* next) {
    const std::uint64_t* done = Done(node);
    const std::uint64_t through = Tree.Nodes[node].Nullable ? ~std::uint64_t{0} : 0;
    for (std::size_t word = 0; word < Words; ++word)
        next[word] = done[word] | (start[word] & through);
}

void LaneMatcher::StepLetter(std::uint32_t node, const std::uint64_t* start) {
    const PatternNode& at = Tree.Nodes[node];
    const bool taken = Tree.IsIn(Current, Tree.Sets[at.Index]);
    std::uint64_t* done = Done(node);
    for (std::size_t word = 0; word < Words; ++word)
        done[word] = taken ? start[word] : 0;
    Live[node] = taken && Any(done);
    if (Live[node])
        KeepAlive(at.Scope, done);
}

void LaneMatcher::StepSequence(std::uint32_t node, const std::uint64_t* start) {
    std::uint64_t* done = Done(node);
    std::fill_n(done, Words, 0);
    for (std::uint32_t child = Tree.Nodes[node].First; child != NoNode;) {
        const std::uint32_t next = Tree.Nodes[child].Next;
        if (next != NoNode) // from what child has done before this character
            Reach(child, start, Start(next));
        Step(child, start);
        Reach(child, done, done);
        Live[node] |= Live[child];
        if (next != NoNode)
            start = Start(next);
        child = next;
    }
}

void LaneMatcher::StepChoice(std::uint32_t node, const std::uint64_t* start) {
    std::uint64_t* done = Done(node);
    std::fill_n(done, Words, 0);
    for (std::uint32_t child = Tree.Nodes[node].First; child != NoNode; child = Tree.Nodes[child].Next) {
        Step(child, start);
        Or(done, Done(child));
        Live[node] |= Live[child];
    }
}

void LaneMatcher::StepRepeat(std::uint32_t node, const std::uint64_t* start) {
    const std::uint32_t child = Tree.Nodes[node].First;
    std::copy_n(start, Words, Start(child));
    Or(Start(child), Done(child));
    Step(child, Start(child));
    std::copy_n(Done(child), Words, Done(node));
    Live[node] = Live[child];
}

// Opens the lane of this character for all outer lanes that stand before the Negation.
void LaneMatcher::Enter(NegationLanes& lanes, const std::uint64_t* start) {
    const std::size_t word = Character / WordBits;
    const std::uint64_t bit = std::uint64_t{1} << Character % WordBits;
    lanes.Begun[word] |= bit;
    Or(lanes.Entered.data(), start);
    for (std::size_t at = 0; at < Words; ++at)
        for (std::uint64_t rest = start[at]; rest != 0; rest &= rest - 1) {
            const std::size_t row = at * WordBits + static_cast<std::size_t>(std::countr_zero(rest));
            lanes.Rows[row * Stride + word] |= bit;
        }
}

bool Meet(const std::uint64_t* a, const std::uint64_t* b, std::size_t words) {
    for (std::size_t word = 0; word < words; ++word)
        if ((a[word] & b[word]) != 0)
            return true;
    return false;
}

// The outer lanes that are done with the Negation: those which entered at a lane that its body is not done
// with. A lane that died never will be.
void LaneMatcher::Leave(NegationLanes& lanes, const std::uint64_t* body, std::uint64_t* done) {
    for (std::size_t word = 0; word < Words; ++word) {
        Open[word] = lanes.Begun[word] & ~body[word];
        Dead[word] = lanes.Begun[word] & ~lanes.Alive[word];
        lanes.Begun[word] &= lanes.Alive[word];
        done[word] = 0;
    }
    const bool anyDead = Any(Dead.data());
    for (std::size_t at = 0; Any(Open.data()) && at < Words; ++at)
        for (std::uint64_t rest = lanes.Entered[at] & ~lanes.Always[at]; rest != 0; rest &= rest - 1) {
            const std::size_t lane = at * WordBits + static_cast<std::size_t>(std::countr_zero(rest));
            const std::uint64_t* row = &lanes.Rows[lane * Stride];
            if (anyDead && Meet(row, Dead.data(), Words))
                lanes.Always[at] |= rest & (~rest + 1);
            else if (Meet(row, Open.data(), Words))
                done[at] |= rest & (~rest + 1);
        }
    Or(done, lanes.Always.data());
}

void LaneMatcher::StepNegation(std::uint32_t node, const std::uint64_t* start) {
    const PatternNode& at = Tree.Nodes[node];
    NegationLanes& lanes = Negations[at.Index];
    std::uint64_t* inner = Start(at.First);
    std::fill_n(inner, Words, 0);
    std::fill_n(lanes.Alive.begin(), Words, 0);
    if (Any(start)) {
        inner[Character / WordBits] = std::uint64_t{1} << Character % WordBits;
        Enter(lanes, start);
    }
    Step(at.First, inner);
    Leave(lanes, Done(at.First), Done(node));
    KeepAlive(at.Scope, lanes.Entered.data());
    Live[node] = 1;
}

// Takes the current character from the lanes that stand before node and from those inside of it.
void LaneMatcher::Step(std::uint32_t node, const std::uint64_t* start) {
    if (!Live[node] && !Any(start))
        return;
    Live[node] = 0;
    switch (Tree.Nodes[node].Kind) {
    case PatternKind::Letter:
        return StepLetter(node, start);
    case PatternKind::Sequence:
        return StepSequence(node, start);
    case PatternKind::Choice:
        return StepChoice(node, start);
    case PatternKind::Repeat:
        return StepRepeat(node, start);
    case PatternKind::Negation:
        return StepNegation(node, start);
    case PatternKind::Empty:
        return;
    }
}

bool LaneMatcher::Run(std::string_view text) {
    if (text.empty())
        return Tree.Nodes[Tree.Root].Nullable;
    std::vector<std::uint64_t> start(Stride);
    start[0] = 1;
    for (std::size_t at = 0; at < text.size(); ++Character) {
        const utility::Character c = utility::Decode(text, at);
        at += c.Length;
        Current = MakePatternLetter(c.Code, Tree.Rule);
        Words = std::min(Character / WordBits + 1, Stride);
        Step(Tree.Root, start.data());
        if (!Live[Tree.Root])
            return false;
        start[0] = 0;
    }
    return Done(Tree.Root)[0] != 0;
}

} // namespace

bool LanesAreAffordable(const PatternTree& tree, std::size_t length) {
    constexpr double limit = 1 << 30; // words touched; a node costs about as much as eight of them
    const auto characters = static_cast<double>(length);
    const double words = tree.Negations == 0 ? 1 : characters / WordBits + 1;
    const double perCharacter =
        8.0 * static_cast<double>(tree.Nodes.size()) + tree.NestedNegations * characters;
    return perCharacter * characters * words <= limit;
}

bool MatchByLanes(const PatternTree& tree, std::string_view text) {
    return LaneMatcher(tree, text.size()).Run(text);
}

} // namespace dos
