#include "platform/icon/IconPicture.h"

#include "tests/platform/icon/IconSamples.h"

#include <algorithm>

namespace {

using icon::IconPicture, icon::IconState;

std::uint32_t Hash(const IconPicture& picture) {
    std::uint32_t hash = 2166136261;
    for (const std::uint32_t pixel : picture.Pixels)
        hash = (hash ^ pixel) * 16777619;
    return hash;
}

IconPicture Picture(std::string_view file, IconState state = IconState::Normal) {
    const auto object = Parse(file);
    const auto picture = object ? icon::GetIconPicture(*object, state) : std::nullopt;
    EXPECT_TRUE(picture);
    return picture.value_or(IconPicture{1, 1, {0}});
}

IconPicture Drawn(std::string_view file, std::uint32_t width, std::uint32_t height) {
    const auto object = Parse(file);
    const auto picture = object ? icon::DrawIcon(*object, width, height, IconState::Normal) : std::nullopt;
    EXPECT_TRUE(picture);
    return picture.value_or(IconPicture{1, 1, {0}});
}

TEST(IconPictureTest, EveryKindOfPictureIsDecodedPixelForPixel) {
    for (const SampleRow& row : SampleRows) {
        const std::string file = Sample(row.Name);
        const IconPicture normal = Picture(file);
        EXPECT_EQ(normal.Width, row.Width) << row.Name;
        EXPECT_EQ(normal.Height, row.Height) << row.Name;
        EXPECT_EQ(Hash(normal), row.Normal) << row.Name;
        const IconPicture selected = Picture(file, IconState::Selected);
        EXPECT_EQ(selected.Pixels.size(), normal.Pixels.size()) << row.Name;
        EXPECT_NE(Hash(selected), row.Normal) << row.Name;
        if (row.Selected != 0) {
            EXPECT_EQ(Hash(selected), row.Selected) << row.Name;
        }
    }
}

TEST(IconPictureTest, SelectedPlanarPicturesAreInvertedAsTheirGadgetSays) {
    const std::vector<std::string> rows = {"0111", "1121", "1013", "1111"};
    const std::vector<std::uint32_t> normal = {0,          0xFF000000, 0xFF000000, 0xFF000000,
                                               0xFF000000, 0xFF000000, 0xFFFFFFFF, 0xFF000000};
    const IconPicture picture = Picture(PlanarIcon(rows, 4));
    EXPECT_TRUE(std::ranges::equal(normal, std::span(picture.Pixels).first(8)));
    const IconPicture whole = Picture(PlanarIcon(rows, 4), IconState::Selected);
    EXPECT_EQ(whole.Pixels[0], 0xFF6688BB); // pen 0 becomes pen 3
    EXPECT_EQ(whole.Pixels[6], 0xFF000000);
    EXPECT_EQ(whole.Pixels[11], 0U);
    const IconPicture backfill = Picture(PlanarIcon(rows, 5), IconState::Selected);
    EXPECT_EQ(backfill.Pixels[0], 0U);         // touches the edge
    EXPECT_EQ(backfill.Pixels[9], 0xFF6688BB); // enclosed
}

TEST(IconPictureTest, StoredPlanesGoToThoseThatArePicked) {
    std::string file = PlanarIcon({"01", "10"}, 4);
    file[78 + 9] = 1;  // one plane only,
    file[78 + 14] = 2; // for plane 1 of the screen
    EXPECT_EQ(Picture(file).Pixels, (std::vector<std::uint32_t>{0, 0xFFFFFFFF, 0xFFFFFFFF, 0}));
    file[78 + 15] = 1; // the other one is set everywhere
    EXPECT_EQ(Picture(file).Pixels,
              (std::vector<std::uint32_t>{0xFF000000, 0xFF6688BB, 0xFF6688BB, 0xFF000000}));
}

TEST(IconPictureTest, ABrokenPictureLeavesTheNextBestOne) {
    std::string file = Sample("os35_drawer_uncompressed_palette");
    EXPECT_EQ(Picture(file).Width, 46U);
    file.resize(file.size() - 1000);
    EXPECT_EQ(Picture(file).Width, 8U);
    std::string newIcon = Sample("newicon_drawer_8col");
    newIcon[newIcon.find("IM1=") + 5] = '!'; // no width
    EXPECT_EQ(Picture(newIcon).Width, 57U);
    const auto none = Parse(ProjectIcon({"A"}));
    EXPECT_FALSE(icon::GetIconPicture(*none, IconState::Normal));
    EXPECT_FALSE(icon::DrawIcon(*none, 32, 32, IconState::Selected));
}

TEST(IconPictureTest, APaletteThatEndsEarlyKeepsItsLastColour) {
    const std::string chunk("\0\2\2\0\1\1\0\1\0\6" // three colours, the picture plain, the palette packed
                            "\0\1\5\x11\x22\x33\x44\x55\x66", // two pixels, two colours
                            19);
    std::string file = PlanarIcon({"1"}, 4) + "FORM" + Long(46) + "ICONFACE" + Long(6);
    file.append("\1\0\0\0\0\0", 6).append("IMAG").append(Long(19)).append(chunk);
    EXPECT_EQ(Picture(file).Pixels, (std::vector<std::uint32_t>{0xFF112233, 0xFF445566}));
}

TEST(IconPictureTest, DrawingFitsTheBoxAndKeepsTheShape) {
    struct Row {
        const char* Name;
        std::uint32_t BoxWidth, BoxHeight, Width, Height;
    };
    const Row rows[] = {
        {"os4_argb_tool", 64, 64, 64, 64},
        {"os4_argb_tool", 20, 18, 18, 18},
        {"os4_argb_tool", 128, 200, 128, 128},
        {"os35_project_one_image", 64, 64, 58, 64}, // 42 by 46
        {"newicon_drawer_8col", 20, 18, 16, 18},
        {"classic_drawer_2plane", 64, 64, 57, 14}, // planar: whole numbers only
        {"classic_drawer_2plane", 128, 128, 114, 28},
        {"classic_drawer_2plane", 20, 18, 20, 4},
        {"classic_drawer_2plane", 0, 0, 1, 1},
        {"png_icon_with_icon_chunk", 5000, 100000, 1024, 1024},
    };
    for (const Row& row : rows) {
        const IconPicture picture = Drawn(Sample(row.Name), row.BoxWidth, row.BoxHeight);
        EXPECT_EQ(picture.Width, row.Width) << row.Name << ' ' << row.BoxWidth;
        EXPECT_EQ(picture.Height, row.Height) << row.Name << ' ' << row.BoxWidth;
        EXPECT_EQ(picture.Pixels.size(), std::size_t{row.Width} * row.Height);
    }
}

TEST(IconPictureTest, ShrinkingTakesTheMeanWithoutTheColourOfTransparentPixels) {
    const IconPicture half = Drawn(PlanarIcon({"2211", "2211", "0200", "0000"}, 4), 2, 2);
    EXPECT_EQ(half.Pixels, (std::vector<std::uint32_t>{0xFFFFFFFF, 0xFF000000, 0x40FFFFFF, 0}));
    const IconPicture third = Drawn(PlanarIcon({"212", "121", "212"}, 4), 1, 1);
    EXPECT_EQ(third.Pixels, std::vector<std::uint32_t>{0xFF8E8E8E}); // five ninths of white
    const IconPicture uneven = Drawn(PlanarIcon({"221", "221", "221"}, 4), 2, 2);
    EXPECT_EQ(uneven.Pixels[1], 0xFF555555); // a third of the middle column, and the last
}

TEST(IconPictureTest, GrowingRepeatsPlanarPixelsAndSmoothsOthers) {
    const IconPicture planar = Drawn(PlanarIcon({"12"}, 4), 5, 5);
    EXPECT_EQ(planar.Width, 4U);
    EXPECT_EQ(planar.Pixels[1], 0xFF000000);
    EXPECT_EQ(planar.Pixels[2], 0xFFFFFFFF);
    const IconPicture smooth = Drawn(Sample("os35_drawer_small"), 16, 16);
    const IconPicture small = Picture(Sample("os35_drawer_small"));
    EXPECT_EQ(smooth.Pixels.front(), small.Pixels.front());
    EXPECT_EQ(smooth.Pixels.back(), small.Pixels.back());
    EXPECT_EQ(smooth.Pixels[7] >> 24, 0xFFU);
    EXPECT_NE(smooth.Pixels[7], small.Pixels[3]); // between the two colours
}

TEST(IconPictureTest, PixelsOfOldScreensAreSquared) {
    std::string flat = PlanarIcon({"1212", "1212"}, 4);
    flat[0x2F] = 0; // revision of the first system
    EXPECT_EQ(Drawn(flat, 16, 16).Height, 16U);
    std::string tall = PlanarIcon({"12", "12"}, 4);
    tall[0x2F] = 0;
    EXPECT_EQ(Drawn(tall, 2, 9).Height, 2U);
    std::string colour = Sample("os35_drawer_small");
    colour[colour.find("FACE") + 11] = 0x12; // pixels twice as high as wide
    EXPECT_EQ(Drawn(colour, 32, 32).Width, 16U);
}

TEST(IconPictureTest, CutAndChangedFilesAreSafe) {
    for (const char* name : {"classic_project_8plane", "newicon_drawer_8x8_opaque", "os35_project_tooltypes",
                             "os4_argb_tool", "gen_png_two_images"}) {
        const std::string file = Sample(name);
        for (std::size_t size = 0; size < file.size(); ++size) {
            std::string damaged = file;
            damaged[size] = static_cast<char>(damaged[size] ^ 0xFF);
            for (const std::string& bytes : {file.substr(0, size), damaged})
                if (const auto object = Parse(bytes))
                    for (const IconState state : {IconState::Normal, IconState::Selected})
                        if (const auto picture = icon::GetIconPicture(*object, state)) {
                            ASSERT_LE(picture->Width, icon::MaxPictureSide);
                            ASSERT_EQ(picture->Pixels.size(), std::size_t{picture->Width} * picture->Height);
                        }
        }
    }
}

TEST(IconPictureTest, PicturesOfHugeSizeAreRefused) {
    std::string png = Sample("gen_png_single_rgba");
    png.replace(16, 4, Long(1025));
    EXPECT_FALSE(icon::GetIconPicture(*Parse(png), IconState::Normal));
    std::string planar = PlanarIcon({"1"}, 4);
    planar.replace(78 + 4, 2, "\x04\x01"); // 1025 pixels wide, in one row
    planar.append(1024, '\0');
    EXPECT_FALSE(icon::GetIconPicture(*Parse(planar), IconState::Normal));
}

} // namespace
