#include "platform/intuition/Menus.h"

#include "platform/intuition/Button.h"
#include "tests/platform/intuition/Stage.h"

#include <QMenu>
#include <QMenuBar>

namespace intuition {
namespace {

class MenusTest : public OnDisplay {
protected:
    Shown<Button> Stage{std::make_unique<Button>(7, "Button")};
    Menu Strip{
        MenuSpec{.IsStrip = true,
                 .Items = {{.Id = 1,
                            .Label = "Project",
                            .IsHead = true,
                            .Items = {{.Id = 2, .Label = "Quit", .Key = "Alt+Q"},
                                      {},
                                      {.Id = 3, .Label = "R&D \tnotes", .Text = MenuText::Name},
                                      {.Id = 4, .Label = "First", .Mark = MenuMark::Choice},
                                      {.Id = 5, .Label = "Second", .Mark = MenuMark::Choice}}},
                           {.Id = 6, .Label = "Parent", .IsHead = true, .Items = {{.Id = 7, .Label = "Up"}}}},
                 .NotKeys = "A"}};

    MenusTest() { Strip.AttachTo(Stage.Frame); }

    QList<QAction*> Titles() { return Stage.Widget().window()->findChild<QMenuBar*>()->actions(); }
    std::vector<std::string> TextsOf(const QList<QAction*>& actions) {
        std::vector<std::string> texts;
        for (const QAction* action : actions)
            texts.push_back(action->text().toStdString());
        return texts;
    }
    std::vector<std::uint16_t> Picks() {
        std::vector<std::uint16_t> picks;
        for (const WindowEvent& event : EventsOf(Stage.Frame))
            if (event.Class == EventClass::MenuPick)
                picks.push_back(event.Code);
        return picks;
    }
};

TEST_F(MenusTest, APickIsAnEventAndTurnsNoMarkByItself) {
    Strip.SetAttrs({.Id = 4, .Checked = true});
    const QList<QAction*> items = Titles()[0]->menu()->actions();
    items[0]->trigger();
    items[4]->trigger();
    EXPECT_EQ(Picks(), (std::vector<std::uint16_t>{2, 5}));
    EXPECT_TRUE(items[3]->isChecked());
    EXPECT_FALSE(items[4]->isChecked());
    Stage.Frame.Block(1);
    items[0]->trigger();
    EXPECT_EQ(Picks(), std::vector<std::uint16_t>{});
}

TEST_F(MenusTest, AltThatIsStillHeldFromReachingAMenuSaysNothingAboutTheItem) {
    auto* menu = Titles()[1]->menu();
    menu->popup(QPoint(0, 0));
    QTest::keyClick(menu, Qt::Key_U, Qt::AltModifier);
    const WindowEvent event = EventOf(Stage.Frame);
    EXPECT_EQ(event.Code, 7);
    EXPECT_EQ(event.Qualifier, 0);
}

TEST_F(MenusTest, OwnTextsGetKeysOfTheirOwnAndNamesNone) {
    EXPECT_EQ(TextsOf(Titles()), (std::vector<std::string>{"&Project", "Pa&rent"}))
        << "P is taken, A is the program's";
    EXPECT_EQ(TextsOf(Titles()[0]->menu()->actions()),
              (std::vector<std::string>{"&Quit\tAlt+Q", "", "R&&D ⇥notes", "&First", "&Second"}));
}

TEST_F(MenusTest, ReplacedItemsKeepTheirState) {
    Strip.SetAttrs({.Id = 2, .Disabled = true});
    Strip.SetItems(1, {{.Id = 2, .Label = "Leave"}, {.Id = 8, .Label = "New"}});
    EXPECT_EQ(Strip.Ids(), (std::vector<std::uint16_t>{1, 2, 8, 6, 7}));
    EXPECT_TRUE(Strip.LookOf(2)->Disabled);
    EXPECT_FALSE(Strip.LookOf(8)->Disabled);
    EXPECT_FALSE(Strip.LookOf(3));
    for (const bool isOn : {true, false}) {
        Strip.SetItems(1, {{.Id = 2, .Label = "Leave", .Mark = MenuMark::Check, .Checked = isOn}});
        EXPECT_EQ(Strip.LookOf(2)->Checked, isOn) << "its own mark goes before the former one";
    }
    Strip.SetAttrs({.Id = 2, .Checked = true});
    Strip.SetItems(1, {{.Id = 2, .Label = "Leave", .Mark = MenuMark::Check}});
    EXPECT_TRUE(Strip.LookOf(2)->Checked);
}

TEST_F(MenusTest, KeysOpenTheStripAndAskForAContextMenu) {
    QTest::keyClick(Stage.Widget().window(), Qt::Key_F10);
    EXPECT_TRUE(Titles()[0]->menu()->isVisible());
    QTest::keyClick(Titles()[0]->menu(), Qt::Key_Escape);
    for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier}) {
        QTest::keyClick(Stage.Widget().window(), modifier == Qt::NoModifier ? Qt::Key_Menu : Qt::Key_F10,
                        modifier);
        const WindowEvent event = EventOf(Stage.Frame);
        EXPECT_EQ(event.Class, EventClass::MenuVerify);
    }
}

TEST_F(MenusTest, ContextMenusReportToTheirWindowAndOutliveIt) {
    Menu context(MenuSpec{.Items = {{.Id = 9, .Label = "Open"}}});
    {
        Shown<Button> other(std::make_unique<Button>(8, "Other"));
        context.PopUp(other.Frame, 10, 10);
        EXPECT_TRUE(context.IsUp());
        auto* menu = other.Widget().window()->findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        EXPECT_EQ(EventOf(other.Frame).Code, 9);
        Strip.AttachTo(other.Frame);
    }
    EXPECT_TRUE(context.LookOf(9));
    EXPECT_TRUE(Strip.LookOf(2)) << "the strip of a closed window can be shown in the next one";
}

} // namespace
} // namespace intuition
