#include "content/RowPictures.h"

#include "content/ViewStyles.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/intuition/ListBrowser.h"
#include "sak/FilenameSupport.h"

#include <string>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

constexpr int SmallPicture = 16, ContentPicture = 32; // layout units
constexpr int UsualLargePicture = 64;                 // what the program's own large pictures are made for

constexpr std::string_view IconSuffix = ".info", GameSuffix = ".slave";

bool EndsWith(std::string_view name, std::string_view suffix) {
    return name.size() >= suffix.size() && Text<128>(name.substr(name.size() - suffix.size())) == suffix;
}

// The path of the entry itself, which a link's record does not have.
std::string OwnPath(const ContentNode& node) {
    if (!IsLinkKind(node.ObjectKind)) {
        return std::string(node.EntryPath.View());
    }
    Text<1024> path;
    return SAK_JoinFilename(path, CurrentPath, node.EntryName) ? std::string(path.View()) : std::string();
}

std::string IconPath(const ContentNode& node) {
    const std::string path = OwnPath(node);
    return SAK_IsInfoFile(node.EntryName) || path.empty() ? path : path + std::string(IconSuffix);
}

// The picture that a file is itself or brings along; empty for most.
std::vector<intuition::ImageStep> ThumbnailSteps(const ContentNode& node) {
    using Source = intuition::ImageStep::Source;
    if (IsDrawerKind(node.ObjectKind) || SAK_IsInfoFile(node.EntryName)) {
        return {};
    }
    if (node.DatatypeGroupValue == GroupPicture) {
        return {{.Path = std::string(node.EntryPath.View()), .From = Source::Thumbnail}};
    }
    if (AtWHDLoadGamesRootDrawer != 0 && EndsWith(node.EntryName, GameSuffix)) {
        const std::string path = OwnPath(node);
        return {{.Path = path.substr(0, path.size() - GameSuffix.size()) + std::string(IconSuffix)}};
    }
    return {};
}

intuition::ImageId Obtain(std::int32_t style, std::string_view small, std::string_view large) {
    return intuition::ObtainImage(HasLargePictures(style) ? large : small);
}

} // namespace

std::vector<intuition::ImageStep> IconSteps(const ContentNode& node) {
    std::vector<intuition::ImageStep> steps;
    if (std::string own = IconPath(node); !own.empty()) {
        steps.push_back({.Path = std::move(own)});
    }
    if (!node.DefaultIconName.Empty()) {
        steps.push_back({.Path = "ENVARC:Sys/" + std::string(node.DefaultIconName.View())});
    }
    const bool drawer = IsDrawerKind(node.ObjectKind);
    steps.push_back({.Path = drawer ? "ENVARC:Sys/def_drawer.info" : "ENVARC:Sys/def_file.info"});
    return steps;
}

bool HasLargePictures(std::int32_t style) {
    return style == ViewTiles || style == ViewContent || style == ViewThumbnail ||
           style == ViewThumbnailDetails;
}

int PictureHeight(std::int32_t style) {
    switch (style) {
    case ViewTiles:
        return TilesIconSide();
    case ViewContent:
        return ContentPicture;
    case ViewThumbnail:
    case ViewThumbnailDetails:
        return ThumbnailBox().Height;
    default:
        return SmallPicture;
    }
}

RowPictures::RowPictures(std::int32_t style, intuition::ListBrowser* list)
    : Style(style),
      Drawer(Obtain(style, "PROGDIR:Images/TBImages/list_drawer.png", "PROGDIR:Images/Img_Drawer.png")),
      File(Obtain(style, "PROGDIR:Images/TBImages/list_file.png", "PROGDIR:Images/Img_Project.png")),
      DrawerLink(
          Obtain(style, "PROGDIR:Images/TBImages/list_drawerlink.png", "PROGDIR:Images/Img_DrawerLink.png")),
      FileLink(
          Obtain(style, "PROGDIR:Images/TBImages/list_filelink.png", "PROGDIR:Images/Img_ProjectLink.png")),
      Wished(list != nullptr ? std::make_unique<intuition::WishedImages>(*list) : nullptr) {}

RowPictures::~RowPictures() {
    for (const intuition::ImageId picture : {Drawer, File, DrawerLink, FileLink}) {
        intuition::ReleaseImage(picture);
    }
}

// On an FTP mount nothing is opened for its picture.
intuition::ImageId RowPictures::Of(std::size_t row, const ContentNode& node) {
    const bool plain = !HasLargePictures(Style) && Prefs.ShowActualIcons == 0;
    if (!Wished || plain || AtFTPMount != 0) {
        return UsualOf(node);
    }
    return Wished->Image(row, [this, &node] { return WishOf(node); });
}

intuition::ImageWish RowPictures::WishOf(const ContentNode& node) const {
    intuition::ImageWish wish;
    wish.Fallback = UsualOf(node);
    wish.Height = PictureHeight(Style);
    wish.Width = wish.Height;
    if (Style == ViewThumbnail || Style == ViewThumbnailDetails) {
        wish.Width = ThumbnailBox().Width;
        wish.Steps = ThumbnailSteps(node);
    }
    if (Prefs.ShowActualIcons != 0) {
        const std::vector<intuition::ImageStep> icons = IconSteps(node);
        wish.Steps.insert(wish.Steps.end(), icons.begin(), icons.end());
    } else if (wish.Height > UsualLargePicture && !IsLinkKind(node.ObjectKind)) {
        wish.Steps.push_back(IconSteps(node).back());
    }
    return wish;
}

intuition::ImageId RowPictures::UsualOf(const ContentNode& node) const {
    if (IsLinkKind(node.ObjectKind)) {
        return IsDrawerKind(node.ObjectKind) ? DrawerLink : FileLink;
    }
    return IsDrawerKind(node.ObjectKind) ? Drawer : File;
}

} // namespace solvane
