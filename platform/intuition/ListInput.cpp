// What the mouse and the keys do to a list.
#include "platform/intuition/ListView.h"
#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace intuition {

namespace {

constexpr qint64 TypingPause = 1000; // milliseconds after which type-ahead starts anew

} // namespace

void ListView::SelectOnly(std::size_t row) {
    Chosen.SetAll(false);
    Select(row, true);
}

// The rows from the anchor to this one, but for those that cannot be selected.
void ListView::SelectFromAnchor(std::size_t row) {
    const auto [first, last] = std::minmax({Anchor == NoRow ? row : Anchor, row});
    Chosen.SetAll(false);
    for (std::size_t at = first; at <= last; ++at)
        Chosen.Set(at, IsSelectable(at));
    ShowSelection();
}

void ListView::PressRow(std::size_t row, Qt::KeyboardModifiers modifiers) {
    const bool range = modifiers.testFlag(Qt::ShiftModifier) && Kind != ListSelection::Single;
    const bool toggle = (modifiers.testFlag(Qt::ControlModifier) && Kind == ListSelection::Extended) ||
                        Kind == ListSelection::Persistent;
    const std::size_t anchor = Anchor;
    Narrowing = false;
    SetCurrent(row);
    if (range) {
        Anchor = anchor == NoRow ? row : anchor;
        SelectFromAnchor(row);
    } else if (toggle) {
        Select(row, !Chosen.Has(row));
    } else if (Chosen.Has(row) && Chosen.Count() > 1) {
        Narrowing = true; // a drag of the whole selection may begin here
    } else {
        SelectOnly(row);
    }
}

void ListView::PressBesideRows(Qt::KeyboardModifiers modifiers) {
    const bool keeps =
        (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) != 0 || Kind == ListSelection::Persistent;
    if (keeps || Chosen.Count() == 0)
        return;
    SelectEvery(false);
    Report({ListEventKind::Select});
}

// A menu is about what lies under the pointer: the selection, if that is in it.
void ListView::PressForMenu(const QPoint& place) {
    const std::size_t row = RowAt(place);
    RowOfMenu = row != NoRow && IsSelectable(row) ? row : NoRow;
    if (RowOfMenu == NoRow) {
        PressBesideRows(Qt::NoModifier);
    } else if (!Chosen.Has(row)) {
        SetCurrent(row);
        SelectOnly(row);
        Report({ListEventKind::Select, row});
    }
    PostMenuVerify(*this, Id, viewport()->mapTo(this, place));
}

// About the selection, or about the place when there is none.
void ListView::AskForMenuByKey() {
    const std::vector<std::size_t> selected = Chosen.Rows();
    const std::size_t row = selected.empty() || Chosen.Has(Current()) ? Current() : selected.front();
    RowOfMenu = selected.empty() ? NoRow : row;
    if (RowOfMenu == NoRow) {
        PostMenuVerify(*this, Id, viewport()->mapTo(this, QPoint(0, 0)));
        return;
    }
    MakeVisible(row);
    const auto below = static_cast<int>(row - std::min(Top(), row) + 1) * RowHeight();
    PostMenuVerify(*this, Id, viewport()->mapTo(this, QPoint(RowHeight(), below)));
}

void ListView::mousePressEvent(QMouseEvent* event) {
    const std::size_t row = RowAt(event->position().toPoint());
    if (event->button() == Qt::RightButton) {
        PressForMenu(event->position().toPoint());
        return;
    }
    if (event->button() != Qt::LeftButton) {
        event->ignore(); // the window's
        return;
    }
    Pressed = row;
    Dragging = false;
    if (row == NoRow) {
        PressBesideRows(event->modifiers());
        return;
    }
    PressRow(row, event->modifiers());
    Report({ListEventKind::Select, row});
}

void ListView::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton) || Pressed == NoRow || Kind != ListSelection::Extended ||
        Narrowing)
        return;
    const int inside =
        std::clamp(event->position().toPoint().y(), -RowHeight(), viewport()->height() + RowHeight());
    std::size_t row = RowAt({0, std::max(inside, -verticalScrollBar()->value())});
    if (row == NoRow)
        row = Rows.Rows() - 1;
    if (row == Current() || event->modifiers().testFlag(Qt::ControlModifier))
        return;
    Dragging = true;
    const std::size_t anchor = Anchor;
    SetCurrent(row);
    Anchor = anchor;
    SelectFromAnchor(row);
    MakeVisible(row);
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (Narrowing && Pressed < Rows.Rows())
        SelectOnly(Pressed);
    if (Narrowing || Dragging)
        Report({ListEventKind::Select, Dragging ? Current() : Pressed});
    Narrowing = Dragging = false;
    Pressed = NoRow;
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    const std::size_t row = RowAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton) {
        event->ignore();
    } else if (row != NoRow && row == Current()) {
        Narrowing = false;
        Select(row, true); // the first click may have taken it out of the selection
        Report({ListEventKind::DoubleClick, row});
    } else {
        mousePressEvent(event);
    }
}

void ListView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore(); // the window's
    else
        QTreeView::wheelEvent(event);
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (IsMenuKey(*event)) {
        AskForMenuByKey();
        event->accept();
        return;
    }
    event->setAccepted(Keys == ListKeys::Own && Rows.Rows() > 0 && ServeKey(*event));
}

// Where a key of movement leads from the current row; NoRow for other keys.
std::size_t ListView::TargetOfKey(int key) const {
    const std::size_t last = Rows.Rows() - 1;
    const std::size_t from = Current();
    const std::size_t page = std::max<std::size_t>(VisibleRows() - 1, 1);
    if (from == NoRow && (key == Qt::Key_Up || key == Qt::Key_Down))
        return 0;
    const std::size_t row = from == NoRow ? 0 : from;
    switch (key) {
    case Qt::Key_Up:
        return row > 0 ? row - 1 : 0;
    case Qt::Key_Down:
        return std::min(row + 1, last);
    case Qt::Key_PageUp:
        return row > page ? row - page : 0;
    case Qt::Key_PageDown:
        return std::min(row + page, last);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return NoRow;
    }
}

void ListView::MoveCurrent(std::size_t row, Qt::KeyboardModifiers modifiers) {
    const std::size_t anchor = Anchor;
    SetCurrent(row);
    if (modifiers.testFlag(Qt::ShiftModifier) && Kind != ListSelection::Single) {
        Anchor = anchor == NoRow ? row : anchor;
        SelectFromAnchor(row);
    } else if (!modifiers.testFlag(Qt::ControlModifier) && Kind != ListSelection::Persistent) {
        SelectOnly(row);
    }
    MakeVisible(row);
    Report({ListEventKind::Select, row});
}

bool ListView::ServeKey(const QKeyEvent& event) {
    if (const std::size_t target = TargetOfKey(event.key()); target != NoRow) {
        MoveCurrent(target, event.modifiers());
        return true;
    }
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isReturn && Current() != NoRow) {
        Report({ListEventKind::DoubleClick, Current()});
    } else if (control && event.key() == Qt::Key_A && Kind != ListSelection::Single) {
        SelectEvery(true);
        Report({ListEventKind::Select, Current()});
    } else if (control && event.key() == Qt::Key_Space && Current() != NoRow) {
        Select(Current(), !Chosen.Has(Current()));
        Report({ListEventKind::Select, Current()});
    } else {
        return !control && FindTyped(event.text());
    }
    return true;
}

// Type-ahead: keys in quick succession form the beginning of a name.
bool ListView::FindTyped(const QString& typed) {
    if (typed.isEmpty() || !typed.front().isPrint())
        return false;
    if (!SinceTyped.isValid() || SinceTyped.elapsed() > TypingPause)
        Typed.clear();
    SinceTyped.start();
    Typed += typed.toStdString();
    for (std::size_t row = 0; row < Rows.Rows(); ++row) {
        const ListSource* source = Rows.SourceOf(row);
        if (source != nullptr && utility::Strnicmp(source->Name(row), Typed, Typed.size()) == 0) {
            MoveCurrent(row, Qt::NoModifier);
            break;
        }
    }
    return true;
}

} // namespace intuition
