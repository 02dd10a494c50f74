#include "locations/DeviceUsage.h"

#include "content/DeviceKinds.h"
#include "locations/IdentifyDevice.h"
#include "locations/NavigationList.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/VolumeQuestions.h"
#include "platform/exec/Memory.h"
#include "platform/locale/Locale.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

std::uint64_t totalRAM = 0;
std::uint64_t freeRAM = 0;
std::uint64_t usedRAM = 0;
Text<15> totalRAMBuffer;
Text<15> freeRAMBuffer;
Text<15> usedRAMBuffer;
std::uint32_t percentRAM = 0;
std::uint64_t DevFreeBytes = 0;
Text<15> DevFreeBytesBuffer;
exec::SignalMask DeviceUsageSignal = 0;

namespace {

constexpr std::chrono::milliseconds AtOnce(25); // what a list waits for answers
constexpr std::uint32_t Whole = 100;            // per cent
constexpr std::string_view RamDisk = "RAM Disk:";

std::unique_ptr<dos::VolumeQuestions> Questions; // made at the first question

dos::VolumeQuestions& TheQuestions() {
    if (!Questions) {
        Questions = std::make_unique<dos::VolumeQuestions>();
    }
    return *Questions;
}

// What does not fit is the largest number.
std::uint64_t Product(std::uint64_t a, std::uint64_t b) {
    constexpr std::uint64_t Largest = std::numeric_limits<std::uint64_t>::max();
    return b != 0 && a > Largest / b ? Largest : a * b;
}

std::uint32_t PercentOf(std::uint64_t part, std::uint64_t total) {
    if (total == 0 || part >= total) {
        return Whole;
    }
    const bool isHuge = part > std::numeric_limits<std::uint64_t>::max() / Whole;
    return static_cast<std::uint32_t>(isHuge ? part / (total / Whole) : part * Whole / total);
}

void ClearUsage(DevicesNode& device, const Text<15>& text) {
    device.UsedBlocks = device.FreeBlocks = device.TotalBlocks = device.BytesPerBlock = 0;
    device.FreeBytes = device.TotalBytes = 0;
    device.PercentUsed = 0;
    device.UsedText = device.FreeText = device.TotalText = text;
}

void SetFigures(DevicesNode& device, const dos::InfoData& info) {
    if (info.State == dos::DiskState::WriteProtected) {
        device.WriteProtected = 1;
    } else if (info.State == dos::DiskState::Validated) {
        device.WriteProtected = 0;
    }
    device.TotalBlocks = info.Blocks;
    device.UsedBlocks = std::min(info.BlocksUsed, info.Blocks);
    device.FreeBlocks = device.TotalBlocks - device.UsedBlocks;
    device.BytesPerBlock = info.BytesPerBlock;
    device.FreeBytes = Product(device.FreeBlocks, device.BytesPerBlock);
    device.TotalBytes = Product(device.TotalBlocks, device.BytesPerBlock);
    device.PercentUsed = PercentOf(device.UsedBlocks, device.TotalBlocks);
    device.UsedText = BytesToUnit(Product(device.UsedBlocks, device.BytesPerBlock));
    device.FreeText = BytesToUnit(device.FreeBytes);
    device.TotalText = BytesToUnit(device.TotalBytes);
    if (info.Created != 0) {
        device.Created = locale::FormatDate(Prefs.EffectiveDateFormat, info.Created);
    }
}

// The lines of the Tiles and Content views.
void SetDetailTexts(DevicesNode& device) {
    device.DetailText1 = device.Label;
    device.DetailText2 = FormatText("%s %s, %s %s", SAK_LocaleString(MSG_FREE_COLON), device.FreeText,
                                    SAK_LocaleString(MSG_TOTAL_COLON), device.TotalText);
}

std::string WithoutColon(std::string_view name) {
    return std::string(name.substr(0, name.find(':')));
}

// A new answer may tell what the medium is.
bool TakeAnswer(DevicesNode& device, std::optional<dos::InfoData> info) {
    device.TotalBlocks = info ? info->Blocks : 0;
    device.BytesPerBlock = info ? info->BytesPerBlock : 0;
    IdentifyDevice(device);
    if (info && device.Type == DeviceRAM) {
        SetMemoryFigures(*info);
    }
    return SetDeviceUsage(device, info);
}

std::vector<dos::VolumeAnswer> Ask(const std::vector<const DevicesNode*>& devices,
                                   std::chrono::milliseconds limit) {
    std::vector<dos::VolumeQuestion> questions;
    for (const DevicesNode* device : devices) {
        questions.push_back({WithoutColon(device->DeviceName), std::string(device->VolumeName.View())});
    }
    return TheQuestions().Ask(questions, limit);
}

template <class Visit>
void ForDevice(const Text<128>& name, Visit visit) {
    if (MasterDevicesList) {
        for (DevicesNode& device : *MasterDevicesList) {
            if (device.DeviceName == name) {
                visit(device);
            }
        }
    }
    const bool showsDevices = LBLocation == LocationKind::Computer || LBLocation == LocationKind::Workbench;
    if (ContentList && showsDevices) {
        for (ContentNode& entry : *ContentList) {
            DevicesNode* device = DeviceOf(entry);
            if (device != nullptr && device->DeviceName == name) {
                visit(*device);
            }
        }
    }
}

// An answer has come into the lists in passing: its signal finds it gone, and has it shown all the same.
bool HasUnshownAnswer = false;

PaneRows GiveTypeToPane(const DevicesNode& known) {
    PaneRows rows = PaneRows::Same;
    if (NavDevicesList) {
        for (DevicesNode& device : *NavDevicesList) {
            if (device.DeviceName == known.DeviceName && device.Type != known.Type) {
                device.Type = known.Type;
                rows = PaneRows::Changed;
            }
        }
    }
    return rows;
}

// What is told of a volume that has left concerns nobody; the one that is there now is asked about.
PaneRows GiveToLists(const std::vector<dos::VolumeAnswer>& answers) {
    PaneRows rows = PaneRows::Same;
    std::vector<const DevicesNode*> again;
    for (const dos::VolumeAnswer& answer : answers) {
        const Text<128> name(answer.Device + ":");
        ForDevice(name, [&answer](DevicesNode& device) {
            if (device.VolumeName == answer.Volume) {
                TakeAnswer(device, answer.Info);
            }
        });
        const DevicesNode* known = FindMasterDevicesNode(name);
        if (known != nullptr && known->VolumeName == answer.Volume) {
            rows = std::max(rows, GiveTypeToPane(*known));
        } else if (known != nullptr && known->Mounted != 0) {
            again.push_back(known);
        }
    }
    if (!again.empty()) {
        rows = std::max(rows, GiveToLists(Ask(again, std::chrono::milliseconds(0))));
    }
    return rows;
}

} // namespace

bool SetDeviceUsage(DevicesNode& device, const std::optional<dos::InfoData>& info) {
    if (device.Mounted == 0) {
        return false;
    }
    device.Usage = info ? UsageState::Known : UsageState::Silent;
    const bool isFTP = device.Type == DeviceFTPMount;
    const bool isUnknown = device.Type == DeviceUnknown;
    if (isFTP) {
        ClearUsage(device, {});
    } else if (isUnknown) {
        ClearUsage(device, FormatText("0 %s", SizeUnits.B));
    } else if (info) {
        SetFigures(device, *info);
    } else {
        ClearUsage(device, SAK_LocaleString(MSG_UNKNOWN));
    }
    SetDetailTexts(device);
    return isFTP || (!isUnknown && info);
}

bool GetDeviceUsage(DevicesNode& device) {
    if (device.Mounted == 0) {
        return false;
    }
    const std::string name = WithoutColon(device.DeviceName);
    bool isKnown = SetDeviceUsage(device, std::nullopt);
    const std::vector<dos::VolumeAnswer> answers = Ask({&device}, AtOnce);
    for (const dos::VolumeAnswer& answer : answers) {
        if (answer.Device == name && answer.Volume == device.VolumeName) {
            isKnown = TakeAnswer(device, answer.Info);
        }
    }
    HasUnshownAnswer = HasUnshownAnswer || !answers.empty();
    if (GiveToLists(answers) == PaneRows::Changed) {
        BuildNavigationList();
    }
    return isKnown;
}

PaneRows GetAllDeviceUsage() {
    if (!MasterDevicesList) {
        return PaneRows::Same;
    }
    std::vector<const DevicesNode*> mounted;
    for (DevicesNode& device : *MasterDevicesList) {
        if (device.Mounted != 0) {
            mounted.push_back(&device);
        }
        if (device.Usage == UsageState::Unasked) {
            SetDeviceUsage(device, std::nullopt); // until it answers
        }
    }
    const std::vector<dos::VolumeAnswer> answers = Ask(mounted, AtOnce);
    HasUnshownAnswer = HasUnshownAnswer || !answers.empty();
    return GiveToLists(answers);
}

bool TakeDeviceUsage() {
    const std::vector<dos::VolumeAnswer> answers =
        Questions ? Questions->Take() : std::vector<dos::VolumeAnswer>();
    if (GiveToLists(answers) == PaneRows::Changed) {
        BuildNavigationList();
    }
    const bool wasUnshown = std::exchange(HasUnshownAnswer, false);
    return wasUnshown || !answers.empty();
}

void ListenToDeviceUsage(int signal) {
    if (signal < 0) {
        Questions.reset();
        DeviceUsageSignal = 0;
        return;
    }
    DeviceUsageSignal = exec::SignalMask{1} << signal;
    TheQuestions().SetListener(exec::FindTask(), DeviceUsageSignal);
}

bool GetDeviceFreeSpace(std::string_view path) {
    DevFreeBytes = 0;
    bool isKnown = true;
    if (Text<1024>(path) == RamDisk) {
        DevFreeBytes = exec::AvailMem().Free;
    } else if (const std::optional<dos::InfoData> info = dos::Info(path)) {
        DevFreeBytes = Product(info->Blocks - std::min(info->BlocksUsed, info->Blocks), info->BytesPerBlock);
    } else {
        isKnown = false;
    }
    DevFreeBytesBuffer = BytesToUnit(DevFreeBytes);
    return isKnown;
}

void GetRAMUsage() {
    const exec::MemoryFigures memory = exec::AvailMem();
    totalRAM = memory.Total;
    freeRAM = memory.Free;
    usedRAM = totalRAM - freeRAM;
    totalRAMBuffer = BytesToUnit(totalRAM);
    freeRAMBuffer = BytesToUnit(freeRAM);
    usedRAMBuffer = BytesToUnit(usedRAM);
    const std::uint64_t hundredth = totalRAM / Whole;
    percentRAM =
        static_cast<std::uint32_t>(hundredth == 0 ? 0 : std::min<std::uint64_t>(usedRAM / hundredth, Whole));
}

} // namespace solvane
