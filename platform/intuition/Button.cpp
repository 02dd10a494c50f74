#include "platform/intuition/Button.h"

#include "platform/intuition/Native.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

namespace intuition {

namespace {

// Return presses it; the window, which has other uses for Return, hears nothing of that.
template <typename Base>
class Pressed : public Base {
protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!IsReturn(*event))
            Base::keyPressEvent(event);
        else if (!event->isAutoRepeat())
            this->click();
    }
};

std::unique_ptr<QAbstractButton> MakeWidget(ButtonFrame frame) {
    if (frame == ButtonFrame::Raised)
        return std::make_unique<Pressed<QPushButton>>();
    auto button = std::make_unique<Pressed<QToolButton>>();
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    return button;
}

std::unique_ptr<GadgetNative> MakeNative(std::uint16_t id, ButtonFrame frame) {
    auto button = MakeWidget(frame);
    QAbstractButton* widget = button.get();
    QObject::connect(widget, &QAbstractButton::clicked, widget,
                     [widget, id] { PostFrom(*widget, EventClass::GadgetUp, id); });
    return std::make_unique<GadgetNative>(std::move(button));
}

} // namespace

Button::Button(std::uint16_t id, std::string_view text, ButtonText kind, ButtonFrame frame)
    : Gadget(id, MakeNative(id, frame)), Kind(kind) {
    SetText(text);
}

Button::Button(std::uint16_t id, ImageId image, std::string_view hint, ButtonFrame frame)
    : Gadget(id, MakeNative(id, frame)) {
    SetHint(hint);
    SetImage(image);
}

void Button::SetText(std::string_view text) {
    auto& button = WidgetOf<QAbstractButton>(*this);
    button.setText(Kind == ButtonText::Marked ? MarkedText(text) : DisplayTextWithoutMnemonic(text));
}

void Button::SetImage(ImageId image) {
    Image = HeldImage(image);
    ShowImages();
}

void Button::SetGhostedImage(ImageId image) {
    Ghosted = HeldImage(image);
    ShowImages();
}

void Button::ShowImages() {
    auto& button = WidgetOf<QAbstractButton>(*this);
    const QPixmap picture = PixmapOf(Image.Get());
    button.setIcon(IconOf(Image.Get(), Ghosted.Get()));
    if (!picture.isNull())
        button.setIconSize(picture.deviceIndependentSize().toSize());
    if (auto* flat = qobject_cast<QToolButton*>(&button); flat != nullptr && flat->text().isEmpty())
        flat->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

} // namespace intuition
