#include "automation/RawKey.h"

#include "automation/ContentEvents.h"
#include "automation/Instances.h"
#include "automation/ListKeys.h"
#include "automation/OpenEntries.h"
#include "automation/SelectCommands.h"
#include "automation/TypeAhead.h"
#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "interface/StateTable.h"
#include "interface/Windows.h"
#include "locations/EnterDrawer.h"
#include "locations/LayoutChange.h"
#include "locations/PlaceRouter.h"
#include "locations/ViewChange.h"
#include "locations/VisitHistory.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"

#include <algorithm>
#include <array>

namespace solvane {

namespace {

namespace rawkey = intuition::rawkey;
namespace qualifier = intuition::qualifier;

constexpr std::uint16_t ControlKey = qualifier::Control;
constexpr std::uint16_t AmigaKeys = qualifier::LeftAmiga | qualifier::RightAmiga;
constexpr std::uint16_t AnyQualifier = 0; // the key means the same, or asks for the qualifiers itself

template <auto Deed>
Closing Do() {
    static_cast<void>(Deed());
    return Closing::Tab;
}

// Ends the program, in the background mode too, where closing the window does not.
Closing QuitAll() {
    CloseAllButThisWindow();
    done = 1;
    return Closing::Tab;
}

Closing NewTab() {
    OpenNewTab(0);
    return Closing::Tab;
}

Closing NewWindow() {
    OpenWantedWindow("");
    return Closing::Tab;
}

Closing TurnTab() {
    IsHeld(qualifier::AnyShift) ? PreviousTab() : NextTab();
    return Closing::Tab;
}

Closing EnterPath() {
    if (Objects.Path != nullptr) {
        Objects.Path->Activate();
        Objects.Path->SelectAll();
    }
    return Closing::Tab;
}

Closing EnterSearch() {
    if (Objects.Search != nullptr) {
        Objects.Search->Activate();
        Objects.Search->SelectAll();
    }
    return Closing::Tab;
}

Closing Escape() {
    return Prefs.EscapeToQuit != 0 ? Closing::WithWindow : Closing::Tab;
}

// With Shift or Control the list scrolls; only the bare key travels, and not in the filmstrip.
template <int Direction, auto Travel>
Closing GoSideways() {
    if (IsHeld(qualifier::AnyShift | ControlKey)) {
        ScrollContentSideways(Direction);
    } else if (!IsHeld(qualifier::AnyAlt | AmigaKeys) && ViewStyleInForce() != ViewFilmstrip) {
        Travel();
    }
    return Closing::Tab;
}

// Has the loop run the command of a menu item, where the item could be picked.
template <MenuId Item>
Closing Pick() {
    if (const auto state = PresentState(); MainWindow && state && IsEnabled(Item, *state)) {
        MainWindow->PostMenuPick(Item, Qualifier);
    }
    return Closing::Tab;
}

struct KeyRow {
    std::uint16_t Code;
    std::uint16_t Needs; // one of these qualifiers must be held
    Closing (*Deed)();
};
constexpr std::uint16_t KeyQ = 16, KeyW = 17, KeyT = 20, KeyA = 32, KeyH = 37, KeyL = 40, KeyZ = 49;
constexpr std::uint16_t KeyX = 50, KeyC = 51, KeyV = 52;
constexpr std::uint16_t KeyF2 = 81, KeyF3 = 82, KeyF4 = 83, KeyF5 = 84, KeyF6 = 85, KeyF7 = 86;
constexpr std::array Keys = {
    KeyRow{KeyQ, qualifier::AnyAlt, QuitAll},
    KeyRow{KeyW, ControlKey, CloseTab},
    KeyRow{KeyT, ControlKey, NewTab},
    KeyRow{KeyT, qualifier::AnyAlt, NewWindow},
    KeyRow{KeyA, ControlKey, Do<SelectAll>},
    KeyRow{KeyH, ControlKey, Do<ToggleHiddenEntries>},
    KeyRow{KeyL, ControlKey, EnterPath},
    KeyRow{KeyZ, ControlKey, Do<SelectNone>},
    KeyRow{KeyX, ControlKey, Pick<MenuCut>},
    KeyRow{KeyC, ControlKey, Pick<MenuCopy>},
    KeyRow{KeyV, ControlKey, Pick<MenuPaste>},
    KeyRow{rawkey::Delete, AnyQualifier, Pick<MenuDelete>},
    KeyRow{rawkey::Space, ControlKey, Do<ToggleMarkedRow>},
    KeyRow{rawkey::Backspace, AnyQualifier, Do<GoToParent>},
    KeyRow{rawkey::Tab, ControlKey, TurnTab},
    KeyRow{rawkey::Enter, AnyQualifier, Do<OpenSelectedRows>},
    KeyRow{rawkey::Return, AnyQualifier, Do<OpenSelectedRows>},
    KeyRow{rawkey::Escape, AnyQualifier, Escape},
    KeyRow{rawkey::PageUp, AnyQualifier, Do<MovePageUp>},
    KeyRow{rawkey::PageDown, AnyQualifier, Do<MovePageDown>},
    KeyRow{rawkey::Up, AnyQualifier, Do<MoveUp>},
    KeyRow{rawkey::Down, AnyQualifier, Do<MoveDown>},
    KeyRow{rawkey::Right, AnyQualifier, GoSideways<1, GoForwardInHistory>},
    KeyRow{rawkey::Left, AnyQualifier, GoSideways<-1, GoBackInHistory>},
    KeyRow{rawkey::F1, AnyQualifier, Do<ShowGuide>},
    KeyRow{rawkey::Help, AnyQualifier, Do<ShowGuide>},
    KeyRow{KeyF2, AnyQualifier, Do<StartInlineRename>},
    KeyRow{KeyF3, AnyQualifier, EnterSearch},
    KeyRow{KeyF4, AnyQualifier, EnterPath},
    KeyRow{KeyF5, AnyQualifier, Do<ReloadLocation>},
    KeyRow{KeyF6, AnyQualifier, Do<TurnPreviewPane>},
    KeyRow{KeyF7, AnyQualifier, Pick<MenuToggleMetadata>},
    KeyRow{rawkey::F11, AnyQualifier, Do<FullScreen>},
    KeyRow{rawkey::Home, AnyQualifier, Do<MoveToFirst>},
    KeyRow{rawkey::End, AnyQualifier, Do<MoveToLast>},
};

// The tab that a digit key stands for, 0 for other keys; the key 0 stands for the tenth.
std::uint32_t TabOfDigit(std::uint16_t code) {
    constexpr std::array<std::uint16_t, 10> Numeric = {29, 30, 31, 45, 46, 47, 61, 62, 63, 15};
    if (code >= 1 && code <= Numeric.size()) {
        return code;
    }
    const auto* found = std::ranges::find(Numeric, code);
    return found != Numeric.end() ? static_cast<std::uint32_t>(found - Numeric.begin()) + 1 : 0;
}

enum ButtonAction : std::int32_t { Open = 1, Parent = 2, Back = 3, Forward = 4, OpenInTab = 5 };

// Keys held beside the button are not meant.
void OpenSelectionWith(std::uint16_t keys) {
    Qualifier = keys;
    OpenSelectedRows();
}

void RunButtonAction(std::int32_t action) {
    switch (action) {
    case Open:
        OpenSelectionWith(0);
        break;
    case Parent:
        GoToParent();
        break;
    case Back:
        GoBackInHistory();
        break;
    case Forward:
        GoForwardInHistory();
        break;
    case OpenInTab:
        OpenSelectionWith(ControlKey);
        break;
    default:
        break;
    }
}

} // namespace

Closing HandleRawKeys() {
    const std::uint32_t tab = IsHeld(ControlKey) ? TabOfDigit(Code) : 0;
    if (tab != 0) {
        SwitchToTabNumber(tab);
        return Closing::Tab;
    }
    const auto* row = std::ranges::find_if(Keys, [](const KeyRow& key) {
        return key.Code == Code && (key.Needs == AnyQualifier || IsHeld(key.Needs));
    });
    if (row != Keys.end()) {
        return row->Deed();
    }
    FindFirstNodeByLetter(KeyText.View()); // empty for keys that type nothing
    return Closing::Tab;
}

void HandleMouseButton() {
    switch (Code) {
    case intuition::mousebutton::FifthUp:
        RunButtonAction(Prefs.FifthButtonAction);
        break;
    case intuition::mousebutton::FourthUp:
        RunButtonAction(Prefs.FourthButtonAction);
        break;
    case intuition::mousebutton::MiddleUp:
        RunButtonAction(Prefs.MiddleButtonAction);
        break;
    case intuition::mousebutton::WheelUp:
        PreviousTab();
        break;
    case intuition::mousebutton::WheelDown:
        NextTab();
        break;
    default:
        break;
    }
}

} // namespace solvane
