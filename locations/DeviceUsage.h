// How full devices and memory are. File systems are asked on threads of their own: the window waits a moment
// for those that answer at once, and hears later of the others.
#pragma once

#include "model/Devices.h"
#include "platform/dos/Info.h"
#include "platform/exec/Tasks.h"
#include "sak/Text.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace solvane {

// --- State ---

// The memory of the machine; written by GetRAMUsage.
extern std::uint64_t totalRAM, freeRAM, usedRAM; // bytes
extern Text<15> totalRAMBuffer, freeRAMBuffer, usedRAMBuffer;
extern std::uint32_t percentRAM; // used, 0 to 100

// Written by GetDeviceFreeSpace.
extern std::uint64_t DevFreeBytes;
extern Text<15> DevFreeBytesBuffer;

extern exec::SignalMask DeviceUsageSignal; // tells of late answers; written by DiskEvents

// --- Functions ---

// Asks for the usage of one device. False when nothing is mounted, when the device is of an unknown kind, or
// when its file system has not answered yet, which is shown as unknown; a late answer goes to the lists.
bool GetDeviceUsage(DevicesNode& device);
// The same for all mounted devices of the master list, at once. Changed: a device of NavDevicesList has
// turned out to be of another kind, and the Navigation pane is to be built anew; the other calls do that
// themselves.
enum class PaneRows : std::uint8_t { Same, Changed };
PaneRows GetAllDeviceUsage();
// Fills the usage fields from an answer; nothing stands for a file system that does not answer. Result as of
// GetDeviceUsage.
bool SetDeviceUsage(DevicesNode& device, const std::optional<dos::InfoData>& info);

// Answers that came late go to the lists of devices and the devices in ContentList. True when there were any.
// What concerns a volume that has left its device meanwhile is dropped.
[[nodiscard]] bool TakeDeviceUsage();

// Makes late answers set that signal of the calling task; -1 ends it, and forgets what is still asked.
void ListenToDeviceUsage(int signal);

// Free bytes at path into DevFreeBytes: of "RAM Disk:" those of the machine's memory. False with IoErr, and 0
// bytes, when that cannot be found out.
[[nodiscard]] bool GetDeviceFreeSpace(std::string_view path);

void GetRAMUsage();

} // namespace solvane
