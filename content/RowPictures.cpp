#include "content/RowPictures.h"

#include "content/PlaceRows.h"
#include "interface/Images.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/WorkingSet.h"
#include "platform/intuition/ListBrowser.h"
#include "sak/FilenameSupport.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

// Layout units.
constexpr IconBox SmallIcon{20, 18};
constexpr int SmallPicture = 16, ContentPicture = 32;

constexpr std::string_view IconSuffix = ".info", GameSuffix = ".slave";
constexpr std::string_view FileIcon = "ENVARC:Sys/def_file.info", DrawerIcon = "ENVARC:Sys/def_drawer.info";

bool EndsWith(std::string_view name, std::string_view suffix) {
    return name.size() >= suffix.size() && Text<128>(name.substr(name.size() - suffix.size())) == suffix;
}

// The path of the entry itself, which a link's record does not have.
std::string OwnPath(const ContentNode& node) {
    if (!IsLinkKind(node.ObjectKind)) {
        return std::string(node.EntryPath.View());
    }
    Text<1024> path;
    return SAK_JoinFilename(path, ActiveSet.PathRead, node.EntryName) ? std::string(path.View())
                                                                      : std::string();
}

std::string IconPath(const ContentNode& node) {
    const std::string path = OwnPath(node);
    return SAK_IsInfoFile(node.EntryName) || path.empty() ? path : path + std::string(IconSuffix);
}

// What is drawn for an entry that shows no picture of its own.
struct UsualPicture {
    ListImage Small, SmallWithIcon;
    TileImage Large, LargeWithIcon;
};
constexpr UsualPicture Drawers{ListImage::Drawer, ListImage::DrawerWithIcon, TileImage::Drawer,
                               TileImage::DrawerWithIcon};
constexpr UsualPicture Files{ListImage::File, ListImage::FileWithIcon, TileImage::File,
                             TileImage::FileWithIcon};
constexpr UsualPicture DrawerLinks{ListImage::DrawerLink, ListImage::DrawerLink, TileImage::DrawerLink,
                                   TileImage::DrawerLink};
constexpr UsualPicture FileLinks{ListImage::FileLink, ListImage::FileLink, TileImage::FileLink,
                                 TileImage::FileLink};

const UsualPicture& UsualPictureOf(const ContentNode& node) {
    if (IsLinkKind(node.ObjectKind)) {
        return IsDrawerKind(node.ObjectKind) ? DrawerLinks : FileLinks;
    }
    return IsDrawerKind(node.ObjectKind) ? Drawers : Files;
}

// The largest of the shared pictures that the style has room for.
int TileSideOf(std::int32_t style) {
    if (style == ViewTiles) {
        return TilesIconSide();
    }
    const IconBox box = BoxOf(style);
    const auto* fitting = std::ranges::find_if(
        TileImageSizes, [room = std::min(box.Width, box.Height)](int side) { return side <= room; });
    return fitting != TileImageSizes.end() ? *fitting : TileImageSizes.back();
}

// A picture's thumbnail is that of its file.
bool IsPicture(const ContentNode& node) {
    return node.DatatypeGroupValue == GroupPicture && !IsDrawerKind(node.ObjectKind) &&
           !SAK_IsInfoFile(node.EntryName);
}

intuition::ImageStep ThumbnailStep(const ContentNode& node) {
    return {.Path = std::string(node.EntryPath.View()), .From = intuition::ImageStep::Source::Thumbnail};
}

bool IsGame(const ContentNode& node) {
    return AtWHDLoadGamesRootDrawer != 0 && !IsDrawerKind(node.ObjectKind) &&
           EndsWith(node.EntryName, GameSuffix);
}

// The entry's icon, then the one of its type.
std::vector<intuition::ImageStep> OwnIconSteps(const ContentNode& node) {
    std::vector<intuition::ImageStep> steps;
    if (std::string own = IconPath(node); !own.empty()) {
        steps.push_back({.Path = std::move(own)});
    }
    if (!node.DefaultIconName.Empty()) {
        steps.push_back({.Path = "ENVARC:Sys/" + std::string(node.DefaultIconName.View())});
    }
    return steps;
}

} // namespace

std::vector<intuition::ImageStep> OwnPictureSteps(const ContentNode& node, std::int32_t style) {
    if (IsGame(node)) {
        const std::string path = OwnPath(node);
        return {{.Path = path.substr(0, path.size() - std::min(path.size(), GameSuffix.size())) +
                         std::string(IconSuffix)}};
    }
    if (!ShowsThumbnails(style) || IsDrawerKind(node.ObjectKind) || SAK_IsInfoFile(node.EntryName)) {
        return {};
    }
    if (IsPicture(node)) {
        return {ThumbnailStep(node)};
    }
    if (node.DatatypeGroupValue == GroupSound) {
        return {{.Path = std::string(FileIcon)}};
    }
    return {};
}

std::vector<intuition::ImageStep> IconSteps(const ContentNode& node) {
    std::vector<intuition::ImageStep> steps = OwnIconSteps(node);
    steps.push_back({.Path = std::string(IsDrawerKind(node.ObjectKind) ? DrawerIcon : FileIcon)});
    return steps;
}

std::vector<intuition::ImageStep> DetailsPictureSteps(const ContentNode& node) {
    if (IsPlace(node)) {
        return PlacePictureSteps(node);
    }
    std::vector<intuition::ImageStep> steps = IconSteps(node);
    if (Prefs.ShowThumbnail != 0 && AtFTPMount == 0 && IsPicture(node)) {
        steps.insert(steps.begin(), ThumbnailStep(node));
    }
    return steps;
}

IconBox BoxOf(std::int32_t style) {
    switch (style) {
    case ViewTiles:
        return {TilesIconSide(), TilesIconSide()};
    case ViewContent:
        return {ContentPicture, ContentPicture};
    case ViewThumbnail:
    case ViewThumbnailDetails:
        return ThumbnailBox();
    default:
        return SmallIcon;
    }
}

int PictureHeight(std::int32_t style) {
    return BoxOf(style).Height;
}

RowPictures::RowPictures(std::int32_t style, intuition::ListBrowser* list)
    : Style(style), Wished(list != nullptr ? std::make_unique<intuition::WishedImages>(*list) : nullptr) {}

void RowPictures::Drop() {
    if (Wished) {
        Wished->Clear();
    }
}

// On an FTP mount nothing is opened for its picture.
intuition::ImageId RowPictures::Of(std::size_t row, const ContentNode& node) {
    if (!Wished || AtFTPMount != 0) {
        return UsualOf(node);
    }
    return Wished->Image(row, [this, &node] { return WishOf(node); });
}

intuition::ImageWish RowPictures::WishOf(const ContentNode& node) const {
    intuition::ImageWish wish;
    const IconBox box = BoxOf(Style);
    wish.Fallback = UsualOf(node);
    wish.Width = box.Width;
    wish.Height = box.Height;
    if (IsPlace(node)) {
        wish.Steps = PlaceImageSteps(node, Style);
        return wish;
    }
    wish.Steps = OwnPictureSteps(node, Style);
    if (Prefs.ShowActualIcons != 0) {
        const auto icons = HasLargePictures(Style) ? IconSteps(node) : OwnIconSteps(node);
        wish.Steps.insert(wish.Steps.end(), icons.begin(), icons.end());
    } else if (!IsLinkKind(node.ObjectKind)) {
        const intuition::ImageWish usual = UsualWithIcon(node);
        if (wish.Steps.empty()) {
            return usual;
        }
        wish.Steps.insert(wish.Steps.end(), usual.Steps.begin(), usual.Steps.end());
    }
    return wish;
}

// The shared picture of an entry that has an icon, which is not looked at itself.
intuition::ImageWish RowPictures::UsualWithIcon(const ContentNode& node) const {
    const UsualPicture& usual = UsualPictureOf(node);
    const bool isLarge = HasLargePictures(Style);
    const int side = isLarge ? TileSideOf(Style) : SmallPicture;
    return {.Steps = {{.Path = isLarge ? TileImagePath(usual.LargeWithIcon, side)
                                       : ListImagePath(usual.SmallWithIcon),
                       .OnlyIf = IconPath(node)}},
            .Width = side,
            .Height = side,
            .Fallback = UsualOf(node)};
}

intuition::ImageId RowPictures::UsualOf(const ContentNode& node) const {
    if (IsPlace(node)) {
        return PlacePicture(node);
    }
    const UsualPicture& usual = UsualPictureOf(node);
    return HasLargePictures(Style) ? TileImageObject(usual.Large, TileSideOf(Style))
                                   : ListImageObject(usual.Small);
}

} // namespace solvane
