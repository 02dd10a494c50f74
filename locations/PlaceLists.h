// The lists of the computer's devices and of the assigns as places on show: filled from the master lists,
// opened, and kept up to date.
#pragma once

#include "locations/DeviceUsage.h"
#include "locations/History.h"
#include "model/ContentNode.h"

namespace solvane {

// Appends an entry for each device, or assign, of the master list to ContentList, with a copy of its record.
// Of the devices the usage is asked first; the result says what that means for the Navigation pane.
PaneRows CopyFromMasterDevicesList();
void CopyFromMasterAssignsList();

// Reads the assigns anew and makes the entries of ContentList from them.
void UpdateAssignsList();

// Makes the rows of what is in ContentList at their location, and stops the watch of the drawer that was on
// show.
void BuildComputerList();
void BuildAssignsList();

// Goes to the list of devices, or of assigns: history, path, entries, details, rows, status bar.
void ShowComputer(Arrival arrival);
void ShowAssigns(Arrival arrival);

// Opens the root of the device or assign that an entry of these lists stands for; of a multi-assign the
// drawer that the user chooses.
void OpenPlace(const ContentNode& entry);

// What the Details pane and the status bar tell at these places, with what is selected in them: after they
// are entered and after a change of the selection.
void DetailsPane4();

// Puts late figures of devices on show; what the loop does at DeviceUsageSignal.
void DeviceUsageCame();

} // namespace solvane
