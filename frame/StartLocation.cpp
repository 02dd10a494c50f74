#include "frame/StartLocation.h"

#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "locations/Navigation.h"
#include "locations/Tabs.h"
#include "media/Preview.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/utility/Text.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <cstdint>
#include <string_view>

namespace solvane {

namespace {

struct StartPlace {
    LocationKind Location;
    Text<128> Name;
    Text<1024> Path;
};

StartPlace ChosenStart() {
    if (const TabsNode* tab = SAK_FirstGenericListNode(*StartupTabsList)) {
        return {tab->Location, NameOfPath(tab->Path), tab->Path};
    }
    return {static_cast<LocationKind>(Prefs.DefaultOpenAt), Prefs.DefaultOpenAtName, Prefs.DefaultOpenAtPath};
}

bool RouteStartPath(const TabsNode& tab) {
    const std::string_view path = tab.Path.Empty() ? "Computer" : tab.Path.View();
    const std::string_view word = NavigationWordOf(path);
    return word.empty() ? PopulateContent2(NameOfPath(path).View(), path) : GoToPlace(word);
}

// False when it is gone.
bool ShowStartPlace() {
    const StartPlace start = ChosenStart();
    const std::string_view word = WordOfPlace(start.Location, start.Path);
    if (!word.empty()) {
        return GoToPlace(word);
    }
    SetPreviewPaneNone();
    const bool isShown = PopulateContent2(start.Name, start.Path);
    SetMenuState();
    SetToolbarState();
    return isShown;
}

} // namespace

void GoToStartLocation() {
    if (!ShowStartPlace()) {
        GoToPlace("Computer");
    }
}

void ShowCommandLineTabs() {
    std::uint32_t pf = 0;
    for (const TabsNode& tab : *CommandLineTabsList) {
        const auto route = [&tab] { return RouteStartPath(tab); };
        if (++pf > 1) {
            OpenNewTabFor(route);
            TabClosed = 0;
        } else if (!route() && lblist2.empty()) {
            GoToStartLocation(); // the given place is gone
        }
    }
    SAK_ClearGenericList(*CommandLineTabsList);
    SetMenuState();
    SetToolbarState();
}

} // namespace solvane
