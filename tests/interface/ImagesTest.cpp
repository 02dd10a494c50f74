#include "interface/Images.h"

#include "platform/intuition/Application.h"
#include "platform/intuition/Images.h"
#include "sak/Images.h"
#include "tests/platform/dos/DosTest.h"

namespace solvane {
namespace {

using intuition::ImageId;

// The pictures that the build has made, without a screen.
class ImagesTest : public DosTest {
protected:
    ImagesTest() {
        dos::SetProgramDrawer("Host:" + std::string(SOLVANE_BUILD_DIR).substr(1) + "/share/solvane");
        EXPECT_TRUE(intuition::OpenDisplay(0, nullptr));
    }
    ~ImagesTest() override {
        DisposeBitMapImages();
        intuition::CloseDisplay();
    }
    static int SideOf(ImageId image) {
        const intuition::ImageSize size = intuition::SizeOfImage(image);
        EXPECT_EQ(size.Width, size.Height);
        return size.Width;
    }
};

TEST_F(ImagesTest, EverySharedPictureIsThereInItsSizes) {
    ASSERT_TRUE(LoadBitMapImages());
    for (const ImageId image : ImgObjects.Lists)
        EXPECT_EQ(SideOf(image), 16) << static_cast<int>(image);
    for (const auto& sizes : ImgObjects.Tiles)
        for (std::size_t at = 0; at < sizes.size(); ++at)
            EXPECT_EQ(SideOf(sizes[at]), TileImageSizes[at]);
    for (std::uint32_t type = 0; type < 25; ++type)
        EXPECT_EQ(SideOf(DeviceImageObject(type)), 16) << type;
    EXPECT_EQ(DeviceImageObject(20), DeviceImageObject(99));
    EXPECT_EQ(TileImageObject(TileImage::File, 100), TileImageObject(TileImage::File, 64));
    EXPECT_EQ(TileImagePath(TileImage::File, 32), "PROGDIR:Images/Tiles/file.png");
    DisposeBitMapImages();
    EXPECT_EQ(ListImageObject(ListImage::Drawer), ImageId::None);
}

TEST_F(ImagesTest, OnePictureIsLoadedByItsPathOrIsACopyOfTheFallback) {
    const ImageId fallback = intuition::ObtainImage(ListImagePath(ListImage::File));
    const std::string path = TileImagePath(TileImage::Drawer, 64);
    const ImageId loaded = SAK_LoadImage(path, 20, 18, fallback);
    EXPECT_EQ(SideOf(loaded), 18) << "as large as fits";
    for (const char* bad : {"Test:none.png", "Test:", "", "Nowhere:x"}) {
        const ImageId copy = SAK_LoadImage(bad, 20, 18, fallback);
        EXPECT_EQ(copy, fallback) << bad;
        intuition::ReleaseImage(copy);
    }
    const ImageId copy = SAK_CopyImage(fallback);
    intuition::ReleaseImage(fallback);
    EXPECT_EQ(SideOf(copy), 16) << "outlives the picture that it is a copy of";
    intuition::ReleaseImage(copy);
    EXPECT_EQ(intuition::SizeOfImage(copy).Width, 0);
    intuition::ReleaseImage(loaded);
    EXPECT_EQ(SAK_CopyImage(ImageId::None), ImageId::None);
}

} // namespace
} // namespace solvane
