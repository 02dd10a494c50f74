#include "content/DetailsPane.h"
#include "content/Selection.h"
#include "content/ShownList.h"
#include "interface/DetailsGadgets.h"
#include "interface/Panes.h"
#include "locations/DeviceUsage.h"
#include "locations/Navigation.h"
#include "model/WorkingSet.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/WishedImages.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using testing::ElementsAre;

class WindowTest : public OpenWindow {
protected:
    [[nodiscard]] std::vector<std::string> SelectedNames() const {
        return TextsOf(Objects.ContentList->SelectedRows(),
                       [](const std::size_t row) { return lblist2[row].Record->EntryName.View(); });
    }
};

TEST_F(WindowTest, ReloadKeepsPlaceAndSelectionOfTheRows) {
    NumberedFiles("many/", 300);
    ASSERT_TRUE(Scan("many"));
    EXPECT_EQ(Objects.ContentList->Top(), 0U);
    Objects.ContentList->SetTop(120);
    Objects.ContentList->Select(RowOf("150"), true);
    Objects.ContentList->Select(RowOf("300"), true);
    File("many/200 new");
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_EQ(Objects.ContentList->Top(), 120U);
    EXPECT_THAT(SelectedNames(), ElementsAre("150", "300"));
    EXPECT_EQ(StatusBarBuffer1.View(), "2/301 Selected | 0 B / 0 B");
    ASSERT_TRUE(Scan());
    EXPECT_EQ(Objects.ContentList->Top(), 0U);
    EXPECT_TRUE(SelectedNames().empty());
}

TEST_F(WindowTest, EntryThatIsGoneIsNoLongerSelected) {
    Plant({"d/A", "d/a"});
    ASSERT_TRUE(Scan("d"));
    Objects.ContentList->Select(0, true);
    const std::string gone = SelectedNames().front();
    std::filesystem::remove(Host("d/" + gone));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_TRUE(SelectedNames().empty()) << "a name that differs in case is another entry";
}

TEST_F(WindowTest, RowsAndRecordsShareOneSelection) {
    Plant({"a", "b", "b.info"});
    ASSERT_TRUE(Scan());
    Objects.ContentList->SelectAll();
    SelectContentListItems();
    EXPECT_EQ(NumSelected, 2);
    EXPECT_EQ(Entry("b.info").Selected, 0) << "what has no row is never acted on";
    ClearSelectedFiles();
    EXPECT_EQ(Objects.ContentList->SelectedCount(), 0U);
    EXPECT_EQ(FindFirstSelectedContentNode(), nullptr);
}

TEST_F(WindowTest, SizingOneColumnLeavesTheWidthsOfTheOthersAlone) {
    // What a drag does to the list: the same columns, one with another width.
    const auto drag = [](std::size_t column, int width) {
        std::vector<intuition::Column> columns;
        for (const int now : Objects.ContentList->ColumnWidths()) {
            columns.push_back({.Title = "", .Width = columns.size() == column ? width : now});
        }
        Objects.ContentList->SetColumns(std::move(columns));
        GetColumnInfoWidths();
    };
    const auto node = [](std::uint32_t column) {
        return FindNode(*ShowDetailsColumnsList,
                        [column](const ColumnInfoNode& each) { return each.ColumnNumber == column; });
    };
    constexpr std::size_t Name = 1, Date = 3;
    constexpr int UsualDate = 150;
    Prefs.EffectiveDateFormat = "%d-%b-%y %T %d-%b-%y %T"; // wider than the usual column
    SetColumnInfo();
    ASSERT_GT(Objects.ContentList->ColumnWidths()[Date], UsualDate);
    drag(Name, 333);
    EXPECT_EQ(node(Name)->Width, 333);
    EXPECT_EQ(node(Date)->Width, UsualDate) << "goes on following its text";
    drag(Date, UsualDate); // chosen by the user
    SetColumnInfo();
    EXPECT_EQ(Objects.ContentList->ColumnWidths()[Name], 333);
    EXPECT_EQ(Objects.ContentList->ColumnWidths()[Date], UsualDate + 1);
    EXPECT_EQ(node(Date)->Width, UsualDate + 1) << "a document tells it from one that nobody touched";
}

TEST_F(WindowTest, ColumnsFitTheirTextsOnWishAndKeepNoWidthOfThat) {
    constexpr std::size_t Name = 1, Size = 2;
    NumberedFiles("many/", 200);
    ASSERT_TRUE(Scan("many"));
    const int usual = Objects.ContentList->ColumnWidths()[Name];
    Prefs.AutoFitColumns = 1;
    ASSERT_TRUE(ReloadDrawer());
    const int narrow = Objects.ContentList->ColumnWidths()[Name];
    EXPECT_LT(narrow, usual);
    EXPECT_GT(Objects.ContentList->ColumnWidths()[Size], 20) << "a title is not cut either";
    File("many/9" + std::string(100, 'w'));
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_GT(Objects.ContentList->ColumnWidths()[Name], usual) << "far below what is on screen";
    GetColumnInfoWidths();
    Prefs.AutoFitColumns = 0;
    ASSERT_TRUE(ReloadDrawer());
    EXPECT_EQ(Objects.ContentList->ColumnWidths()[Name], usual);
}

TEST_F(WindowTest, OtherStyleKeepsOrderPlaceAndSelection) {
    NumberedFiles("many/", 300);
    ASSERT_TRUE(Scan("many"));
    Objects.ContentList->SetTop(120);
    Objects.ContentList->Select(RowOf("300"), true);
    for (const std::int32_t style : {ViewTiles, ViewContent, ViewThumbnail, ViewThumbnailDetails,
                                     ViewFilmstrip, ViewList, ViewDetails}) {
        ChangeViewStyle(style);
        EXPECT_EQ(Prefs.ContentViewStyle, style);
        PopViewStyleChooser();
        for (std::size_t at = 0; at < Objects.ViewStyleChooser->Choices().size(); ++at) {
            const auto mark = Objects.ViewStyleChooser->Choices()[at].Mark;
            EXPECT_EQ(mark == intuition::ChoiceMark::Dot, std::cmp_equal(at, style));
        }
        EXPECT_EQ(Objects.ContentList->Top(), 120U) << style;
        EXPECT_THAT(SelectedNames(), ElementsAre("300")) << style;
    }
    ChangeViewStyle(ViewIcons);
    EXPECT_EQ(Prefs.ContentViewStyle, ViewDetails) << "the icon view is not on offer";
}

TEST_F(WindowTest, WidthsOfListsWithoutAColumnListStandInThePreferences) {
    Prefs.ContentViewStyle = ViewContent;
    SetColumnInfo();
    Objects.ContentList->SetColumns({{"", 40}, {"Name", 111}, {"", 222}});
    GetColumnInfoWidths();
    EXPECT_EQ(Prefs.Content_1Width, 111);
    EXPECT_EQ(Prefs.Content_2Width, 222);
    LBLocation = LocationKind::FTPSites;
    Prefs.FTPSites_2Width = 333;
    SetColumnInfo();
    EXPECT_EQ(WhichCI, ColumnSet::FTPSitesCI);
    EXPECT_EQ(NumberOfColumns, 4U);
    EXPECT_EQ(Objects.ContentList->ColumnWidths()[2], 333);
    Objects.ContentList->SetColumns({{"", 99}, {"Name", 200}, {"", 44}, {"", 250}});
    GetColumnInfoWidths();
    EXPECT_EQ(Prefs.FTPSites_2Width, 44);
    EXPECT_EQ(Prefs.FTPSites_1Width, 200);
    EXPECT_EQ(Prefs.FTPSites_0Width, 26);
    EXPECT_EQ(
        FindNode(*ShowDetailsColumnsList, [](const ColumnInfoNode& node) { return node.ColumnNumber == 1; })
            ->Width,
        250);
}

TEST_F(WindowTest, DetailsPaneTellsOfPlaceEntryAndSelection) {
    File("d/a", "123");
    Drawer("d/b");
    PopulateContent2("d", Path("d"));
    EXPECT_EQ(Details1Buffer.View(), "d");
    EXPECT_EQ(Details2Buffer.View(), "Drawer");
    EXPECT_EQ(Details7Buffer.View(), "2 items");
    EXPECT_EQ(Details8Buffer.View(), "3 B");
    Objects.ContentList->Select(RowOf("a"), true);
    SelectContentListItems();
    DetailsPane3();
    EXPECT_EQ(Details1Buffer.View(), "a");
    EXPECT_EQ(Details4Buffer.View(), "3 B");
    Objects.ContentList->SelectAll();
    SelectContentListItems();
    DetailsPane3();
    EXPECT_EQ(Details1Buffer.View(), "2 items selected");
    MasterDevicesList = std::make_unique<GenericList<DevicesNode>>();
    auto device = SAK_CreateGenericListNode<DevicesNode>();
    device->DeviceName = device->VolumeName = Volume;
    device->Mounted = 1;
    DevicesNode& disk = *device;
    SAK_AddGenericListNode(*MasterDevicesList, std::move(device));
    GoToParent();
    EXPECT_EQ(Details1Buffer.View(), Volume);
    disk.Usage = UsageState::Silent;
    DetailsPane1();
    EXPECT_TRUE(Details2Buffer.Empty()) << "its disk has not answered";
    disk.Type = DeviceHardDisk;
    ASSERT_TRUE(SetDeviceUsage(disk, dos::Info(Volume)));
    DetailsPaneVolume();
    EXPECT_TRUE(Details2Buffer.View().starts_with("Free: ")) << Details2Buffer.View();
    EXPECT_TRUE(Details5Buffer.View().starts_with("Total: "));
    DetailsPane2();
    EXPECT_TRUE(Details5Buffer.Empty()) << "only entering a volume asks how full it is";
}

TEST_F(WindowTest, ListsWithoutSizesTellTheirCountAlone) {
    File("a", "123");
    File("b");
    ASSERT_TRUE(Scan());
    LBLocation = LocationKind::Favorites;
    CurrentPath = "Favorites";
    DetailsPane5();
    EXPECT_EQ(Details1Buffer.View(), "Favorites");
    EXPECT_TRUE(Details2Buffer.Empty()) << "it is no drawer";
    EXPECT_EQ(Details7Buffer.View(), "2 items");
    EXPECT_TRUE(Details8Buffer.Empty());
    EXPECT_EQ(StatusBarBuffer1.View(), "0/2 Selected");
    Objects.ContentList->SelectAll();
    SelectContentListItems();
    DetailsPane5();
    EXPECT_EQ(Details1Buffer.View(), "2 items selected");
    EXPECT_EQ(StatusBarBuffer1.View(), "2/2 Selected");
}

TEST_F(WindowTest, ThePictureOfThePaneComesAndGoesByThePreferences) {
    File("d/x.txt", "no picture");
    std::filesystem::copy(std::filesystem::path(SOLVANE_TEST_DATA) / "pictures/deep24_31x31.ilbm",
                          Host("d/p"));
    const auto comes = [this](std::string_view path) {
        SetThumbnailImage({{.Path = Path(path)}}, "");
        intuition::FinishWishedImages();
        return ActiveSet.DetailsPicture.Get() != intuition::ImageId::None;
    };
    EXPECT_FALSE(comes("d/none.png"));
    EXPECT_FALSE(comes("d/x.txt"));
    EXPECT_TRUE(comes("d/p"));
    SetThumbnailImage({}, "");
    for (const auto switchedOff : {&PrefsRecord::ThumbnailPane, &PrefsRecord::DetailsPane}) {
        Prefs = PrefsRecord();
        Prefs.*switchedOff = 0;
        ArrangePanes();
        EXPECT_FALSE(comes("d/p"));
        Prefs = PrefsRecord();
        ArrangePanes();
        intuition::FinishWishedImages();
        EXPECT_NE(ActiveSet.DetailsPicture.Get(), intuition::ImageId::None) << "comes with its pane";
    }
}

TEST_F(WindowTest, ThePictureOfATabThatIsLeftComesWhenTheTabDoes) {
    std::filesystem::copy(std::filesystem::path(SOLVANE_TEST_DATA) / "pictures/deep24_31x31.ilbm", Host("p"));
    FreeContentRows();
    SetThumbnailImage({{.Path = Path("p")}}, "");
    WorkingSet left = std::exchange(ActiveSet, WorkingSet());
    intuition::FinishWishedImages();
    EXPECT_EQ(ActiveSet.DetailsPicture.Get(), intuition::ImageId::None) << "it is none of this tab's";
    ActiveSet = std::move(left);
    ShowKeptDetails();
    intuition::FinishWishedImages();
    EXPECT_NE(ActiveSet.DetailsPicture.Get(), intuition::ImageId::None);
}

TEST_F(WindowTest, RowsAreFoundByNameKindAndSelection) {
    Plant({"b", "B", "a/"});
    FreeContentList(1);
    EXPECT_FALSE(ListHasItems());
    ASSERT_TRUE(Scan());
    EXPECT_TRUE(ListHasItems());
    EXPECT_EQ(GetListCount(), 3U);
    for (const char* name : {"a", "b", "B"}) {
        const ListRow* row = FindListNode(name, name == std::string("a") ? 0 : 1);
        ASSERT_NE(row, nullptr) << name;
        EXPECT_TRUE(row->Record->EntryName.SameBytes(name)) << name;
    }
    EXPECT_EQ(FindListNode("a", 1), nullptr);
    EXPECT_EQ(FindListNode("A", 0), nullptr);
    EXPECT_EQ(FindSelectedListNode(), nullptr);
    Objects.ContentList->Select(1, true);
    Objects.ContentList->Select(2, true);
    for (const std::size_t row : {1U, 2U}) {
        EXPECT_EQ(FindSelectedListNode(), &lblist2[row]) << row;
        EXPECT_EQ(FindFirstSelectedListNodeAndUnselect(), &lblist2[row]) << row;
        EXPECT_FALSE(Objects.ContentList->IsSelected(row)) << row;
    }
    EXPECT_EQ(FindFirstSelectedListNodeAndUnselect(), nullptr);
}

} // namespace
} // namespace solvane
