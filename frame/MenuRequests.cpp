#include "frame/MenuRequests.h"

#include "content/ColumnInfo.h"
#include "content/ColumnSets.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/ViewStyles.h"
#include "interface/ContextMenus.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

namespace solvane {

namespace {

// The columns that are on show; a style without columns of its own sorts by name.
SortChoices PresentChoices() {
    const auto sort = SortOnShow();
    if (!sort) {
        return {};
    }
    SortChoices choices;
    choices.Column = static_cast<std::size_t>(sort->Column);
    choices.Columns.resize(2);
    choices.Columns[1] = SAK_LocaleString(MSG_NAME);
    const std::int32_t style = ViewStyleInForce();
    if (!IsDetailsStyle(style) || LBLocation == LocationKind::Assigns) {
        return choices;
    }
    const ColumnSet set = ColumnSetOf(LBLocation, style);
    const auto& columns = InfoOf(set).Columns;
    choices.Columns.assign(columns.size(), {});
    for (const DetailsColumn shown : ShownColumns(set)) {
        const auto number = static_cast<std::size_t>(shown);
        if (number < columns.size() && columns[number].Title != 0) {
            choices.Columns[number] = SAK_LocaleString(static_cast<MessageNumber>(columns[number].Title));
        }
    }
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
