#include "interface/Choosers.h"

#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "interface/StateTable.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

using intuition::ChoiceMark;
using intuition::PopUpChoice;
using Choices = std::vector<PopUpChoice>;

// By value of the style; the icon view has no name of its own.
constexpr std::array StyleNames = {MSG_STYLE_LIST,     MSG_STYLE_DETAILS,   MSG_STYLE_TILES,
                                   MSG_STYLE_CONTENT,  MSG_STYLE_THUMBNAIL, MSG_STYLE_THUMBNAIL_DETAILS,
                                   MSG_STYLE_FILMSTRIP};

// By value of the kind of file.
constexpr std::array TypeNames = {MSG_GROUP_SYSTEM,  MSG_GROUP_TEXT,       MSG_GROUP_DOCUMENT,
                                  MSG_GROUP_SOUND,   MSG_GROUP_INSTRUMENT, MSG_GROUP_MUSIC,
                                  MSG_GROUP_PICTURE, MSG_GROUP_ANIMATION,  MSG_GROUP_MOVIE};

// By position in their chooser; those without an item are lines.
struct ArchiveEntry {
    MenuId Item = MenuNone;
    MessageNumber Label = {};
};
constexpr std::array ArchiveEntries = {ArchiveEntry{MenuOpenArchive, MSG_MENU_OPEN_ARCHIVE},
                                       ArchiveEntry{},
                                       ArchiveEntry{MenuExtractToDefault, MSG_MENU_EXTRACT_DEFAULT},
                                       ArchiveEntry{MenuExtractHere, MSG_MENU_EXTRACT_HERE},
                                       ArchiveEntry{MenuExtractArchive, MSG_MENU_EXTRACT_ARCHIVE},
                                       ArchiveEntry{},
                                       ArchiveEntry{MenuAddToArchive, MSG_MENU_ADD_TO_ARCHIVE},
                                       ArchiveEntry{MenuArchiveItem, MSG_MENU_ARCHIVE_ITEM},
                                       ArchiveEntry{MenuArchiveSeparately, MSG_MENU_ARCHIVE_SEPARATELY},
                                       ArchiveEntry{},
                                       ArchiveEntry{MenuConvertArchive, MSG_MENU_CONVERT_ARCHIVE},
                                       ArchiveEntry{MenuTestArchive, MSG_MENU_TEST_ARCHIVE}};

PopUpChoice Entry(MessageNumber label) {
    return {.Label = std::string(SAK_LocaleString(label))};
}

PopUpChoice Line() {
    return {.Separator = true};
}

PopUpChoice Switch(MessageNumber label, bool on) {
    return {.Label = std::string(SAK_LocaleString(label)), .Mark = on ? ChoiceMark::Check : ChoiceMark::None};
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

PopUpChoice Command(MessageNumber label, MenuId item) {
    const auto state = PresentState();
    return {.Label = std::string(SAK_LocaleString(label)), .Disabled = state && !IsEnabled(item, *state)};
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
    for (std::size_t at = 0; at < std::min(offered, StyleNames.size()); ++at) {
        choices.push_back(Entry(StyleNames[at]));
        choices.back().Mark = std::cmp_equal(at, style) ? ChoiceMark::Dot : ChoiceMark::None;
    }
    Objects.ViewStyleChooser->PopUp(*Objects.ViewStyle, std::move(choices));
}

void PopUpLayout() {
    if (Objects.LayoutChooser == nullptr) {
        return;
    }
    const bool preview = Prefs.PreviewPane != 0;
    Objects.LayoutChooser->PopUp(*Objects.Layout,
                                 {Switch(MSG_BOOKMARKS, Prefs.BookmarksBar != 0),
                                  Switch(MSG_MENU_TOOLBAR, Prefs.Toolbar != 0),
                                  Switch(MSG_MENU_USER_BUTTONS, Prefs.UserButtonsBar != 0),
                                  Switch(MSG_MENU_NAVIGATION, Prefs.NavigationPane != 0),
                                  Switch(MSG_MENU_PREVIEW_HORIZONTAL, preview && Prefs.PreviewStyle == 0),
                                  Switch(MSG_MENU_PREVIEW_VERTICAL, preview && Prefs.PreviewStyle != 0),
                                  Switch(MSG_MENU_DETAILS, Prefs.DetailsPane != 0),
                                  Switch(MSG_MENU_THUMBNAIL, Prefs.ThumbnailPane != 0),
                                  Switch(MSG_MENU_STATUS_BAR, Prefs.StatusBar != 0)});
}

void PopUpTypes() {
    Choices choices;
    std::ranges::transform(TypeNames, std::back_inserter(choices), Entry);
    PopUpUnderButton(Objects.TypeChooser, MenuSelectByType, std::move(choices));
}

void PopUpArchiveCommands() {
    Choices choices;
    for (const ArchiveEntry& entry : ArchiveEntries) {
        choices.push_back(entry.Item == MenuNone ? Line() : Command(entry.Label, entry.Item));
    }
    PopUpUnderButton(Objects.ArchiveChooser, MenuArchive, std::move(choices));
}

MenuId ArchiveItemAt(std::uint32_t position) {
    return position < ArchiveEntries.size() ? ArchiveEntries[position].Item : MenuNone;
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
    if (Objects.ViewStyle != nullptr && style >= 0 && std::cmp_less(style, StyleNames.size())) {
        Objects.ViewStyle->SetHint(FormatText("%s: %s", SAK_LocaleString(MSG_HINT_VIEW_STYLE),
                                              SAK_LocaleString(StyleNames[static_cast<std::size_t>(style)])));
    }
}

} // namespace solvane
