#include "locations/History.h"

#include "content/BuildLists.h"
#include "interface/MenuState.h"
#include "interface/Tell.h"
#include "locations/PlaceRouter.h"
#include "model/Prefs.h"
#include "sak/Messages.h"

#include <algorithm>
#include <utility>

namespace solvane {

namespace {

std::uint32_t Entries() {
    return HistoryList ? SAK_GenericListCount(*HistoryList) : 0;
}

// Makes the entry of that index current; null, and no change, when there is none.
HistoryNode* GoTo(std::uint32_t index) {
    HistoryNode* entry = HistoryList ? SAK_GetGenericListNode(*HistoryList, index) : nullptr;
    if (entry != nullptr) {
        CurrentHistory = entry;
        HistorySelected = static_cast<std::int32_t>(index);
        SetHistoryGadgetsState();
    }
    return entry;
}

// The neighbour of the current entry, which has one there, without counting through the list.
HistoryNode* Step(int by) {
    ListNode* next = by > 0 ? CurrentHistory->Links.Successor : CurrentHistory->Links.Predecessor;
    CurrentHistory = static_cast<HistoryNode*>(next);
    HistorySelected += by;
    SetHistoryGadgetsState();
    return CurrentHistory;
}

NodePointer<HistoryNode> MakeEntry(std::string_view name, std::string_view path, LocationKind location) {
    NodePointer<HistoryNode> entry = SAK_CreateGenericListNode<HistoryNode>();
    if (!entry) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return entry;
    }
    entry->Name = name;
    entry->Path = path;
    entry->Location = location;
    return entry;
}

void PutAtHead(NodePointer<HistoryNode> entry) {
    CurrentHistory = SAK_AddGenericListNode(*HistoryList, std::move(entry), ListPosition::Head);
}

} // namespace

void StartHistory() {
    StartHistory(Prefs.DefaultOpenAtName, Prefs.DefaultOpenAtPath,
                 static_cast<LocationKind>(Prefs.DefaultOpenAt));
}

void StartHistory(std::string_view name, std::string_view path, LocationKind location) {
    if (!HistoryList) {
        return;
    }
    if (NodePointer<HistoryNode> entry = MakeEntry(name, PathInHistory(location, path), location)) {
        PutAtHead(std::move(entry));
        HistorySelected = -1;
        SetHistoryGadgetsState();
    }
}

Text<1024> PathInHistory(LocationKind location, std::string_view path) {
    const std::string_view word = WordOfPlace(location, path);
    return word.empty() ? path : word;
}

void BeforeSwitchHistory() {
    if (CurrentHistory != nullptr && !lblist2.empty()) {
        NoteTopRow();
        CurrentHistory->LBTop = LBTop;
    }
}

void LeaveShownPlace(Arrival arrival) {
    if (arrival == Arrival::New) {
        BeforeSwitchHistory();
        LBTop = 0;
    }
}

void AfterSwitchHistory() {
    if (CurrentHistory != nullptr) {
        LBTop = CurrentHistory->LBTop;
        DoReload = 1;
    }
}

void AddHistoryNode(std::string_view name, std::string_view path, LocationKind location) {
    BeforeSwitchHistory();
    AddShownPlace(name, path, location);
}

void AddShownPlace(std::string_view name, std::string_view path, LocationKind location) {
    if (!HistoryList) {
        return;
    }
    if (CurrentHistory != nullptr && CurrentHistory->Path == path) {
        HistorySelected = std::max(HistorySelected, 0);
        return;
    }
    NodePointer<HistoryNode> entry = MakeEntry(name, path, location);
    if (!entry) {
        return;
    }
    for (; HistorySelected > 0; --HistorySelected) {
        SAK_DeleteGenericListNode(*HistoryList, SAK_FirstGenericListNode(*HistoryList));
    }
    HistorySelected = 0;
    PutAtHead(std::move(entry));
    SetHistoryGadgetsState();
}

HistoryNode* HistoryBack() {
    BeforeSwitchHistory();
    return CanGoBack() ? Step(1) : CurrentHistory;
}

HistoryNode* HistoryForward() {
    BeforeSwitchHistory();
    return CanGoForward() ? Step(-1) : CurrentHistory;
}

HistoryNode* HistoryFirst() {
    BeforeSwitchHistory();
    return Entries() > 0 ? GoTo(Entries() - 1) : nullptr;
}

HistoryNode* HistoryLast() {
    BeforeSwitchHistory();
    return GoTo(0);
}

HistoryNode* ChooseHistory(std::size_t index) {
    if (index >= Entries() || static_cast<std::int64_t>(index) == HistorySelected) {
        return nullptr;
    }
    BeforeSwitchHistory();
    return GoTo(static_cast<std::uint32_t>(index));
}

void ReturnInHistory(std::int32_t index) {
    if (const HistoryNode* entry = GoTo(static_cast<std::uint32_t>(std::max(index, 0)))) {
        HistorySelected = index;
        LBTop = entry->LBTop;
    }
}

void SwitchHistory() {
    SetHistoryGadgetsState();
}

void ClearHistory() {
    if (HistoryList) {
        SAK_ClearGenericList(*HistoryList);
    }
    CurrentHistory = nullptr;
    HistorySelected = -1;
}

void DeleteLastHistoryRefreshList() {
    if (Entries() == 0) {
        return;
    }
    SAK_DeleteGenericListNode(*HistoryList, SAK_FirstGenericListNode(*HistoryList));
    CurrentHistory = SAK_FirstGenericListNode(*HistoryList);
    HistorySelected = CurrentHistory != nullptr ? 0 : -1;
    SwitchHistory();
}

} // namespace solvane
