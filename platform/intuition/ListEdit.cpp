#include "platform/intuition/ListEdit.h"

#include "platform/intuition/ListView.h"
#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>
#include <memory>
#include <utility>

namespace intuition {

namespace {

constexpr int LeastWidth = 160; // layout units that a narrow column's editor has

} // namespace

CellEditor::CellEditor(ListView& list, std::string_view text, std::size_t maximumBytes)
    : QLineEdit(list.viewport()), List(list), MaximumBytes(maximumBytes) {
    setText(EditableText(text));
    setFrame(true);
    setAccessibleName(DisplayText(text));
    const qsizetype dot = this->text().lastIndexOf(QLatin1Char('.'));
    setSelection(0, static_cast<int>(dot > 0 ? dot : this->text().size()));
}

std::string CellEditor::Bytes() const {
    const std::string bytes = BytesOfEditable(text());
    return bytes.substr(0, utility::CutLength(bytes, MaximumBytes));
}

// No key reaches the window from here: typing a name is no command.
void CellEditor::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        List.EndEdit(EditEnd::Cancel);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        List.EndEdit(EditEnd::Keep);
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        break;
    default:
        QLineEdit::keyPressEvent(event);
        break;
    }
    event->accept();
}

void CellEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        List.EndEdit(EditEnd::Keep);
}

void ListView::EditCell(std::size_t row, std::size_t column, std::string_view text,
                        std::size_t maximumBytes) {
    EndEdit(EditEnd::Cancel);
    EndedEditor.reset();
    if (row >= Rows.Rows() || column >= Rows.Columns().size())
        return;
    MakeVisible(row);
    auto made = std::make_unique<CellEditor>(*this, text, maximumBytes);
    const int section = static_cast<int>(column);
    const int top = static_cast<int>(row) * RowHeight() - verticalScrollBar()->value();
    const int height = std::max(made->sizeHint().height(), RowHeight());
    made->setGeometry(Header.sectionViewportPosition(section), top + (RowHeight() - height) / 2,
                      std::max(Header.sectionSize(section), LeastWidth), height);
    Editor = std::move(made);
    EditedRow = row;
    EditedColumn = column;
    Editor->show();
    Editor->setFocus();
}

void ListView::EndEdit(EditEnd how) {
    if (!Editor)
        return;
    EndedEditor = std::move(Editor);
    EditedText = EndedEditor->Bytes();
    const bool hadFocus = EndedEditor->hasFocus();
    EndedEditor->hide();
    if (hadFocus)
        setFocus();
    if (how == EditEnd::Keep)
        Report({ListEventKind::EditDone, EditedRow, EditedColumn});
}

void ListView::scrollContentsBy(int dx, int dy) {
    EndEdit(EditEnd::Keep);
    QTreeView::scrollContentsBy(dx, dy);
}

} // namespace intuition
