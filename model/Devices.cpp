#include "model/Devices.h"

namespace solvane {

std::unique_ptr<GenericList<DevicesNode>> MasterDevicesList;
std::unique_ptr<GenericList<DevicesNode>> NavDevicesList;
std::unique_ptr<GenericList<DevicesNode>> RemovedDevicesList;
std::unique_ptr<GenericList<AssignsNode>> MasterAssignsList;
std::unique_ptr<GenericList<MultiAssignNode>> MultiAssignList;

} // namespace solvane
