// Finds out of what kind a device is, from what the system tells of it: Exec device, handler, name, geometry.
#pragma once

#include "model/Devices.h"

#include <cstdint>

namespace solvane {

// Sets Type and TypeName, for a share also ShareName, and brings FileSystem and DosType into their form. It
// reads the names, DeviceDriver, HandlerName, FileSystem, DosType, ShareName (what was mounted), the medium's
// and the file system's figures; done again when more of them are known, it decides anew.
void IdentifyDevice(DevicesNode& device);

} // namespace solvane
