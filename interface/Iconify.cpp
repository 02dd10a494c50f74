#include "interface/Iconify.h"

#include "interface/MainLayout.h"
#include "interface/Panes.h"
#include "interface/Ringhio.h"
#include "interface/Screens.h"
#include "interface/Tell.h"
#include "model/LocationKind.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/WorkingSet.h"
#include "platform/dos/Paths.h"
#include "platform/icon/IconPicture.h"
#include "platform/intuition/AppIcon.h"
#include "sak/Icons.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"

#include <array>
#include <optional>
#include <string_view>

namespace solvane {

std::unique_ptr<exec::MsgPort> AppIconPort;
std::unique_ptr<exec::MsgPort> AppMenuPort;
std::unique_ptr<exec::MsgPort> AppLibPort;
exec::SignalMask AppMenuSignal = 0;
exec::SignalMask AppLibSignal = 0;
std::uint16_t appShowIcon = 0;
std::uint16_t IconifiedAppDocky = 0;

namespace {

constexpr std::uint32_t IconSide = 128; // pixels; sharp at twice the size of a layout unit
constexpr std::int32_t NotGiven = -2;   // of Icon_X and Icon_Y

std::unique_ptr<intuition::AppIcon> OnDesktop, InMenu, InDock;

// Without one, the place where the icon stands draws its own.
icon::IconPicture PictureOfProgram() {
    const auto object = SAK_GetProgramIcon(ProgramName.View(), ProgramDir.View());
    auto picture = object ? icon::DrawIcon(*object, IconSide, IconSide, icon::IconState::Normal)
                          : std::optional<icon::IconPicture>();
    if (!picture) {
        picture = icon::DrawIcon(icon::GetDefaultIcon(icon::IconType::Tool), IconSide, IconSide,
                                 icon::IconState::Normal);
    }
    return picture.value_or(icon::IconPicture());
}

std::unique_ptr<intuition::AppIcon> ShowIcon(intuition::AppIconRank rank, std::string_view label,
                                             exec::MsgPort& port, bool needsTray) {
    icon::IconPicture picture = PictureOfProgram();
    return std::make_unique<intuition::AppIcon>(
        intuition::AppIconSpec{.Rank = rank,
                               .Label = std::string(label),
                               .QuitText = std::string(SAK_LocaleString(MSG_MENU_QUIT)),
                               .Width = picture.Width,
                               .Height = picture.Height,
                               .Pixels = std::move(picture.Pixels),
                               .Left = Icon_X == NotGiven ? Prefs.Icon_X : Icon_X,
                               .Top = Icon_Y == NotGiven ? Prefs.Icon_Y : Icon_Y,
                               .NeedsTray = needsTray},
        port);
}

// The drawer on show names the icon and takes what is dropped on it.
std::string LabelOfIcon() {
    const std::string_view path = CurrentPath.View();
    if (!AcceptDD()) {
        return std::string(AppIconName.View());
    }
    std::string_view drawer = path;
    while (drawer.ends_with('/')) {
        drawer.remove_suffix(1);
    }
    const std::string_view last = dos::FilePart(drawer);
    return std::string(last.empty() ? path : last);
}

bool Iconify_AppIcon() {
    OnDesktop = ShowIcon(intuition::AppIconRank::Desktop, LabelOfIcon(), *AppIconPort, false);
    return true;
}

// Shown beside an open window only where there is a tray for it.
void ShowMenuItem(bool needsTray) {
    InMenu = ShowIcon(intuition::AppIconRank::Menu, AppIconName.View(), *AppMenuPort, needsTray);
}

bool Iconify_AppMenu() {
    if (AppMenuSignal != 0 || SetUpAppMenuItem()) {
        ShowMenuItem(false);
        return true;
    }
    TellTerminate(MSG_NO_APPMENU);
    return false;
}

bool Iconify_AmiDockDocky() {
    IconifiedAppDocky = 1;
    return RenewDockEntry();
}

struct Form {
    const std::int16_t& IsWanted;
    bool (*Take)();
};
const std::array Forms = {Form{Prefs.IconifyAppIcon, Iconify_AppIcon},
                          Form{Prefs.IconifyAppMenu, Iconify_AppMenu},
                          Form{Prefs.IconifyAppDocky, Iconify_AmiDockDocky}};

void TakeForms() {
    bool isSomewhere = false;
    for (std::size_t i = 0; i < Forms.size(); ++i) {
        if (Forms[i].IsWanted == 0) {
            continue;
        }
        if (Forms[i].Take()) {
            isSomewhere = true;
        } else {
            Tell(FormatMessage(MSG_NO_ICONIFY, static_cast<std::uint32_t>(i + 1)));
        }
    }
    if (!isSomewhere) {
        // Without any, nobody could bring the window back.
        Iconify_AppIcon();
    }
}

} // namespace

bool AcceptDD() {
    return LBLocation == LocationKind::Drawer && CurrentPath.View().find(':') != std::string_view::npos;
}

bool RenewDockEntry() {
    const bool isWanted = appShowInAmiDock != 0 || IconifiedAppDocky != 0;
    appShowIcon = isWanted ? 0 : 1;
    InDock = isWanted && AppLibPort ? ShowIcon(intuition::AppIconRank::Dock, AppIconName.View(), *AppLibPort,
                                               IconifiedAppDocky == 0)
                                    : nullptr;
    return InDock != nullptr;
}

bool RegisterApp() {
    AppLibPort = std::make_unique<exec::MsgPort>();
    AppLibSignal = OpenNotices() | AppLibPort->Mask();
    RenewDockEntry();
    return AppLibPort->IsOpen();
}

void UnregisterApp() {
    InDock.reset();
    CloseNotices();
    AppLibPort.reset();
    AppLibSignal = 0;
}

bool Iconify() {
    if (Prefs.OpenOnOwnScreen != 0) {
        return false;
    }
    Iconified = 1;
    SAK_StopNotify();
    if (WindowClosed == 0 && MainWindow) {
        CollectPaneWeights(); // a closed window has none
        MainWindow->Close();
        WindowClosed = 1;
    }
    ReleaseActiveScreen();
    TakeForms();
    return true;
}

void Uniconify() {
    if (Iconified == 0) {
        return;
    }
    OnDesktop.reset();
    while (AppIconPort) {
        auto message = exec::GetMsg(*AppIconPort);
        if (!message) {
            break;
        }
        exec::ReplyMsg(std::move(message));
    }
    if (CommodityInForce == 0) {
        ShutDownAppMenuItem();
    } else if (AppMenuPort) {
        ShowMenuItem(true);
    }
    IconifiedAppDocky = 0;
    RenewDockEntry();
}

bool SetUpAppMenuItem() {
    AppMenuPort = std::make_unique<exec::MsgPort>();
    AppMenuSignal = AppMenuPort->Mask();
    if (AppMenuSignal == 0) {
        return false;
    }
    ShowMenuItem(true);
    return true;
}

void ShutDownAppMenuItem() {
    InMenu.reset();
    AppMenuPort.reset(); // what waits in it goes back
    AppMenuSignal = 0;
}

void ClearPreviewPaneAfterUniconify() {}

} // namespace solvane
