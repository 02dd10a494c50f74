#include "frame/LanguageCheck.h"

#include "model/Program.h"
#include "platform/dos/Notify.h"
#include "platform/dos/Variables.h"

#include <string>

namespace solvane {

namespace {

dos::Notification Watch;
int WatchSignal = -1;

} // namespace

void SetUpLanguageChangeCheck() {
    LanguageName = dos::GetVar("LanguageName").value_or(std::string());
    WatchSignal = exec::AllocSignal();
    if (WatchSignal >= 0 && !Watch.Start("ENV:LanguageName", exec::FindTask(), WatchSignal)) {
        exec::FreeSignal(WatchSignal);
        WatchSignal = -1;
    }
}

void ShutDownNotifyVar() {
    Watch.End();
    if (WatchSignal >= 0) {
        exec::FreeSignal(WatchSignal);
        WatchSignal = -1;
    }
}

exec::SignalMask NotifyVarSignal() {
    return WatchSignal < 0 ? 0 : exec::SignalMask{1} << WatchSignal;
}

} // namespace solvane
