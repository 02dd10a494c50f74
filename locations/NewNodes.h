// Making the records of the lists of places, with the word to the user when there is no memory for one.
// Private to locations/.
#pragma once

#include "sak/GenericLists.h"

#include <memory>

namespace solvane {

// An empty list, whether or not there was one. False without memory.
template <class Node>
[[nodiscard]] bool StartList(std::unique_ptr<GenericList<Node>>& list) {
    if (!list) {
        list = SAK_CreateGenericList<Node>();
    }
    if (list) {
        SAK_ClearGenericList(*list);
    }
    return list != nullptr;
}

// Tells the user that there is no memory for a record.
void TellNoListNode();

// A new record at the end of the list; null after a requester.
template <class Node>
[[nodiscard]] Node* AppendNode(GenericList<Node>& list) {
    Node* node = SAK_AddGenericListNode(list, SAK_CreateGenericListNode<Node>());
    if (node == nullptr) {
        TellNoListNode();
    }
    return node;
}

} // namespace solvane
