#include "content/BuildLists.h"
#include "content/ContentRows.h"
#include "content/PlaceRows.h"
#include "content/RowLabels.h"
#include "content/RowPictures.h"
#include "content/Status.h"
#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "model/PrefsLists.h"
#include "sak/Locale.h"
#include "tests/content/DrawerTest.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using intuition::Rgb, testing::ElementsAre;

class RowsTest : public DrawerTest {
protected:
    RowsTest() { Prefs.DetermineDatatype = 2; }

    static std::vector<std::string> Cells(const ContentRows& rows, std::size_t row, std::size_t columns) {
        std::vector<std::string> cells;
        for (std::size_t column = 0; column < columns; ++column)
            cells.emplace_back(rows.Cell(row, column).Text);
        return cells;
    }
};

TEST_F(RowsTest, DetailsShowTheUsualColumnsAndListTheNameAlone) {
    using enum DetailsColumn;
    EXPECT_THAT(ShownColumns(ColumnSet::DetailsCI),
                ElementsAre(Icon, Name, Size, Date, Type, Protection, Filenote));
    EXPECT_THAT(ShownColumns(ColumnSet::ListCI), ElementsAre(Icon, Name));
    SAK_GetGenericListNode(*ShowDetailsColumnsList, 2)->Shown = 0;
    SAK_GetGenericListNode(*ShowDetailsColumnsList, 7)->Shown = 1;
    EXPECT_THAT(ShownColumns(ColumnSet::DetailsCI),
                ElementsAre(Icon, Name, Date, Type, Protection, Filenote, Dimensions));
    ASSERT_TRUE(CreateColumnInfoAll());
    EXPECT_EQ(ColInfo_GetDimensions, 1);
    EXPECT_EQ(ColInfo_GetMP3, 0);
    RestoreDefaultColumnInfos();
    EXPECT_EQ(ShownColumns(ColumnSet::DetailsCI).size(), 7U);
}

TEST_F(RowsTest, EveryListHasItsOwnColumns) {
    using enum LocationKind;
    const struct {
        LocationKind Location;
        std::int32_t Style;
        ColumnSet Set;
        std::size_t Columns;
        std::string_view LastTitle;
    } rows[] = {
        {Drawer, ViewThumbnailDetails, ColumnSet::DetailsCI, 7, "Filenote"},
        {Workbench, ViewDetails, ColumnSet::DetailsCI, 7, "Filenote"},
        {Favorites, ViewDetails, ColumnSet::FavoritesCI, 3, "Link target"},
        {Favorites, ViewTiles, ColumnSet::TilesCI, 2, "Name"},
        {Assigns, ViewDetails, ColumnSet::AssignsCI, 3, "Link target"},
        {FTPSites, ViewDetails, ColumnSet::FTPSitesCI, 4, "Remote drawer"},
        {Aminet, ViewDetails, ColumnSet::FTPSitesRecentCI, 7, "Description"},
        {Archive, ViewDetails, ColumnSet::ArchiveCI, 8, "Filenote"},
        {SearchResults, ViewTiles, ColumnSet::SearchCI, 3, "Drawer"},
        {DuplicateFiles, ViewDetails, ColumnSet::DuplicateCI, 2, "Name"},
        {Drawer, ViewIcons, ColumnSet::IconsCI, 2, "Name"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.Set));
        EXPECT_EQ(ColumnSetOf(row.Location, row.Style), row.Set);
        const auto columns = ShownColumns(row.Set);
        ASSERT_EQ(columns.size(), row.Columns);
        const ColumnDefault& last = InfoOf(row.Set).Columns[static_cast<std::size_t>(columns.back())];
        EXPECT_EQ(SAK_LocaleString(last.Title), row.LastTitle);
    }
}

TEST_F(RowsTest, CellsAreReadFromTheRecord) {
    using enum DetailsColumn;
    File("file", "12345");
    SoftLink("link", "file");
    ASSERT_TRUE(Scan());
    const ContentRows rows({Icon, Name, Size, Type, Filenote}, ViewDetails);
    ASSERT_EQ(rows.RowCount(), 2U);
    EXPECT_THAT(Cells(rows, 0, 5), ElementsAre("", "file", "5 B", "File", ""));
    EXPECT_THAT(Cells(rows, 1, 5), ElementsAre("", "link", "", "Soft link", Path("file")));
    EXPECT_EQ(rows.Name(1), "link");
    FindContentNode("file", AnyKind)->Comment = "a note";
    EXPECT_EQ(rows.Cell(0, 4).Text, "a note");
    EXPECT_EQ(rows.Cell(0, 5).Text, "") << "there is no such column";
}

TEST_F(RowsTest, LabelsTellWhatAnEntryIs) {
    File("song", "12345");
    Drawer("d");
    ASSERT_TRUE(Scan());
    ContentNode& song = *FindContentNode("song", AnyKind);
    ContentNode& drawer = *FindContentNode("d", AnyKind);
    song.DateText = drawer.DateText = "now";
    song.DatatypeName = "MP3";
    song.DatatypeGroupValue = GroupSound;
    song.VersionText = "1.0";
    song.Tags = std::make_unique<AudioTags>();
    song.Tags->TagTime = "3:21";
    song.ProtectionText = "----rw-d";
    const struct {
        RowLabel Label;
        const ContentNode& Node;
        std::vector<std::string> Lines;
    } rows[] = {
        {RowLabel::Tiles, drawer, {"Drawer", "now", Path("d") + " "}},
        {RowLabel::Tiles, song, {"MP3     3:21", "now     5 B     ----rw-d", Path("song") + " "}},
        {RowLabel::Content, drawer, {}},
        {RowLabel::Content, song, {"Type: MP3     3:21"}},
        {RowLabel::Figures, drawer, {"Date: now"}},
        {RowLabel::Figures, song, {"Date: now", "Size: 5 B"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FormLabel(row.Label, row.Node), row.Lines) << row.Node.EntryName.View();
    const ContentRows content(ShownColumns(ColumnSet::ContentCI), ViewContent);
    EXPECT_EQ(content.Cell(1, 1).Text, "song");
    EXPECT_EQ(content.Cell(1, 1).More.size(), 1U);
    EXPECT_EQ(content.Cell(1, 2).Text, "Date: now");
    EXPECT_EQ(content.Cell(1, 2).More.back(), "Size: 5 B");
}

TEST_F(RowsTest, StyleBoundToAPathLeavesThePreferenceAlone) {
    File("games/b", "1");
    File("games/a", "22");
    LocationsList = SAK_CreateGenericList<LocationsNode>();
    for (const auto& [path, style] : {std::pair("GAMES", ViewThumbnail), std::pair("games", ViewList)}) {
        LocationsNode* bound =
            SAK_AddGenericListNode(*LocationsList, SAK_CreateGenericListNode<LocationsNode>());
        bound->Path = path;
        bound->ViewStyle = style;
    }
    Prefs.ContentDetailsCISortColumn = 2;
    ASSERT_TRUE(Scan("games"));
    EXPECT_EQ(ViewStyleInForce(), ViewThumbnail) << "the first that fits counts";
    EXPECT_THAT(Rows(), ElementsAre("a", "b")) << "no Details view: by name";
    EXPECT_EQ(Prefs.ContentViewStyle, ViewDetails);
    ASSERT_TRUE(Scan());
    EXPECT_EQ(ViewStyleInForce(), ViewDetails);
    LocationsList.reset();
    CheckLocations();
}

TEST_F(RowsTest, FilmstripMayShowDrawersAndPicturesOnly) {
    Plant({"file", "picture", "drawer/"});
    Prefs.ContentViewStyle = ViewFilmstrip;
    ASSERT_TRUE(Scan());
    EXPECT_EQ(Rows().size(), 3U);
    FindContentNode("picture", AnyKind)->DatatypeGroupValue = GroupPicture;
    Prefs.FilmstripOnlyDrawersAndImages = 1;
    BuildContentList();
    EXPECT_THAT(Rows(), ElementsAre("drawer", "picture"));
    ASSERT_EQ(FilmstripList.size(), 2U);
    EXPECT_EQ(FilmstripList[1].FilmstripOffset, 2U) << "what is left out counts";
    EXPECT_EQ(FilmstripImageOf(*FilmstripList[0].Record), "PROGDIR:Images/Img_Drawer.png");
    EXPECT_EQ(FilmstripImageOf(*FilmstripList[1].Record), Path("picture"));
    ASSERT_TRUE(Scan("drawer"));
    EXPECT_TRUE(Rows().empty()) << "the strip needs no empty row";
}

TEST_F(RowsTest, PicturesAndSoundsShowWhatTheyAreAndNotTheirIcons) {
    using Source = intuition::ImageStep::Source;
    ContentNode node;
    node.ObjectKind = EntryKind::File;
    node.EntryName = "entry";
    node.EntryPath = "Test:entry";
    const auto first = [](const std::vector<intuition::ImageStep>& steps) {
        return steps.empty() ? "" : steps[0].Path + (steps[0].From == Source::Thumbnail ? "!" : "");
    };
    const struct {
        std::int32_t Group, Style;
        std::string Own, InDetails;
    } rows[] = {
        {GroupPicture, ViewThumbnail, "Test:entry!", "Test:entry!"},
        {GroupPicture, ViewTiles, "", "Test:entry!"},
        {GroupSound, ViewThumbnailDetails, "ENVARC:Sys/def_file.info", "Test:entry.info"},
        {GroupSound, ViewContent, "", "Test:entry.info"},
        {GroupText, ViewThumbnail, "", "Test:entry.info"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.Group * 10 + row.Style);
        node.DatatypeGroupValue = static_cast<decltype(node.DatatypeGroupValue)>(row.Group);
        Prefs.ShowThumbnail = 1;
        EXPECT_EQ(first(OwnPictureSteps(node, row.Style)), row.Own);
        EXPECT_EQ(first(DetailsPictureSteps(node)), row.InDetails);
        Prefs.ShowThumbnail = 0;
        EXPECT_EQ(first(DetailsPictureSteps(node)), "Test:entry.info");
    }
}

TEST_F(RowsTest, TilesOfPlacesHaveTheirPictures) {
    ContentNode place;
    place.LeadsTo = LocationKind::OS4Depot;
    EXPECT_EQ(PlaceImageSteps(place, ViewTiles).back().Path, "PROGDIR:Images/Img_OS4Depot.png");
    place.PlaceFacts = std::make_unique<PlaceRecord>(PlaceRecord{AssignsNode()});
    const std::pair<std::int32_t, std::string_view> sizes[] = {
        {256, "256/"}, {128, "128/"}, {64, "64/"}, {32, ""}, {99, "64/"}};
    for (const auto& [side, drawer] : sizes) {
        Prefs.TilesIconSize = side;
        EXPECT_EQ(PlaceImageSteps(place, ViewTiles).back().Path,
                  "PROGDIR:Images/Tiles/" + std::string(drawer) + "assign.png");
    }
    EXPECT_EQ(PlaceImageSteps(place, ViewContent).back().Path, "PROGDIR:Images/Img_Assigns.png");
}

TEST_F(RowsTest, PlacesShowWhatTheyLeadToAndIconsInSmallRowsOnlyOnWish) {
    constexpr std::int32_t inDetails = 99;
    constexpr std::string_view diskIcon = "Work:Disk.info";
    DevicesNode disk;
    disk.Type = DeviceHardDisk;
    disk.VolumeName = "Work:";
    disk.Mounted = 1;
    enum Kind { Volume, Assign, Kept };
    const struct {
        Kind Of;
        LocationKind On, LeadsTo;
        std::string_view Path;
        std::int32_t Style;
        std::int16_t ActualIcons;
        std::string_view First;
    } rows[] = {
        {Volume, LocationKind::Workbench, LocationKind::Drawer, "Work:", inDetails, 0, diskIcon},
        {Volume, LocationKind::Computer, LocationKind::Drawer, "Work:", ViewList, 0, ""},
        {Volume, LocationKind::Computer, LocationKind::Drawer, "Work:", ViewDetails, 1, diskIcon},
        {Volume, LocationKind::Computer, LocationKind::Drawer, "Work:", ViewContent, 0, diskIcon},
        {Assign, LocationKind::Assigns, LocationKind::Drawer, "W:", ViewList, 1, ""},
        {Kept, LocationKind::Bookmarks, LocationKind::Drawer, "Work:", inDetails, 0, diskIcon},
        {Kept, LocationKind::Favorites, LocationKind::Drawer, "Work:d", inDetails, 0, "Work:d.info"},
        {Kept, LocationKind::Favorites, LocationKind::Drawer, "Work:d", ViewDetails, 0, ""},
        {Kept, LocationKind::Favorites, LocationKind::Drawer, "Work:d", ViewDetails, 1, "Work:d.info"},
        {Kept, LocationKind::Bookmarks, LocationKind::Drawer, "Work:", ViewTiles, 0,
         "PROGDIR:Images/Img_Drawer.png"},
        {Kept, LocationKind::Bookmarks, LocationKind::Computer, "Computer", inDetails, 1,
         "PROGDIR:Images/Img_Computer.png"},
        {Kept, LocationKind::FTPSites, LocationKind::FTPSites, "FTPMount:@host,21", inDetails, 1,
         "PROGDIR:Images/Img_FTPSites.png"},
    };
    for (const auto& row : rows) {
        ContentNode node;
        node.LeadsTo = row.LeadsTo;
        node.EntryName = node.EntryPath = row.Path;
        if (row.Of != Kept) {
            node.PlaceFacts = std::make_unique<PlaceRecord>();
            row.Of == Volume ? node.PlaceFacts->Of = disk : node.PlaceFacts->Of = AssignsNode();
        }
        LBLocation = row.On;
        Prefs.ShowActualIcons = row.ActualIcons;
        const auto steps =
            row.Style == inDetails ? DetailsPictureSteps(node) : PlaceImageSteps(node, row.Style);
        EXPECT_EQ(steps.empty() ? "" : steps.front().Path, row.First)
            << row.Path << " in style " << row.Style << " with icons " << row.ActualIcons;
    }
}

TEST_F(RowsTest, UnknownSizesOfPicturesAreCorrected) {
    Prefs.ThumbnailSize = 9;
    EXPECT_EQ(ThumbnailBox(), (IconBox{64, 64}));
    EXPECT_EQ(Prefs.ThumbnailSize, 1);
    Prefs.TilesIconSize = 100;
    EXPECT_EQ(TilesIconSide(), 64);
}

TEST_F(RowsTest, EmptyRowShowsNothingAndCannotBeSelected) {
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Icon, DetailsColumn::Name}, ViewList);
    ASSERT_EQ(rows.RowCount(), 1U);
    EXPECT_EQ(rows.Cell(0, 1).Text, "");
    EXPECT_EQ(rows.Cell(0, 0).Image, intuition::ImageId::None);
    EXPECT_TRUE(rows.Row(0).Disabled);
}

TEST_F(RowsTest, DefaultColoursLeaveTheDesktopsOwn) {
    Plant({"a", "b/"});
    SoftLink("c", "a");
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Name}, ViewDetails);
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_FALSE(rows.Cell(row, 0).Colour) << row;
        EXPECT_FALSE(rows.Row(row).Background) << row;
    }
    EXPECT_TRUE(rows.Cell(2, 0).Underline);
    EXPECT_FALSE(rows.Cell(1, 0).Underline);
}

TEST_F(RowsTest, OwnColoursAreUsedAsGivenAndStayReadable) {
    Plant({"a", "b/"});
    Prefs.DrawersColor = "12abEF";
    Prefs.DrawersBold = 1;
    Prefs.Background1Color = "101010";
    Prefs.Background2Color = "F0F0F0";
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Name}, ViewDetails);
    const auto is = [](const std::optional<Rgb>& colour, int red, int green, int blue) {
        return colour && colour->Red == red && colour->Green == green && colour->Blue == blue;
    };
    EXPECT_TRUE(is(rows.Cell(0, 0).Colour, 0x12, 0xAB, 0xEF));
    EXPECT_TRUE(rows.Cell(0, 0).Bold);
    EXPECT_TRUE(is(rows.Row(0).Background, 0x10, 0x10, 0x10));
    EXPECT_TRUE(is(rows.Row(1).Background, 0xF0, 0xF0, 0xF0));
    EXPECT_TRUE(is(rows.Cell(1, 0).Colour, 0, 0, 0)) << "dark text on a light stripe";
    EXPECT_TRUE(rows.IsFor({DetailsColumn::Name}, ViewDetails));
    Prefs.Background2Color = "F0F0F1";
    EXPECT_FALSE(rows.IsFor({DetailsColumn::Name}, ViewDetails)) << "a tab that kept them makes them anew";
}

TEST_F(RowsTest, MalformedColoursCountAsNone) {
    for (const char* digits : {"", "12345", "1234567", "12345g", "+12345", "0x1234", "-00001"})
        EXPECT_FALSE(OwnColour(digits, "000000")) << digits;
    EXPECT_FALSE(OwnColour("cfcfcf", "CFCFCF"));
    EXPECT_TRUE(OwnColour("000001", "000000"));
}

TEST_F(RowsTest, StatusBarTellsSelectionAndTotals) {
    File("a", std::string(1024, 'x'));
    File("b", std::string(512, 'x'));
    File("c.info", "1");
    ASSERT_TRUE(Scan());
    ShowContentStatus();
    EXPECT_EQ(StatusBarBuffer1.View(), "0/2 Selected | 0 B / 1.50 KB");
    EXPECT_EQ(StatusBarBuffer2.View(), "2 items");
    FindContentNode("b", AnyKind)->Selected = 1;
    NumSelected = 1;
    RefreshBytes();
    ShowContentStatus();
    EXPECT_EQ(StatusBarBuffer1.View(), "1/2 Selected | 512 B / 1.50 KB");
    ShowEnteredPathStatus();
    EXPECT_EQ(StatusBarBuffer1.View(), "0/2 Selected | 0 B / 0 B");
}

TEST_F(RowsTest, IconsStyleHasNoRowsAndLeavesNothingBehind) {
    Plant({"one/a", "two/b"});
    Prefs.ContentViewStyle = ViewIcons;
    ASSERT_TRUE(Scan("one"));
    EXPECT_TRUE(Rows().empty());
    ASSERT_TRUE(Scan("two"));
    EXPECT_THAT(Records(), ElementsAre("b"));
}

} // namespace
} // namespace solvane
