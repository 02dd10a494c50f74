#include "frame/MenuRequests.h"

#include "content/Selection.h"
#include "content/SortLists.h"
#include "interface/ContextMenus.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>

namespace solvane {

namespace {

SortChoices PresentChoices() {
    SortChoices choices;
    for (const SortColumn& column : SortColumnsOnShow()) {
        const auto number = static_cast<std::size_t>(column.Number);
        choices.Columns.resize(std::max(choices.Columns.size(), number + 1));
        choices.Columns[number] = SAK_LocaleString(static_cast<MessageNumber>(column.Title));
    }
    const auto sort = SortOnShow();
    choices.Column = sort ? static_cast<std::size_t>(sort->Column) : 0;
    choices.IsDescending = sort && sort->Direction != 0;
    return choices;
}

// What was under the pointer then; by key from another gadget, what is selected counts.
bool IsOnRow(std::uint16_t gadget) {
    if (gadget == GadgetNavigationList) {
        return Objects.Navigation != nullptr && Objects.Navigation->MenuRow() != intuition::NoRow;
    }
    if (gadget == GadgetContentList) {
        return Objects.ContentList != nullptr && Objects.ContentList->MenuRow() != intuition::NoRow;
    }
    return NumSelected > 0;
}

} // namespace

void ServeMenuVerify(const intuition::WindowEvent& event) {
    MenuRequest request{.Gadget = event.Id, .Left = event.Left, .Top = event.Top};
    if (event.Id == 0 && Objects.ContentList != nullptr) { // by key, from a gadget without a menu of its own
        const intuition::Box list = Objects.ContentList->Geometry();
        request = {.Gadget = GadgetContentList, .Left = list.Left, .Top = list.Top};
    }
    SelectContentListItems();
    request.OnRow = IsOnRow(event.Id);
    ContextMenuHandlerFunc(request, PresentChoices());
}

} // namespace solvane
