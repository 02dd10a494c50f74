#include "content/DeviceKinds.h"

#include "model/Program.h"
#include "platform/exec/Memory.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>

namespace solvane {

namespace {

struct DeviceKind {
    std::uint32_t Type;
    MessageNumber Name;
    std::string_view Image;
    std::string_view LastImage; // the program's own
    bool HasOwnIcon = true;     // a "Disk.info" on the volume is looked at
};

constexpr std::string_view UnknownImage = "PROGDIR:Images/Img_DeviceUnknown.png";
constexpr std::string_view ShareImage = "PROGDIR:Images/Img_NetworkShare.png";
constexpr std::string_view UsbImage = "PROGDIR:Images/Img_USBDevice.png";

// The last row stands for all others.
constexpr std::array<DeviceKind, 21> Kinds = {{
    {DeviceRAM, MSG_RAM_DISK, "ENVARC:Sys/def_ram.info", UnknownImage},
    {DeviceHardDisk, MSG_HARD_DISK, "ENVARC:Sys/def_disk.info", UnknownImage},
    {DeviceFloppy, MSG_FLOPPY_DISK, "ENVARC:Sys/def_df0.info", UnknownImage},
    {DeviceCD, MSG_CD_DISC, "ENVARC:Sys/def_cd0.info", UnknownImage},
    {DeviceRecoverableRAM, MSG_RECOVERABLE_RAM_DISK, "ENVARC:Sys/def_rad.info", UnknownImage},
    {DeviceZIP, MSG_ZIP_DRIVE, "ENVARC:Sys/def_zipdisk.info", UnknownImage},
    {DeviceJAZ, MSG_JAZ_DRIVE, "ENVARC:Sys/def_jazdisk.info", UnknownImage},
    {DevicePCFloppy, MSG_PC_FLOPPY_DISK, "ENVARC:Sys/def_pc0.info", UnknownImage},
    {DeviceMacFloppy, MSG_MAC_FLOPPY_DISK, "ENVARC:Sys/def_crossdos.info", UnknownImage},
    {DeviceCompactFlash, MSG_COMPACT_FLASH, "ENVARC:Sys/def_googledrive.info", UsbImage, false},
    {DeviceDropbox, MSG_DROPBOX, "ENVARC:Sys/def_dropbox.info", ShareImage, false},
    {DeviceOneDrive, MSG_ONEDRIVE, "ENVARC:Sys/def_onedrive.info", ShareImage, false},
    {DeviceAmiCloud, MSG_AMICLOUD, "ENVARC:Sys/def_amicloud.info", ShareImage},
    {DeviceDVD, MSG_DVD_DISC, "ENVARC:Sys/def_dvd.info", UnknownImage},
    {DeviceBluRay, MSG_BLURAY_DISC, "ENVARC:Sys/def_bluray.info", UnknownImage},
    {DeviceNetworkShare, MSG_NETWORK_SHARE, ShareImage, ShareImage, false},
    {DeviceUSB, MSG_USB_DEVICE, UsbImage, UsbImage, false},
    {DeviceFTPMount, MSG_FTPMOUNT, "ENVARC:Sys/def_ftp.info", ShareImage, false},
    {DeviceImageFloppy, MSG_DISKIMAGE_FLOPPY, "ENVARC:Sys/def_df0.info", UnknownImage, false},
    {DeviceImageCD, MSG_DISKIMAGE_CD, "ENVARC:Sys/def_cd0.info", UnknownImage, false},
    {DeviceUnknown, MSG_UNKNOWN_DEVICE, UnknownImage, UnknownImage},
}};

constexpr std::string_view SystemImage = "ENVARC:Sys/def_sys.info";

const DeviceKind& KindOf(std::uint32_t type) {
    const auto* found = std::ranges::find(Kinds, type, &DeviceKind::Type);
    return found != Kinds.end() ? *found : Kinds.back();
}

// SYSDevice has no colon.
bool IsSystemDevice(const DevicesNode& device) {
    const std::string_view name = device.DeviceName;
    return name.size() > 1 && SYSDevice == name.substr(0, name.size() - 1);
}

} // namespace

std::int32_t NameOfDeviceType(std::uint32_t type) {
    return KindOf(type).Name;
}

std::string_view GetDeviceType2(std::uint32_t type) {
    return KindOf(type).Image;
}

std::string_view GetDeviceType(const DevicesNode& device) {
    return device.Type == DeviceHardDisk && IsSystemDevice(device) ? SystemImage
                                                                   : GetDeviceType2(device.Type);
}

void SetMemoryFigures(dos::InfoData& info) {
    constexpr std::uint64_t BlockSize = 512;
    const exec::MemoryFigures memory = exec::AvailMem();
    info.BytesPerBlock = BlockSize;
    info.Blocks = memory.Total / BlockSize;
    info.BlocksUsed = (memory.Total - std::min(memory.Free, memory.Total)) / BlockSize;
}

std::vector<intuition::ImageStep> DeviceImageSteps(const DevicesNode& device) {
    const DeviceKind& kind = KindOf(device.Type);
    std::vector<intuition::ImageStep> steps;
    if (kind.HasOwnIcon && device.Mounted != 0 && device.MayHang == 0) {
        steps.push_back({.Path = std::string(device.VolumeName.View()) + "Disk.info"});
    }
    for (const std::string_view path : {GetDeviceType(device), kind.Image, kind.LastImage}) {
        steps.push_back({.Path = std::string(path)});
    }
    return steps;
}

} // namespace solvane
