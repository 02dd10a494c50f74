#include "sak/Notify.h"

#include <utility>

namespace solvane {

exec::SignalMask SAK_NotifySignal = 0;
std::uint16_t SAK_NotifyStarted = 0;

namespace {

struct MonitorState {
    std::unique_ptr<dos::Notification> Request; // null before set-up
    int Signal = -1;
    std::string Path; // of the last SAK_ChangeNotify
};
MonitorState Monitor;

} // namespace

bool SAK_SetUpNotify() {
    if (Monitor.Request) {
        return true;
    }
    Monitor.Signal = exec::AllocSignal();
    if (Monitor.Signal < 0) {
        return false;
    }
    Monitor.Request = std::make_unique<dos::Notification>();
    SAK_NotifySignal = exec::SignalMask{1} << Monitor.Signal;
    return true;
}

void SAK_ChangeNotify(std::string_view path) {
    if (SAK_NotifyStarted != 0 && Monitor.Path == path) {
        return;
    }
    SAK_StopNotify();
    Monitor.Path = path;
    static_cast<void>(exec::SetSignal(0, SAK_NotifySignal)); // the old drawer's changes concern nobody now
    SAK_StartNotify();
}

void SAK_StartNotify() {
    if (!Monitor.Request || Monitor.Path.empty() || SAK_NotifyStarted != 0) {
        return;
    }
    SAK_NotifyStarted = Monitor.Request->Start(Monitor.Path, exec::FindTask(), Monitor.Signal) ? 1 : 0;
}

void SAK_StopNotify() {
    if (SAK_NotifyStarted != 0) {
        Monitor.Request->End();
        SAK_NotifyStarted = 0;
    }
}

bool SAK_NotifyHasChanged() {
    return SAK_NotifyStarted != 0 && Monitor.Request->TakeChange();
}

KeptNotify SAK_KeepNotify() {
    KeptNotify kept;
    if (SAK_NotifyStarted != 0) {
        kept.Request = std::exchange(Monitor.Request, std::make_unique<dos::Notification>());
        kept.Path = std::exchange(Monitor.Path, {});
        kept.Request->SetResting(true);
        SAK_NotifyStarted = 0;
    }
    return kept;
}

KeptNotify SAK_ExchangeNotify(std::string_view path) {
    KeptNotify before = Monitor.Path != path ? SAK_KeepNotify() : KeptNotify();
    SAK_ChangeNotify(path);
    return before;
}

void SAK_ResumeNotify(KeptNotify kept) {
    if (!Monitor.Request || !kept.Request) {
        return;
    }
    SAK_StopNotify();
    Monitor.Request = std::move(kept.Request);
    Monitor.Path = std::move(kept.Path);
    Monitor.Request->SetResting(false);
    SAK_NotifyStarted = 1;
}

void SAK_ShutDownNotify() {
    SAK_StopNotify();
    if (Monitor.Request) {
        exec::FreeSignal(Monitor.Signal);
    }
    Monitor = MonitorState();
    SAK_NotifySignal = 0;
}

} // namespace solvane
