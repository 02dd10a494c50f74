#include "interface/Choosers.h"

#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "interface/MenuState.h"
#include "interface/MenuTable.h"
#include "interface/StateTable.h"
#include "model/Program.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

using intuition::ChoiceMark;
using intuition::PopUpChoice;
using Choices = std::vector<PopUpChoice>;

using Items = std::vector<intuition::MenuItem>;

// The items of a head of the menu strip, whose texts and order a chooser shares.
Items ItemsUnder(MenuId head) {
    return std::move(ItemsOfStrip({head}).front().Items);
}

PopUpChoice Entry(MessageNumber label) {
    return {.Label = std::string(SAK_LocaleString(label))};
}

PopUpChoice Line() {
    return {.Separator = true};
}

intuition::PopUpList* AddChooser(intuition::Layout& layout, GadgetId id, MessageNumber name) {
    auto made = std::make_unique<intuition::PopUpList>(id, SAK_LocaleString(name));
    intuition::PopUpList* chooser = made.get();
    layout.Add(std::move(made));
    return chooser;
}

// The button that stands for the item.
void PopUpUnderButton(intuition::PopUpList* chooser, MenuId item, Choices choices) {
    if (chooser != nullptr && Objects.Toolbar != nullptr) {
        const auto number = std::ranges::find(ItemOfButton, item) - ItemOfButton.begin() + 1;
        const int left = Objects.Toolbar->LeftOf(static_cast<std::uint16_t>(number));
        chooser->PopUp(*Objects.Toolbar, std::move(choices), left);
    }
}

PopUpChoice Command(const intuition::MenuItem& item) {
    if (item.Id == MenuNone) {
        return Line();
    }
    const auto state = PresentState();
    return {.Label = item.Label, .Disabled = state && !IsEnabled(static_cast<MenuId>(item.Id), *state)};
}

} // namespace

void CreateHiddenChoosers(intuition::Layout& layout) {
    Objects.HistoryChooser = AddChooser(layout, GadgetHistoryChooser, MSG_HINT_HISTORY);
    Objects.TypeChooser = AddChooser(layout, GadgetTypeChooser, MSG_TB_SELECT_BY_TYPE);
    Objects.ArchiveChooser = AddChooser(layout, GadgetArchiveChooser, MSG_TB_ARCHIVE);
    Objects.ARexxChooser = AddChooser(layout, GadgetARexxChooser, MSG_TB_EXECUTE_AREXX);
    Objects.ViewStyleChooser = AddChooser(layout, GadgetViewStyleChooser, MSG_HINT_VIEW_STYLE);
    Objects.LayoutChooser = AddChooser(layout, GadgetLayoutChooser, MSG_HINT_LAYOUT);
}

void PopUpViewStyles(std::size_t offered, std::int32_t style) {
    if (Objects.ViewStyleChooser == nullptr) {
        return;
    }
    Choices choices;
    for (const intuition::MenuItem& item : ItemsUnder(MenuViewStyle)) { // by value of the style
        if (choices.size() < offered) {
            const bool isInForce = std::cmp_equal(choices.size(), style);
            choices.push_back({.Label = item.Label, .Mark = isInForce ? ChoiceMark::Dot : ChoiceMark::None});
        }
    }
    Objects.ViewStyleChooser->PopUp(*Objects.ViewStyle, std::move(choices));
}

void PopUpLayout() {
    if (Objects.LayoutChooser == nullptr) {
        return;
    }
    Choices choices;
    for (const LayoutSwitch& each : LayoutSwitches()) {
        choices.push_back({.Label = ItemsOfStrip({each.Item}).front().Label,
                           .Mark = each.IsOn ? ChoiceMark::Check : ChoiceMark::None});
    }
    Objects.LayoutChooser->PopUp(*Objects.Layout, std::move(choices));
}

void PopUpTypes() {
    Choices choices;
    for (const intuition::MenuItem& item : TypeItems()) {
        choices.push_back({.Label = item.Label});
    }
    PopUpUnderButton(Objects.TypeChooser, MenuSelectByType, std::move(choices));
}

void PopUpArchiveCommands() {
    Choices choices;
    std::ranges::transform(ItemsUnder(MenuArchive), std::back_inserter(choices), Command);
    PopUpUnderButton(Objects.ArchiveChooser, MenuArchive, std::move(choices));
}

MenuId ArchiveItemAt(std::uint32_t position) {
    const Items items = ItemsUnder(MenuArchive);
    return position < items.size() ? static_cast<MenuId>(items[position].Id) : MenuNone;
}

void PopUpScripts() {
    Choices choices = {Entry(MSG_EXECUTE_SCRIPT)};
    if (ARexxList && SAK_GenericListCount(*ARexxList) > 0) {
        choices.push_back(Line());
        for (const ARexxNode& script : *ARexxList) {
            choices.push_back({.Label = std::string(script.ScriptName.View())});
        }
    }
    PopUpUnderButton(Objects.ARexxChooser, MenuExecuteScript, std::move(choices));
}

void UpdateGadgets_ViewStyle(std::int32_t style) {
    const Items styles = ItemsUnder(MenuViewStyle);
    if (Objects.ViewStyle != nullptr && style >= 0 && std::cmp_less(style, styles.size())) {
        Objects.ViewStyle->SetHint(FormatText("%s: %s", SAK_LocaleString(MSG_HINT_VIEW_STYLE),
                                              styles[static_cast<std::size_t>(style)].Label));
    }
}

} // namespace solvane
