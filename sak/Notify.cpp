#include "sak/Notify.h"

#include "platform/dos/Notify.h"

#include <memory>
#include <string>

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

void SAK_ShutDownNotify() {
    SAK_StopNotify();
    if (Monitor.Request) {
        exec::FreeSignal(Monitor.Signal);
    }
    Monitor = MonitorState();
    SAK_NotifySignal = 0;
}

} // namespace solvane
