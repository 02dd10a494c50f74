#include "platform/intuition/TreeBrowser.h"

#include "platform/intuition/TreeView.h"
#include "tests/platform/intuition/Stage.h"

namespace intuition {

namespace {

class TreeBrowserTest : public OnDisplay {
protected:
    TreeBrowserTest() : Stage(std::make_unique<TreeBrowser>(46, "Places")) {
        Tree().SetRows({{TreeRowKind::Head, "Favorites & more", "Favorites"},
                        {TreeRowKind::Child, "one", "[Fav]one"},
                        {TreeRowKind::Child, "<b>two</b>", "[Fav]two"},
                        {TreeRowKind::Separator, "", "[blank]"},
                        {TreeRowKind::Plain, "Assigns", "Assigns"}});
    }
    TreeBrowser& Tree() { return Stage.Content; }
    TreeView& View() { return static_cast<TreeView&>(Stage.Widget()); }
    QRect RectOf(std::size_t row) { return View().visualItemRect(View().ItemOf(row)); }
    void Click(std::size_t row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(View().viewport(), Qt::LeftButton, modifiers, RectOf(row).center());
    }
    void Key(int key) { QTest::keyClick(&View(), static_cast<Qt::Key>(key)); }

    Shown<TreeBrowser> Stage;
};

TEST_F(TreeBrowserTest, ClickSelectsAndIsAnEventWithItsQualifier) {
    Click(2, Qt::ControlModifier);
    const std::vector<WindowEvent> events = EventsOf(Stage.Frame);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].Id, 46);
    EXPECT_EQ(events[0].Qualifier, qualifier::Control);
    const TreeEvent event = Tree().NextEvent();
    EXPECT_EQ(event.Kind, TreeEventKind::Select);
    EXPECT_EQ(Tree().Rows()[event.Row].UserData, "[Fav]two");
    EXPECT_EQ(Tree().Selected(), 2U);
}

TEST_F(TreeBrowserTest, SeparatorCannotBeChosen) {
    Tree().SetSelected(1);
    Click(3);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
    EXPECT_EQ(Tree().Selected(), 1U);
    View().setFocus();
    Tree().SetSelected(2);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    EXPECT_EQ(Tree().Selected(), 4U) << "arrows pass over it";
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    Tree().SetSelected(3);
    EXPECT_EQ(Tree().Selected(), NoRow);
}

TEST_F(TreeBrowserTest, HeadsCloseAndOpenAndTellOfIt) {
    View().setFocus();
    Tree().SetSelected(0);
    Key(Qt::Key_Left);
    EXPECT_FALSE(Tree().IsOnScreen(1));
    EXPECT_FALSE(Tree().Rows()[0].IsOpen);
    QTest::mouseClick(View().viewport(), Qt::LeftButton, Qt::NoModifier,
                      {RectOf(0).left() - 8, RectOf(0).center().y()});
    EXPECT_TRUE(Tree().IsOnScreen(1));
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 2U);
    EXPECT_EQ(Tree().NextEvent().Kind, TreeEventKind::Close);
    EXPECT_EQ(Tree().NextEvent().Kind, TreeEventKind::Open);
    EXPECT_EQ(Tree().NextEvent().Kind, TreeEventKind::None);
}

TEST_F(TreeBrowserTest, NewRowsKeepTheirHeadsClosedAndForgetEvents) {
    Click(1);
    std::vector<TreeRow> rows = Tree().Rows();
    rows[0].IsOpen = false;
    Tree().SetRows(rows);
    EXPECT_EQ(Tree().Selected(), NoRow);
    EXPECT_FALSE(Tree().IsOnScreen(1));
    EXPECT_EQ(Tree().NextEvent().Kind, TreeEventKind::None);
    Tree().SetSelected(1);
    EXPECT_EQ(Tree().Selected(), 1U) << "hidden, and still the one";
    Tree().SetRows({{TreeRowKind::Child, "alone", ""}});
    EXPECT_TRUE(Tree().IsOnScreen(0));
    Tree().SetRows({});
    Tree().SetSelected(0);
    EXPECT_EQ(Tree().Selected(), NoRow);
}

TEST_F(TreeBrowserTest, OtherKeysAreTheWindows) {
    View().setFocus();
    Key(Qt::Key_Backspace);
    Key(Qt::Key_A);
    const std::vector<WindowEvent> events = EventsOf(Stage.Frame);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].Code, rawkey::Backspace);
    EXPECT_EQ(events[1].Text, "a");
}

} // namespace
} // namespace intuition
