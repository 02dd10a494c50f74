#include "platform/intuition/Button.h"
#include "platform/intuition/ClickTab.h"
#include "platform/intuition/Layout.h"
#include "platform/intuition/PopUpList.h"
#include "tests/platform/intuition/Stage.h"

#include <QListView>
#include <QTabBar>
#include <QToolButton>
#include <QWheelEvent>

namespace intuition {

namespace {

class TabsAndPopUpsTest : public OnDisplay {};

QTabBar& BarOf(ClickTab& tabs) {
    return *tabs.Native().Widget->findChild<QTabBar*>();
}

std::vector<ClickTabLook> Looks() {
    return {{.UserData = 7, .Text = "R&D"},
            {.UserData = 9, .Text = "two"},
            {.UserData = 1, .Text = "New tab", .Extra = true}};
}

TEST_F(TabsAndPopUpsTest, PicksAndCloseMarksTellTheirTab) {
    Shown<ClickTab> stage(std::make_unique<ClickTab>(2, "Tabs"));
    stage.Content.Attach(Looks(), 9);
    QTabBar& bar = BarOf(stage.Content);
    EXPECT_EQ(bar.currentIndex(), 1);
    EXPECT_TRUE(EventsOf(stage.Frame).empty()) << "what the program does is no event";
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(0).center());
    ASSERT_EQ(EventsOf(stage.Frame).size(), 1U);
    ClickTabEvent event = stage.Content.NextEvent();
    EXPECT_EQ(event.Kind, ClickTabKind::Pick);
    EXPECT_EQ(event.UserData, 7U);
    QTest::mouseClick(&bar, Qt::MiddleButton, {}, bar.tabRect(1).center());
    QTest::mouseClick(&bar, Qt::MiddleButton, {}, bar.tabRect(2).center()); // has no close mark
    EXPECT_EQ(EventsOf(stage.Frame).size(), 1U);
    event = stage.Content.NextEvent();
    EXPECT_EQ(event.Kind, ClickTabKind::Close);
    EXPECT_EQ(event.UserData, 9U);
    EXPECT_EQ(bar.currentIndex(), 0) << "to close a tab does not show it";
    stage.Content.Detach();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(1).center());
    EXPECT_TRUE(EventsOf(stage.Frame).empty());
    EXPECT_EQ(stage.Content.NextEvent().Kind, ClickTabKind::None);
}

TEST_F(TabsAndPopUpsTest, KeysAndWheelStopBeforeTheExtraTab) {
    Shown<ClickTab> stage(std::make_unique<ClickTab>(2, "Tabs"));
    stage.Content.Attach(Looks(), 7);
    QTabBar& bar = BarOf(stage.Content);
    for (int turn = 0; turn < 3; ++turn)
        TurnWheel(bar, -120);
    EXPECT_EQ(bar.currentIndex(), 1);
    QTest::keyClick(&bar, Qt::Key_Left);
    QTest::keyClick(&bar, Qt::Key_Right);
    QTest::keyClick(&bar, Qt::Key_Right);
    EXPECT_EQ(bar.currentIndex(), 1);
    while (stage.Frame.NextEvent()) {
    }
    QTest::keyClick(&bar, Qt::Key_Return);
    EXPECT_TRUE(EventsOf(stage.Frame).empty()) << "Return on a tab opens nothing in the window";
}

TEST_F(TabsAndPopUpsTest, AWindowThatClosesForgetsPicksThatNobodyFetched) {
    Shown<ClickTab> stage(std::make_unique<ClickTab>(2, "Tabs"));
    stage.Content.Attach(Looks(), 9);
    QTabBar& bar = BarOf(stage.Content);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(0).center());
    stage.Frame.Close();
    ASSERT_TRUE(stage.Frame.Open());
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(1).center());
    EXPECT_EQ(EventsOf(stage.Frame).size(), 1U);
    EXPECT_EQ(stage.Content.NextEvent().UserData, 9U);
    EXPECT_EQ(stage.Content.NextEvent().Kind, ClickTabKind::None);
}

TEST_F(TabsAndPopUpsTest, ExtraTabIsInReachHoweverManyThereAre) {
    Shown<ClickTab> stage(std::make_unique<ClickTab>(2, "Tabs"));
    auto* more = stage.Widget().findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    stage.Content.Attach(Looks(), 7);
    EXPECT_FALSE(more->isVisible());
    std::vector<ClickTabLook> many = Looks();
    for (std::uint32_t tab = 100; tab < 160; ++tab)
        many.insert(many.begin(), {.UserData = tab, .Text = "many tabs"});
    stage.Content.Attach(many, 100);
    Pump();
    EXPECT_TRUE(more->isVisible());
    QTest::mouseClick(more, Qt::LeftButton);
    EXPECT_EQ(stage.Content.NextEvent().UserData, 1U);
}

TEST_F(TabsAndPopUpsTest, AttachedAgainTheRowIsWhatItWasGiven) {
    Shown<ClickTab> stage(std::make_unique<ClickTab>(2, "Tabs"));
    stage.Content.Attach(Looks(), 7);
    QTabBar& bar = BarOf(stage.Content);
    stage.Content.Attach({{.UserData = 9, .Text = "two"},
                          {.UserData = 12, .Text = "three"},
                          {.UserData = 1, .Text = "New tab", .Extra = true}},
                         12);
    ASSERT_EQ(bar.count(), 3);
    EXPECT_EQ(bar.tabText(0), QStringLiteral("two"));
    EXPECT_EQ(bar.tabText(1), QStringLiteral("three"));
    EXPECT_EQ(bar.currentIndex(), 1);
    stage.Content.SetText(12, "a & b", "Work:a & b");
    EXPECT_EQ(bar.tabText(1), QStringLiteral("a && b"));
}

TEST_F(TabsAndPopUpsTest, AListThatPopsUpTellsWhatWasChosen) {
    auto row = std::make_unique<Layout>(LayoutSpec{Orientation::Horizontal, false, 4, 0});
    auto& button = static_cast<Button&>(row->Add(std::make_unique<Button>(35, "History")));
    auto& list = static_cast<PopUpList&>(row->Add(std::make_unique<PopUpList>(11, "History")));
    Shown<Layout> stage(std::move(row));
    list.PopUp(button, {});
    EXPECT_FALSE(list.IsUp());
    std::vector<PopUpChoice> choices(70000, {.Label = "place"});
    choices.back().Mark = ChoiceMark::Dot;
    list.PopUp(button, choices);
    ASSERT_TRUE(list.IsUp());
    auto* view = stage.Widget().window()->findChild<QListView*>();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->currentIndex().row(), 69999);
    QTest::keyClick(view, Qt::Key_Up);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_FALSE(list.IsUp());
    EXPECT_EQ(EventOf(stage.Frame).Id, 11);
    EXPECT_EQ(list.Picked(), 69998U) << "more than an event's code can say";
    list.PopUp(button, {{.Label = "on"}, {.Separator = true}, {.Label = "off", .Disabled = true}});
    view = stage.Widget().window()->findChild<QListView*>();
    for (const int unpickable : {1, 2})
        Q_EMIT view->clicked(view->model()->index(unpickable, 0));
    EXPECT_TRUE(list.IsUp());
    EXPECT_TRUE(EventsOf(stage.Frame).empty());
}

} // namespace

} // namespace intuition
