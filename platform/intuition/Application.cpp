#include "platform/intuition/Application.h"

#include "platform/exec/Tasks.h"
#include "platform/intuition/Language.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

#include <clocale>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <xcb/xcb.h>

namespace intuition {

namespace {

// Sees every event before its receiver does: drops input for blocked windows and keeps track of qualifiers.
class InputFilter : public QObject {
public:
    bool eventFilter(QObject* receiver, QEvent* event) override;
};

struct DisplayState {
    int ArgumentCount = 1;
    std::string ProgramName;
    char* Arguments[2] = {nullptr, nullptr}; // the toolkit keeps pointing here
    InputFilter Filter;
    std::unique_ptr<QApplication> Application;
    std::unique_ptr<QTranslator> Texts; // null: English
};

// A process that ends with an open display leaves it to the host: by then parts of the toolkit are gone.
struct DisplayHolder {
    DisplayHolder() = default;
    ~DisplayHolder() { static_cast<void>(Open.release()); }
    DisplayHolder(const DisplayHolder&) = delete;
    DisplayHolder& operator=(const DisplayHolder&) = delete;
    std::unique_ptr<DisplayState> Open;
};

DisplayHolder Display;
DisplayFailure Failure;
std::string Language; // of the toolkit's texts

void TakeTexts() {
    Display.Open->Texts = ToolkitTexts(Language);
    if (Display.Open->Texts)
        QCoreApplication::installTranslator(Display.Open->Texts.get());
}

// The program's window that a receiver lies in: the host's window object first sees input, then widgets do.
const NativeWindow* WindowOf(const QObject* receiver) {
    if (receiver->isWidgetType())
        return dynamic_cast<const NativeWindow*>(static_cast<const QWidget*>(receiver)->window());
    if (!receiver->isWindowType())
        return nullptr;
    const QWidgetList tops = QApplication::topLevelWidgets();
    for (const QWidget* top : tops) {
        if (top->windowHandle() == receiver)
            return dynamic_cast<const NativeWindow*>(top);
    }
    return nullptr;
}

// Input that begins something. What ends it (a button let go, the pointer leaving) always passes, so that no
// widget waits for it for ever.
bool IsBeginningOfInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::InputMethod:
        return true;
    default:
        return false;
    }
}

bool InputFilter::eventFilter(QObject* receiver, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease)
        NoteQualifierKey(static_cast<const QKeyEvent&>(*event));
    if (!IsBeginningOfInput(type))
        return false;
    const NativeWindow* window = WindowOf(receiver);
    return window != nullptr && window->Swallows(*event);
}

// Serves what the display has. Polling goes on until nothing is left, within limits: one poll must not last
// for ever on a display that talks without end.
void RunPump(bool wait) {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    constexpr int maximumRounds = 32;
    if (wait)
        dispatcher->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    for (int round = 0; round < maximumRounds && dispatcher->processEvents(QEventLoop::AllEvents);)
        ++round;
    NativeWindow::AllInputIsRead();
}

bool SocketAnswers(const sockaddr_un& address, socklen_t length) {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return false;
    const bool answers = ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), length) == 0;
    ::close(descriptor);
    return answers;
}

// A leading "@" stands for a name outside the file system.
bool SocketAnswers(std::string_view name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() >= sizeof(address.sun_path))
        return false;
    name.copy(address.sun_path, name.size());
    const bool isAbstract = name.starts_with('@');
    if (isAbstract)
        address.sun_path[0] = '\0';
    const std::size_t length = offsetof(sockaddr_un, sun_path) + name.size() + (isAbstract ? 0 : 1);
    return SocketAnswers(address, static_cast<socklen_t>(length));
}

// The toolkit ends the process when no display answers or it refuses the user, so both are tried before.
bool XDisplayAnswers(const std::string& name) {
    xcb_connection_t* connection = xcb_connect(name.c_str(), nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

bool WaylandAnswers(const std::string& name) {
    if (name.starts_with('/'))
        return SocketAnswers(name);
    const std::string directory = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString();
    return !directory.empty() && SocketAnswers(directory + "/" + name);
}

bool Answers(const std::string& wayland, const std::string& x, std::string_view platform) {
    const bool tryWayland = !platform.starts_with("xcb") && !wayland.empty();
    const bool tryX = !platform.starts_with("wayland") && !x.empty();
    return (tryWayland && WaylandAnswers(wayland)) || (tryX && XDisplayAnswers(x));
}

bool SomeDisplayAnswers() {
    const std::string platform = qEnvironmentVariable("QT_QPA_PLATFORM").toStdString();
    for (const std::string_view own : {"offscreen", "minimal", "vnc"}) {
        if (platform.starts_with(own))
            return true;
    }
    const std::string wayland = qEnvironmentVariable("WAYLAND_DISPLAY").toStdString();
    const std::string x = qEnvironmentVariable("DISPLAY").toStdString();
    if (Answers(wayland, x, platform))
        return true;
    Failure = wayland.empty() && x.empty() ? DisplayFailure{DisplayProblem::NotNamed}
                                           : DisplayFailure{DisplayProblem::Silent, x.empty() ? wayland : x};
    return false;
}

void InstallPump() {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    exec::SetEventPump({RunPump, [dispatcher] { dispatcher->wakeUp(); }});
}

} // namespace

bool OpenDisplay(int argc, char** argv) {
    if (Display.Open)
        return true;
    if (!SomeDisplayAnswers())
        return false;
    Failure = {};
    auto display = std::make_unique<DisplayState>();
    display->ProgramName = argc > 0 && argv[0] != nullptr ? argv[0] : "solvane";
    display->Arguments[0] = display->ProgramName.data();
    display->Application = std::make_unique<QApplication>(display->ArgumentCount, display->Arguments);
    // The toolkit takes the user's number format for the whole process; files are read with points.
    std::setlocale(LC_NUMERIC, "C");
    QGuiApplication::setDesktopFileName(QStringLiteral("solvane"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    display->Application->installEventFilter(&display->Filter);
    Display.Open = std::move(display);
    TakeTexts();
    InstallPump();
    return true;
}

void CloseDisplay() {
    if (!Display.Open)
        return;
    exec::SetEventPump({});
    ForgetAppIcons();
    ForgetImages();
    Display.Open.reset();
}

bool DisplayIsOpen() {
    return Display.Open != nullptr;
}

const DisplayFailure& WhyNoDisplay() {
    return Failure;
}

void SetLanguage(std::string_view language) {
    if (std::exchange(Language, std::string(language)) != language && Display.Open)
        TakeTexts();
}

void DisplayBeep() {
    if (!Display.Open)
        return;
    QApplication::beep();
    if (NativeWindow* window = NativeWindow::MostRecent())
        QApplication::alert(window, 1);
}

bool PostFrom(const QWidget& origin, EventClass eventClass, std::uint16_t id, std::uint16_t code) {
    auto* window = dynamic_cast<NativeWindow*>(origin.window());
    return window != nullptr && window->Post({eventClass, id, code, CurrentQualifier()});
}

void PostMenuVerify(const QWidget& origin, std::uint16_t id, const QPoint& place) {
    auto* window = dynamic_cast<NativeWindow*>(origin.window());
    if (window == nullptr)
        return;
    const QPoint inside = origin.mapTo(window, place);
    WindowEvent event{.Class = EventClass::MenuVerify, .Id = id, .Qualifier = CurrentQualifier()};
    event.Left = inside.x();
    event.Top = inside.y();
    window->Post(std::move(event));
}

} // namespace intuition
