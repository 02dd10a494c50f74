#include "platform/intuition/KeyNames.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <memory>

namespace intuition {

namespace {

// Keys that leave a field or its dialog do so here too.
bool Leaves(const QKeyEvent& event) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return false;
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

class KeyTaker : public QObject {
public:
    explicit KeyTaker(QLineEdit& field) : QObject(&field), Field(field) {}

    // Keys come here before they are taken for shortcuts, Tab with a qualifier too.
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
            return false;
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (Leaves(key))
            return false;
        const std::string keys = event->type() == QEvent::KeyPress ? CombinationOf(key) : std::string();
        if (!keys.empty())
            Field.setText(QString::fromStdString(keys));
        event->accept();
        return true;
    }

private:
    QLineEdit& Field;
};

} // namespace

void ShowPressedKeys(QLineEdit& field) {
    field.setReadOnly(true);
    field.installEventFilter(std::make_unique<KeyTaker>(field).release()); // the field's child
}

} // namespace intuition
