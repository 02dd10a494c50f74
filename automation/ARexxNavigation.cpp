// Commands that go to places, open and close tabs, and choose how a place is shown.
#include "automation/ARexxHandlers.h"
#include "content/BuildLists.h"
#include "content/SortLists.h"
#include "interface/MainLayout.h"
#include "locations/EnterDrawer.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/PlaceRouter.h"
#include "locations/Tabs.h"
#include "locations/ViewChange.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/dos/HostPaths.h"
#include "sak/Version.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace solvane {

namespace {

constexpr std::uint32_t ViewStyles = 5;    // that a script may choose from
constexpr std::uint32_t DrawersOrders = 3; // first, mixed, last

// Places that a script opens by their word; all others are paths, that of the sites too.
constexpr std::array<std::string_view, 4> WordsOfPlaces = {"Favorites", "Workbench", "Computer", "Assigns"};

// The path that a script gives: of the host or of a volume; nothing where it does not fit.
std::optional<std::string> PathOf(const rexx::CommandCall& call) {
    const auto given = call.Arguments.Text("PATH");
    std::string path = given ? dos::FromHostPath(*given) : std::string();
    return given && path.size() <= Text<1024>::Limit ? std::optional(std::move(path)) : std::nullopt;
}

bool HasViewStyles(LocationKind location) {
    return location != LocationKind::SearchResults && location != LocationKind::DuplicateFiles &&
           location != LocationKind::Archive;
}

} // namespace

void rexx_Parent(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        JumpToARexxCmd = JumpParent;
    }
}

void rexx_ChangePath(rexx::CommandCall& call) {
    const auto path = PathOf(call);
    if (IsWindowOpen() && path) {
        JumpPath = *path;
        JumpToARexxCmd = JumpChangePath;
    }
}

void rexx_SwitchTab(rexx::CommandCall& call) {
    const auto number = CountOf(call, "NUM");
    if (IsWindowOpen() && number) {
        SwitchToTabNumber(*number);
    }
}

void rexx_OpenNewTab(rexx::CommandCall& call) {
    if (!IsWindowOpen()) {
        return;
    }
    if (!call.Arguments.Flag("PATH")) {
        OpenNewTab(0);
        return;
    }
    const auto path = PathOf(call);
    if (!path) {
        return;
    }
    const bool isWord = std::find(WordsOfPlaces.begin(), WordsOfPlaces.end(), *path) != WordsOfPlaces.end();
    OpenNewTabFor(
        [&path, isWord] { return isWord ? GoToPlace(*path) : PopulateContent2(NameOfPath(*path), *path); });
}

void rexx_CloseTab(rexx::CommandCall&) {
    if (IsWindowOpen() && CloseTab() == Closing::WithWindow) {
        JumpToARexxCmd = JumpCloseTab;
    }
}

void rexx_ViewStyle(rexx::CommandCall& call) {
    const auto style = CountOf(call, "STYLE");
    if (IsWindowOpen() && style && *style < ViewStyles && HasViewStyles(LBLocation)) {
        ChangeViewStyleOfTabs(static_cast<std::int32_t>(*style));
    }
}

void rexx_Layout(rexx::CommandCall& call) {
    const auto number = CountOf(call, "LAYOUT");
    if (!IsWindowOpen() || !number || *number > LayoutStatusBar || *number == LayoutUserButtons) {
        return;
    }
    const auto layout = static_cast<std::int32_t>(*number);
    if (layout == LayoutPreviewHorizontal || layout == LayoutPreviewVertical) {
        ChangePreviewFromHorizontal(layout);
    } else {
        ChangeLayoutOrToolbars(layout);
    }
}

void rexx_DrawersOrder(rexx::CommandCall& call) {
    const auto order = CountOf(call, "ORDER");
    if (IsWindowOpen() && order && *order < DrawersOrders) {
        Prefs.DrawersOrder = static_cast<std::int32_t>(*order);
        DrawersOrder();
    }
}

void rexx_AddBookmark(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        AddCurrentLocationToBookmarks(AskFirst::No);
    }
}

void rexx_AddFavorite(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        AddCurrentLocationToFavorites(AskFirst::No);
    }
}

void rexx_SelectBookmark(rexx::CommandCall& call) {
    const auto number = CountOf(call, "NUM");
    if (IsWindowOpen() && number && *number < SAK_GenericListCount(*MasterBookmarksList)) {
        Qualifier = 0; // keys held at the last event are not meant
        HandleBookmarks(*number);
    }
}

void rexx_SelectFavorite(rexx::CommandCall& call) {
    const auto number = CountOf(call, "NUM");
    if (IsWindowOpen() && number && *number < SAK_GenericListCount(*MasterFavoritesList)) {
        Qualifier = 0;
        HandleFavorites(*number);
    }
}

void rexx_SelectFTPSite(rexx::CommandCall& call) {
    if (const auto number = CountOf(call, "NUM"); IsWindowOpen() && number) {
        Qualifier = 0;
        HandleFTPSites(*number);
    }
}

void rexx_GetVersion(rexx::CommandCall& call) {
    const auto path = PathOf(call);
    if (IsWindowOpen() && path && SAK_GetVersion(*path)) {
        call.Result = SAK_GetVersionFull.View();
    }
}

} // namespace solvane
