#include "locations/IdentifyDevice.h"

#include "content/DeviceKinds.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/StringFunctions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace solvane {

namespace {

constexpr std::string_view NoDosType = "DOS\\00";
constexpr std::string_view UnknownFileSystem = "Unknown";

void SetKind(DevicesNode& device, std::uint32_t type, std::int32_t name) {
    device.Type = type;
    device.TypeName = SAK_LocaleString(name);
}

void SetKind(DevicesNode& device, std::uint32_t type) {
    SetKind(device, type, NameOfDeviceType(type));
}

// Names that consist of a stem and a number from 0 on.
struct NumberedNames {
    std::string_view Stem;
    std::uint32_t Highest;
    std::uint32_t Type;
};
constexpr std::uint32_t AnyNumber = 999; // drives that the host numbers

// In this order; the first hit counts.
constexpr std::array<NumberedNames, 14> Numbered = {{
    {"DF", 3, DeviceFloppy},
    {"CD", AnyNumber, DeviceCD},
    {"RAD", 3, DeviceRecoverableRAM},
    {"RD", AnyNumber, DeviceRecoverableRAM},
    {"RAM_", 3, DeviceRecoverableRAM},
    {"VD", AnyNumber, DeviceRecoverableRAM},
    {"ZIP", 3, DeviceZIP},
    {"ZP", 3, DeviceZIP},
    {"JAZ", 3, DeviceJAZ},
    {"JZ", 3, DeviceJAZ},
    {"PC", 3, DevicePCFloppy},
    {"MS", 3, DevicePCFloppy},
    {"MAC", 3, DeviceMacFloppy},
    {"CF", AnyNumber, DeviceCompactFlash},
}};

struct WholeName {
    std::string_view Name;
    std::uint32_t Type;
};
constexpr std::array<WholeName, 17> Whole = {{{"RAM:", DeviceRAM},
                                              {"CD0_0:", DeviceCD},
                                              {"CD1_0:", DeviceCD},
                                              {"CD2_0:", DeviceCD},
                                              {"CD3_0:", DeviceCD},
                                              {"CD1_4:", DeviceCD},
                                              {"CD1_5:", DeviceCD},
                                              {"CD2_6:", DeviceCD},
                                              {"RAD:", DeviceRecoverableRAM},
                                              {"ZIP:", DeviceZIP},
                                              {"ZIP0C:", DeviceZIP},
                                              {"ZIC:", DeviceZIP},
                                              {"JAZ:", DeviceJAZ},
                                              {"JAZ0C:", DeviceJAZ},
                                              {"MAC:", DeviceMacFloppy},
                                              {"ONEDRIVE:", DeviceOneDrive},
                                              {"AMICLOUD:", DeviceAmiCloud}}};

// True when the name is the stem, a number up to the highest, and a colon.
bool IsNumbered(const Text<128>& name, std::string_view stem, std::uint32_t highest) {
    const std::string_view text = name;
    if (text.size() < stem.size() + 2 || Text<128>(text.substr(0, stem.size())) != stem ||
        !text.ends_with(':')) {
        return false;
    }
    const std::string_view digits = text.substr(stem.size(), text.size() - stem.size() - 1);
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumber = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
    return isNumber && number <= highest && (digits.size() == 1 || digits.front() != '0');
}

bool GetTypeByName(DevicesNode& device) {
    for (const WholeName& row : Whole) {
        if (device.DeviceName == row.Name) {
            SetKind(device, row.Type);
            return true;
        }
    }
    for (const NumberedNames& row : Numbered) {
        if (IsNumbered(device.DeviceName, row.Stem, row.Highest)) {
            SetKind(device, row.Type);
            return true;
        }
    }
    return false;
}

struct Geometry {
    std::uint64_t Blocks;
    std::uint32_t Type;
    MessageNumber Name;
};
constexpr std::uint64_t DiscBlock = 2048; // bytes
constexpr std::array<Geometry, 13> Discs = {{{2298496, DeviceDVD, MSG_DVD_DISC},
                                             {2295104, DeviceDVD, MSG_DVD_DISC},
                                             {4171712, DeviceDVD, MSG_DVD_DISC},
                                             {4173824, DeviceDVD, MSG_DVD_DISC},
                                             {4596992, DeviceDVD, MSG_DVD_DISC},
                                             {4590208, DeviceDVD, MSG_DVD_DISC},
                                             {8343424, DeviceDVD, MSG_DVD_DISC},
                                             {12219392, DeviceBluRay, MSG_BLURAY_DISC},
                                             {24438784, DeviceBluRay, MSG_BLURAY_DISC},
                                             {48878592, DeviceBluRay, MSG_BLURAY_DISC},
                                             {62500864, DeviceBluRay, MSG_BLURAY_DISC},
                                             {3804288, DeviceBluRay, MSG_BLURAY_DISC},
                                             {7608576, DeviceBluRay, MSG_BLURAY_DISC}}};
constexpr std::array<Geometry, 9> OtherMedia = {{{1758, DeviceFloppy, MSG_DD_FLOPPY_DISK},
                                                 {3518, DeviceFloppy, MSG_HD_FLOPPY_DISK},
                                                 {187913, DeviceZIP, MSG_ZIP_DRIVE_100},
                                                 {196586, DeviceZIP, MSG_ZIP_DRIVE_250},
                                                 {596586, DeviceZIP, MSG_ZIP_DRIVE_750},
                                                 {2091048, DeviceJAZ, MSG_JAZ_DRIVE_1},
                                                 {3913518, DeviceJAZ, MSG_JAZ_DRIVE_2},
                                                 {1439, DevicePCFloppy, MSG_DD_PC_FLOPPY_DISK},
                                                 {2880, DevicePCFloppy, MSG_HD_PC_FLOPPY_DISK}}};

template <std::size_t Count>
bool GetTypeByBlocks(DevicesNode& device, const std::array<Geometry, Count>& table, std::uint64_t blocks) {
    const auto found = std::ranges::find(table, blocks, &Geometry::Blocks);
    if (found != table.end()) {
        SetKind(device, found->Type, found->Name);
    }
    return found != table.end();
}

// The file system's figures say what the medium was made as; where they are not known the medium's own serve.
bool GetTypeByGeometry(DevicesNode& device) {
    const bool isTold = device.TotalBlocks != 0;
    const std::uint64_t blocks = isTold ? device.TotalBlocks : device.MediumBlocks;
    const std::uint64_t size = isTold ? device.BytesPerBlock : device.MediumBlockSize;
    const bool isDisc = size == DiscBlock && GetTypeByBlocks(device, Discs, blocks);
    return GetTypeByBlocks(device, OtherMedia, blocks) || isDisc;
}

// Up to the second blank.
std::string_view NameAndVersion(std::string_view text) {
    const std::size_t first = text.find(' ');
    const std::size_t second = first == std::string_view::npos ? first : text.find(' ', first + 1);
    return text.substr(0, second);
}

struct HandlerKind {
    std::string_view Handler;
    std::uint32_t Type;
    MessageNumber Name;
};
constexpr std::array<HandlerKind, 4> Handlers = {
    {{"google-drive-handler", DeviceCompactFlash, MSG_GOOGLE_DRIVE},
     {"dropbox-handler", DeviceDropbox, MSG_DROPBOX},
     {"smbfs", DeviceNetworkShare, MSG_NETWORK_SHARE},
     {"FTPMount", DeviceFTPMount, MSG_FTPMOUNT}}};

// What was mounted, without what belongs to the handler alone.
void CleanShareName(DevicesNode& device) {
    for (const std::string_view part : {"%b", "smbfs ", "smbfs174 "}) {
        SAK_FindAndReplace(device.ShareName, part, "", FindMode::FoldCase, ReplaceScope::All);
    }
}

bool GetHandlerType(DevicesNode& device) {
    for (const HandlerKind& row : Handlers) {
        if (SAK_strcasestr(device.HandlerName, row.Handler) == NotFound) {
            continue;
        }
        SetKind(device, row.Type, row.Name);
        device.DosType = NoDosType;
        device.FileSystem = NameAndVersion(Text<50>(device.FileSystem));
        if (row.Type == DeviceNetworkShare) {
            CleanShareName(device);
        }
        return true;
    }
    return false;
}

// True when the file system has told its name.
bool GetVolumeInfo(DevicesNode& device) {
    if (device.Mounted == 0 || device.Type == DeviceFTPMount) {
        return false;
    }
    if (device.DosType.Empty()) {
        device.DosType = NoDosType;
    }
    if (device.Type == DeviceNetworkShare) {
        return true;
    }
    const bool isTold = !device.FileSystem.Empty() && !device.FileSystem.SameBytes(UnknownFileSystem);
    const Text<50> told = device.FileSystem;
    device.FileSystem = isTold ? NameAndVersion(told) : UnknownFileSystem;
    return isTold;
}

// True for the Exec devices that say by themselves what they drive.
bool GetTypeByDriver(DevicesNode& device) {
    if (device.DeviceDriver == "usbdisk.device") {
        SetKind(device, DeviceUSB);
        return true;
    }
    if (device.DeviceDriver != "diskimage.device") {
        return false;
    }
    if (IsNumbered(device.DeviceName, "IDF", AnyNumber)) {
        SetKind(device, DeviceImageFloppy);
    } else if (IsNumbered(device.DeviceName, "ICD", AnyNumber)) {
        SetKind(device, DeviceImageCD);
    }
    return true;
}

} // namespace

void IdentifyDevice(DevicesNode& device) {
    SetKind(device, device.Mounted != 0 ? DeviceHardDisk : DeviceFloppy);
    if (GetTypeByDriver(device)) {
        static_cast<void>(GetVolumeInfo(device));
        return;
    }
    bool identified = GetHandlerType(device);
    identified = GetTypeByName(device) || identified;
    identified = GetTypeByGeometry(device) || identified;
    identified = GetVolumeInfo(device) || identified;
    if (!identified) {
        SetKind(device, DeviceUnknown);
    }
}

} // namespace solvane
