#include "platform/intuition/Label.h"

#include "platform/intuition/Application.h"
#include "platform/intuition/Native.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace intuition {

namespace {

class TextLine : public QLabel {
public:
    explicit TextLine(Align align) {
        setTextFormat(Qt::PlainText);
        setAlignment(Qt::AlignVCenter | Side(align));
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    // A long text must not make the window wide.
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
        style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                              palette(), isEnabled(), shown, foregroundRole());
    }

private:
    static Qt::Alignment Side(Align align) {
        if (align == Align::Centre)
            return Qt::AlignHCenter;
        return align == Align::Right ? Qt::AlignRight : Qt::AlignLeft;
    }
};

} // namespace

Label::Label(std::string_view text, Align align)
    : Gadget(0, std::make_unique<GadgetNative>(std::make_unique<TextLine>(align))) {
    SetText(text);
}

void Label::SetText(std::string_view text) {
    Shown = text;
    WidgetOf<QLabel>(*this).setText(DisplayText(text));
}

int TextWidth(std::string_view text) {
    return DisplayIsOpen() ? QFontMetrics(QApplication::font()).horizontalAdvance(DisplayText(text)) : 0;
}

} // namespace intuition
