#include "locations/LayoutChange.h"

#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Menus.h"
#include "interface/Panes.h"
#include "interface/SpeedBars.h"
#include "locations/NavigationList.h"
#include "media/Preview.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"

namespace solvane {

namespace {

void Flip(std::int16_t& setting) {
    setting = setting == 0 ? 1 : 0;
}

void SwitchNavigationPane() {
    FreeNavigationList();
    Flip(Prefs.NavigationPane);
    ArrangePanes();
    BuildNavigationList();
}

void SwitchPreviewPane(std::int32_t style) {
    if (Prefs.PreviewPane != 0 && Prefs.PreviewStyle == style) {
        Prefs.PreviewPane = 0;
    } else {
        Prefs.PreviewStyle = style;
        Prefs.PreviewPane = 1;
    }
    ArrangePanes();
}

void SwitchDetails(std::int16_t& setting) {
    Flip(setting);
    ArrangePanes();
}

void SwitchStatusBar() {
    Flip(Prefs.StatusBar);
    ShowStatusBar();
}

void SwitchPane(std::int32_t layout) {
    switch (layout) {
    case LayoutNavigation:
        SwitchNavigationPane();
        break;
    case LayoutPreviewHorizontal:
        SwitchPreviewPane(0);
        break;
    case LayoutPreviewVertical:
        SwitchPreviewPane(1);
        break;
    case LayoutDetails:
        SwitchDetails(Prefs.DetailsPane);
        break;
    case LayoutThumbnail:
        SwitchDetails(Prefs.ThumbnailPane);
        break;
    case LayoutStatusBar:
        SwitchStatusBar();
        break;
    default:
        break;
    }
}

void SwitchBar(std::int32_t layout) {
    switch (layout) {
    case LayoutBookmarks:
        Flip(Prefs.BookmarksBar);
        break;
    case LayoutToolbar:
        Flip(Prefs.Toolbar);
        break;
    case LayoutUserButtons:
        Flip(Prefs.UserButtonsBar);
        break;
    default:
        break;
    }
    ShowSpeedBars();
    SetToolbarState();
}

void ArrangeTabOrder() {
    if (MainWindow) {
        MainWindow->ArrangeTabOrder();
    }
}

void SwitchLayout(std::int32_t layout) {
    SetPreviewPaneNone();
    BlockMainWindow(1);
    SwitchPane(layout);
    ArrangeTabOrder();
    UpdateMenus_Layout();
    BlockMainWindow(0);
}

} // namespace

void ChangeLayout(std::int32_t layout) {
    CollectPaneWeights();
    SwitchLayout(layout);
}

void ChangePreviewFromHorizontal(std::int32_t layout) {
    CollectPaneWeights(); // once: while the panes still lie as before they would count for the other style
    Prefs.PreviewStyle = 0;
    SwitchLayout(layout);
}

void ChangeToolbars(std::int32_t layout) {
    CollectPaneWeights();
    SwitchBar(layout);
    SavePrefs(0);
    UpdateMenus_Layout();
    ArrangeTabOrder();
}

void ChangeLayoutOrToolbars(std::int32_t layout) {
    if (layout <= LayoutUserButtons) {
        ChangeToolbars(layout);
    } else {
        ChangeLayout(layout);
    }
}

void TurnPreviewPane() {
    ChangeLayout(Prefs.PreviewStyle == 0 ? LayoutPreviewHorizontal : LayoutPreviewVertical);
}

} // namespace solvane
