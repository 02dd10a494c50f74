#include "locations/LayoutChange.h"

#include "interface/MainLayout.h"
#include "locations/NavigationList.h"
#include "media/Preview.h"
#include "model/Prefs.h"

namespace solvane {

namespace {

void SwitchNavigationPane() {
    FreeNavigationList();
    Prefs.NavigationPane = Prefs.NavigationPane == 0 ? 1 : 0;
    ShowNavigationPane();
    BuildNavigationList();
}

} // namespace

void ChangeLayout() {
    Prefs.NavigationWidth = GetNavigationWidth();
    Prefs.DetailsHeight = GetDetailsHeight();
    if (ChooserSelected == NoLayoutChange) {
        return;
    }
    SetPreviewPaneNone();
    BlockMainWindow(1);
    if (ChooserSelected == LayoutNavigation) {
        SwitchNavigationPane();
    }
    BlockMainWindow(0);
}

} // namespace solvane
