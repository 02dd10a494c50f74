#include "platform/intuition/Button.h"
#include "platform/intuition/Chooser.h"
#include "platform/intuition/Images.h"
#include "platform/intuition/Label.h"
#include "platform/intuition/Layout.h"
#include "platform/intuition/StringGadget.h"
#include "tests/platform/intuition/Stage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QSplitter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <sys/stat.h>

namespace intuition {

namespace {

using Numbers = std::vector<int>;

class GadgetsTest : public OnDisplay {};

std::unique_ptr<Layout> ThreePanes(bool bars) {
    auto layout = std::make_unique<Layout>(LayoutSpec{Orientation::Horizontal, bars, 4, 0});
    layout->Add(std::make_unique<ListBrowser>(1), 25);
    layout->Add(std::make_unique<ListBrowser>(2), 75);
    layout->Add(std::make_unique<Label>("end"));
    return layout;
}

QSplitter& SplitterOf(Layout& layout) {
    return WidgetOf<QSplitter>(layout);
}

TEST_F(GadgetsTest, WeightsComeBackAsTheyWereSet) {
    for (const bool bars : {false, true}) {
        Shown<Layout> stage(ThreePanes(bars));
        EXPECT_EQ(stage.Content.Weights(), (Numbers{25, 75, 0}));
        stage.Frame.SetGeometry({-1, -1, 811, 300});
        Pump();
        stage.Content.SetWeights({40, 60, 5});
        EXPECT_EQ(stage.Content.Weights(), (Numbers{40, 60, 0}));
    }
}

TEST_F(GadgetsTest, SizesFollowTheWeightsAtEverySizeOfTheWindow) {
    Shown<Layout> stage(ThreePanes(true));
    for (const int width : {900, 600, 1100}) {
        stage.Frame.SetGeometry({-1, -1, width, 300});
        Pump();
        const int left = stage.Content.Child(0)->Geometry().Width,
                  right = stage.Content.Child(1)->Geometry().Width;
        EXPECT_NEAR(3.0 * left, right, 6) << width;
    }
}

TEST_F(GadgetsTest, DraggedBarChangesTheWeightsAndKeepsTheirSum) {
    Shown<Layout> stage(ThreePanes(true));
    QSplitterHandle* bar = SplitterOf(stage.Content).handle(1);
    const QPoint start = bar->rect().center();
    Drag(*bar, start, {start + QPoint(100, 0)});
    const Numbers weights = stage.Content.Weights();
    EXPECT_GT(weights[0], 35);
    EXPECT_EQ(std::accumulate(weights.begin(), weights.end(), 0), 100);
    EXPECT_FALSE(SplitterOf(stage.Content).handle(2)->isEnabled());
    stage.Frame.SetGeometry({-1, -1, 1000, 300});
    Pump();
    EXPECT_EQ(stage.Content.Weights(), weights);
}

TEST_F(GadgetsTest, BarsAreMovedByKeysAndGiveTheKeyboardBack) {
    Shown<Layout> stage(ThreePanes(true));
    QSplitter& splitter = SplitterOf(stage.Content);
    splitter.widget(0)->setFocusPolicy(Qt::StrongFocus);
    splitter.widget(0)->setFocus();
    const Numbers before = stage.Content.Weights();
    QWidget* window = splitter.window();
    const auto press = [&](Qt::Key key) { QTest::keyClick(window->focusWidget(), key); };
    press(Qt::Key_F8);
    ASSERT_TRUE(splitter.handle(1)->hasFocus());
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Up})
        press(key);
    const Numbers moved = stage.Content.Weights();
    EXPECT_GT(moved[0], before[0]);
    EXPECT_EQ(std::accumulate(moved.begin(), moved.end(), 0), 100);
    EXPECT_TRUE(EventsOf(stage.Frame).empty()) << "no arrow reaches the window";
    press(Qt::Key_End);
    EXPECT_GT(stage.Content.Weights()[0], moved[0]);
    EXPECT_GT(splitter.widget(1)->width(), 0);
    press(Qt::Key_Escape);
    EXPECT_TRUE(splitter.widget(0)->hasFocus());
    press(Qt::Key_F8);
    press(Qt::Key_F8); // the other bar cannot be moved
    EXPECT_TRUE(splitter.widget(0)->hasFocus());
}

TEST_F(GadgetsTest, PlaceholderCanBeReadInEveryPalette) {
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    Shown<StringGadget> stage(std::make_unique<StringGadget>(1, "", 100));
    for (const auto& [base, text] : {std::pair{"#ffffff", "#000000"}, std::pair{"#1b1e20", "#fcfcfc"},
                                     std::pair{"#fdf6e3", "#657b83"}, std::pair{"#808080", "#000000"}}) {
        QPalette colours;
        colours.setColor(QPalette::Base, QColor(base));
        colours.setColor(QPalette::Text, QColor(text));
        QApplication::setPalette(colours);
        Pump();
        const QPalette& shown = stage.Widget().palette();
        const QColor faint = shown.color(QPalette::PlaceholderText);
        const auto [dark, light] = std::minmax({luminance(shown.color(QPalette::Base)), luminance(faint)});
        EXPECT_GE((light + 0.05) / (dark + 0.05), 4.5) << base << faint.name().toStdString();
        EXPECT_EQ(faint.alpha(), 255);
        EXPECT_EQ(shown.color(QPalette::Text), QColor(text));
    }
    QApplication::setPalette(QPalette());
}

TEST_F(GadgetsTest, ChildrenCanBeTakenOutAndPutBack) {
    for (const bool bars : {false, true}) {
        Shown<Layout> stage(ThreePanes(bars));
        std::unique_ptr<Gadget> taken = stage.Content.Remove(*stage.Content.Child(0));
        ASSERT_TRUE(taken);
        EXPECT_EQ(stage.Content.Weights(), (Numbers{75, 0}));
        Pump();
        stage.Content.Insert(1, std::move(taken), 20);
        Pump();
        EXPECT_EQ(stage.Content.Weights(), (Numbers{75, 20, 0}));
        EXPECT_GT(stage.Content.Child(1)->Geometry().Left, stage.Content.Child(0)->Geometry().Left);
        const Label stranger("no child");
        EXPECT_FALSE(stage.Content.Remove(stranger));
    }
}

TEST_F(GadgetsTest, LongLabelDoesNotWidenTheWindow) {
    Shown<Label> stage(std::make_unique<Label>(std::string(1000, 'm')));
    EXPECT_EQ(stage.Frame.Geometry().Width, 600);
}

TEST_F(GadgetsTest, NamesOnButtonsArePlain) {
    Shown<Button> stage(std::make_unique<Button>(1, "A & _B"));
    EXPECT_EQ(WidgetOf<QAbstractButton>(stage.Content).text(), QStringLiteral("A && _B"));
    EXPECT_TRUE(WidgetOf<QAbstractButton>(stage.Content).shortcut().isEmpty());
}

struct StringStage : Shown<StringGadget> {
    explicit StringStage(std::string_view text, std::size_t limit = 100, std::string_view forbidden = {})
        : Shown(std::make_unique<StringGadget>(38, text, limit, forbidden)) {
        Content.Activate();
    }
};

TEST_F(GadgetsTest, EditedNameKeepsBytesThatAreNoUtf8) {
    StringStage stage("bad\xFF");
    EXPECT_EQ(stage.Content.Text(), "bad\xFF");
    QTest::keyClick(&stage.Widget(), Qt::Key_End);
    QTest::keyClicks(&stage.Widget(), QStringLiteral("x"));
    EXPECT_EQ(stage.Content.Text(), "bad\xFFx");
}

TEST_F(GadgetsTest, InputIsCutAtAWholeCharacterAndFiltered) {
    StringStage stage("", 5, ":/");
    QTest::keyClicks(&stage.Widget(), QStringLiteral("a:b/"));
    WidgetOf<QLineEdit>(stage.Content).insert(QStringLiteral("ääz"));
    EXPECT_EQ(stage.Content.Text(), "abä");
}

TEST_F(GadgetsTest, EscapeInAFieldCancelsTheDialogAroundIt) {
    QDialog dialog;
    StringGadget field(1, "old", 20);
    QWidget* const outside = field.Native().Widget->parentWidget();
    field.Native().Widget->setParent(&dialog);
    dialog.show();
    QTest::keyClick(field.Native().Widget.get(), Qt::Key_X);
    QTest::keyClick(field.Native().Widget.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    field.Native().Widget->setParent(outside);
}

TEST_F(GadgetsTest, ReturnSendsGadgetUpAndEscapeBringsTheOldTextBack) {
    StringStage stage("old");
    QTest::keyClicks(&stage.Widget(), QStringLiteral("new"));
    QTest::keyClick(&stage.Widget(), Qt::Key_Escape);
    EXPECT_EQ(stage.Content.Text(), "old");
    EXPECT_TRUE(EventsOf(stage.Frame).empty());
    QTest::keyClick(&stage.Widget(), Qt::Key_Return);
    EXPECT_EQ(EventOf(stage.Frame).Id, 38);
    QTest::keyClick(&stage.Widget(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(EventsOf(stage.Frame).size(), 1U) << "and no key for the window";
}

TEST_F(GadgetsTest, OnlyCommandsAndFunctionKeysLeaveAStringGadget) {
    StringStage stage("text");
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Left, Qt::Key_X})
        QTest::keyClick(&stage.Widget(), key);
    EXPECT_TRUE(EventsOf(stage.Frame).empty());
    QTest::keyClick(&stage.Widget(), Qt::Key_T, Qt::ControlModifier);
    QTest::keyClick(&stage.Widget(), Qt::Key_F5);
    EXPECT_EQ(EventsOf(stage.Frame).size(), 2U);
}

TEST_F(GadgetsTest, ChooserTellsOfPicksAndOfNothingElse) {
    Shown<Chooser> stage(std::make_unique<Chooser>(43, std::vector<std::string>{"a & b", "c", "d"}, "hint"));
    auto& box = static_cast<QComboBox&>(stage.Widget());
    EXPECT_EQ(box.itemText(0).toStdString(), "a & b");
    stage.Content.SetSelected(2);
    EXPECT_EQ(stage.Content.Selected(), 2);
    EXPECT_TRUE(EventsOf(stage.Frame).empty());
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Up);
    const WindowEvent event = EventOf(stage.Frame);
    EXPECT_EQ(event.Id, 43);
    EXPECT_EQ(event.Code, 1);
    stage.Content.SetSelected(7);
    EXPECT_EQ(stage.Content.Selected(), -1);
}

TEST_F(GadgetsTest, ImagesAreSharedByPathAndFreedWithTheLastUse) {
    const QTemporaryDir drawer;
    const std::string file = drawer.filePath(QStringLiteral("a.png")).toStdString();
    QImage(12, 7, QImage::Format_RGB32).save(QString::fromStdString(file));
    const ImageId image = ObtainImage(file);
    EXPECT_EQ(ObtainImage(file), image);
    ReleaseImage(image);
    EXPECT_EQ(SizeOfImage(image).Width, 12);
    ReleaseImage(image);
    EXPECT_EQ(SizeOfImage(image).Width, 0);
    EXPECT_NE(ObtainImage(file), image);
}

TEST_F(GadgetsTest, WhatIsNoPictureShowsAsNothing) {
    const QTemporaryDir drawer;
    const std::string pipe = drawer.filePath(QStringLiteral("pipe.png")).toStdString();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& file : {pipe, drawer.path().toStdString(), pipe + ".missing"})
        EXPECT_EQ(SizeOfImage(ObtainImage(file)).Width, 0) << file;
    EXPECT_EQ(ObtainImage(""), ImageId::None);
    EXPECT_EQ(CreateImage(4, 4, std::array<std::uint32_t, 15>{}), ImageId::None);
    EXPECT_EQ(SizeOfImage(CreateImage(4, 4, std::array<std::uint32_t, 16>{})).Width, 4);
}

} // namespace

} // namespace intuition
