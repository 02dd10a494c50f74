// Making the records of the lists of places, with the word to the user when there is no memory for one.
// Private to locations/.
#pragma once

#include "interface/MainLayout.h"
#include "sak/GenericLists.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

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

// A new record at the end of the list; null after a requester.
template <class Node>
[[nodiscard]] Node* AppendNode(GenericList<Node>& list) {
    Node* node = SAK_AddGenericListNode(list, SAK_CreateGenericListNode<Node>());
    if (node == nullptr) {
        SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Error,
                        SAK_LocaleString(MSG_NO_LIST_NODE), SAK_LocaleString(MSG_CONTINUE_GAD));
    }
    return node;
}

} // namespace solvane
