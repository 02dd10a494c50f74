#include "platform/intuition/ListView.h"

#include "platform/intuition/ListEdit.h"
#include "platform/intuition/Native.h"

#include <QItemSelection>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

constexpr int RowPadding = 5;   // a row is so much higher than its text
constexpr int ImagePadding = 2; // or than its images
constexpr std::size_t MaximumEvents = 256;
constexpr std::size_t MostEstimated = 30'000; // rows; of more, evenly spread ones are looked at
constexpr std::size_t SpokenRanges = 256;     // selections of more pieces are not told to screen readers

} // namespace

QSize RowMeasure::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, List.RowHeight()};
}

ListView::ListView(std::uint16_t id, ListKeys keys)
    : Id(id), Keys(keys), Header(*this), Measure(*this), Painter(font()) {
    setHeader(&Header);
    Header.AllowInput();
    setModel(&Rows);
    setItemDelegate(&Measure);
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::NoSelection); // the selection is Chosen
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAutoScroll(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    viewport()->setMouseTracking(false);
}

// The view must not look at its model and titles while they go.
ListView::~ListView() {
    Editor.reset();
    EndedEditor.reset();
    setModel(nullptr);
}

void ListView::SetColumns(std::vector<Column> columns) {
    EndEdit(EditEnd::Drop);
    Rows.SetColumns(std::move(columns));
    Header.Restore(Rows.Columns());
}

void ListView::Attach(const ListSource* source) {
    EndEdit(EditEnd::Drop);
    Events.clear();
    Anchor = Pressed = RowOfMenu = NoRow;
    Narrowing = Dragging = false;
    Rows.Attach(source);
    Chosen.Reset(Rows.Rows());
    verticalScrollBar()->setValue(0);
}

int ListView::RowHeight() const {
    return std::max(RowLines * Painter.TextHeight() + RowPadding, ImageHeight + ImagePadding);
}

// What a double click on a column's edge makes it: as wide as the visible rows need.
int ListView::sizeHintForColumn(int column) const {
    int widest = 0;
    for (std::size_t row = Top(); row <= Top() + VisibleRows(); ++row) {
        if (const ListSource* source = Rows.SourceOf(row))
            widest =
                std::max(widest, Painter.NeededWidth(source->Cell(row, static_cast<std::size_t>(column))));
    }
    return widest;
}

// Of the cells that are estimated as the widest ones, the width that the widest really needs.
int ListView::WidestCell(std::size_t column) const {
    constexpr std::size_t Measured = 8;
    std::vector<std::pair<int, std::size_t>> widest; // estimate and row, the least first
    const std::size_t step = std::max<std::size_t>(1, Rows.Rows() / MostEstimated);
    for (std::size_t row = 0; row < Rows.Rows(); row += step) {
        const ListSource* source = Rows.SourceOf(row);
        const int estimate = source != nullptr ? Painter.EstimatedWidth(source->Cell(row, column)) : 0;
        if (widest.size() == Measured && estimate <= widest.front().first)
            continue;
        if (widest.size() == Measured)
            widest.erase(widest.begin());
        const std::pair candidate(estimate, row);
        widest.insert(std::upper_bound(widest.begin(), widest.end(), candidate), candidate);
    }
    int needed = 0;
    for (const auto& [estimate, row] : widest) {
        if (const ListSource* source = Rows.SourceOf(row))
            needed = std::max(needed, Painter.NeededWidth(source->Cell(row, column)));
    }
    return needed;
}

void ListView::FitColumns() {
    for (int section = 1; section < Header.count(); ++section) {
        const auto column = static_cast<std::size_t>(section);
        if (!Rows.Columns()[column].Stretch)
            Header.SetWidth(section, std::max(Header.NeededWidth(section), WidestCell(column)));
    }
}

std::size_t ListView::Top() const {
    return static_cast<std::size_t>(verticalScrollBar()->value() / RowHeight());
}

void ListView::SetTop(std::size_t row) {
    executeDelayedItemsLayout();
    const std::size_t last = Rows.Rows() > 0 ? Rows.Rows() - 1 : 0;
    verticalScrollBar()->setValue(static_cast<int>(std::min(row, last)) * RowHeight());
}

std::size_t ListView::VisibleRows() const {
    return static_cast<std::size_t>(std::max(viewport()->height() / RowHeight(), 1));
}

void ListView::MakeVisible(std::size_t row) {
    if (row >= Rows.Rows())
        return;
    executeDelayedItemsLayout();
    const int top = static_cast<int>(row) * RowHeight();
    QScrollBar* bar = verticalScrollBar();
    if (top < bar->value())
        bar->setValue(top);
    else if (top + RowHeight() > bar->value() + viewport()->height())
        bar->setValue(top + RowHeight() - viewport()->height());
}

std::size_t ListView::Current() const {
    const QModelIndex index = currentIndex();
    return index.isValid() ? static_cast<std::size_t>(index.row()) : NoRow;
}

void ListView::SetCurrent(std::size_t row) {
    Anchor = row < Rows.Rows() ? row : NoRow;
    setCurrentIndex(row < Rows.Rows() ? Rows.index(static_cast<int>(row), 0) : QModelIndex());
    viewport()->update();
}

void ListView::Select(std::size_t row, bool selected) {
    if (selected && !IsSelectable(row))
        return;
    Chosen.Set(row, selected);
    ShowSelection();
}

void ListView::SelectEvery(bool selected) {
    Chosen.SetAll(false);
    for (std::size_t row = 0; selected && row < Rows.Rows(); ++row)
        Chosen.Set(row, IsSelectable(row));
    ShowSelection();
}

void ListView::SelectRows(const std::vector<std::size_t>& rows) {
    for (const std::size_t row : rows)
        Chosen.Set(row, IsSelectable(row));
    ShowSelection();
}

// Draws the selection again. Screen readers ask the toolkit's own record of it, which follows once for many
// changes.
void ListView::ShowSelection() {
    viewport()->update();
    if (std::exchange(SpokenIsOld, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { SpeakSelection(); }, Qt::QueuedConnection);
}

void ListView::SpeakSelection() {
    SpokenIsOld = false;
    QItemSelection spoken;
    const std::vector<std::size_t> rows = Chosen.Rows();
    for (std::size_t first = 0;
         first < rows.size() && static_cast<std::size_t>(spoken.size()) < SpokenRanges;) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1)
            ++last;
        const int right = Rows.columnCount() - 1;
        spoken.append(QItemSelectionRange(Rows.index(static_cast<int>(rows[first]), 0),
                                          Rows.index(static_cast<int>(rows[last]), right)));
        first = last + 1;
    }
    selectionModel()->select(spoken, QItemSelectionModel::ClearAndSelect);
}

void ListView::SetImageHeight(int height) {
    ImageHeight = std::max(height, 0);
    Remeasure();
}

void ListView::SetRowLines(int lines) {
    RowLines = std::max(lines, 1);
    Remeasure();
}

void ListView::SetStripes(bool on) {
    Stripes = on;
    viewport()->update();
}

void ListView::SetSeparators(bool on) {
    Separators = on;
    viewport()->update();
}

// Keeps the first row where the heights change.
void ListView::Remeasure() {
    const std::size_t top = Top();
    scheduleDelayedItemsLayout();
    SetTop(top);
}

void ListView::Report(const ListEvent& event) {
    if (Events.size() < MaximumEvents && PostFrom(*this, EventClass::GadgetUp, Id))
        Events.push_back(event);
}

ListEvent ListView::Fetch() {
    if (Events.empty())
        return {};
    const ListEvent event = Events.front();
    Events.pop_front();
    return event;
}

RowState ListView::StateOf(std::size_t row, const QRect& area) const {
    RowState state;
    state.Area = area;
    if (!isEnabled())
        state.Group = QPalette::Disabled;
    else
        state.Group = hasFocus() && isActiveWindow() ? QPalette::Active : QPalette::Inactive;
    state.Selected = Chosen.Has(row);
    state.Current = hasFocus() && row == Current();
    state.Striped = Stripes && row % 2 == 1;
    return state;
}

void ListView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const auto row = static_cast<std::size_t>(index.row());
    const ListSource* source = Rows.SourceOf(row);
    if (source == nullptr)
        return;
    const QRect area(0, option.rect.top(), viewport()->width(), option.rect.height());
    DrawCells(*painter, row, source->Row(row), StateOf(row, area));
}

void ListView::DrawCells(QPainter& painter, std::size_t row, const RowLook& look,
                         const RowState& state) const {
    const ListPainter::RowColours colours = ListPainter::ColoursOf(look, state, palette());
    painter.fillRect(state.Area, colours.Background);
    for (int section = 0; section < Header.count(); ++section) {
        const QRect cell(Header.sectionViewportPosition(section), state.Area.top(),
                         Header.sectionSize(section), state.Area.height());
        if (!cell.intersects(state.Area))
            continue;
        const auto column = static_cast<std::size_t>(section);
        if (const ListSource* source = Rows.SourceOf(row))
            Painter.DrawCell(painter, cell, source->Cell(row, column), Rows.Columns()[column].Alignment,
                             colours, state);
        if (Separators) {
            painter.setPen(palette().color(QPalette::Midlight));
            painter.drawLine(cell.topRight(), cell.bottomRight());
        }
    }
    if (state.Current) {
        painter.setPen(state.Selected ? colours.Text : palette().color(QPalette::Highlight));
        painter.drawRect(state.Area.adjusted(0, 0, -1, -1));
    }
}

std::size_t ListView::RowAt(const QPoint& position) const {
    const int y = position.y() + verticalScrollBar()->value();
    const auto row = static_cast<std::size_t>(std::max(y, 0) / RowHeight());
    return y >= 0 && row < Rows.Rows() ? row : NoRow;
}

bool ListView::IsSelectable(std::size_t row) const {
    const ListSource* source = Rows.SourceOf(row);
    return source != nullptr && !source->Row(row).Disabled;
}

void ListView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        Painter.SetFont(font());
        Remeasure();
    }
}

void ListView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event); // the view's own would pick a current row
    viewport()->update();
}

void ListView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace intuition
