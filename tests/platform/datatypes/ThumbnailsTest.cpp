#include "platform/datatypes/Thumbnails.h"

#include "tests/support/TempTree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using datatypes::LoadThumbnail, datatypes::Picture, datatypes::StoreThumbnail, datatypes::Thumbnail;

constexpr std::uint32_t Red = 0xFFFF0000, Blue = 0xFF0000FF;

// A drawer with a picture in it and a cache of its own.
class Thumbnails : public testing::Test {
protected:
    Thumbnails() { setenv("XDG_CACHE_HOME", Drawer.Path("cache").c_str(), 1); }
    ~Thumbnails() override { unsetenv("XDG_CACHE_HOME"); }

    std::string MakePicture(std::string_view name, std::uint32_t colour) const {
        const Picture picture{600, 300, std::vector<std::uint32_t>(600 * 300, colour)};
        return Drawer.Write(name, datatypes::EncodePng(picture));
    }
    [[nodiscard]] std::vector<fs::path> Cached() const {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(Drawer.Path("cache")))
            if (entry.is_regular_file())
                files.push_back(entry.path());
        return files;
    }
    static bool Keep(const Thumbnail& thumbnail) {
        return thumbnail.ToStore && StoreThumbnail(*thumbnail.ToStore);
    }

    const TempTree Drawer;
};

TEST_F(Thumbnails, AreStoredAsTheDesktopWantsThemAndFoundAgain) {
    const std::string path = MakePicture("a b\xC3\xA4;.png", Red);
    const Thumbnail first = LoadThumbnail(path, {100, 100});
    ASSERT_TRUE(first.Shown);
    EXPECT_EQ(first.Shown->Width, 100U);
    EXPECT_EQ(first.Shown->Height, 50U);
    ASSERT_TRUE(Keep(first));
    const auto files = Cached();
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].parent_path().filename(), "normal");
    EXPECT_EQ(files[0].filename().string().size(), 36U);
    EXPECT_EQ(fs::status(files[0]).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(files[0].parent_path()).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(first.ToStore->Uri.ends_with("/a%20b%C3%A4%3B.png")) << first.ToStore->Uri;
    const Thumbnail again = LoadThumbnail(path, {100, 100});
    EXPECT_FALSE(again.ToStore);
    ASSERT_TRUE(again.Shown);
    EXPECT_EQ(again.Shown->Pixels, first.Shown->Pixels);
    EXPECT_EQ(LoadThumbnail(path, {200, 200}).ToStore->Side, 256U) << "another size class";
}

// What lies under the right name counts only with the right texts.
TEST_F(Thumbnails, OfAnotherStateOrAnotherFileAreNotTaken) {
    const std::string path = MakePicture("a.png", Red);
    Thumbnail thumbnail = LoadThumbnail(path, {100, 100});
    ASSERT_TRUE(thumbnail.ToStore && thumbnail.ToStore->Shown);
    std::ranges::fill(thumbnail.ToStore->Shown->Pixels, Blue);
    ASSERT_TRUE(Keep(thumbnail));
    EXPECT_EQ(LoadThumbnail(path, {100, 100}).Shown->Pixels[0], Blue) << "the cache is believed";
    --thumbnail.ToStore->Modified;
    ASSERT_TRUE(Keep(thumbnail));
    EXPECT_EQ(LoadThumbnail(path, {100, 100}).Shown->Pixels[0], Red);
    ASSERT_TRUE(Keep(LoadThumbnail(MakePicture("b.png", Blue), {100, 100})));
    const auto files = Cached();
    ASSERT_EQ(files.size(), 2U);
    for (const fs::path& from : files)
        for (const fs::path& to : files)
            if (from != to)
                fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    EXPECT_EQ(LoadThumbnail(path, {100, 100}).Shown->Pixels[0], Red);
}

TEST_F(Thumbnails, BrokenFilesAreRememberedUntilTheyChange) {
    const std::string path =
        Drawer.Write("a.png", datatypes::EncodePng({9, 9, std::vector(81, Red)}).substr(0, 50));
    const Thumbnail broken = LoadThumbnail(path, {100, 100});
    EXPECT_FALSE(broken.Shown);
    ASSERT_TRUE(Keep(broken));
    EXPECT_EQ(Cached()[0].parent_path().parent_path().filename(), "fail");
    EXPECT_FALSE(LoadThumbnail(path, {100, 100}).ToStore) << "known by now";
    (void)MakePicture("a.png", Red);
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(5));
    EXPECT_TRUE(LoadThumbnail(path, {100, 100}).Shown);
    const Thumbnail text = LoadThumbnail(Drawer.Write("text", "no picture"), {100, 100});
    EXPECT_TRUE(!text.Shown && !text.ToStore) << "another reader may come to know the format";
}

TEST_F(Thumbnails, WorkWithoutACacheAndNeverForTheCacheItself) {
    const std::string path = MakePicture("a.png", Red);
    Drawer.Write("cache", "not a drawer");
    const Thumbnail thumbnail = LoadThumbnail(path, {100, 100});
    EXPECT_TRUE(thumbnail.Shown);
    EXPECT_FALSE(Keep(thumbnail));
    fs::remove(Drawer.Path("cache"));
    ASSERT_TRUE(Keep(thumbnail));
    EXPECT_FALSE(LoadThumbnail(Cached()[0].string(), {20, 20}).ToStore);
    for (const char* hostile : {"", "\x89PNG\r\n\x1A\n", "text"}) {
        std::ofstream(Cached()[0], std::ios::trunc) << hostile;
        EXPECT_EQ(LoadThumbnail(path, {100, 100}).Shown->Pixels[0], Red);
    }
}

} // namespace
