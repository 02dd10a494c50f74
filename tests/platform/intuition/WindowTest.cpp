#include "platform/intuition/Window.h"

#include "platform/dos/Errors.h"
#include "platform/intuition/Button.h"
#include "platform/intuition/Label.h"
#include "tests/platform/intuition/Stage.h"

#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include <chrono>
#include <thread>

namespace intuition {

namespace {

class WindowTest : public OnDisplay {
protected:
    Shown<Button> Stage{std::make_unique<Button>(7, "Press & hold")};
    QWidget& Host() { return *Stage.Widget().window(); }
};

TEST_F(WindowTest, CloseGadgetPostsOneEventAndLeavesTheWindowOpen) {
    Host().close();
    Host().close();
    EXPECT_EQ(EventOf(Stage.Frame).Class, EventClass::CloseWindow);
    EXPECT_TRUE(Host().isVisible());
}

TEST_F(WindowTest, SignalIsSetExactlyWhileEventsWait) {
    const exec::SignalMask mask = Stage.Frame.Mask();
    EXPECT_EQ(exec::CheckSignal(mask), 0U);
    QTest::keyClick(&Host(), Qt::Key_A);
    QTest::keyClick(&Host(), Qt::Key_B);
    EXPECT_EQ(exec::Wait(mask), mask);
    EXPECT_TRUE(Stage.Frame.NextEvent());
    EXPECT_EQ(exec::Wait(mask), mask);
    EXPECT_TRUE(Stage.Frame.NextEvent());
    EXPECT_EQ(exec::CheckSignal(mask), 0U);
}

TEST_F(WindowTest, HeldKeyRepeatsUnlessItIsACommand) {
    const struct {
        int Key;
        Qt::KeyboardModifiers Held;
        std::size_t Events;
        const char* Text;
    } rows[] = {{Qt::Key_T, Qt::ControlModifier, 1, "\x14"}, {Qt::Key_T, Qt::AltModifier, 1, "t"},
                {Qt::Key_T, Qt::NoModifier, 2, "t"},         {Qt::Key_Down, Qt::AltModifier, 2, ""},
                {Qt::Key_Return, Qt::NoModifier, 1, "\r"},   {Qt::Key_Backspace, Qt::NoModifier, 1, "\b"},
                {Qt::Key_F11, Qt::NoModifier, 1, ""}};
    for (const auto& row : rows) {
        for (const bool repeats : {false, true}) {
            QKeyEvent press(QEvent::KeyPress, row.Key, row.Held, QString::fromLatin1(row.Text), repeats);
            QCoreApplication::sendEvent(&Host(), &press);
        }
        EXPECT_EQ(EventsOf(Stage.Frame).size(), row.Events) << row.Key << " " << int(row.Held);
    }
}

TEST_F(WindowTest, ReturnOnAButtonPressesItOnceAndIsNoKeyOfTheWindow) {
    Stage.Widget().setFocus();
    for (const bool repeats : {false, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), repeats);
        QCoreApplication::sendEvent(&Stage.Widget(), &press);
    }
    const auto events = EventsOf(Stage.Frame);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].Class, EventClass::GadgetUp);
}

TEST_F(WindowTest, ButtonSendsItsIdWithTheQualifierHeld) {
    QTest::mouseClick(&Stage.Widget(), Qt::LeftButton, Qt::ControlModifier);
    const WindowEvent event = EventOf(Stage.Frame);
    EXPECT_EQ(event.Class, EventClass::GadgetUp);
    EXPECT_EQ(event.Id, 7);
    EXPECT_EQ(event.Qualifier, qualifier::Control);
}

struct KeyCase {
    const char* What;
    Qt::Key Key;
    Qt::KeyboardModifiers Modifiers;
    std::uint16_t Code, Qualifier;
};

TEST_F(WindowTest, KeysArriveAsAmigaCodes) {
    const KeyCase cases[] = {
        {"letter", Qt::Key_Q, Qt::NoModifier, 16, 0},
        {"last letter", Qt::Key_Z, Qt::ControlModifier, 49, qualifier::Control},
        {"digit", Qt::Key_5, Qt::ControlModifier, 5, qualifier::Control},
        {"zero", Qt::Key_0, Qt::NoModifier, 10, 0},
        {"digit of the pad", Qt::Key_9, Qt::KeypadModifier, 63, 0},
        {"arrow of the pad", Qt::Key_Up, Qt::KeypadModifier, rawkey::Up, 0},
        {"pad without Num Lock", Qt::Key_Up, Qt::KeypadModifier | Qt::ControlModifier, 62,
         qualifier::Control},
        {"Tab with Control", Qt::Key_Tab, Qt::ControlModifier, rawkey::Tab, qualifier::Control},
        {"Tab back", Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, rawkey::Tab,
         qualifier::Control | qualifier::LeftShift},
        {"Return", Qt::Key_Return, Qt::AltModifier, rawkey::Return, qualifier::LeftAlt},
        {"Delete", Qt::Key_Delete, Qt::ShiftModifier, rawkey::Delete, qualifier::LeftShift},
        {"F5", Qt::Key_F5, Qt::NoModifier, 84, 0},
        {"F11", Qt::Key_F11, Qt::NoModifier, rawkey::F11, 0},
        {"End", Qt::Key_End, Qt::MetaModifier, rawkey::End, qualifier::LeftAmiga},
    };
    for (const KeyCase& key : cases) {
        QTest::keyClick(&Host(), key.Key, key.Modifiers);
        SCOPED_TRACE(key.What);
        const WindowEvent event = EventOf(Stage.Frame);
        EXPECT_EQ(event.Class, EventClass::RawKey);
        EXPECT_EQ(event.Code, key.Code);
        EXPECT_EQ(event.Text.empty(), (key.Modifiers & ~Qt::KeypadModifier) != 0 || key.Key > 0x7F);
        EXPECT_EQ(event.Qualifier, key.Qualifier);
    }
}

TEST_F(WindowTest, LettersOfOtherKeyboardsKeepTheirPlaceAndTellTheirText) {
    constexpr quint32 placeOfC = 54; // as display servers count
    QKeyEvent cyrillic(QEvent::KeyPress, 0x0421, Qt::NoModifier, placeOfC, 0, 0, QStringLiteral("с"));
    QCoreApplication::sendEvent(&Host(), &cyrillic);
    const WindowEvent event = EventOf(Stage.Frame);
    EXPECT_EQ(event.Code, 51);
    EXPECT_EQ(event.Text, "с");
}

TEST_F(WindowTest, QualifierKeysSendNothingButTellTheirSide) {
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier, 62, 0xFFE2, 0);
    QCoreApplication::sendEvent(&Host(), &down);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
    QTest::keyClick(&Host(), Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(EventsOf(Stage.Frame).at(0).Qualifier, qualifier::RightShift);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_Shift, Qt::ShiftModifier, 62, 0xFFE2, 0);
    QCoreApplication::sendEvent(&Host(), &up);
    QTest::keyClick(&Host(), Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(EventsOf(Stage.Frame).at(0).Qualifier, qualifier::LeftShift);
}

TEST_F(WindowTest, FurtherMouseButtonsSendTheirCodes) {
    for (const auto& [button, code] : {std::pair{Qt::MiddleButton, mousebutton::MiddleUp},
                                       std::pair{Qt::BackButton, mousebutton::FourthUp},
                                       std::pair{Qt::ForwardButton, mousebutton::FifthUp}}) {
        QTest::mouseClick(&Stage.Widget(), button);
        const auto events = EventsOf(Stage.Frame);
        ASSERT_EQ(events.size(), 2U);
        EXPECT_EQ(events[1].Class, EventClass::MouseButtons);
        EXPECT_EQ(events[1].Code, code);
    }
}

TEST_F(WindowTest, BlocksNestAndMinusOneEndsThemAll) {
    const auto takesInput = [this] {
        QTest::mouseClick(&Stage.Widget(), Qt::LeftButton);
        QTest::keyClick(&Host(), Qt::Key_A);
        return EventsOf(Stage.Frame).size() == 2;
    };
    Stage.Frame.Block(1);
    Stage.Frame.Block(1);
    Stage.Frame.Block(0);
    EXPECT_FALSE(takesInput());
    EXPECT_EQ(Host().windowHandle()->cursor().shape(), Qt::WaitCursor);
    Stage.Frame.Block(0);
    EXPECT_TRUE(takesInput());
    EXPECT_NE(Host().windowHandle()->cursor().shape(), Qt::WaitCursor);
    for (int depth = 0; depth < 3; ++depth)
        Stage.Frame.Block(1);
    Stage.Frame.Block(-1);
    EXPECT_TRUE(takesInput());
    Stage.Frame.Block(0); // one end too many does no harm
    Stage.Frame.Block(1);
    EXPECT_FALSE(takesInput());
}

TEST_F(WindowTest, BlockedWindowStillQueuesItsCloseGadget) {
    Stage.Frame.Block(1);
    Host().close();
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
}

TEST_F(WindowTest, ButtonHeldWhenTheBlockBeginsDoesNotAct) {
    QTest::mousePress(&Stage.Widget(), Qt::LeftButton);
    Stage.Frame.Block(1);
    QTest::mouseRelease(&Stage.Widget(), Qt::LeftButton);
    Stage.Frame.Block(0);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
}

TEST_F(WindowTest, InputMadeWhileBlockedIsLostEvenWhenReadLater) {
    const auto keyOf = [this](auto madeAt) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
        const auto stamp = std::chrono::duration_cast<std::chrono::milliseconds>(madeAt.time_since_epoch());
        key.setTimestamp(static_cast<std::uint64_t>(stamp.count()));
        QCoreApplication::sendEvent(&Host(), &key);
    };
    Stage.Frame.Block(1);
    const auto during = std::chrono::steady_clock::now();
    Stage.Frame.Block(0);
    keyOf(during);
    keyOf(during + std::chrono::hours(1));
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
    keyOf(during); // all input of that time has been read by now
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
}

TEST_F(WindowTest, WaitServesTheDisplayAndWakesForOtherThreads) {
    const int signal = exec::AllocSignal();
    exec::Task* task = exec::FindTask();
    bool served = false;
    QMetaObject::invokeMethod(
        &Host(), [&] { served = true; }, Qt::QueuedConnection);
    std::thread other([&] { exec::Signal(task, 1U << signal); });
    EXPECT_EQ(exec::Wait(1U << signal), 1U << signal);
    other.join();
    Pump();
    EXPECT_TRUE(served);
    exec::FreeSignal(signal);
}

TEST_F(WindowTest, ClosedWindowGivesItsSignalBackAndForgetsEvents) {
    QTest::keyClick(&Host(), Qt::Key_A);
    Stage.Frame.Close();
    EXPECT_EQ(Stage.Frame.Mask(), 0U);
    EXPECT_FALSE(Stage.Frame.NextEvent());
    ASSERT_TRUE(Stage.Frame.Open());
    QTest::keyClick(&Host(), Qt::Key_A);
    EXPECT_EQ(EventsOf(Stage.Frame).size(), 1U);
}

TEST_F(WindowTest, ChangesOfSizeAreToldOnce) {
    Pump();
    Host().grab(); // drawn once: from here on changes are the user's
    Stage.Frame.SetGeometry({-1, -1, 500, 300});
    Stage.Frame.SetGeometry({-1, -1, 510, 300});
    EXPECT_EQ(EventOf(Stage.Frame).Class, EventClass::NewSize);
    EXPECT_EQ(Stage.Frame.Geometry().Width, 510);
}

TEST_F(WindowTest, TicksComeOnlyWhenAskedFor) {
    Stage.Frame.SetTicks(true);
    exec::Wait(Stage.Frame.Mask());
    EXPECT_EQ(Stage.Frame.NextEvent()->Class, EventClass::IntuiTicks);
    Stage.Frame.SetTicks(false);
    QTest::qWait(150);
    EXPECT_TRUE(EventsOf(Stage.Frame).empty());
}

TEST_F(WindowTest, WhatIsDroppedArrivesAsPathsInItsOrder) {
    constexpr int files = 10000;
    QMimeData data;
    QList<QUrl> urls{QUrl::fromEncoded("https://example.org/remote"),
                     QUrl::fromEncoded("file:///x/a%20b%FF")};
    for (int file = 1; file < files; ++file)
        urls.append(QUrl(QStringLiteral("file:///x/%1").arg(file)));
    data.setUrls(urls);
    const QPoint place(9, 9);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Host(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Host(), &drop);
    const WindowEvent event = EventOf(Stage.Frame);
    ASSERT_EQ(event.Objects.size(), static_cast<std::size_t>(files)) << "without what is no file";
    EXPECT_TRUE(event.Objects[0].ends_with("/a b\xFF"));
    EXPECT_TRUE(event.Objects[files - 1].ends_with("/9999"));
}

TEST_F(WindowTest, PictureIsWrittenOrTheReasonIsTold) {
    const QTemporaryDir drawer;
    const std::string file = drawer.filePath(QStringLiteral("window.png")).toStdString();
    ASSERT_TRUE(Stage.Frame.SavePicture(file));
    EXPECT_EQ(QImage(QString::fromStdString(file)).size(), Host().size());
    EXPECT_FALSE(Stage.Frame.SavePicture(file + "/below"));
    EXPECT_NE(dos::IoErr(), 0);
}

TEST(OpenDisplayTest, DisplayThatDoesNotAnswerIsRefusedWithAReason) {
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("WAYLAND_DISPLAY");
    for (const std::string name : {"", ":987654", "nonsense"}) {
        qputenv("DISPLAY", name.c_str());
        EXPECT_FALSE(OpenDisplay(0, nullptr)) << name;
        EXPECT_EQ(WhyNoDisplay().Problem, name.empty() ? DisplayProblem::NotNamed : DisplayProblem::Silent);
        EXPECT_EQ(WhyNoDisplay().Display, name);
        EXPECT_FALSE(DisplayIsOpen());
    }
}

} // namespace

} // namespace intuition
