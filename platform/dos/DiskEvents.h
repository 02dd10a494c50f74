// Word of disks that come and go: one signal per burst of changes, as Intuition's disk events are.
// What has changed is for Volumes() to tell, and for TakeNewNames() where another process has relabelled a
// volume; media that change inside a mount are not seen.
#pragma once

#include "platform/dos/Notify.h"
#include "platform/exec/Tasks.h"

#include <memory>

namespace dos {

struct DiskWatch;

// Has all running watches of this process look whether the volumes have changed.
void TellDiskWatches();

class DiskNotification {
public:
    DiskNotification();
    DiskNotification(const DiskNotification&) = delete;
    DiskNotification& operator=(const DiskNotification&) = delete;
    ~DiskNotification(); // ends it

    // Ends a running watch and begins one. The signal is sent when the volumes differ from those at
    // the start or at the last signal, and have been quiet for 200 ms or gone on for 1 s; disks that
    // came and went in between are not told. It is also sent when mounts.toml has changed. False with IoErr
    // when the host tells nothing of its mounts.
    [[nodiscard]] bool Start(exec::Task* task, int signal);
    // After it no signal is sent any more. Harmless when nothing is watched.
    void End();

private:
    std::unique_ptr<DiskWatch> Running;
    Notification Names; // of mounts.toml
};

} // namespace dos
