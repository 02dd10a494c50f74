#include "platform/icon/ByteWriter.h"
#include "platform/icon/ClassicParts.h"
#include "platform/icon/IconKinds.h"

#include <span>

namespace icon {
namespace {

// Pictures in the four pens of a Workbench: "." ground, "#" black, "o" white, "+" blue.
constexpr std::string_view Pens = ".#o+";
constexpr int PictureDepth = 2;

constexpr std::string_view DiskPicture[] = {
    "##########################..", //
    "#+++#oooooooooooooo#+++++##.", //
    "#+++#oooooooo####oo#++++++##", //
    "#+++#oooooooo#++#oo#+++++++#", //
    "#+++#oooooooo#++#oo#+++++++#", //
    "#+++#oooooooo####oo#+++++++#", //
    "#+++#oooooooooooooo#+++++++#", //
    "#+++################+++++++#", //
    "#++++++++++++++++++++++++++#", //
    "#+++####################+++#", //
    "#+++#oooooooooooooooooo#+++#", //
    "#+++#oooooooooooooooooo#+++#", //
    "#+++#oo##############oo#+++#", //
    "#+++#oooooooooooooooooo#+++#", //
    "#+++#oo##############oo#+++#", //
    "#+++#oooooooooooooooooo#+++#", //
    "#+++#oooooooooooooooooo#+++#", //
    "############################",
};

constexpr std::string_view DrawerPicture[] = {
    "..........................................", //
    "..######################################..", //
    ".#oooooooooooooooooooooooooooooooooooooo#.", //
    "##########################################", //
    "#oooooooooooooooooooooooooooooooooooooooo#", //
    "#o++++++++++++++++++++++++++++++++++++++##", //
    "#o++++++++++++++++++++++++++++++++++++++##", //
    "#o+++++++++++++############+++++++++++++##", //
    "#o+++++++++++++#oooooooooo#+++++++++++++##", //
    "#o+++++++++++++#oooooooooo#+++++++++++++##", //
    "#o+++++++++++++############+++++++++++++##", //
    "#o++++++++++++++++++++++++++++++++++++++##", //
    "#o++++++++++++++++++++++++++++++++++++++##", //
    "#o######################################o#", //
    "##########################################",
};

constexpr std::string_view ToolPicture[] = {
    "....................####....", //
    "..................##++++##..", //
    ".................#+++oo+++#.", //
    "................#+++o##o+++#", //
    "................#++o#..#o++#", //
    "................#++o#..#oo##", //
    "...............##+++o##.##..", //
    ".............##o+++++#......", //
    "...........##o++++++#.......", //
    ".........##o++++++##........", //
    ".......##o++++++##..........", //
    "......#o++++++##............", //
    "..##.##o+++##...............", //
    "##oo#..#o++#................", //
    "#++o#..#o++#................", //
    "#+++o##o+++#................", //
    ".#+++oo+++#.................", //
    "..##++++##..................", //
    "....####....................",
};

constexpr std::string_view ProjectPicture[] = {
    "#################.....", //
    "#ooooooooooooooo##....", //
    "#ooooooooooooooo#o#...", //
    "#oo+++++++++oooo#oo#..", //
    "#oooooooooooooo#####..", //
    "#oo+++++++ooooooooo#..", //
    "#ooooooooooooooooooo#.", //
    "#oo+++++++++++++++oo#.", //
    "#ooooooooooooooooooo#.", //
    "#oo+++++++++++++++oo#.", //
    "#ooooooooooooooooooo#.", //
    "#oo+++++++++++++++oo#.", //
    "#ooooooooooooooooooo#.", //
    "#oo+++++++++++oooooo#.", //
    "#ooooooooooooooooooo#.", //
    "#oo+++++++++++++++oo#.", //
    "#ooooooooooooooooooo#.", //
    "#ooooooooooooooooooo#.", //
    "#####################.",
};

constexpr std::string_view TrashcanPicture[] = {
    ".........####.........", //
    ".........#oo#.........", //
    ".####################.", //
    "#oooooooooooooooooooo#", //
    "#++++++++++++++++++++#", //
    "######################", //
    "..#o++++++++++++++++#.", //
    "..#o+##+++##++##+++##.", //
    "..#o+##+++##++##+++##.", //
    "..#o+##+++##++##+++##.", //
    "..#o+##+++##++##+++##.", //
    "..#o+##+++##++##+++##.", //
    "...#o##++##+++##++##..", //
    "...#o##++##+++##++##..", //
    "...#o##++##+++##++##..", //
    "...#o##++##+++##++##..", //
    "...#o+++++++++++++#...", //
    "...################...",
};

using Picture = std::span<const std::string_view>;

Picture PictureOf(IconType type) {
    switch (type) {
    case IconType::Disk:
    case IconType::Device:
    case IconType::Kick:
        return DiskPicture;
    case IconType::Drawer:
        return DrawerPicture;
    case IconType::Tool:
    case IconType::AppIcon:
        return ToolPicture;
    case IconType::Garbage:
        return TrashcanPicture;
    default:
        return ProjectPicture;
    }
}

// An image record with its planes.
std::string MakeImage(Picture rows) {
    const std::size_t width = rows.front().size();
    const std::size_t rowBytes = PlaneRowBytes(static_cast<std::int32_t>(width));
    std::string image(ImageSize, '\0');
    PutWord(image, 0x04, static_cast<std::uint16_t>(width));
    PutWord(image, 0x06, static_cast<std::uint16_t>(rows.size()));
    PutWord(image, 0x08, PictureDepth);
    PutLong(image, 0x0A, 1); // planes follow
    image[0x0E] = (1 << PictureDepth) - 1;
    for (int plane = 0; plane < PictureDepth; ++plane)
        for (const std::string_view row : rows) {
            std::string bits(rowBytes, '\0');
            for (std::size_t x = 0; x < row.size(); ++x)
                if ((Pens.find(row[x]) >> plane & 1) != 0)
                    bits[x / 8] = static_cast<char>(bits[x / 8] | 0x80 >> x % 8);
            image.append(bits);
        }
    return image;
}

} // namespace

DiskObject BuiltInIcon(IconType type) {
    const Picture picture = PictureOf(type);
    std::string file = NewClassicIcon(type == IconType::None ? IconType::Project : type);
    PutWord(file, RecordWidth, static_cast<std::uint16_t>(picture.front().size()));
    PutWord(file, RecordHeight, static_cast<std::uint16_t>(picture.size()));
    PutWord(file, RecordGadgetFlags, HasImageFlag | HighlightBackfill);
    PutLong(file, RecordImage, 1);
    file.append(MakeImage(picture));
    return ParseDiskObject(std::as_bytes(std::span(file))).value_or(DiskObject{});
}

} // namespace icon
