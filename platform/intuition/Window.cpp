#include "platform/intuition/Window.h"

#include "platform/dos/Errors.h"
#include "platform/intuition/HostFile.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"

#include <QFile>
#include <QLayout>
#include <QSaveFile>

#include <cerrno>

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

exec::SignalMask Window::Mask() const {
    return Host->Mask();
}

std::optional<WindowEvent> Window::NextEvent() {
    return Host->Fetch();
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

bool Window::SavePicture(std::string_view path) {
    const auto file = HostFile(path);
    return file && WritePicture(Host->grab(), QFile::decodeName(QByteArray::fromStdString(*file)));
}

} // namespace intuition
