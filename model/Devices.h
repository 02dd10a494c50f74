// What is mounted and assigned: the master lists that locations/ fills, and lookups in them.
// Only names so far; kinds, usage and pictures of devices come with the Computer view.
#pragma once

#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace solvane {

// One device with the volume in it.
struct DevicesNode : ListNode {
    std::uint16_t Mounted = 0; // a volume is present
    Text<128> DeviceName;      // with its colon, as "DH0:"
    Text<128> VolumeName;      // with its colon, as "Workbench:"; of an empty drive the device name
};

// One assign to one or more drawers.
struct AssignsNode : ListNode {
    Text<128> Name;                // with its colon
    std::uint16_t MultiAssign = 0; // it stands for more than one drawer
};

// --- State: written by locations/Devices ---

extern std::unique_ptr<GenericList<DevicesNode>> MasterDevicesList;
extern std::unique_ptr<GenericList<DevicesNode>> NavDevicesList; // the mounted ones
extern std::unique_ptr<GenericList<AssignsNode>> MasterAssignsList;

// The node whose device name or volume name is that name (with its colon), in list order. Null: none. Moves
// the cursor.
[[nodiscard]] DevicesNode* FindMasterDevicesNode(std::string_view name);

// The assign of that name (with its colon). Null: none. Moves the cursor.
[[nodiscard]] AssignsNode* FindMasterAssignsNode(std::string_view name);

// The path with its device name replaced by the name of the volume in that device; as it stands when the
// device list knows no mounted device of that name.
[[nodiscard]] Text<1024> DeviceNameToVolumeName(const Text<1024>& path);

} // namespace solvane
