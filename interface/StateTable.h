// Which commands can be picked in which state of the window: one table for the menu strip, the context menus
// and the toolbar. It touches nothing that is shown.
#pragma once

#include "interface/MenuIds.h"
#include "model/LocationKind.h"

#include <optional>
#include <vector>

namespace solvane {

// The state of the window, as far as a command depends on it.
struct WindowState {
    LocationKind Location = LocationKind::Drawer; // Bookmarks to Drawer
    bool Selected = false;                        // of the entries, at least one
    bool OneSelected = false;                     // exactly one
    bool HasEntries = false;                      // there is something to select
    bool ClipExists = false;                      // something has been cut or copied
    bool AtFTPMount = false;                      // the drawer on show is on another machine
    bool IsLhAArchive = false;                    // the archive on show can be changed
    bool OneInstance = false;   // no further windows: the program waits in the background instead
    bool DeviceAllows = false;  // the volume in the selected device can be given another name
    bool DeviceFormats = false; // the selected device can be formatted; it may have no volume yet

    bool operator==(const WindowState&) const = default;
};

// An item and whether it can be picked.
struct ItemState {
    MenuId Item = MenuNone;
    bool Enabled = true;

    bool operator==(const ItemState&) const = default;
};
using ItemStates = std::vector<ItemState>;

// Whether the item can be picked; items without a row in the table always can.
[[nodiscard]] bool IsEnabled(MenuId item, const WindowState& state);

// Every item that depends on the state, and every item behind a button of the toolbar.
[[nodiscard]] ItemStates DoSetMenuState(const WindowState& state);
[[nodiscard]] ItemStates DoSetToolbarState(const WindowState& state);

// The state at this moment; nothing while no location is shown, which leaves all items as they are.
[[nodiscard]] std::optional<WindowState> PresentState();

} // namespace solvane
