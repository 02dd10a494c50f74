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
    EndEdit(EditEnd::Drop);
    EndedEditor.reset();
    if (row >= Rows.Rows() || column >= Rows.Columns().size())
        return;
    MakeVisible(row);
    ShowColumn(static_cast<int>(column));
    auto made = std::make_unique<CellEditor>(*this, text, maximumBytes);
    const int section = static_cast<int>(column);
    const int top = static_cast<int>(row) * RowHeight() - verticalScrollBar()->value();
    const int height = std::max(made->sizeHint().height(), RowHeight());
    const int width = std::max(Header.sectionSize(section), LeastWidth);
    const int left =
        std::max(std::min(Header.sectionViewportPosition(section), viewport()->width() - width), 0);
    made->setGeometry(left, top + (RowHeight() - height) / 2, width, height);
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
    if (how != EditEnd::Drop)
        Report({how == EditEnd::Keep ? ListEventKind::EditDone : ListEventKind::EditGivenUp, EditedRow,
                EditedColumn});
}

bool ListView::IsEditing() const {
    const auto ends = [](const ListEvent& event) { return event.Kind == ListEventKind::EditDone; };
    return Editor != nullptr || std::any_of(Events.begin(), Events.end(), ends);
}

// Scrolls sideways to the cell's editor; its left end counts where there is no room for all of it.
void ListView::ShowColumn(int section) {
    const int left = Header.sectionPosition(section);
    const int right = left + std::max(Header.sectionSize(section), LeastWidth);
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(std::min(left, std::max(bar->value(), right - viewport()->width())));
}

// A name that is half typed is none to give.
void ListView::scrollContentsBy(int dx, int dy) {
    EndEdit(EditEnd::Cancel);
    QTreeView::scrollContentsBy(dx, dy);
}

} // namespace intuition
