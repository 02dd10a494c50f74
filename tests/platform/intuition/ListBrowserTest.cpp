#include "platform/intuition/ListBrowser.h"

#include "platform/intuition/ListView.h"
#include "tests/platform/intuition/Stage.h"

#include <QAccessible>
#include <QLineEdit>
#include <QScrollBar>

namespace intuition {

namespace {

using RowNumbers = std::vector<std::size_t>;

class ListBrowserTest : public OnDisplay {
protected:
    explicit ListBrowserTest(ListKeys keys = ListKeys::Program)
        : Stage(std::make_unique<ListBrowser>(49, keys)) {
        List().SetColumns({{"Name", 250}, {"Size", 80, true, true, Align::Right}, {"Date & time", 100}});
    }

    ListBrowser& List() { return Stage.Content; }
    ListView& View() { return static_cast<ListView&>(Stage.Widget()); }
    QPoint PointOf(std::size_t row) {
        const int height = View().RowHeight();
        return {20, static_cast<int>(row) * height + height / 2 - View().verticalScrollBar()->value()};
    }
    void Click(std::size_t row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(View().viewport(), Qt::LeftButton, modifiers, PointOf(row));
    }
    void ClickTitle(int section) {
        const QPoint middle(View().Titles().sectionViewportPosition(section) + 10,
                            View().Titles().height() / 2);
        QTest::mouseClick(View().Titles().viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    }
    void DragTitle(int from, int to) {
        QWidget* titles = View().Titles().viewport();
        const int y = titles->height() / 2;
        Drag(*titles, {from, y}, {{(from + to) / 2, y}, {to, y}});
    }

    MadeUpRows Few{20}, Many{100000};
    Shown<ListBrowser> Stage;
};

TEST_F(ListBrowserTest, RowsComeAndGoAtAnyNumberOfThem) {
    for (const std::size_t rows : {std::size_t{0}, std::size_t{1}, std::size_t{100000}}) {
        const MadeUpRows source(rows);
        List().Attach(&source);
        Pump();
        View().grab();
        List().SetTop(rows);
        List().MakeVisible(rows / 2);
        List().SelectAll();
        EXPECT_EQ(List().SelectedCount(), rows);
        List().Select(rows, true); // no such row
        List().SetCurrent(rows);
        EXPECT_EQ(List().SelectedCount(), rows);
        List().RefreshRow(rows);
        List().Detach();
        EXPECT_EQ(List().SelectedCount(), 0U);
        Pump();
        View().grab();
    }
    Click(0);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
}

TEST_F(ListBrowserTest, TopIsTheFirstVisibleRow) {
    List().Attach(&Many);
    List().SetTop(54321);
    EXPECT_EQ(List().Top(), 54321U);
    List().MakeVisible(54321 + List().VisibleRows());
    EXPECT_GT(List().Top(), 54321U);
    EXPECT_LE(List().Top(), 54323U);
    List().SetImageHeight(64);
    EXPECT_LE(List().Top(), 54323U);
    List().Attach(&Many);
    EXPECT_EQ(List().Top(), 0U);
}

TEST_F(ListBrowserTest, ClickSelectsAsTheQualifiersSay) {
    List().Attach(&Few);
    Click(3);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{3}));
    Click(6, Qt::ShiftModifier);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{3, 4, 5, 6}));
    Click(5, Qt::ControlModifier);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{3, 4, 6}));
    Click(4); // a click on one of several selects it alone
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{4}));
}

TEST_F(ListBrowserTest, ClickBesideTheRowsTakesTheSelectionAway) {
    const MadeUpRows handful(3);
    List().Attach(&handful);
    List().SelectAll();
    Click(5);
    EXPECT_EQ(List().SelectedCount(), 0U);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_EQ(List().NextEvent().Row, NoRow);
    List().Detach();
}

TEST_F(ListBrowserTest, PersistentSelectionTogglesAndSingleKeepsOne) {
    List().Attach(&Few);
    List().SetSelection(ListSelection::Persistent);
    Click(1);
    Click(3);
    Click(1);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{3}));
    List().SetSelection(ListSelection::Single);
    Click(5, Qt::ControlModifier);
    Click(8, Qt::ShiftModifier);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{8}));
}

TEST_F(ListBrowserTest, AMenuIsAboutWhatLiesUnderThePointerWhateverIsSelected) {
    const MadeUpRows two(2);
    List().Attach(&two);
    List().SetSelection(ListSelection::Persistent);
    const auto pressRight = [this](std::size_t row) {
        QTest::mousePress(View().viewport(), Qt::RightButton, Qt::NoModifier, PointOf(row));
        return List().MenuRow();
    };
    EXPECT_EQ(pressRight(1), 1U);
    EXPECT_EQ(pressRight(3), NoRow);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{1}));
    List().SetCurrent(0);
    QTest::keyClick(&View(), Qt::Key_Menu);
    EXPECT_EQ(List().MenuRow(), 1U) << "by key about the selection, wherever the mark is";
}

TEST_F(ListBrowserTest, EditedCellIsKeptByReturnAndGivenUpByEscape) {
    List().Attach(&Few);
    const auto edit = [this](Qt::Key end) {
        List().EditCell(15, 0, "old.txt", 9);
        auto* field = View().viewport()->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
        QTest::keyClicks(field, QStringLiteral("longer")); // in place of what stands before the dot
        QTest::keyClick(field, end);
        Pump();
    };
    edit(Qt::Key_Escape);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_FALSE(List().IsEditing());
    EXPECT_EQ(List().NextEvent().Kind, ListEventKind::EditGivenUp);
    edit(Qt::Key_Return);
    EXPECT_TRUE(List().IsEditing()) << "until the event is fetched";
    ASSERT_EQ(EventsOf(Stage.Frame).size(), 1U);
    const ListEvent event = List().NextEvent();
    EXPECT_EQ(event.Kind, ListEventKind::EditDone);
    EXPECT_EQ(event.Row, 15U);
    EXPECT_FALSE(List().IsEditing());
    EXPECT_EQ(List().EditedText(), "longer.tx") << "cut at its limit";
    List().EditCell(3, 0, "x", 9);
    List().Attach(&Many);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty()) << "other rows give the editing up";
    List().EditCell(0, 0, "half typed", 20);
    EXPECT_TRUE(List().IsEditing());
    List().SetTop(900);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_EQ(List().NextEvent().Kind, ListEventKind::EditGivenUp) << "scrolled away";
    List().SetColumns({{"Name", 4000}, {"Size", 80}});
    List().EditCell(0, 1, "x", 9);
    const auto* field = View().viewport()->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_LE(field->geometry().right(), View().viewport()->width()) << "scrolled to";
}

TEST_F(ListBrowserTest, EachGadgetUpHasItsListEvent) {
    List().Attach(&Few);
    QTest::mouseDClick(View().viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(2));
    Click(2);
    const QPoint place = PointOf(2);
    QMouseEvent second(QEvent::MouseButtonDblClick, place, View().viewport()->mapToGlobal(place),
                       Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(View().viewport(), &second);
    ClickTitle(1);
    std::vector<ListEvent> events;
    for (const WindowEvent& event : EventsOf(Stage.Frame)) {
        EXPECT_EQ(event.Class, EventClass::GadgetUp);
        EXPECT_EQ(event.Id, 49);
        events.push_back(List().NextEvent());
    }
    ASSERT_GE(events.size(), 3U);
    EXPECT_EQ(events.front().Kind, ListEventKind::Select);
    EXPECT_EQ(events.front().Row, 2U);
    EXPECT_EQ(events[events.size() - 2].Kind, ListEventKind::DoubleClick);
    EXPECT_EQ(events[events.size() - 2].Row, 2U);
    EXPECT_EQ(events.back().Kind, ListEventKind::TitleClick);
    EXPECT_EQ(events.back().Column, 1U);
    EXPECT_EQ(List().NextEvent().Kind, ListEventKind::None);
}

TEST_F(ListBrowserTest, EventsOfRowsThatAreGoneSayNothing) {
    List().Attach(&Few);
    Click(2);
    List().Attach(&Few);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_EQ(List().NextEvent().Kind, ListEventKind::None);
}

TEST_F(ListBrowserTest, EventsOfAWindowThatWasClosedSayNothing) {
    List().Attach(&Few);
    Click(2);
    Stage.Frame.Close();
    ASSERT_TRUE(Stage.Frame.Open());
    Click(1);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_EQ(List().NextEvent().Row, 1U);
}

TEST_F(ListBrowserTest, BlockedListKeepsItsSelection) {
    List().Attach(&Few);
    List().Select(1, true);
    Stage.Frame.Block(1);
    Click(5);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{1}));
}

TEST_F(ListBrowserTest, DragSelectsTheRowsItPasses) {
    List().Attach(&Few);
    Drag(*View().viewport(), PointOf(2), {PointOf(4)});
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{2, 3, 4}));
}

TEST_F(ListBrowserTest, DisabledRowsCannotBeSelected) {
    Few.DisabledRow = 4;
    List().Attach(&Few);
    Click(4);
    EXPECT_TRUE(List().SelectedRows().empty());
    List().SelectAll();
    EXPECT_EQ(List().SelectedCount(), 19U);
    Click(3);
    Click(5, Qt::ShiftModifier);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{3, 5}));
}

TEST_F(ListBrowserTest, DraggedWidthIsToldOnceAndStays) {
    List().Attach(&Few);
    DragTitle(249, 299);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    EXPECT_EQ(List().NextEvent().Kind, ListEventKind::ColumnsChanged);
    const std::vector<int> widths = List().ColumnWidths();
    EXPECT_NEAR(widths[0], 300, 2);
    List().Detach();
    List().Attach(&Few);
    EXPECT_EQ(List().ColumnWidths(), widths);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
}

TEST_F(ListBrowserTest, ColumnsMoveButForThoseThatMayNot) {
    DragTitle(290, 400);
    EXPECT_EQ(List().ColumnOrder(), (RowNumbers{0, 2, 1}));
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    List().SetColumns({{"", 26, false, false}, {"Name", 200}, {"Size", 80}});
    EXPECT_EQ(List().ColumnOrder(), (RowNumbers{0, 1, 2}));
    DragTitle(60, 5);
    EXPECT_EQ(List().ColumnOrder(), (RowNumbers{0, 1, 2}));
    DragTitle(10, 150);
    EXPECT_EQ(List().ColumnOrder(), (RowNumbers{0, 1, 2}));
}

TEST_F(ListBrowserTest, KeysGoToTheProgram) {
    List().Attach(&Few);
    List().Activate();
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_A, Qt::Key_Space, Qt::Key_Return})
        QTest::keyClick(&View(), key);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 6U);
    EXPECT_EQ(List().SelectedCount(), 0U);
}

class OwnKeysTest : public ListBrowserTest {
protected:
    OwnKeysTest() : ListBrowserTest(ListKeys::Own) {
        List().Attach(&Few);
        List().Activate();
    }
};

TEST_F(OwnKeysTest, ArrowsMoveAndShiftExtends) {
    QTest::keyClick(&View(), Qt::Key_Down);
    QTest::keyClick(&View(), Qt::Key_Down);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{1}));
    QTest::keyClick(&View(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{1, 2}));
    QTest::keyClick(&View(), Qt::Key_End);
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{19}));
    QTest::keyClick(&View(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(List().SelectedCount(), 20U);
}

TEST_F(OwnKeysTest, TypedLettersFindANameAndOtherCommandsReachTheWindow) {
    QTest::keyClicks(&View(), QStringLiteral("NAME 12"));
    EXPECT_EQ(List().SelectedRows(), (RowNumbers{12}));
    EventsOf(Stage.Frame);
    QTest::keyClick(&View(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(EventsOf(Stage.Frame).at(0).Class, EventClass::RawKey);
}

TEST_F(ListBrowserTest, ScreenReadersHearTheNameFirstAndTheSelection) {
    List().Attach(&Few);
    List().Select(7, true);
    Pump();
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&View());
    ASSERT_NE(spoken, nullptr);
    ASSERT_NE(spoken->tableInterface(), nullptr);
    QAccessibleInterface* cell = spoken->tableInterface()->cellAt(7, 0);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->text(QAccessible::Name), QStringLiteral("name 7, size, size"));
    EXPECT_TRUE(cell->state().selected);
}

TEST(ListPainterTest, ColoursKeepContrastWithTheirBackground) {
    const QColor grounds[] = {Qt::white, Qt::black, QColor(30, 30, 32), QColor(128, 128, 128),
                              QColor(255, 255, 0)};
    const QColor inks[] = {Qt::white, Qt::black, QColor(0, 0, 160), QColor(128, 128, 128),
                           QColor(255, 255, 0)};
    const auto light = [](const QColor& c) {
        return 0.2126 * c.redF() + 0.7152 * c.greenF() + 0.0722 * c.blueF();
    };
    for (const QColor& ground : grounds) {
        for (const QColor& ink : inks)
            EXPECT_GT(std::abs(light(ReadableOn(ground, ink)) - light(ground)), 0.2)
                << ink.name().toStdString();
    }
    EXPECT_EQ(ReadableOn(Qt::white, QColor(0, 0, 160)), QColor(0, 0, 160));
}

} // namespace

} // namespace intuition
