#include "content/Selection.h"
#include "interface/Choosers.h"
#include "interface/MenuState.h"
#include "interface/NavigationPane.h"
#include "interface/Panes.h"
#include "interface/SpeedBars.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/NavigationList.h"
#include "model/PrefsLists.h"
#include "prefs/LoadSavePrefs.h"
#include "prefs/PrefsLists.h"
#include "tests/locations/OpenWindow.h"

#include <gmock/gmock.h>

namespace solvane {
namespace {

using intuition::ChoiceMark;

class LayoutTest : public OpenWindow {
protected:
    LayoutTest() {
        EXPECT_TRUE(CreatePrefsLists());
        EXPECT_TRUE(RestoreDefaultToolbar());
    }
    ~LayoutTest() override { FreePrefsLists(); }

    static void Choose(std::int32_t layout) { ChangeLayoutOrToolbars(layout); }
    // What is there, a letter each: bookmarks, toolbar, user buttons, Navigation, Preview, Details, Status
    // bar; the Thumbnail pane as the second one of the Details pane.
    static std::string Shown() {
        std::string shown;
        const auto note = [&shown](const void* gadget, const char* letter) {
            shown += gadget != nullptr ? letter : "";
        };
        note(Objects.Bookmarks, "b");
        note(Objects.Toolbar, "t");
        note(Objects.UserButtons, "u");
        note(Objects.Navigation, "N");
        note(Objects.Preview, "P");
        note(Objects.Details, "D");
        shown += Objects.Details != nullptr && Objects.Details->Count() == 2 ? "T" : "";
        note(Objects.StatusBar, "S");
        return shown;
    }
    static std::string Marks() {
        std::string marks;
        PopUpLayout();
        for (const intuition::PopUpChoice& choice : Objects.LayoutChooser->Choices())
            marks += choice.Mark == ChoiceMark::Check ? 'x' : '-';
        return marks;
    }
    static std::array<std::int32_t, 5> Weights() {
        CollectPaneWeights();
        return {Prefs.NavigationWidth, Prefs.ContentHeight, Prefs.ContentWidth, Prefs.ThumbnailPreviewWidth,
                Prefs.DetailsHeight};
    }
};

TEST_F(LayoutTest, EachChoiceSwitchesItsOwnAndKeepsRowsSelectionAndWeights) {
    NumberedFiles("", 200);
    ASSERT_TRUE(Scan());
    Objects.ContentList->Select(1, true);
    Objects.ContentList->SetTop(50);
    const auto weights = Weights();
    const auto* list = Objects.ContentList;
    ASSERT_EQ(Shown(), "tNDTS");
    const struct {
        std::int32_t Choice;
        const char *Shown, *Marks;
    } steps[] = {
        {LayoutUserButtons, "tuNDTS", "-xxx--xxx"},
        {LayoutBookmarks, "btuNDTS", "xxxx--xxx"},
        {LayoutToolbar, "buNDTS", "x-xx--xxx"},
        {LayoutToolbar, "btuNDTS", "xxxx--xxx"},
        {LayoutPreviewHorizontal, "btuNPDTS", "xxxxx-xxx"},
        {LayoutPreviewVertical, "btuNPDTS", "xxxx-xxxx"},
        {LayoutPreviewVertical, "btuNDTS", "xxxx--xxx"},
        {LayoutPreviewVertical, "btuNPDTS", "xxxx-xxxx"},
        {LayoutNavigation, "btuPDTS", "xxx--xxxx"},
        {LayoutThumbnail, "btuPDS", "xxx--xx-x"},
        {LayoutDetails, "btuPS", "xxx--x--x"},
        {LayoutThumbnail, "btuPS", "xxx--x-xx"},
        {LayoutDetails, "btuPDTS", "xxx--xxxx"},
        {LayoutStatusBar, "btuPDT", "xxx--xxx-"},
        {LayoutStatusBar, "btuPDTS", "xxx--xxxx"},
        {LayoutPreviewHorizontal, "btuPDTS", "xxx-x-xxx"},
        {LayoutPreviewHorizontal, "btuDTS", "xxx---xxx"},
        {LayoutNavigation, "btuNDTS", "xxxx--xxx"},
        {LayoutBookmarks, "tuNDTS", "-xxx--xxx"},
    };
    for (const auto& step : steps) {
        Choose(step.Choice);
        EXPECT_EQ(Shown(), step.Shown) << step.Choice;
        EXPECT_EQ(Marks(), step.Marks) << step.Choice;
        EXPECT_EQ(Objects.ContentList, list);
        EXPECT_THAT(Objects.ContentList->SelectedRows(), testing::ElementsAre(1U)) << step.Choice;
        EXPECT_EQ(Weights(), weights) << step.Choice;
    }
    EXPECT_EQ(Objects.ContentList->Top(), 50U);
    EXPECT_FALSE(MainWindow->IsBlocked());
}

TEST_F(LayoutTest, OnASmallScreenWithEverythingOnEachGadgetIsInReachAndTheListHasRoom) {
    constexpr int width = 632, height = 420; // of 640 x 480, without what desktops and menus take
    NumberedFiles("", 100);
    ASSERT_TRUE(Scan());
    LBLocation = LocationKind::Drawer;
    AddCurrentLocationToBookmarks(AskFirst::No);
    for (const std::int32_t choice : {LayoutBookmarks, LayoutUserButtons})
        Choose(choice);
    for (const std::int32_t preview : {LayoutPreviewHorizontal, LayoutPreviewVertical}) {
        Choose(preview);
        ASSERT_EQ(Shown(), "btuNPDTS");
        MainWindow->SetGeometry({0, 0, width, height});
        static_cast<void>(exec::CheckSignal(0)); // the panes follow
        EXPECT_EQ(MainWindow->Geometry().Width, width);
        EXPECT_EQ(MainWindow->Geometry().Height, height);
        const std::initializer_list<const intuition::Gadget*> gadgets = {
            Objects.Bookmarks,  Objects.Toolbar,    Objects.UserButtons, Objects.Back,    Objects.Forward,
            Objects.History,    Objects.Parent,     Objects.Reload,      Objects.Path,    Objects.Search,
            Objects.ViewStyle,  Objects.Layout,     Objects.Preview,     Objects.Details, Objects.StatusBar,
            Objects.Navigation, Objects.ContentList};
        int number = 0;
        for (const intuition::Gadget* gadget : gadgets) {
            const intuition::Box box = gadget->Geometry();
            EXPECT_GE(box.Width, 16) << number;
            EXPECT_GE(box.Height, 16) << number;
            EXPECT_LE(box.Left + box.Width, width) << number;
            EXPECT_LE(box.Top + box.Height, height) << number;
            ++number;
        }
        EXPECT_GE(Objects.ContentList->VisibleRows(), 2U) << preview;
        for (std::size_t top = Objects.Toolbar->Total(); top != Objects.Toolbar->Top();) {
            top = Objects.Toolbar->Top();
            ScrollSpeedBar_Toolbar(3);
        }
        EXPECT_EQ(Objects.Toolbar->Top() + Objects.Toolbar->Visible(), Objects.Toolbar->Total());
    }
}

TEST_F(LayoutTest, TheNavigationPaneComesBackWithoutARowOfAnEarlierPlace) {
    BuildNavigationList();
    LBLocation = LocationKind::Computer;
    SetNavigationSelected(LBLocation);
    const std::size_t computer = Objects.Navigation->Selected();
    ASSERT_NE(computer, intuition::NoRow);
    Choose(LayoutNavigation);
    Choose(LayoutNavigation);
    EXPECT_EQ(Objects.Navigation->Selected(), computer);
    Choose(LayoutNavigation);
    LBLocation = LocationKind::SearchResults; // has no row
    Choose(LayoutNavigation);
    EXPECT_EQ(Objects.Navigation->Selected(), intuition::NoRow);
    EXPECT_EQ(OldSelected, NothingSelected);
}

TEST_F(LayoutTest, WeightsThatTheUserDragsOutliveEveryPane) {
    Choose(LayoutPreviewHorizontal);
    Objects.NavCon->SetWeights({41, 59}); // as a drag leaves them
    Objects.ConPre->SetWeights({33, 67});
    Objects.Details->SetWeights({22, 78});
    Objects.Panes->SetWeights({66, 34});
    for (const std::int32_t choice :
         {LayoutNavigation, LayoutDetails, LayoutThumbnail, LayoutPreviewVertical, LayoutToolbar})
        Choose(choice);
    EXPECT_EQ(GetContentSize(), 25) << "a pane on its side has a weight of its own";
    Objects.ConPre->SetWeights({71, 29});
    Choose(LayoutPreviewHorizontal);
    for (const std::int32_t choice : {LayoutNavigation, LayoutDetails, LayoutThumbnail})
        Choose(choice);
    EXPECT_THAT(Objects.NavCon->Weights(), testing::ElementsAre(41, 59));
    EXPECT_THAT(Objects.ConPre->Weights(), testing::ElementsAre(33, 67));
    EXPECT_THAT(Objects.Details->Weights(), testing::ElementsAre(22, 78));
    EXPECT_THAT(Objects.Panes->Weights(), testing::ElementsAre(66, 34));
    Objects.NavCon->SetWeights({1000, 1});
    SavePrefs(0);
    EXPECT_EQ(Weights(), (std::array<std::int32_t, 5>{99, 33, 71, 22, 34})) << "no pane is lost for good";
}

TEST_F(LayoutTest, ButtonsOfTheToolbarCanBePressedWhenTheirCommandsCan) {
    constexpr std::uint16_t selectAll = 1, cut = 6, newDrawer = 10, download = 21, script = 22, putAway = 24;
    File("a");
    ASSERT_TRUE(Scan());
    Choose(LayoutToolbar);
    Choose(LayoutToolbar);
    const struct {
        LocationKind Location;
        bool Selected;
        std::vector<std::uint16_t> On, Off;
    } rows[] = {{LocationKind::Drawer, false, {selectAll, newDrawer, script}, {cut, download, putAway}},
                {LocationKind::Drawer, true, {selectAll, newDrawer, cut}, {download, putAway}},
                {LocationKind::Workbench, true, {cut, putAway}, {download}},
                {LocationKind::Aminet, true, {download, script}, {cut, newDrawer, putAway}}};
    for (const auto& row : rows) {
        LBLocation = row.Location;
        NumSelected = row.Selected ? 1 : 0;
        SetToolbarState();
        for (const std::uint16_t button : row.On)
            EXPECT_FALSE(Objects.Toolbar->IsButtonDisabled(button)) << button;
        for (const std::uint16_t button : row.Off)
            EXPECT_TRUE(Objects.Toolbar->IsButtonDisabled(button)) << button;
    }
    LBLocation = LocationKind::Drawer;
    NumSelected = 0;
    Choose(LayoutToolbar);
    Choose(LayoutToolbar);
    EXPECT_TRUE(Objects.Toolbar->IsButtonDisabled(cut)) << "a bar that comes is in the present state";
}

TEST_F(LayoutTest, BarsShowTheirLists) {
    Choose(LayoutBookmarks);
    EXPECT_EQ(Objects.Bookmarks->Total(), 0U);
    SAK_AddGenericListNode(*MasterBookmarksList, SAK_CreateGenericListNode<BookmarksNode>());
    UpdateSpeedBar_Bookmarks();
    EXPECT_EQ(Objects.Bookmarks->Total(), 1U);
    UpdateSpeedBar_Toolbar();
    EXPECT_EQ(Objects.Toolbar->Total(), 33U);
    const auto made = [](std::uint16_t button) {
        auto node = SAK_CreateGenericListNode<ToolbarNode>();
        node->ButtonID = button;
        return node;
    };
    SAK_ClearGenericList(*ToolbarList);
    for (const std::uint16_t button : std::array<std::uint16_t, 4>{0, 0, 25, 60000})
        SAK_AddGenericListNode(*ToolbarList, made(button));
    UpdateSpeedBar_Toolbar();
    EXPECT_EQ(Objects.Toolbar->Total(), 0U) << "there is nothing to separate";
}

} // namespace
} // namespace solvane
