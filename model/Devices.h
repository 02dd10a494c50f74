// What is mounted and assigned: the records of devices and assigns, the master lists that locations/ fills,
// and lookups in them.
#pragma once

#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <variant>

namespace solvane {

// Kinds of devices, the value of DevicesNode::Type.
enum DeviceType : std::uint32_t {
    DeviceRAM = 0,
    DeviceHardDisk = 1,
    DeviceFloppy = 2,
    DeviceCD = 3,
    DeviceRecoverableRAM = 4,
    DeviceZIP = 5,
    DeviceJAZ = 6,
    DevicePCFloppy = 7,
    DeviceMacFloppy = 8,
    DeviceCompactFlash = 9, // and Google Drive, with whose picture both are shown: intended
    DeviceDropbox = 10,
    DeviceOneDrive = 11,
    DeviceAmiCloud = 12,
    DeviceDVD = 13,
    DeviceBluRay = 14,
    DeviceNetworkShare = 15,
    DeviceUSB = 16,
    DeviceFTPMount = 17,
    DeviceImageFloppy = 18,
    DeviceImageCD = 19,
    DeviceUnknown = 99,
};

// What is known of how full a device is.
enum class UsageState : std::uint16_t {
    Unasked, // or the file system cannot say
    Silent,  // it was asked and does not answer
    Known,
};

// One device with the volume in it. Of NavDevicesList only the names, Label, Key and Type are filled.
struct DevicesNode : ListNode {
    std::uint16_t Mounted = 0; // a volume is present; 0: a drive without a medium
    Text<128> DeviceName;      // with its colon, as "DH0:"
    Text<128> VolumeName;      // with its colon, as "Workbench:"; of an empty drive the device name
    Text<150> Label;           // what lists show
    Text<128> Key;             // "[Dev]" and the device name: the row's text
    Text<150> DetailText1;     // first and second line of the Tiles and Content views
    Text<128> DetailText2;
    std::uint32_t Type = DeviceHardDisk; // a DeviceType
    Text<50> TypeName;                   // in the user's language
    Text<128> ShareName;                 // of a network share: what was mounted
    std::uint16_t WriteProtected = 0;
    Text<50> DeviceDriver; // Exec device; empty where there is none
    std::uint32_t Unit = 0;
    Text<10> DosType;    // as "DOS\07"
    Text<50> FileSystem; // name and version
    std::uint64_t UsedBlocks = 0, FreeBlocks = 0, TotalBlocks = 0;
    std::uint64_t BytesPerBlock = 0;
    Text<35> Created; // by the date format in force; empty where it is not told
    std::uint64_t FreeBytes = 0, TotalBytes = 0;
    std::uint32_t PercentUsed = 0; // 0 to 100
    Text<15> UsedText, FreeText, TotalText;

    UsageState Usage = UsageState::Unasked;
    std::uint16_t MayHang = 0;      // its file system may never answer: nothing in it is looked up unasked
    std::uint64_t MediumBlocks = 0; // of the whole medium; 0 where it is not known
    std::uint32_t MediumBlockSize = 0;
    Text<50> HandlerName; // of the file system's handler
};

// One assign to one or more drawers.
struct AssignsNode : ListNode {
    std::uint16_t IsDrawer = 0;    // 0: the row is an assign
    Text<128> Name;                // with its colon
    Text<128> Key;                 // "[Ass]" and the name without colon
    std::uint16_t MultiAssign = 0; // it stands for more than one drawer
    Text<1024> Target;             // path of the first drawer, as it was assigned
};

// One drawer of the assign that GetMultiAssign was asked about.
struct MultiAssignNode : ListNode {
    Text<1024> Path;
};

// What the entry of a list of places stands for.
struct PlaceRecord {
    std::variant<DevicesNode, AssignsNode> Of;
};

// --- State: written by locations/ ---

extern std::unique_ptr<GenericList<DevicesNode>> MasterDevicesList;
extern std::unique_ptr<GenericList<DevicesNode>> NavDevicesList; // the mounted ones
extern std::unique_ptr<GenericList<DevicesNode>>
    RemovedDevicesList; // the names after the last disk event, and later ones
extern std::unique_ptr<GenericList<AssignsNode>> MasterAssignsList;
extern std::unique_ptr<GenericList<MultiAssignNode>> MultiAssignList;

// --- Functions ---

// The node whose device name or volume name is that name (with its colon), in list order. Null: none. Moves
// the cursor.
[[nodiscard]] DevicesNode* FindMasterDevicesNode(std::string_view name);

// The assign of that name (with its colon). Null: none. Moves the cursor.
[[nodiscard]] AssignsNode* FindMasterAssignsNode(std::string_view name);

// True for "FTPMount:", and for a device that is one.
[[nodiscard]] bool IsDeviceFTPMount(std::string_view name);
// The same, and true for a network share.
[[nodiscard]] bool IsDeviceNetworkShare(std::string_view name);

// The path with its device name replaced by the name of the volume in that device; as it stands when the
// device list knows no mounted device of that name.
[[nodiscard]] Text<1024> DeviceNameToVolumeName(const Text<1024>& path);

} // namespace solvane
