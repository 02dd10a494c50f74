#include "platform/intuition/SpeedBar.h"

#include "platform/intuition/Button.h"
#include "platform/intuition/Layout.h"
#include "tests/platform/intuition/Stage.h"

#include <QToolButton>
#include <QWheelEvent>

namespace intuition {

namespace {

// A bar with its ends in a window, and buttons "0", "1" ... of one width.
class SpeedBarTest : public OnDisplay {
protected:
    SpeedBarTest() : Stage(MakeRow()) { Fill(20); }

    std::unique_ptr<Layout> MakeRow() {
        auto row = std::make_unique<Layout>(LayoutSpec{Orientation::Horizontal, false, 0, 0});
        Left = static_cast<Button*>(&row->Add(std::make_unique<Button>(20, ImageId::None, "left")));
        Bar = static_cast<SpeedBar*>(&row->Add(std::make_unique<SpeedBar>(21, "Bar"), 1));
        Right = static_cast<Button*>(&row->Add(std::make_unique<Button>(22, ImageId::None, "right")));
        Bar->SetEnds(*Left, *Right);
        return row;
    }
    void Fill(std::uint16_t count) {
        std::vector<SpeedButton> buttons;
        for (std::uint16_t at = 0; at < count; ++at)
            buttons.push_back(
                {.Code = at, .Text = "a & b " + std::string(at < 10 ? "0" : "") + std::to_string(at)});
        Bar->SetButtons(buttons);
    }
    [[nodiscard]] QList<QToolButton*> Buttons() const {
        return Bar->Native().Widget->findChildren<QToolButton*>();
    }
    [[nodiscard]] std::string Ends() const {
        std::string ends = Left->Native().Widget->isEnabled() ? "<" : "";
        return ends + (Right->Native().Widget->isEnabled() ? ">" : "");
    }
    void Widen(int buttons) {
        const int width = buttons * Buttons().front()->sizeHint().width() + 2 * Left->Geometry().Width;
        Stage.Frame.SetGeometry({-1, -1, width + 4, 60});
        Pump();
    }

    Button *Left = nullptr, *Right = nullptr;
    SpeedBar* Bar = nullptr;
    Shown<Layout> Stage;
};

TEST_F(SpeedBarTest, EndsScrollExactlyTowardsWhatIsHidden) {
    Widen(5);
    ASSERT_EQ(Bar->Visible(), 5U);
    const struct {
        std::size_t Wanted, Top;
        const char* Ends;
    } rows[] = {{0, 0, ">"}, {1, 1, "<>"}, {14, 14, "<>"}, {15, 15, "<"}, {16, 15, "<"}, {4000, 15, "<"}};
    for (const auto& row : rows) {
        Bar->SetTop(row.Wanted);
        EXPECT_EQ(Bar->Top(), row.Top);
        EXPECT_EQ(Ends(), row.Ends) << row.Wanted;
    }
    Widen(8);
    EXPECT_EQ(Bar->Top(), 12U) << "no room stays empty while something is hidden";
    Fill(8);
    EXPECT_EQ(Ends(), "");
    EXPECT_EQ(Bar->Top(), 0U);
    Fill(0);
    EXPECT_EQ(Ends(), "");
    EXPECT_EQ(Bar->Total(), 0U);
}

TEST_F(SpeedBarTest, TheWheelScrolls) {
    Widen(5);
    const auto turn = [this](int delta) {
        TurnWheel(*Bar->Native().Widget, delta);
        return Bar->Top();
    };
    EXPECT_EQ(turn(-60), 0U);
    EXPECT_EQ(turn(-60), 1U) << "halves add up";
    EXPECT_EQ(turn(120), 0U);
    EXPECT_EQ(turn(1200), 0U);
}

TEST_F(SpeedBarTest, KeysGoAlongItAndPassWhatCannotBePressed) {
    Widen(3);
    EventsOf(Stage.Frame);
    Bar->SetButtonDisabled(1, true);
    QWidget* first = Buttons()[0];
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Right);
    EXPECT_TRUE(Buttons()[2]->hasFocus());
    QTest::keyClick(Buttons()[2], Qt::Key_Right);
    EXPECT_TRUE(Buttons()[3]->hasFocus());
    EXPECT_EQ(Bar->Top(), 1U) << "what has the keyboard is seen";
    QTest::keyClick(Buttons()[3], Qt::Key_Return);
    QTest::keyClick(Buttons()[3], Qt::Key_Space);
    const auto events = EventsOf(Stage.Frame);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[1].Id, 21);
    EXPECT_EQ(events[1].Code, 3);
    int stops = 0;
    for (const QToolButton* button : Buttons())
        stops += (button->focusPolicy() & Qt::TabFocus) != 0 ? 1 : 0;
    EXPECT_EQ(stops, 1);
}

TEST_F(SpeedBarTest, AWishedPictureTakesThePlaceOfTheTextInItsSize) {
    QImage large(400, 200, QImage::Format_RGB32);
    large.fill(Qt::red);
    const std::string path = Runtime.path().toStdString() + "/large.png";
    ASSERT_TRUE(large.save(QString::fromStdString(path)));
    const auto wish = [](const std::string& file) { return ImageWish{{{file}}, 16, 16, ImageId::None}; };
    Bar->SetButtons(
        {{.Text = "one", .Wish = wish(path)}, {.Text = "two", .Wish = wish(path + "x")}, {.Text = "three"}});
    EXPECT_EQ(Buttons()[0]->text().toStdString(), "one") << "nobody waits for the file";
    FinishWishedImages();
    EXPECT_EQ(Buttons()[0]->text().toStdString(), "");
    EXPECT_EQ(Buttons()[0]->iconSize(), QSize(16, 8));
    EXPECT_EQ(Buttons()[0]->accessibleName().toStdString(), "one");
    EXPECT_EQ(Buttons()[1]->text().toStdString(), "two") << "a missing picture leaves the name";
    Bar->SetButtons({{.Text = "one", .Wish = wish(path)}});
    EXPECT_EQ(Buttons()[0]->iconSize(), QSize(16, 8)) << "a picture that is known shows at once";
    Bar->SetButtons({});
    FinishWishedImages();
}

TEST_F(SpeedBarTest, NamesAreNeitherMnemonicsNorOfAnyLength) {
    EXPECT_EQ(Buttons()[0]->text(), QStringLiteral("a && b 00"));
    Bar->SetButtons({{.Code = 1, .Text = std::string(5000, 'x')}});
    EXPECT_LT(Buttons()[0]->sizeHint().width(), 600);
}

TEST_F(SpeedBarTest, TabGoesThroughGadgetsAsTheyLieWheneverTheyCame) {
    auto& first = static_cast<Button&>(Stage.Content.Insert(0, std::make_unique<Button>(1, "first")));
    Fill(4);
    auto& last = static_cast<Button&>(Stage.Content.Add(std::make_unique<Button>(2, "last")));
    Stage.Frame.ArrangeTabOrder();
    Pump();
    QWidget& from = *first.Native().Widget;
    from.setFocus();
    QTest::keyClick(&from, Qt::Key_Tab);
    ASSERT_TRUE(Buttons()[0]->hasFocus());
    QTest::keyClick(Buttons()[0], Qt::Key_Tab);
    EXPECT_TRUE(last.Native().Widget->hasFocus());
}

} // namespace

} // namespace intuition
