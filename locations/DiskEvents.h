// Disks that come and go: the master lists, the list on show and the tabs of what has gone follow.
#pragma once

#include "model/Devices.h"
#include "platform/exec/Tasks.h"
#include "sak/Text.h"

#include <vector>

namespace solvane {

struct RenamedVolume;

// --- State ---

extern exec::SignalMask DiskEventSignal; // one for each burst of changes; written by StartDiskEvents

// --- Functions ---

// Begins to watch the host's mounts. False when the task has no signals left or the host tells nothing of
// its mounts.
[[nodiscard]] bool StartDiskEvents();
void EndDiskEvents(); // harmless before StartDiskEvents

// Serves one signal: reads the devices anew, shows them where they are on show, follows volumes that another
// process has relabelled, and leaves what was on a disk that has gone.
void DisksChanged();

// A volume has another name, and has not left: the lists, tabs and preferences that name it follow. True when
// the preferences did, which are not written.
[[nodiscard]] bool FollowNewName(const RenamedVolume& volume);

// Adds the devices that RemovedDevicesList does not know yet to it, which has had those of the last disk
// event since then; and then, with the lists read anew, finds the volumes of it that have left: their devices
// have gone, or have other volumes in them.
struct RemovedVolume {
    Text<128> Volume, Device;
};
void FigureOutDiskRemoved_1();
[[nodiscard]] std::vector<RemovedVolume> FigureOutDiskRemoved_2();

} // namespace solvane
