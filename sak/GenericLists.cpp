#include "sak/GenericLists.h"

#include <algorithm>

namespace solvane {

GenericListCore::GenericListCore(Destroyer destroy) : Destroy(destroy) {}

// Null for before or after stands for the end of the list on that side.
void GenericListCore::LinkBetween(ListNode* before, ListNode* node, ListNode* after) noexcept {
    node->Links.Predecessor = before;
    node->Links.Successor = after;
    (before ? before->Links.Successor : Head) = node;
    (after ? after->Links.Predecessor : Tail) = node;
}

void GenericListCore::Add(ListNode* node, ListPosition position) {
    const std::lock_guard guard(Semaphore);
    switch (position) {
    case ListPosition::BeforeCurrent:
        if (Cursor && Cursor->Links.Predecessor) {
            LinkBetween(Cursor->Links.Predecessor, node, Cursor);
            break;
        }
        [[fallthrough]];
    case ListPosition::Head:
        LinkBetween(nullptr, node, Head);
        break;
    case ListPosition::AfterCurrent:
        if (Cursor && Cursor->Links.Successor) {
            LinkBetween(Cursor, node, Cursor->Links.Successor);
            break;
        }
        [[fallthrough]];
    case ListPosition::Tail:
        LinkBetween(Tail, node, nullptr);
        break;
    default:
        Strays.push_back(node);
        break;
    }
    Cursor = node;
    ++Nodes;
}

ListNode* GenericListCore::First() {
    const std::lock_guard guard(Semaphore);
    Cursor = Head ? Head : Cursor;
    return Head;
}

ListNode* GenericListCore::Last() {
    const std::lock_guard guard(Semaphore);
    Cursor = Tail ? Tail : Cursor;
    return Tail;
}

ListNode* GenericListCore::Next() {
    const std::lock_guard guard(Semaphore);
    ListNode* node = Cursor ? Cursor->Links.Successor : Head;
    Cursor = node ? node : Cursor;
    return node;
}

ListNode* GenericListCore::Prev() {
    const std::lock_guard guard(Semaphore);
    ListNode* node = Cursor ? Cursor->Links.Predecessor : Tail;
    Cursor = node ? node : Cursor;
    return node;
}

ListNode* GenericListCore::Get(std::uint32_t index) {
    const std::lock_guard guard(Semaphore);
    ListNode* node = Head;
    for (; node && index > 0; --index) {
        node = node->Links.Successor;
    }
    if (Head) {
        Cursor = node ? node : Tail;
    }
    return node;
}

std::uint32_t GenericListCore::Offset(const ListNode* wanted) {
    const std::lock_guard guard(Semaphore);
    std::uint32_t offset = 0;
    for (ListNode* node = Head; node; node = node->Links.Successor, ++offset) {
        Cursor = node;
        if (node == wanted) {
            return offset;
        }
    }
    return 0;
}

void GenericListCore::MoveTo(ListNode* node) {
    const std::lock_guard guard(Semaphore);
    Cursor = node;
}

// Unlinks the node and moves a cursor on it. False, and no change, when it stands in no list.
bool GenericListCore::TakeOut(ListNode* node) {
    ListNode* before = node->Links.Predecessor;
    ListNode* after = node->Links.Successor;
    if (before || after || Head == node) {
        (before ? before->Links.Successor : Head) = after;
        (after ? after->Links.Predecessor : Tail) = before;
    } else if (std::erase(Strays, node) == 0) {
        return false;
    }
    if (Cursor == node) {
        Cursor = after ? after : before;
    }
    node->Links.Predecessor = node->Links.Successor = nullptr;
    --Nodes;
    return true;
}

void GenericListCore::Delete(ListNode* node) {
    std::unique_lock guard(Semaphore);
    node = node ? node : Cursor;
    const bool taken = node && TakeOut(node);
    guard.unlock();
    if (taken) {
        Destroy(node);
    }
}

bool GenericListCore::Unlink(ListNode* node) {
    const std::lock_guard guard(Semaphore);
    return node && TakeOut(node);
}

// The nodes end outside the lock, since what they own may look at this list again.
void GenericListCore::Clear() noexcept {
    std::unique_lock guard(Semaphore);
    ListNode* node = std::exchange(Tail, nullptr);
    const std::vector<ListNode*> strays = std::exchange(Strays, {});
    Head = Cursor = nullptr;
    Nodes = 0;
    guard.unlock();
    while (node) {
        Destroy(std::exchange(node, node->Links.Predecessor));
    }
    std::for_each(strays.begin(), strays.end(), Destroy);
}

// While the order is checked, a node whose turn has not come is its own predecessor.
bool GenericListCore::Relink(std::span<ListNode* const> order) {
    const std::lock_guard guard(Semaphore);
    for (ListNode* node = Head; node; node = node->Links.Successor) {
        node->Links.Predecessor = node;
    }
    bool fits = order.size() == Nodes - Strays.size();
    for (std::size_t i = 0; fits && i < order.size(); ++i) {
        ListNode* node = order[i];
        fits = node && node->Links.Predecessor == node; // a node of another list is left alone
        if (fits) {
            node->Links.Predecessor = nullptr;
        }
    }
    if (!fits) {
        ListNode* before = nullptr;
        for (ListNode* node = Head; node; node = node->Links.Successor) {
            node->Links.Predecessor = std::exchange(before, node);
        }
        return false;
    }
    LinkAll(order);
    return true;
}

// Each node is written once and none is read, so that the processor need not wait for one before the next.
void GenericListCore::LinkAll(std::span<ListNode* const> order) noexcept {
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i]->Links.Predecessor = i > 0 ? order[i - 1] : nullptr;
        order[i]->Links.Successor = i + 1 < order.size() ? order[i + 1] : nullptr;
    }
    Head = order.empty() ? nullptr : order.front();
    Tail = order.empty() ? nullptr : order.back();
    Cursor = Tail ? Tail : Cursor;
}

// Walks from both ends at once: the time goes into waiting for the next node, and so two waits become one.
std::vector<ListNode*> GenericListCore::Linked() const {
    const std::lock_guard guard(Semaphore);
    std::vector<ListNode*> nodes(Nodes - Strays.size());
    ListNode* first = Head;
    ListNode* last = Tail;
    for (std::size_t low = 0, high = nodes.size(); low < high; ++low) {
        nodes[low] = first;
        first = first->Links.Successor;
        if (--high > low) {
            nodes[high] = last;
            last = last->Links.Predecessor;
        }
    }
    return nodes;
}

void GenericListCore::LinkInOrder(std::span<ListNode* const> order) {
    const std::lock_guard guard(Semaphore);
    if (order.size() == Nodes - Strays.size()) {
        LinkAll(order);
    }
}

void GenericListCore::Swap(GenericListCore& other) {
    if (this == &other) {
        return;
    }
    const std::scoped_lock guard(Semaphore, other.Semaphore);
    std::swap(Head, other.Head);
    std::swap(Tail, other.Tail);
    std::swap(Cursor, other.Cursor);
    std::swap(Nodes, other.Nodes);
    std::swap(Strays, other.Strays);
}

ListNode* GenericListCore::Current() const {
    const std::lock_guard guard(Semaphore);
    return Cursor;
}

std::uint32_t GenericListCore::Count() const {
    const std::lock_guard guard(Semaphore);
    return Nodes;
}

// Links agree in both directions, the count is right, and the cursor stands on a node of the list.
bool GenericListCore::IsConsistent() const {
    const std::lock_guard guard(Semaphore);
    const ListNode* before = nullptr;
    std::size_t found = Strays.size();
    bool cursorFound = !Cursor || std::find(Strays.begin(), Strays.end(), Cursor) != Strays.end();
    for (const ListNode* node = Head; node; node = node->Links.Successor) {
        if (node->Links.Predecessor != before || ++found > Nodes) {
            return false;
        }
        cursorFound = cursorFound || node == Cursor;
        before = node;
    }
    return before == Tail && found == Nodes && cursorFound;
}

} // namespace solvane
