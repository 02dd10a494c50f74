#include "platform/intuition/NativeWindow.h"

#include "platform/intuition/DroppedObjects.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/NativeBars.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace intuition {

namespace {

constexpr QSize UsualFrame(8, 32); // about what desktops put around
constexpr int TickMilliseconds = 100;
constexpr std::size_t MaximumQueued = 4096; // a program that fetches nothing must not fill the memory

// All windows with an open queue, the most recently opened last.
std::vector<NativeWindow*> OpenWindows;

// The clock by which display servers on this machine stamp their events.
std::uint64_t HostMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

bool IsInput(EventClass eventClass) {
    switch (eventClass) {
    case EventClass::CloseWindow:
    case EventClass::NewSize:
    case EventClass::ChangeWindow:
    case EventClass::ScreenJump:
        return false;
    default:
        return true;
    }
}

// One waiting event of these classes says all that a second one could.
bool IsState(EventClass eventClass) {
    return eventClass == EventClass::IntuiTicks || !IsInput(eventClass);
}

std::uint16_t ButtonCode(Qt::MouseButton button, bool down) {
    switch (button) {
    case Qt::MiddleButton:
        return down ? mousebutton::MiddleDown : mousebutton::MiddleUp;
    case Qt::BackButton:
        return down ? mousebutton::FourthDown : mousebutton::FourthUp;
    case Qt::ForwardButton:
        return down ? mousebutton::FifthDown : mousebutton::FifthUp;
    default:
        return 0;
    }
}

// What the key types, nothing for commands and for keys that edit, whose texts are control characters.
std::string TypedText(const QKeyEvent& event) {
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QString text = event.text();
    const bool types = (event.modifiers() & commands) == 0 && !text.isEmpty() && text.front().isPrint();
    return types ? text.toStdString() : std::string();
}

// Whether a key is held that would run its command again and again. Moving on and typing are wanted so.
bool RepeatsCommand(const QKeyEvent& event) {
    const bool moves = event.key() >= Qt::Key_Home && event.key() <= Qt::Key_PageDown;
    return event.isAutoRepeat() && !moves && TypedText(event).empty();
}

} // namespace

bool IsOnAScreen(const QRect& rect) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(),
                       [&](const QScreen* screen) { return screen->availableGeometry().intersects(rect); });
}

NativeWindow::NativeWindow(const WindowSpec& spec) {
    setWindowTitle(TitleText(spec.Title));
    auto layout = std::make_unique<QVBoxLayout>();
    layout->setContentsMargins(0, 0, 0, 0);
    setLayout(layout.release());
    setAcceptDrops(true);
    Place({spec.Left, spec.Top, spec.Width, spec.Height});
    if (QScreen* screen = spec.Screen.empty() ? nullptr : ScreenOf(spec.Screen))
        PlaceOn(*screen);
}

NativeWindow::~NativeWindow() {
    CloseQueue();
    ReleaseMenus();
}

void NativeWindow::SetStrip(QMenuBar* strip) {
    if (layout()->menuBar() == strip)
        return;
    if (QWidget* old = layout()->menuBar())
        old->setParent(nullptr);
    layout()->setMenuBar(strip);
    strip->show();
}

// Menus belong to the program and may be shown by its next window.
void NativeWindow::ReleaseMenus() {
    layout()->setMenuBar(nullptr);
    const QList<QWidget*> children = findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        if (qobject_cast<QMenuBar*>(child) != nullptr || qobject_cast<QMenu*>(child) != nullptr)
            child->setParent(nullptr);
    }
}

// The first menu of the strip, with its first item marked.
void NativeWindow::OpenStrip() {
    if (auto* strip = qobject_cast<QMenuBar*>(layout()->menuBar());
        strip != nullptr && !strip->actions().isEmpty())
        strip->setActiveAction(strip->actions().front());
}

// What is too large for the screens shrinks until its frame and all of it can be seen; else the place is the
// user's, who may like it half outside.
void NativeWindow::Place(const Box& box) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect room = screen != nullptr ? screen->availableVirtualGeometry() : QRect();
    const QSize most = screen != nullptr ? room.size() - UsualFrame : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (box.Width > 0 && box.Height > 0)
        resize(QSize(box.Width, box.Height).boundedTo(most));
    if (box.Left == -1 && box.Top == -1)
        return;
    const QPoint corner(box.Width > most.width() ? room.left() : box.Left,
                        box.Height > most.height() ? room.top() : box.Top);
    if (IsOnAScreen({corner, size()}))
        move(corner);
}

// A place on another screen keeps its distance from the corner as far as there is room; without one the
// window comes into the middle.
void NativeWindow::PlaceOn(QScreen& screen) {
    const QScreen* former =
        testAttribute(Qt::WA_Moved) ? QGuiApplication::screenAt(geometry().center()) : nullptr;
    setScreen(&screen);
    if (former == &screen)
        return;
    const QRect room = screen.availableGeometry();
    resize(size().boundedTo(room.size() - UsualFrame));
    const QSize rest = room.size() - UsualFrame - size();
    const QPoint middle(rest.width() / 2, rest.height() / 2);
    const QPoint wish = former != nullptr ? pos() - former->availableGeometry().topLeft() : middle;
    move(room.left() + std::clamp(wish.x(), 0, rest.width()),
         room.top() + std::clamp(wish.y(), 0, rest.height()));
}

bool NativeWindow::OpenQueue() {
    if (Signal >= 0)
        return true;
    Signal = exec::AllocSignal();
    if (Signal < 0)
        return false;
    Owner = exec::FindTask();
    Painted = false;
    OpenWindows.push_back(this);
    return true;
}

void NativeWindow::CloseQueue() {
    if (Signal < 0)
        return;
    UnblockAll();
    Ticks.stop();
    Queue.clear();
    const QList<QWidget*> widgets = findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (auto* keeper = dynamic_cast<KeepsEvents*>(widget))
            keeper->ForgetEvents();
    }
    exec::SetSignal(0, Mask());
    exec::FreeSignal(Signal);
    Signal = -1;
    std::erase(OpenWindows, this);
}

exec::SignalMask NativeWindow::Mask() const {
    return Signal < 0 ? 0 : exec::SignalMask{1} << Signal;
}

bool NativeWindow::Post(WindowEvent event) {
    if (Signal < 0 || (IsBlocked() && IsInput(event.Class)))
        return false;
    const auto same = [&](const WindowEvent& waiting) { return waiting.Class == event.Class; };
    if (IsState(event.Class) && std::any_of(Queue.begin(), Queue.end(), same))
        return true;
    if (Queue.size() >= MaximumQueued)
        return false;
    Queue.push_back(std::move(event));
    exec::Signal(Owner, Mask());
    return true;
}

std::optional<WindowEvent> NativeWindow::Fetch() {
    if (Queue.empty())
        return std::nullopt;
    WindowEvent event = std::move(Queue.front());
    Queue.pop_front();
    // The signal is set exactly while events wait, also for a program that fetches one event per Wait.
    exec::SetSignal(Queue.empty() ? 0 : Mask(), Mask());
    return event;
}

void NativeWindow::SetTicks(bool on) {
    if (!on)
        Ticks.stop();
    else if (!Ticks.isActive())
        Ticks.start(TickMilliseconds, this);
}

void NativeWindow::Block() {
    if (Depth++ > 0)
        return;
    if (BlockedFrom == 0)
        BlockedFrom = HostMilliseconds();
    ReleaseHeldButtons();
    SetPointer();
}

void NativeWindow::Unblock() {
    if (Depth == 0 || --Depth > 0)
        return;
    BlockedTo = HostMilliseconds();
    SetPointer();
}

void NativeWindow::UnblockAll() {
    if (Depth == 0)
        return;
    Depth = 1;
    Unblock();
}

// A blocked window's host window carries the busy pointer itself, since pointer moves, and with them the
// gadgets' own pointers, are swallowed.
void NativeWindow::SetPointer() {
    if (windowHandle() == nullptr)
        return;
    if (IsBlocked())
        windowHandle()->setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

// A button that is held down when the block begins must not act when it is let go.
void NativeWindow::ReleaseHeldButtons() {
    const QList<QAbstractButton*> buttons = findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (button->isDown())
            button->setDown(false);
    }
}

bool NativeWindow::Swallows(const QEvent& event) const {
    if (IsBlocked())
        return true;
    if (BlockedFrom == 0 || !event.isInputEvent())
        return false;
    const std::uint64_t made = static_cast<const QInputEvent&>(event).timestamp();
    return made >= BlockedFrom && made <= BlockedTo;
}

void NativeWindow::InputIsRead() {
    if (!IsBlocked())
        BlockedFrom = BlockedTo = 0;
}

NativeWindow* NativeWindow::MostRecent() {
    const auto active = std::find_if(OpenWindows.rbegin(), OpenWindows.rend(),
                                     [](const NativeWindow* window) { return window->isActiveWindow(); });
    if (active != OpenWindows.rend())
        return *active;
    return OpenWindows.empty() ? nullptr : OpenWindows.back();
}

void NativeWindow::AllInputIsRead() {
    for (NativeWindow* window : OpenWindows)
        window->InputIsRead();
}

void NativeWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    Post({EventClass::CloseWindow});
}

void NativeWindow::keyPressEvent(QKeyEvent* event) {
    if (IsQualifierKey(*event)) {
        event->ignore();
        return;
    }
    if (RepeatsCommand(*event))
        return;
    if (IsMenuKey(*event)) {
        PostMenuVerify(*this, 0, rect().center());
        return;
    }
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::NoModifier) {
        OpenStrip();
        return;
    }
    if (event->key() == Qt::Key_F8 && event->modifiers() == Qt::NoModifier) {
        FocusNextBar(*this);
        return;
    }
    Post({EventClass::RawKey, 0, RawKeyOf(*event), CurrentQualifier(), TypedText(*event)});
}

void NativeWindow::mousePressEvent(QMouseEvent* event) {
    if (const std::uint16_t code = ButtonCode(event->button(), true); code != 0)
        Post({EventClass::MouseButtons, 0, code, CurrentQualifier()});
}

void NativeWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (const std::uint16_t code = ButtonCode(event->button(), false); code != 0)
        Post({EventClass::MouseButtons, 0, code, CurrentQualifier()});
}

void NativeWindow::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        event->ignore();
        return;
    }
    constexpr int step = 120;
    WheelRest += event->angleDelta().y();
    for (; WheelRest >= step; WheelRest -= step)
        Post({EventClass::MouseButtons, 0, mousebutton::WheelUp, CurrentQualifier()});
    for (; WheelRest <= -step; WheelRest += step)
        Post({EventClass::MouseButtons, 0, mousebutton::WheelDown, CurrentQualifier()});
}

void NativeWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (Painted)
        Post({EventClass::ChangeWindow});
}

void NativeWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (Painted)
        Post({EventClass::NewSize});
}

void NativeWindow::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    Painted = true;
}

void NativeWindow::timerEvent(QTimerEvent* event) {
    if (event->timerId() == Ticks.timerId())
        Post({EventClass::IntuiTicks});
    QWidget::timerEvent(event);
}

// A window that was blocked before it was first shown has its pointer only now.
void NativeWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (IsBlocked())
        SetPointer();
}

void NativeWindow::dragEnterEvent(QDragEnterEvent* event) {
    TakeDrag(*event);
}

void NativeWindow::dropEvent(QDropEvent* event) {
    if (auto objects = DroppedObjects(*event); !objects.empty())
        Post({.Class = EventClass::AppMessage,
              .Qualifier = CurrentQualifier(),
              .Objects = std::move(objects)});
}

} // namespace intuition
