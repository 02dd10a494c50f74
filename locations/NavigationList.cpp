#include "locations/NavigationList.h"

#include "content/ContentRows.h"
#include "content/PlaceRows.h"
#include "interface/Images.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/NavigationPane.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/intuition/WishedImages.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace solvane {

namespace {

using intuition::TreeRow;
using intuition::TreeRowKind;

constexpr int IconWidth = 20, IconHeight = 18; // layout units
constexpr std::string_view DefaultText = "000000";

// Icons of rows that show their own: by row, empty for the others.
std::vector<std::string> IconPaths;
std::unique_ptr<intuition::WishedImages> Icons; // null without Prefs.ShowActualIcons

// Text style of one kind of row; the desktop's own unless the user wants colours here.
void StyleRow(TreeRow& row, std::string_view colour, std::int16_t bold, std::int16_t italic,
              std::int16_t underline) {
    if (Prefs.ColorsInNavPane == 0) {
        return;
    }
    row.Colour = OwnColour(colour, DefaultText);
    row.Bold = bold != 0;
    row.Italic = italic != 0;
    row.Underline = underline != 0;
}

void StyleAsDevice(TreeRow& row) {
    StyleRow(row, Prefs.DevicesColor, Prefs.DevicesBold, Prefs.DevicesItalic, Prefs.DevicesUnderline);
}
void StyleAsAssign(TreeRow& row) {
    StyleRow(row, Prefs.AssignsColor, Prefs.AssignsBold, Prefs.AssignsItalic, Prefs.AssignsUnderline);
}
void StyleAsDrawer(TreeRow& row) {
    StyleRow(row, Prefs.DrawersColor, Prefs.DrawersBold, Prefs.DrawersItalic, Prefs.DrawersUnderline);
}

TreeRow MakeRow(TreeRowKind kind, MessageNumber label, std::string_view text, ListImage image) {
    return {.Kind = kind,
            .Label = std::string(SAK_LocaleString(label)),
            .UserData = std::string(text),
            .Image = ListImageObject(image)};
}

TreeRow Separator() {
    return {.Kind = TreeRowKind::Separator, .Label = {}, .UserData = "[blank]"};
}

std::string HintOf(std::string_view path) {
    return Prefs.ShowNavListbrowserHints != 0 ? std::string(path) : std::string();
}

// Where the icon of a drawer or disk lies. Empty where nothing may be looked up: ENV: has none of its own,
// and a disk that may never answer is not asked.
std::string IconPathOf(const Text<1024>& path) {
    if (path.Empty() || Text<128>(path) == "ENV:" || MayHang(path)) {
        return {};
    }
    return std::string(path.View()) + (SAK_IsDeviceRoot(path) ? "Disk.info" : ".info");
}

// The rows as they are made, with their icons beside them.
class RowMaker {
public:
    void Add(TreeRow row, std::string icon = {}) {
        Rows.push_back(std::move(row));
        Paths.push_back(std::move(icon));
    }
    void AddFavorites();
    void AddComputer();
    void AddAssigns();
    void AddSites();

    std::vector<TreeRow> Rows;
    std::vector<std::string> Paths;

private:
    void AddFavorite(const FavoritesNode& favorite);
    void AddSite(bool shown, MessageNumber label, std::string_view text);
};

void RowMaker::AddFavorite(const FavoritesNode& favorite) {
    TreeRow row{.Kind = TreeRowKind::Child,
                .Label = std::string(favorite.Name.View()),
                .UserData = std::string(favorite.Key.View()),
                .Hint = HintOf(favorite.Path),
                .Image = ListImageObject(ListImageOf(favorite.Location, favorite.Path))};
    StyleAsDrawer(row);
    const bool isDrawer = favorite.Location == LocationKind::Drawer;
    Add(std::move(row), isDrawer ? IconPathOf(favorite.Path) : std::string());
}

void RowMaker::AddFavorites() {
    if (Prefs.ShowFavorites == 0 || !MasterFavoritesList) {
        return;
    }
    TreeRow head = MakeRow(TreeRowKind::Head, MSG_FAVORITES, "Favorites", ListImage::Favorite);
    head.IsOpen = Prefs.FavoritesHidden == 0;
    Add(std::move(head));
    for (const FavoritesNode& favorite : *MasterFavoritesList) {
        AddFavorite(favorite);
    }
    Add(Separator());
}

void RowMaker::AddComputer() {
    TreeRow head = MakeRow(TreeRowKind::Head, MSG_COMPUTER, "Computer", ListImage::Computer);
    head.IsOpen = Prefs.ComputerHidden == 0;
    StyleAsDevice(head);
    Add(std::move(head));
    if (!NavDevicesList) {
        return;
    }
    for (const DevicesNode& device : *NavDevicesList) {
        TreeRow row{.Kind = TreeRowKind::Child,
                    .Label = std::string(device.Label.View()),
                    .UserData = std::string(device.Key.View()),
                    .Hint = HintOf(device.VolumeName),
                    .Image = DeviceImageObject(device.Type)};
        StyleAsDevice(row);
        Add(std::move(row), IconPathOf(device.VolumeName));
    }
}

void RowMaker::AddAssigns() {
    TreeRow row = MakeRow(TreeRowKind::Plain, MSG_ASSIGNS, "Assigns", ListImage::Assign);
    StyleAsAssign(row);
    Add(std::move(row));
}

void RowMaker::AddSite(bool shown, MessageNumber label, std::string_view text) {
    if (shown) {
        Add(MakeRow(TreeRowKind::Child, label, text, ListImage::FTPSite));
    }
}

void RowMaker::AddSites() {
    if (Prefs.ShowFTPSites == 0) {
        return;
    }
    Add(Separator());
    TreeRow head = MakeRow(TreeRowKind::Head, MSG_FTP_SITES, "FTPSites", ListImage::FTPSite);
    head.IsOpen = Prefs.FTPSitesHidden == 0;
    Add(std::move(head));
    AddSite(Prefs.ShowOS4DepotRecent != 0, MSG_OS4DEPOT_RECENT, "OS4DepotRecent");
    AddSite(Prefs.ShowOS4DepotFull != 0, MSG_OS4DEPOT_FULL, "OS4DepotFull");
    AddSite(Prefs.ShowAminetRecent != 0, MSG_AMINET_RECENT, "AminetRecent");
    AddSite(Prefs.ShowAminetFull != 0, MSG_AMINET_FULL, "AminetFull");
    if (FoundFTPMount == 0 || Prefs.ShowUserSites == 0 || !FTPSitesList) {
        return;
    }
    for (const FTPSitesNode& site : *FTPSitesList) {
        Add({.Kind = TreeRowKind::Child,
             .Label = std::string(site.Name.View()),
             .UserData = std::string(site.Key.View()),
             .Hint = HintOf(site.Address),
             .Image = ListImageObject(ListImage::FTPSite)});
    }
}

// Icons are loaded when their rows are drawn, by other threads.
void WishForIcons() {
    Icons.reset();
    if (Prefs.ShowActualIcons == 0) {
        Objects.Navigation->SetImageSource({});
        return;
    }
    Icons = std::make_unique<intuition::WishedImages>(intuition::WishedImages::Hooks{
        .Redraw =
            [](std::size_t row) {
                if (Objects.Navigation != nullptr) {
                    Objects.Navigation->RefreshRow(row);
                }
            },
        .IsOnScreen =
            [](std::size_t row) {
                return Objects.Navigation != nullptr && Objects.Navigation->IsOnScreen(row);
            }});
    Objects.Navigation->SetImageSource([](std::size_t row) {
        if (!Icons || row >= IconPaths.size() || IconPaths[row].empty()) {
            return intuition::ImageId::None;
        }
        return Icons->Image(row, [row] {
            return intuition::ImageWish{.Steps = {{.Path = IconPaths[row]}},
                                        .Width = IconWidth,
                                        .Height = IconHeight,
                                        .Fallback = Objects.Navigation->Rows()[row].Image};
        });
    });
}

} // namespace

void UpdateAllLists() {
    FreeNavigationList();
}

void BuildNavigationList() {
    FillInGoItemsComputer();
    FillInFTPSitesItems();
    if (Prefs.NavigationPane == 0) {
        ForgetOldRow();
    }
    if (Prefs.NavigationPane == 0 || Objects.Navigation == nullptr) {
        return;
    }
    RowMaker rows;
    rows.AddFavorites();
    rows.AddComputer();
    rows.AddAssigns();
    rows.AddSites();
    Icons.reset();
    IconPaths = std::move(rows.Paths);
    Objects.Navigation->SetRows(std::move(rows.Rows));
    Objects.Navigation->SetBackgrounds(OwnColour(Prefs.NavBackground1Color, "CFCFCF"),
                                       OwnColour(Prefs.NavBackground2Color, "C0C0C0"));
    WishForIcons();
    FindOldRow();
    SetNavigationSelected(LBLocation);
}

void FreeNavigationList() {
    if (Objects.Navigation != nullptr) {
        Objects.Navigation->SetImageSource({});
        Objects.Navigation->SetRows({});
    }
    Icons.reset();
    IconPaths.clear();
}

void OpenAppMenuObjects() {}

} // namespace solvane
