#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/ContentRows.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "tests/content/DrawerTest.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using intuition::Rgb;
using testing::ElementsAre;

class RowsTest : public DrawerTest {
protected:
    RowsTest() { Prefs.DetermineDatatype = 2; }

    static std::vector<std::string> Cells(const ContentRows& rows, std::size_t row, std::size_t columns) {
        std::vector<std::string> cells;
        for (std::size_t column = 0; column < columns; ++column) {
            cells.emplace_back(rows.Cell(row, column).Text);
        }
        return cells;
    }
};

TEST_F(RowsTest, DetailsShowTheUsualColumnsAndListTheNameAlone) {
    using enum DetailsColumn;
    EXPECT_THAT(ShownColumns(ViewDetails), ElementsAre(Icon, Name, Size, Date, Type, Protection, Filenote));
    EXPECT_THAT(ShownColumns(ViewList), ElementsAre(Icon, Name));
    SAK_GetGenericListNode(*ShowDetailsColumnsList, 2)->Shown = 0;
    SAK_GetGenericListNode(*ShowDetailsColumnsList, 7)->Shown = 1;
    EXPECT_THAT(ShownColumns(ViewDetails),
                ElementsAre(Icon, Name, Date, Type, Protection, Filenote, Dimensions));
    ASSERT_TRUE(CreateColumnInfoAll());
    EXPECT_EQ(ColInfo_GetDimensions, 1);
    EXPECT_EQ(ColInfo_GetMP3, 0);
    RestoreDefaultColumnInfos();
    EXPECT_EQ(ShownColumns(ViewDetails).size(), 7U);
}

TEST_F(RowsTest, CellsAreReadFromTheRecord) {
    using enum DetailsColumn;
    File("file", "12345");
    SoftLink("link", "file");
    ASSERT_TRUE(Scan());
    const ContentRows rows({Icon, Name, Size, Type, Filenote});
    ASSERT_EQ(rows.RowCount(), 2U);
    EXPECT_THAT(Cells(rows, 0, 5), ElementsAre("", "file", "5 B", "File", ""));
    EXPECT_THAT(Cells(rows, 1, 5), ElementsAre("", "link", "", "Soft link", Path("file")));
    EXPECT_EQ(rows.Name(1), "link");
    FindContentNode("file", AnyKind)->Comment = "a note";
    EXPECT_EQ(rows.Cell(0, 4).Text, "a note");
    EXPECT_EQ(rows.Cell(0, 5).Text, "") << "there is no such column";
}

TEST_F(RowsTest, EmptyRowShowsNothingAndCannotBeSelected) {
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Icon, DetailsColumn::Name});
    ASSERT_EQ(rows.RowCount(), 1U);
    EXPECT_EQ(rows.Cell(0, 1).Text, "");
    EXPECT_EQ(rows.Cell(0, 0).Image, intuition::ImageId::None);
    EXPECT_TRUE(rows.Row(0).Disabled);
}

TEST_F(RowsTest, DefaultColoursLeaveTheDesktopsOwn) {
    File("a");
    Drawer("b");
    SoftLink("c", "a");
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Name});
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_FALSE(rows.Cell(row, 0).Colour) << row;
        EXPECT_FALSE(rows.Row(row).Background) << row;
    }
    EXPECT_TRUE(rows.Cell(2, 0).Underline);
    EXPECT_FALSE(rows.Cell(1, 0).Underline);
}

TEST_F(RowsTest, OwnColoursAreUsedAsGivenAndStayReadable) {
    File("a");
    Drawer("b");
    Prefs.DrawersColor = "12abEF";
    Prefs.DrawersBold = 1;
    Prefs.Background1Color = "101010";
    Prefs.Background2Color = "F0F0F0";
    ASSERT_TRUE(Scan());
    const ContentRows rows({DetailsColumn::Name});
    const auto is = [](const std::optional<Rgb>& colour, int red, int green, int blue) {
        return colour && colour->Red == red && colour->Green == green && colour->Blue == blue;
    };
    EXPECT_TRUE(is(rows.Cell(0, 0).Colour, 0x12, 0xAB, 0xEF));
    EXPECT_TRUE(rows.Cell(0, 0).Bold);
    EXPECT_TRUE(is(rows.Row(0).Background, 0x10, 0x10, 0x10));
    EXPECT_TRUE(is(rows.Row(1).Background, 0xF0, 0xF0, 0xF0));
    EXPECT_TRUE(is(rows.Cell(1, 0).Colour, 0, 0, 0)) << "dark text on a light stripe";
}

TEST_F(RowsTest, MalformedColoursCountAsNone) {
    for (const char* digits : {"", "12345", "1234567", "12345g", "+12345", "0x1234", "-00001"}) {
        EXPECT_FALSE(OwnColour(digits, "000000")) << digits;
    }
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
    File("one/a");
    File("two/b");
    Prefs.ContentViewStyle = ViewIcons;
    ASSERT_TRUE(Scan("one"));
    EXPECT_TRUE(Rows().empty());
    ASSERT_TRUE(Scan("two"));
    EXPECT_THAT(Records(), ElementsAre("b"));
}

} // namespace
} // namespace solvane
