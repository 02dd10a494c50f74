// What the Details pane and the status bar tell: about the place on show, or about what is selected in it.
#pragma once

#include "model/Devices.h"

#include <string_view>

namespace solvane {

// A place has been entered: its name, count and bytes, of a volume also how full it is. The status bar stays.
void DetailsPane1();

// The record of the device on which the volume or assign on show lies. Null where the lists know none, and in
// a drawer.
[[nodiscard]] DevicesNode* DeviceOfPlace();

// Figures of devices have come: those of the volume on show are told if they were missing when it was
// entered.
void DetailsPaneVolume();

// After a scan: the figures of the place, without those of its volume, and the status bar.
void DetailsPane2();

// After a change of the selection, or a reload that has kept it: one entry with its data, several with their
// number, none as DetailsPane2. The status bar follows.
void DetailsPane3();

// The same in a list whose entries have no sizes.
void DetailsPane5();

// The same in a list of what is online.
void DetailsPaneBrowsers();

// Shows the icon of the drawer or volume at path, else the one of its kind; the picture of assigns for one.
void SetContentImage(std::string_view path);

// Shows what the pane and the status bar told when the tab on show was left, with figures of its volume that
// have come meanwhile; no disk is asked.
void DetailsPaneSwitchedTabs();

} // namespace solvane
