#include "platform/intuition/WishedImages.h"

#include "tests/platform/intuition/Stage.h"

#include <QImage>

#include <algorithm>
#include <filesystem>
#include <set>

namespace intuition {
namespace {

// A screen of slots 0 to 9 that remembers what was drawn again, and a drawer of pictures.
class WishedImagesTest : public OnDisplay {
protected:
    WishedImagesTest() { qputenv("XDG_CACHE_HOME", Drawer.path().toUtf8() + "/cache"); }
    ~WishedImagesTest() override { qunsetenv("XDG_CACHE_HOME"); }

    std::string MakePicture(const char* name, const QColor& colour, int width = 400) const {
        QImage image(width, width / 2, QImage::Format_RGB32);
        image.fill(colour);
        const QString path = Drawer.path() + QLatin1Char('/') + QString::fromLatin1(name);
        EXPECT_TRUE(image.save(path));
        return path.toStdString();
    }
    static ImageWish Thumbnail(const std::string& path) {
        return {{{path, ImageStep::Source::Thumbnail, {}}}, 64, 64, ImageId::None};
    }
    ImageId Draw(WishedImages& images, std::size_t slot, const ImageWish& wish) {
        return images.Image(slot, [&] {
            ++Wishes;
            return wish;
        });
    }
    ImageId DrawLoaded(WishedImages& images, std::size_t slot, const ImageWish& wish) {
        (void)Draw(images, slot, wish);
        FinishWishedImages();
        return Draw(images, slot, wish);
    }
    static QColor ColourOf(ImageId image) { return PixmapOf(image).toImage().pixelColor(5, 5); }
    WishedImages::Hooks Hooks() {
        return {[this](std::size_t slot) { Redrawn.insert(slot); },
                [this](std::size_t slot) { return slot >= FirstShown && slot < FirstShown + 10; }};
    }

    const QTemporaryDir Drawer;
    std::size_t FirstShown = 0;
    std::set<std::size_t> Redrawn;
    int Wishes = 0;
};

TEST_F(WishedImagesTest, APictureComesBehindTheFallbackAndRedrawsItsSlotAlone) {
    const std::uint32_t pixel = 0xFF123456;
    const ImageId fallback = CreateImage(1, 1, {&pixel, 1});
    ImageWish wish = Thumbnail(MakePicture("red.png", Qt::red));
    wish.Fallback = fallback;
    WishedImages images(Hooks());
    EXPECT_EQ(Draw(images, 3, wish), fallback);
    EXPECT_EQ(Draw(images, 3, wish), fallback) << "asked for once";
    EXPECT_EQ(Wishes, 1);
    FinishWishedImages();
    EXPECT_EQ(Redrawn, std::set<std::size_t>{3});
    const ImageId loaded = Draw(images, 3, wish);
    EXPECT_EQ(ColourOf(loaded), QColor(Qt::red));
    EXPECT_EQ(SizeOfImage(loaded).Width, 64);
    EXPECT_EQ(SizeOfImage(loaded).Height, 32);
    ReleaseImage(fallback);
}

TEST_F(WishedImagesTest, NothingIsLoadedForSlotsOffScreen) {
    const ImageWish wish = Thumbnail(MakePicture("red.png", Qt::red));
    WishedImages images(Hooks());
    EXPECT_EQ(DrawLoaded(images, 20, wish), ImageId::None);
    EXPECT_TRUE(Redrawn.empty());
    FirstShown = 15;
    EXPECT_NE(DrawLoaded(images, 20, wish), ImageId::None) << "it is asked for when it comes into view";
}

TEST_F(WishedImagesTest, StepsAreTriedInOrderAndOnlyWhereTheirConditionHolds) {
    const std::string red = MakePicture("red.png", Qt::red), blue = MakePicture("blue.png", Qt::blue);
    const std::string missing = red + ".gone";
    WishedImages images(Hooks());
    const auto shown = [&](std::size_t slot, std::vector<ImageStep> steps) {
        return ColourOf(DrawLoaded(images, slot, {std::move(steps), 64, 64, ImageId::None}));
    };
    EXPECT_EQ(shown(0, {{missing}, {blue}}), QColor(Qt::blue));
    EXPECT_EQ(shown(1, {{red, ImageStep::Source::File, missing}, {blue}}), QColor(Qt::blue));
    EXPECT_EQ(shown(2, {{red, ImageStep::Source::File, blue}, {blue}}), QColor(Qt::red));
    EXPECT_EQ(DrawLoaded(images, 3, {{{missing}}, 64, 64, ImageId::None}), ImageId::None);
}

TEST_F(WishedImagesTest, EqualFilesShareOnePictureAndANewListShowsItAtOnce) {
    const std::string red = MakePicture("red.png", Qt::red);
    const ImageWish direct{{{red}}, 64, 64, ImageId::None};
    const ImageWish byDetour{{{red + ".gone"}, {red}}, 64, 64, ImageId::None};
    WishedImages images(Hooks());
    const ImageId first = DrawLoaded(images, 0, direct);
    EXPECT_EQ(DrawLoaded(images, 1, byDetour), first);
    WishedImages next(Hooks());
    EXPECT_EQ(Draw(next, 5, direct), first);
    Redrawn.clear();
    FinishWishedImages();
    EXPECT_TRUE(Redrawn.empty()) << "nothing has changed";
}

TEST_F(WishedImagesTest, AKeptPictureGivesWayWhenItsFileHasChanged) {
    const ImageWish wish = Thumbnail(MakePicture("one.png", Qt::red));
    WishedImages images(Hooks());
    EXPECT_EQ(ColourOf(DrawLoaded(images, 0, wish)), QColor(Qt::red));
    (void)MakePicture("one.png", Qt::blue);
    std::filesystem::last_write_time(wish.Steps[0].Path, std::filesystem::file_time_type::clock::now() +
                                                             std::chrono::seconds(10));
    WishedImages reloaded(Hooks());
    EXPECT_EQ(ColourOf(DrawLoaded(reloaded, 0, wish)), QColor(Qt::blue));
    EXPECT_EQ(Redrawn.count(0), 1U);
}

TEST_F(WishedImagesTest, AListThatGoesTakesItsWishesAlong) {
    const ImageWish wish = Thumbnail(MakePicture("red.png", Qt::red));
    auto images = std::make_unique<WishedImages>(Hooks());
    for (std::size_t slot = 0; slot < 10; ++slot)
        (void)Draw(*images, slot, wish);
    images.reset();
    FinishWishedImages();
    EXPECT_TRUE(Redrawn.empty());
}

// A picture of 2048 by 1024 pixels takes 8 MB.
TEST_F(WishedImagesTest, WhatWasDrawnLongestAgoIsForgottenFirst) {
    const std::string path = MakePicture("large.png", Qt::green, 2048);
    WishedImages images(Hooks());
    std::vector<ImageId> ids;
    for (int slot = 0; slot < 10; ++slot) {
        const ImageWish wish{{{path}}, 2048 + slot, 2048, ImageId::None};
        ids.push_back(DrawLoaded(images, static_cast<std::size_t>(slot), wish));
        EXPECT_EQ(Draw(images, 0, wish), ids[0]) << "drawn again and again, it stays";
    }
    const auto isKept = [](ImageId id) { return !PixmapOf(id).isNull(); };
    EXPECT_EQ(std::ranges::count_if(ids, isKept), 8);
    EXPECT_TRUE(isKept(ids[0]) && isKept(ids[9]) && !isKept(ids[1]));
    Wishes = 0;
    (void)Draw(images, 1, {{{path}}, 2049, 2048, ImageId::None});
    EXPECT_EQ(Wishes, 1) << "what was forgotten is asked for again";
}

} // namespace
} // namespace intuition
