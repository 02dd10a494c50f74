#include "platform/intuition/Chooser.h"

#include "platform/intuition/Native.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QWheelEvent>

namespace intuition {

namespace {

class ChoiceBox : public QComboBox {
public:
    explicit ChoiceBox(std::uint16_t id) {
        setSizeAdjustPolicy(QComboBox::AdjustToContents);
        setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it was
        connect(this, &QComboBox::activated, this, [this, id](int position) {
            PostFrom(*this, EventClass::GadgetUp, id, static_cast<std::uint16_t>(position));
        });
    }

protected:
    // A turn of the wheel over it is no choice.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

    // Commands of the program are not the gadget's.
    void keyPressEvent(QKeyEvent* event) override {
        if ((event->modifiers() & Qt::ControlModifier) != 0)
            event->ignore();
        else
            QComboBox::keyPressEvent(event);
    }
};

} // namespace

Chooser::Chooser(std::uint16_t id, const std::vector<std::string>& labels, std::string_view hint)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<ChoiceBox>(id))) {
    SetHint(hint);
    SetLabels(labels);
}

void Chooser::SetLabels(const std::vector<std::string>& labels) {
    auto& box = WidgetOf<QComboBox>(*this);
    box.clear();
    for (const std::string& label : labels)
        box.addItem(DisplayText(label));
    box.setMaxVisibleItems(static_cast<int>(labels.size()));
}

std::size_t Chooser::Count() const {
    return static_cast<std::size_t>(WidgetOf<QComboBox>(*this).count());
}

void Chooser::SetSelected(int position) {
    auto& box = WidgetOf<QComboBox>(*this);
    box.setCurrentIndex(position < box.count() ? position : -1);
}

int Chooser::Selected() const {
    return WidgetOf<QComboBox>(*this).currentIndex();
}

} // namespace intuition
