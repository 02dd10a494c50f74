// Pooled doubly linked lists with a built-in cursor, typed over one untyped core. They place, walk
// and free records; they neither sort them nor know what stands in them.
//
// Every operation holds the list's lock for its own duration, so a single one is safe from any
// thread; a walk is not atomic. The cursor belongs to the list: two nested walks over one list
// disturb each other. Deleting the node that a walk stands on is safe when the walk goes on with
// SAK_NextGenericListNode.
#pragma once

#include "sak/Memory.h"
#include "sak/Text.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace solvane {

// Where a node is placed. A value outside the four links the node nowhere, yet it becomes the
// current one and is counted; this is intended, and the list still owns and frees it.
enum class ListPosition : std::uint32_t { Head = 0, BeforeCurrent = 1, AfterCurrent = 2, Tail = 3 };

struct ListNode;

// The place of a node in its list. Copying a record copies what it tells, never where it stands.
struct ListLinks {
    ListLinks() noexcept = default;
    ListLinks(const ListLinks&) noexcept {}
    ListLinks& operator=(const ListLinks&) noexcept { return *this; }
    ~ListLinks() = default;

    ListNode* Successor = nullptr; // written by GenericListCore alone
    ListNode* Predecessor = nullptr;
};

// What every record kept in a generic list begins with.
struct ListNode {
    ListLinks Links;
    Text<128> NodeName; // a node made without a name has an empty one
};

// The untyped list: links, cursor and count. Destroy ends one node and gives its memory back.
class GenericListCore final : private PoolResident {
public:
    using Destroyer = void (*)(ListNode* node) noexcept;

    explicit GenericListCore(Destroyer destroy);
    GenericListCore(const GenericListCore&) = delete;
    GenericListCore& operator=(const GenericListCore&) = delete;
    ~GenericListCore() { Clear(); }

    void Add(ListNode* node, ListPosition position);
    ListNode* First();
    ListNode* Next();
    ListNode* Last();
    ListNode* Prev();
    ListNode* Get(std::uint32_t index);
    std::uint32_t Offset(const ListNode* node);
    void MoveTo(ListNode* node); // sets the cursor; node must stand in this list, or be null
    void Delete(ListNode* node);
    bool Unlink(ListNode* node); // true: the caller owns the node from now on
    void Clear() noexcept;
    bool Relink(std::span<ListNode* const> order);
    // The linked nodes from the first on, and the way back: order must be these very nodes, in any order, and
    // the list must not have changed in between. Cursor as after appending them one by one.
    [[nodiscard]] std::vector<ListNode*> Linked() const;
    void LinkInOrder(std::span<ListNode* const> order);
    void Swap(GenericListCore& other);

    [[nodiscard]] ListNode* Current() const;
    [[nodiscard]] std::uint32_t Count() const;
    [[nodiscard]] bool IsConsistent() const;

    // Reading without the cursor and without the lock, for loops that change nothing in the list.
    [[nodiscard]] ListNode* Begin() const noexcept { return Head; }

private:
    void LeavePool() noexcept override { Clear(); }
    void LinkBetween(ListNode* before, ListNode* node, ListNode* after) noexcept;
    void LinkAll(std::span<ListNode* const> order) noexcept;
    bool TakeOut(ListNode* node);

    mutable std::mutex Semaphore;
    Destroyer Destroy;
    ListNode* Head = nullptr;
    ListNode* Tail = nullptr;
    ListNode* Cursor = nullptr;
    std::uint32_t Nodes = 0;
    std::vector<ListNode*> Strays; // counted but linked nowhere
};

// Ends a record that stands in no list and gives its memory back to the pool.
template <class Node>
struct NodeDeleter {
    void operator()(Node* node) const noexcept {
        std::destroy_at(node);
        SAK_FreeVecPooled(node);
    }
};

// A record that is not yet, or no longer, in a list. It must not outlive the pool.
template <class Node>
using NodePointer = std::unique_ptr<Node, NodeDeleter<Node>>;

// A list of one kind of record, which it owns. Clearing it ends the records as C++ objects, and
// with them what they own.
template <class Node>
class GenericList {
public:
    GenericList() : Core(&DestroyNode) {
        static_assert(std::is_base_of_v<ListNode, Node>, "records begin with a ListNode");
        static_assert(alignof(Node) <= SAK_PoolAlignment, "the pool does not align further");
    }

    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Node;
        using difference_type = std::ptrdiff_t;
        using pointer = Node*;
        using reference = Node&;

        explicit Iterator(ListNode* node = nullptr) noexcept : At(node) {}
        Node& operator*() const noexcept { return *static_cast<Node*>(At); }
        Node* operator->() const noexcept { return static_cast<Node*>(At); }
        Iterator& operator++() noexcept {
            At = At->Links.Successor;
            return *this;
        }
        Iterator operator++(int) noexcept {
            Iterator old = *this;
            ++*this;
            return old;
        }
        bool operator==(const Iterator&) const noexcept = default;

    private:
        ListNode* At;
    };

    // A range-for over a list leaves the cursor alone and takes no lock: for loops on the list's
    // own thread that leave the list as it is.
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(Core.Begin()); }
    [[nodiscard]] Iterator end() const noexcept { return Iterator(); }

    [[nodiscard]] Node* Current() const { return static_cast<Node*>(Core.Current()); }

    GenericListCore Core; // used by the routines below

private:
    static void DestroyNode(ListNode* node) noexcept { NodeDeleter<Node>()(static_cast<Node*>(node)); }
};

// --- Making and dropping ---

// An empty list, null without a memory pool. SAK_MemoryCleanup empties lists that still live.
template <class Node>
[[nodiscard]] std::unique_ptr<GenericList<Node>> SAK_CreateGenericList() {
    return SAK_MemoryReady() ? std::make_unique<GenericList<Node>>() : nullptr;
}

// A fresh record in pool memory, its fields as declared or zero; null when the pool gives none.
template <class Node>
[[nodiscard]] NodePointer<Node> SAK_CreateGenericListNode(std::string_view name = {}) {
    void* memory = SAK_AllocVecPooled(sizeof(Node));
    if (!memory) {
        return nullptr;
    }
    NodePointer<Node> node(std::construct_at(static_cast<Node*>(memory)));
    node->NodeName = name;
    return node;
}

// Empties the list and drops it; nothing when there is none.
template <class Node>
void SAK_DeleteGenericList(std::unique_ptr<GenericList<Node>>& list) noexcept {
    list.reset();
}

// Ends all records; the list stays, its cursor null.
template <class Node>
void SAK_ClearGenericList(GenericList<Node>& list) {
    list.Core.Clear();
}

// --- Placing ---

// Gives the node to the list and the cursor to the node. Returns the node; null in gives null and
// no change.
template <class Node>
Node* SAK_AddGenericListNode(GenericList<Node>& list, std::type_identity_t<NodePointer<Node>> node,
                             ListPosition position = ListPosition::Tail) {
    if (node) {
        list.Core.Add(node.get(), position);
    }
    return node.release();
}

// Ends the node, or the one at the cursor when node is null. A cursor on it goes to its successor,
// at the end to its predecessor, else to null.
template <class Node>
void SAK_DeleteGenericListNode(GenericList<Node>& list, std::type_identity_t<Node>* node = nullptr) {
    list.Core.Delete(node);
}

// Takes the node out of the list, cursor as for deleting, and gives it to the caller; null when
// node is null or stands in no list.
template <class Node>
[[nodiscard]] NodePointer<Node> SAK_RemoveGenericListNode(GenericList<Node>& list,
                                                          std::type_identity_t<Node>* node) {
    return NodePointer<Node>(list.Core.Unlink(node) ? node : nullptr);
}

// Puts the nodes of the list into the given order, which must name each of them once; false, and no
// change, when it does not. The cursor goes to the last node, as after appending them one by one.
// Linear cost.
template <class Node>
[[nodiscard]] bool SAK_ReorderGenericList(GenericList<Node>& list,
                                          std::span<std::type_identity_t<Node>* const> order) {
    const std::vector<ListNode*> nodes(order.begin(), order.end());
    return list.Core.Relink(nodes);
}

// Exchanges the content, cursor and count of two lists.
template <class Node>
void SAK_SwapGenericLists(GenericList<Node>& a, GenericList<Node>& b) {
    a.Core.Swap(b.Core);
}

// --- Walking: each moves the cursor ---

// First and last node, null (and the cursor unmoved) in an empty list.
template <class Node>
Node* SAK_FirstGenericListNode(GenericList<Node>& list) {
    return static_cast<Node*>(list.Core.First());
}
template <class Node>
Node* SAK_LastGenericListNode(GenericList<Node>& list) {
    return static_cast<Node*>(list.Core.Last());
}

// The node behind the cursor; with a null cursor the first. At the end null, and the cursor stays
// on the last node, so asking again gives null again.
template <class Node>
Node* SAK_NextGenericListNode(GenericList<Node>& list) {
    return static_cast<Node*>(list.Core.Next());
}

// The node before the cursor; with a null cursor the last. At the head null, and the cursor stays.
template <class Node>
Node* SAK_PrevGenericListNode(GenericList<Node>& list) {
    return static_cast<Node*>(list.Core.Prev());
}

// The node at a zero-based position, found by walking from the head; null when the list is shorter.
template <class Node>
Node* SAK_GetGenericListNode(GenericList<Node>& list, std::uint32_t index) {
    return static_cast<Node*>(list.Core.Get(index));
}

// The zero-based position of the node; 0 also when it is not there.
template <class Node>
std::uint32_t SAK_GetGenericNodeOffset(GenericList<Node>& list, const std::type_identity_t<Node>* node) {
    return list.Core.Offset(node);
}

// --- Asking ---

template <class Node>
[[nodiscard]] std::uint32_t SAK_GenericListCount(const GenericList<Node>& list) {
    return list.Core.Count();
}

// The records in their order, without the cursor. For work on all records of a long list: they are found
// sooner than by a walk, and those that are looked at need not wait for one another.
template <class Node>
[[nodiscard]] std::vector<Node*> SAK_GenericListNodes(const GenericList<Node>& list) {
    const std::vector<ListNode*> linked = list.Core.Linked();
    std::vector<Node*> nodes(linked.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i] = static_cast<Node*>(linked[i]);
    }
    return nodes;
}

// --- Finding: walk with First and Next, so the cursor ends on what was found, else on the last
// node ---

template <class Node, class Predicate>
[[nodiscard]] Node* FindNode(GenericList<Node>& list, Predicate&& fits) {
    Node* node = SAK_FirstGenericListNode(list);
    while (node && !fits(*node)) {
        node = SAK_NextGenericListNode(list);
    }
    return node;
}

// For records with a Selected flag.
template <class Node>
[[nodiscard]] Node* FindFirstSelected(GenericList<Node>& list) {
    return FindNode(list, [](const Node& node) { return node.Selected != 0; });
}

// The first node whose text is `text` byte for byte, else the first that differs from it in case
// only, among those that `fits` accepts. Names of two entries may differ in case alone; a find
// never mixes them up.
template <class Node, class Projection, class Predicate>
[[nodiscard]] Node* FindNodeByText(GenericList<Node>& list, Projection textOf, std::string_view text,
                                   Predicate&& fits) {
    Node* folded = nullptr;
    Node* exact = FindNode(list, [&](Node& node) {
        const auto& own = std::invoke(textOf, node);
        if (!(own == text) || !fits(node)) {
            return false;
        }
        folded = folded ? folded : &node;
        return own.SameBytes(text);
    });
    if (!exact && folded) {
        list.Core.MoveTo(folded);
    }
    return exact ? exact : folded;
}
template <class Node, class Projection>
[[nodiscard]] Node* FindNodeByText(GenericList<Node>& list, Projection textOf, std::string_view text) {
    return FindNodeByText(list, textOf, text, [](const Node&) { return true; });
}

} // namespace solvane
