// Fills the lists of what is mounted and assigned. Names only so far: kinds, usage, empty drives and disk
// events come with the Computer view.
#pragma once

namespace solvane {

// Reads the mounted volumes into MasterDevicesList. False when a list or record cannot be made, after a
// requester for a record; the list stays as far as it got.
[[nodiscard]] bool GetDevices();

// Puts MasterDevicesList in order by device name, or by volume name as Prefs.SortDevices says. GetDevices
// ends with it.
void SortMasterDevicesList();

// Makes NavDevicesList from the mounted devices of the master list. False as above.
[[nodiscard]] bool CopyDevicesToNavDevices();

// Reads the assigns into MasterAssignsList, false as above; and puts them in order by name.
[[nodiscard]] bool GetAssigns();
void SortMasterAssignsList();

} // namespace solvane
