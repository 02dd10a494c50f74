#include "interface/StateTable.h"

#include "interface/MainLayout.h"
#include "interface/Windows.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/Program.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace solvane {

namespace {

using enum LocationKind;

using StateSet = std::uint32_t; // a bit per location, and 12 above it another one for a selection there
constexpr unsigned SelectionOffset = 12;

constexpr StateSet BitOf(LocationKind location) {
    return StateSet{1} << static_cast<unsigned>(location);
}

// With nothing selected at these locations.
template <typename... Locations>
constexpr StateSet Idle(Locations... locations) {
    return (BitOf(locations) | ...);
}

// With a selection at these locations.
template <typename... Locations>
constexpr StateSet Picked(Locations... locations) {
    return Idle(locations...) << SelectionOffset;
}

template <typename... Locations>
constexpr StateSet Either(Locations... locations) {
    return Idle(locations...) | Picked(locations...);
}

constexpr StateSet Anywhere = Either(Bookmarks, Favorites, Workbench, Computer, Assigns, FTPSites, OS4Depot,
                                     Aminet, SearchResults, DuplicateFiles, Archive, Drawer);

// What must hold besides.
constexpr bool WindowState::*Nothing = nullptr;
constexpr bool WindowState::*One = &WindowState::OneSelected;
constexpr bool WindowState::*Entries = &WindowState::HasEntries;
constexpr bool WindowState::*Clip = &WindowState::ClipExists;
constexpr bool WindowState::*LhA = &WindowState::IsLhAArchive;
constexpr bool WindowState::*Allowed = &WindowState::DeviceAllows;
constexpr bool WindowState::*Formats = &WindowState::DeviceFormats;

struct StateRow {
    MenuId Item;
    StateSet States;
    bool WindowState::*Needs = Nothing;
};

constexpr StateSet PickedFiles = Picked(SearchResults, DuplicateFiles, Drawer);
constexpr StateSet PickedItems = PickedFiles | Picked(Workbench);
constexpr StateSet ArchiveStates = PickedItems | Either(Archive);
constexpr StateSet Addable = Either(Workbench, Computer, Assigns, Drawer) | Idle(OS4Depot, Aminet);
constexpr StateSet Openable =
    Picked(Bookmarks, Favorites, Workbench, Computer, Assigns, FTPSites, SearchResults, Drawer);

// An item is on in a state when one of its rows holds.
constexpr StateRow Rows[] = {
    {MenuSelectByType, Either(Workbench, SearchResults, DuplicateFiles, Drawer), Entries},
    {MenuPattern, Either(Workbench, OS4Depot, Aminet, Archive, Drawer), Entries},
    {MenuSelectAll, Anywhere, Entries},
    {MenuSelectAll, Either(Computer, Assigns)},
    {MenuSelectNone, Anywhere, Entries},
    {MenuSelectNone, Either(Computer, Assigns)},
    {MenuToggleSelection, Anywhere, Entries},
    {MenuToggleSelection, Either(Computer, Assigns)},
    {MenuCut, PickedItems},
    {MenuCopy, PickedItems},
    {MenuSmartRename, PickedItems},
    {MenuPaste, Either(Workbench, Drawer), Clip},
    {MenuPasteTo, Anywhere, Clip},
    {MenuDelete, PickedFiles | Picked(Bookmarks, Favorites, FTPSites)},
    {MenuDelete, Picked(Archive), LhA},
    {MenuNewDrawer, Idle(Workbench) | Either(Drawer)},
    {MenuRename, PickedFiles | Picked(Bookmarks, Favorites, FTPSites)},
    {MenuProtect, PickedFiles},
    {MenuFilenote, PickedFiles},
    {MenuEdit, PickedFiles},
    {MenuAddIcon, PickedFiles},
    {MenuRemoveIcon, PickedFiles},
    {MenuGetHash, PickedFiles},
    {MenuSetFileDate, PickedFiles},
    {MenuHexView, PickedFiles},
    {MenuArchive, ArchiveStates},
    {MenuOpenArchive, ArchiveStates},
    {MenuExtractToDefault, ArchiveStates},
    {MenuExtractArchive, ArchiveStates},
    {MenuExtractHere, Either(Archive) | Picked(Drawer)},
    {MenuArchiveItem, Picked(Drawer)},
    {MenuAddToArchive, PickedFiles},
    {MenuConvertArchive, PickedFiles | Idle(Archive)},
    {MenuTestArchive, PickedItems},
    {MenuDownload, Picked(OS4Depot, Aminet)},
    {MenuLeaveOut, PickedFiles | Picked(Bookmarks, Favorites)},
    {MenuPutAway, Picked(Workbench)},
    {MenuGetDrawerSize, Picked(Drawer)},
    {MenuGetVersion, PickedItems | Picked(Computer)},
    {MenuInformation,
     PickedItems | Picked(Bookmarks, Favorites, Computer, FTPSites) | Idle(Computer, Drawer)},
    {MenuAddBookmark, Addable},
    {MenuAddFavorite, Addable},
    {MenuStyleThumbnail, Either(Drawer)},
    {MenuStyleThumbnailDetails, Either(Drawer)},
    {MenuStyleFilmstrip, Either(Drawer)},
    {MenuConvertImage, PickedItems},
    {MenuCoverArt, Picked(Drawer)},
    {MenuToolTypes, PickedFiles | Picked(Computer)},
    {MenuRelabel, Picked(Computer), Allowed},
    {MenuFormat, Picked(Computer), Formats},
    {MenuCloneTab, Either(Bookmarks, Favorites, Workbench, Computer, Assigns, FTPSites, Drawer)},
    {MenuOpenInTab, Openable},
    {MenuOpenInWindow, Openable},
    {MenuSetBackground, Picked(Drawer), One},
    {MenuWorkbenchWindow, Picked(Bookmarks, Favorites, Workbench, Computer, Assigns) | Either(Drawer)},
};

// Of the items above, those that are left on another machine.
constexpr StateRow RemoteRows[] = {
    {MenuNewDrawer, Either(Drawer)},   {MenuPattern, Either(Drawer)},   {MenuPaste, Either(Drawer)},
    {MenuCloneTab, Either(Drawer)},    {MenuCut, Picked(Drawer)},       {MenuCopy, Picked(Drawer)},
    {MenuDelete, Picked(Drawer)},      {MenuRename, Picked(Drawer)},    {MenuInformation, Picked(Drawer)},
    {MenuSmartRename, Picked(Drawer)}, {MenuOpenInTab, Picked(Drawer)}, {MenuSetBackground, Picked(Drawer)},
};

// Items that need a second instance.
constexpr MenuId SeveralInstances[] = {MenuQuitAll,      MenuNewWindow,         MenuCloneWindow,
                                       MenuOpenInWindow, MenuCloseOtherWindows, MenuArrange,
                                       MenuRowInWindow};

bool Holds(const StateRow& row, StateSet now, const WindowState& state) {
    return (row.States & now) != 0 && (row.Needs == nullptr || state.*row.Needs);
}

enum class Verdict { On, Off, NoRow };

template <std::size_t Count>
Verdict Judge(const StateRow (&rows)[Count], MenuId item, StateSet now, const WindowState& state) {
    Verdict verdict = Verdict::NoRow;
    for (const StateRow& row : rows) {
        if (row.Item != item) {
            continue;
        }
        if (Holds(row, now, state)) {
            return Verdict::On;
        }
        verdict = Verdict::Off;
    }
    return verdict;
}

// The device when exactly one is selected, else null.
const DevicesNode* SelectedDevice() {
    if (LBLocation != Computer || NumSelected != 1 || Objects.ContentList == nullptr) {
        return nullptr;
    }
    const std::vector<std::size_t> rows = Objects.ContentList->SelectedRows();
    if (rows.size() != 1 || rows.front() >= lblist2.size() || lblist2[rows.front()].Record == nullptr) {
        return nullptr;
    }
    return DeviceOf(std::as_const(*lblist2[rows.front()].Record));
}

} // namespace

bool IsEnabled(MenuId item, const WindowState& state) {
    if (state.OneInstance && std::find(std::begin(SeveralInstances), std::end(SeveralInstances), item) !=
                                 std::end(SeveralInstances)) {
        return false;
    }
    const StateSet now = state.Selected ? Picked(state.Location) : Idle(state.Location);
    const Verdict verdict = Judge(Rows, item, now, state);
    if (verdict == Verdict::On && state.AtFTPMount && state.Location == Drawer) {
        return Judge(RemoteRows, item, now, state) == Verdict::On;
    }
    return verdict != Verdict::Off;
}

ItemStates DoSetMenuState(const WindowState& state) {
    ItemStates states;
    const auto add = [&](MenuId item) { states.push_back({item, IsEnabled(item, state)}); };
    MenuId last = MenuNone;
    for (const StateRow& row : Rows) {
        if (row.Item != last) { // rows of one item stand together
            add(row.Item);
        }
        last = row.Item;
    }
    std::for_each(std::begin(SeveralInstances), std::end(SeveralInstances), add);
    return states;
}

ItemStates DoSetToolbarState(const WindowState& state) {
    ItemStates states;
    for (const MenuId item : ItemOfButton) {
        states.push_back({item, IsEnabled(item, state)});
    }
    return states;
}

std::optional<WindowState> PresentState() {
    if (LBLocation < Bookmarks || LBLocation > Drawer || NumSelected < 0) {
        return std::nullopt;
    }
    WindowState state;
    state.Location = LBLocation;
    state.Selected = NumSelected > 0;
    state.OneSelected = NumSelected == 1;
    state.HasEntries = TotalNodes > 0 && ActuallyZero == 0;
    state.ClipExists = ClipExists != 0;
    state.AtFTPMount = AtFTPMount != 0;
    state.IsLhAArchive = IsLhAArchive != 0;
    state.OneInstance = !CanHaveFurtherWindows();
    const DevicesNode* device = SelectedDevice();
    state.DeviceFormats = device != nullptr && device->WriteProtected == 0;
    state.DeviceAllows = state.DeviceFormats && device->Mounted != 0;
    return state;
}

} // namespace solvane
