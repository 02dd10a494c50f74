#include "automation/Commodity.h"

#include "interface/Tell.h"
#include "model/Prefs.h"
#include "platform/intuition/HotKey.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Messages.h"

#include <string>

namespace solvane {

exec::SignalMask CxSignal = 0;
Text<130> HotKeyOfIcon;

namespace {

int Signal = -1; // of CxSignal

std::string HotKeyText() {
    return std::string(HotKeyOfIcon.Empty() ? Prefs.HotKey.View() : HotKeyOfIcon.View());
}

bool TakeHotKey() {
    const auto keys = intuition::ParseKeyCombination(HotKeyText());
    return keys && intuition::SetHotKey(*keys, exec::FindTask(), CxSignal);
}

} // namespace

bool HasCommodities() {
    return intuition::DisplayHasHotKeys();
}

bool SetUpCommodity() {
    Signal = exec::AllocSignal();
    if (Signal < 0) {
        return false;
    }
    CxSignal = exec::SignalMask{1} << Signal;
    if (TakeHotKey()) {
        CommodityInForce = 1;
        return true;
    }
    ShutDownCommodity();
    Prefs.UseCommodity = 0; // or the program would never start again while the key is taken
    static_cast<void>(SavePrefs(1));
    Tell(MSG_INVALID_HOT_KEY, RequesterImage::Error);
    return false;
}

void ShutDownCommodity() {
    intuition::ClearHotKey();
    if (Signal >= 0) {
        exec::FreeSignal(Signal);
        Signal = -1;
    }
    CxSignal = 0;
    CommodityInForce = 0;
}

} // namespace solvane
