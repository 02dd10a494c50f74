#include "frame/ApplyPreferences.h"

#include "automation/ARexxScripts.h"
#include "automation/Commodity.h"
#include "interface/Iconify.h"
#include "interface/Locale.h"
#include "interface/Tell.h"
#include "media/Preview.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/exec/PublicPorts.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Messages.h"

#include <string_view>

namespace solvane {

namespace {

constexpr int CommandTimeout = 2000; // milliseconds that instance 1 has to answer

// Takes, renews or gives back the hot key as the preferences want it now. The first instance alone has one.
void FollowCommodity(bool otherKey) {
    const bool isWanted = Prefs.UseCommodity != 0 && HasCommodities() && PortNumber == 1;
    if (isWanted == (CommodityInForce != 0) && !(isWanted && otherKey)) {
        return;
    }
    ShutDownCommodity();
    if (!isWanted || !SetUpCommodity()) {
        ShutDownAppMenuItem();
    } else if (AppMenuSignal == 0 && !SetUpAppMenuItem()) {
        Tell(MSG_NO_APPMENU);
    }
}

} // namespace

void ApplyPreferences() {
    SetUpPreviewFonts();
    SetupLocale();
    DiscoverARexxScripts();
    if (Prefs.UseCommodity == 0) {
        Prefs.IconifyAppDocky = 1;
    }
    SetDateFormatInForce();
}

void LoadAndApplyPreferences() {
    const auto hotKey = Prefs.HotKey;
    LoadPrefs();
    FollowCommodity(!hotKey.SameBytes(Prefs.HotKey));
    appShowInAmiDock = Prefs.ShowInAmiDock != 0 ? 1 : 0;
    RenewDockEntry();
    ApplyPreferences();
}

bool SetUpAsCommodity() {
    if (Prefs.UseCommodity == 0 || !HasCommodities()) {
        return true; // without a broker no hot key could ever bring a window up
    }
    if (PortNumber != 1) {
        for (const std::string_view command : {"ACTIVATE", "WINDOWTOFRONT", "ACTIVATEWINDOW"}) {
            static_cast<void>(exec::SendCommand("SOLVANE.1", command, CommandTimeout));
        }
        return false;
    }
    if (!SetUpCommodity()) {
        TellTerminate(MSG_NO_COMMODITY);
        return false;
    }
    if (!SetUpAppMenuItem()) {
        TellTerminate(MSG_NO_APPMENU);
        return false;
    }
    return true;
}

} // namespace solvane
