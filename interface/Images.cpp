#include "interface/Images.h"

#include <algorithm>
#include <string>

namespace solvane {

namespace {

using intuition::ImageId;

constexpr std::array<std::string_view, 14> ListNames = {
    "drawer", "drawericon", "file",    "fileicon", "drawerlink", "filelink", "device",
    "assign", "home",       "desktop", "computer", "bookmark",   "favorite", "ftpsite"};
static_assert(ListNames.size() == std::tuple_size_v<decltype(ImageObjects::Lists)>);

constexpr std::array<std::string_view, 7> TileNames = {"drawer",     "drawericon", "file",  "fileicon",
                                                       "drawerlink", "filelink",   "assign"};
static_assert(TileNames.size() == std::tuple_size_v<decltype(ImageObjects::Tiles)>);
constexpr int PlainTileSize = 32; // stands under the plain name, other sizes in drawers of their own
constexpr int UsualTileSize = 64;

// By device type; the last two types look as those of real disks do.
constexpr std::array<std::string_view, DeviceImageCount> DeviceNames = {
    "ram",      "harddisk",  "floppy", "cd",    "rad",    "zip",   "jaz",
    "pcfloppy", "macfloppy", "cloud",  "cloud", "cloud",  "cloud", "dvd",
    "bluray",   "network",   "usb",    "ftp",   "floppy", "cd",    "unknown"};

constexpr int PlainToolSide = 16, LargeToolSide = 24; // the large ones stand in a drawer of their own

std::string ListPath(std::string_view name) {
    return ToolImagePath("list_" + std::string(name), PlainToolSide);
}

std::string TilePath(std::string_view name, int size) {
    const std::string drawer = size == PlainTileSize ? std::string() : std::to_string(size) + '/';
    return "PROGDIR:Images/Tiles/" + drawer + std::string(name) + ".png";
}

int TileSize(int size) {
    return std::ranges::count(TileImageSizes, size) != 0 ? size : UsualTileSize;
}

template <typename Row>
void Release(Row& row) {
    std::ranges::for_each(row, intuition::ReleaseImage);
    std::ranges::fill(row, ImageId::None);
}

} // namespace

ImageObjects ImgObjects;

bool LoadBitMapImages() {
    DisposeBitMapImages();
    for (std::size_t i = 0; i < ListNames.size(); ++i) {
        ImgObjects.Lists[i] = intuition::ObtainImage(ListPath(ListNames[i]));
    }
    for (std::size_t i = 0; i < TileNames.size(); ++i) {
        for (std::size_t size = 0; size < TileImageSizes.size(); ++size) {
            ImgObjects.Tiles[i][size] = intuition::ObtainImage(TilePath(TileNames[i], TileImageSizes[size]));
        }
    }
    for (std::size_t i = 0; i < DeviceNames.size(); ++i) {
        ImgObjects.Devices[i] = intuition::ObtainImage(ListPath(DeviceNames[i]));
    }
    return std::ranges::count(ImgObjects.Lists, ImageId::None) == 0;
}

void DisposeBitMapImages() {
    Release(ImgObjects.Lists);
    std::ranges::for_each(ImgObjects.Tiles, [](auto& sizes) { Release(sizes); });
    Release(ImgObjects.Devices);
}

int ToolImageSide(std::int32_t setting) {
    return setting == 0 ? PlainToolSide : LargeToolSide;
}

std::string ToolImagePath(std::string_view name, int side, ToolImageForm form) {
    if (name.empty()) {
        return {};
    }
    constexpr std::string_view endings[] = {".png", "_s.png", "_g.png"}; // by form
    const std::string_view drawer = side == PlainToolSide ? "" : "24/";
    return std::string("PROGDIR:Images/TBImages/")
        .append(drawer)
        .append(name)
        .append(endings[static_cast<std::size_t>(form)]);
}

std::string ListImagePath(ListImage image) {
    return ListPath(ListNames[static_cast<std::size_t>(image)]);
}

std::string TileImagePath(TileImage image, int size) {
    return TilePath(TileNames[static_cast<std::size_t>(image)], TileSize(size));
}

ImageId ListImageObject(ListImage image) {
    return ImgObjects.Lists[static_cast<std::size_t>(image)];
}

ImageId TileImageObject(TileImage image, int size) {
    const auto* place = std::ranges::find(TileImageSizes, TileSize(size));
    return ImgObjects
        .Tiles[static_cast<std::size_t>(image)][static_cast<std::size_t>(place - TileImageSizes.begin())];
}

ImageId DeviceImageObject(std::uint32_t deviceType) {
    return ImgObjects.Devices[std::min<std::size_t>(deviceType, DeviceImageCount - 1)];
}

} // namespace solvane
