#include "platform/intuition/Window.h"

#include "platform/dos/Errors.h"
#include "platform/intuition/HostFile.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"

#include <QFile>
#include <QLayout>
#include <QSaveFile>
#include <QScreen>
#include <QSplitter>

#include <cerrno>
#include <vector>

namespace intuition {

namespace {

bool WritePicture(const QPixmap& picture, const QString& file) {
    QSaveFile target(file);
    errno = 0;
    if (target.open(QIODevice::WriteOnly) && picture.save(&target, "PNG") && target.commit())
        return true;
    const long code = dos::ErrorFromErrno(errno, dos::Operation::Write);
    dos::SetIoErr(code != 0 ? code : dos::ErrorDiskFull);
    return false;
}

// The widgets that may take the keyboard, in the order in which they lie in their layouts.
void Collect(QWidget& widget, std::vector<QWidget*>& into) {
    if (const QLayout* layout = widget.layout(); layout != nullptr) {
        for (int at = 0; at < layout->count(); ++at) {
            if (QWidget* child = layout->itemAt(at)->widget(); child != nullptr)
                Collect(*child, into);
        }
        return;
    }
    if (const auto* splitter = qobject_cast<QSplitter*>(&widget); splitter != nullptr) {
        for (int at = 0; at < splitter->count(); ++at)
            Collect(*splitter->widget(at), into);
        return;
    }
    into.push_back(&widget);
    if (widget.focusPolicy() != Qt::NoFocus)
        return;
    for (QObject* child : widget.children()) {
        if (auto* inner = qobject_cast<QWidget*>(child); inner != nullptr && !inner->isWindow())
            Collect(*inner, into);
    }
}

} // namespace

Window::Window(const WindowSpec& spec, std::unique_ptr<Gadget> root)
    : Host(std::make_unique<NativeWindow>(spec)), Gadgets(std::move(root)) {
    if (Gadgets)
        Host->layout()->addWidget(Gadgets->Native().Widget.get());
}

Window::~Window() {
    Close();
}

bool Window::Open() {
    if (!Host->OpenQueue())
        return false;
    ArrangeTabOrder();
    Host->show();
    return true;
}

void Window::Close() {
    Host->CloseQueue();
    Host->hide();
}

bool Window::IsOpen() const {
    return Host->Mask() != 0;
}

Gadget* Window::Root() {
    return Gadgets.get();
}

void Window::ArrangeTabOrder() {
    std::vector<QWidget*> stops;
    Collect(*Host, stops);
    for (std::size_t at = 1; at < stops.size(); ++at)
        QWidget::setTabOrder(stops[at - 1], stops[at]);
}

exec::SignalMask Window::Mask() const {
    return Host->Mask();
}

std::optional<WindowEvent> Window::NextEvent() {
    return Host->Fetch();
}

void Window::PostMenuPick(std::uint16_t item, std::uint16_t qualifier) {
    static_cast<void>(Host->Post({.Class = EventClass::MenuPick, .Code = item, .Qualifier = qualifier}));
}

void Window::SetTicks(bool on) {
    Host->SetTicks(on);
}

void Window::Block(int depth) {
    if (depth > 0)
        Host->Block();
    else if (depth == 0)
        Host->Unblock();
    else
        Host->UnblockAll();
}

bool Window::IsBlocked() const {
    return Host->IsBlocked();
}

void Window::SetTitle(std::string_view title) {
    Host->setWindowTitle(TitleText(title));
}

void Window::ToFront() {
    if (Host->isMinimized())
        Host->showNormal();
    Host->raise();
}

void Window::ToBack() {
    Host->lower();
}

void Window::SetZoomed(bool zoomed) {
    if (zoomed != Host->isMaximized())
        zoomed ? Host->showMaximized() : Host->showNormal();
}

void Window::Activate() {
    Host->activateWindow();
}

bool Window::IsActive() const {
    return Host->isActiveWindow();
}

Box Window::Geometry() const {
    return {Host->pos().x(), Host->pos().y(), Host->width(), Host->height()};
}

void Window::SetGeometry(const Box& box) {
    Host->Place(box);
}

Box Window::WorkArea() const {
    const QRect free = Host->screen()->availableGeometry();
    return {free.x(), free.y(), free.width(), free.height()};
}

Box Window::InsideOf(const Box& outside) const {
    const QSize frame = Host->frameGeometry().size() - Host->size();
    return {outside.Left, outside.Top, outside.Width - frame.width(), outside.Height - frame.height()};
}

bool Window::SavePicture(std::string_view path) {
    const auto file = HostFile(path);
    return file && WritePicture(Host->grab(), QFile::decodeName(QByteArray::fromStdString(*file)));
}

} // namespace intuition
