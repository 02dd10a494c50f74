#include "platform/intuition/Gadget.h"

#include "platform/intuition/Native.h"

#include <QAbstractButton>

#include <algorithm>

namespace intuition {

GadgetNative::GadgetNative(std::unique_ptr<QWidget> widget) : Widget(std::move(widget)) {}

GadgetNative::~GadgetNative() = default;

Gadget::Gadget(std::uint16_t id, std::unique_ptr<GadgetNative> host) : GadgetId(id), Host(std::move(host)) {}

Gadget::~Gadget() = default;

void Gadget::SetDisabled(bool disabled) {
    Host->Widget->setDisabled(disabled);
}

void Gadget::SetShown(bool shown) {
    Host->Widget->setVisible(shown);
}

void Gadget::SetHint(std::string_view hint) {
    QWidget& widget = *Host->Widget;
    widget.setToolTip(HintText(hint));
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    if (button != nullptr && !button->text().isEmpty())
        widget.setAccessibleDescription(DisplayText(hint)); // its text is its name
    else
        widget.setAccessibleName(DisplayText(hint));
}

void Gadget::SetMinimum(int width, int height) {
    Host->Widget->setMinimumSize(std::max(width, 0), std::max(height, 0));
}

void Gadget::SetFixed(int width, int height) {
    QWidget& widget = *Host->Widget;
    widget.setMinimumWidth(width < 0 ? 0 : width);
    widget.setMaximumWidth(width < 0 ? QWIDGETSIZE_MAX : width);
    widget.setMinimumHeight(height < 0 ? 0 : height);
    widget.setMaximumHeight(height < 0 ? QWIDGETSIZE_MAX : height);
}

void Gadget::Activate() {
    Host->Widget->setFocus(Qt::OtherFocusReason);
}

Box Gadget::Geometry() const {
    const QWidget& widget = *Host->Widget;
    const QPoint corner = widget.mapTo(widget.window(), QPoint(0, 0));
    return {corner.x(), corner.y(), widget.width(), widget.height()};
}

} // namespace intuition
