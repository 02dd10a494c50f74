#include "platform/intuition/StringGadget.h"

#include "platform/intuition/ListPainter.h"
#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <QDialog>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QValidator>

namespace intuition {

namespace {

// Refuses single characters; a paste that holds one is refused as a whole.
class CharacterFilter : public QValidator {
public:
    explicit CharacterFilter(std::string_view forbidden)
        : Forbidden(QString::fromLatin1(forbidden.data(), static_cast<qsizetype>(forbidden.size()))) {}

    State validate(QString& input, int&) const override {
        for (const QChar character : input) {
            if (Forbidden.contains(character))
                return Invalid;
        }
        return Acceptable;
    }

private:
    QString Forbidden;
};

class LineField : public QLineEdit {
public:
    LineField(std::uint16_t id, std::size_t maximumBytes, std::string_view forbidden)
        : Id(id), MaximumBytes(maximumBytes), Filter(forbidden) {
        setValidator(&Filter);
        connect(this, &QLineEdit::textEdited, this, [this] { CutToLimit(); });
        connect(this, &QLineEdit::returnPressed, this, [this] { Commit(); });
        FadePlaceholder();
    }

    void Show(std::string_view text) {
        setText(EditableText(text.substr(0, utility::CutLength(text, MaximumBytes))));
        Entered = this->text();
        setCursorPosition(0);
    }

protected:
    void focusInEvent(QFocusEvent* event) override {
        if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
            Entered = text();
        QLineEdit::focusInEvent(event);
    }

    void changeEvent(QEvent* event) override {
        QLineEdit::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            FadePlaceholder();
    }

    // What neither edits nor is a command stays here, so that an arrow pressed while typing moves no list.
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) {
            setText(Entered);
            event->setAccepted(qobject_cast<QDialog*>(window()) == nullptr); // a dialog is cancelled by it
            return;
        }
        QLineEdit::keyPressEvent(event);
        if (event->isAccepted() || IsQualifierKey(*event))
            return;
        const bool command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
        const bool functionKey = event->key() >= Qt::Key_F1 && event->key() <= Qt::Key_F35;
        const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        event->setAccepted(enters || (!command && !functionKey));
    }

private:
    // The toolkit's own colour for it is half of the text's, which few palettes make readable.
    void FadePlaceholder() {
        QPalette own; // of this colour alone; the others go on following the desktop's
        bool isOther = false;
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            const QColor faint =
                FaintOn(palette().color(group, QPalette::Base), palette().color(group, QPalette::Text));
            own.setColor(group, QPalette::PlaceholderText, faint);
            isOther = isOther || palette().color(group, QPalette::PlaceholderText) != faint;
        }
        if (isOther) // setting it comes back here
            setPalette(own);
    }

    void CutToLimit() {
        const std::string bytes = BytesOfEditable(text());
        if (bytes.size() <= MaximumBytes)
            return;
        const int cursor = cursorPosition();
        setText(EditableText(std::string_view(bytes).substr(0, utility::CutLength(bytes, MaximumBytes))));
        setCursorPosition(cursor);
    }

    void Commit() {
        Entered = text();
        PostFrom(*this, EventClass::GadgetUp, Id);
    }

    std::uint16_t Id;
    std::size_t MaximumBytes;
    CharacterFilter Filter;
    QString Entered; // what Escape brings back
};

} // namespace

StringGadget::StringGadget(std::uint16_t id, std::string_view text, std::size_t maximumBytes,
                           std::string_view forbidden)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<LineField>(id, maximumBytes, forbidden))) {
    SetText(text);
}

std::string StringGadget::Text() const {
    return BytesOfEditable(WidgetOf<LineField>(*this).text());
}

void StringGadget::SetText(std::string_view text) {
    WidgetOf<LineField>(*this).Show(text);
}

void StringGadget::SetPlaceholder(std::string_view text) {
    WidgetOf<LineField>(*this).setPlaceholderText(DisplayText(text));
}

void StringGadget::SelectAll() {
    WidgetOf<LineField>(*this).selectAll();
}

} // namespace intuition
