// The lists of what is mounted. Nothing here touches a disk: names come from the system's own tables, and how
// full a disk is comes from DeviceUsage.
#pragma once

#include "model/Devices.h"

namespace solvane {

// Reads the mounted volumes into MasterDevicesList, and with Prefs.ShowEmptyDevices the drives without a
// medium, and puts them in order. False when a list or record cannot be made, after a requester for a record;
// the list stays as far as it got.
[[nodiscard]] bool GetDevices();

// Appends the drives without a medium to the list. False as above.
[[nodiscard]] bool GetEmptyDevices();

// Puts MasterDevicesList in order by device name, or by volume name as Prefs.SortDevices says. GetDevices
// ends with it.
void SortMasterDevicesList();

// Makes NavDevicesList from the mounted devices of the master list. False as above.
[[nodiscard]] bool CopyDevicesToNavDevices();

// How paths to what a device of the master list holds begin: by its volume's name, unless another volume or
// an assign of that name is found first.
[[nodiscard]] Text<128> RootOfDevice(const DevicesNode& device);

// Reads both lists anew, after disks have come or gone or the preferences have changed. Rows of devices in
// the Content list are freed first.
void UpdateDevicesList();

} // namespace solvane
