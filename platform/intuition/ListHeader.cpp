#include "platform/intuition/ListView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>

#include <algorithm>

namespace intuition {

namespace {

constexpr int MinimumColumn = 20; // layout units

} // namespace

ListHeader::ListHeader(ListView& list) : QHeaderView(Qt::Horizontal), List(list) {
    setMinimumSectionSize(MinimumColumn);
    setTextElideMode(Qt::ElideRight);
    setHighlightSections(false);
    setStretchLastSection(false);
    connect(this, &QHeaderView::sectionClicked, this, [this](int section) {
        List.Report({ListEventKind::TitleClick, NoRow, static_cast<std::size_t>(section)});
    });
    connect(this, &QHeaderView::sectionResized, this, [this] { Dragged = Dragged || !Adjusting; });
    connect(this, &QHeaderView::sectionMoved, this,
            [this](int section, int from, int to) { KeepFixedColumns(section, from, to); });
}

void ListHeader::AllowInput() {
    setSectionsClickable(true);
    setSectionsMovable(true);
    setFirstSectionMovable(true); // which ones really move is up to the columns
}

void ListHeader::SetArrow(std::size_t column, bool ascending) {
    ArrowColumn = column;
    ArrowAscending = ascending;
    viewport()->update();
}

void ListHeader::Restore(const std::vector<Column>& columns) {
    Adjusting = true;
    for (int section = 0; section < count(); ++section) {
        const Column& column = columns[static_cast<std::size_t>(section)];
        moveSection(visualIndex(section), section);
        setSectionResizeMode(section, column.Stretch ? Stretch : Interactive);
        if (!column.Stretch)
            resizeSection(section, column.Width);
    }
    Adjusting = false;
}

int ListHeader::NeededWidth(int section) const {
    const QString title = List.Model().headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    const int arrow = style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this);
    return title.isEmpty() ? 0 : fontMetrics().horizontalAdvance(title) + 2 * CellInset + arrow + 1;
}

void ListHeader::SetWidth(int section, int width) {
    Adjusting = true;
    resizeSection(section, width);
    Adjusting = false;
}

// A column that may not move keeps its place, whichever column was dragged over it.
void ListHeader::KeepFixedColumns(int section, int from, int to) {
    if (Adjusting)
        return;
    const std::vector<Column>& columns = List.Model().Columns();
    const auto [first, last] = std::minmax({from, to});
    bool touchesFixed = !columns[static_cast<std::size_t>(section)].Draggable;
    for (int place = first; place <= last; ++place)
        touchesFixed = touchesFixed || !columns[static_cast<std::size_t>(logicalIndex(place))].Draggable;
    if (!touchesFixed) {
        Dragged = true;
        return;
    }
    Adjusting = true;
    moveSection(to, from);
    Adjusting = false;
}

void ListHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int section) const {
    QHeaderView::initStyleOptionForIndex(option, section);
    option->text.clear(); // paintSection draws it
    if (static_cast<std::size_t>(section) == ArrowColumn)
        option->sortIndicator = ArrowAscending ? QStyleOptionHeader::SortDown : QStyleOptionHeader::SortUp;
}

// The title stands as far from the edge as the cells under it do, which the style does not know.
void ListHeader::paintSection(QPainter* painter, const QRect& area, int section) const {
    painter->save(); // styles leave a clip behind
    QHeaderView::paintSection(painter, area, section);
    painter->restore();
    const bool arrow = static_cast<std::size_t>(section) == ArrowColumn;
    const int right =
        CellInset + (arrow ? style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this) : 0);
    const QRect inside = area.adjusted(CellInset, 0, -right, 0);
    const QString title = List.Model().headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    const int align = List.Model().headerData(section, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
    const QString shown = fontMetrics().elidedText(title, Qt::ElideRight, inside.width());
    style()->drawItemText(painter, inside, align | Qt::TextSingleLine, palette(), isEnabled(), shown,
                          QPalette::ButtonText);
}

void ListHeader::mouseReleaseEvent(QMouseEvent* event) {
    QHeaderView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !Dragged)
        return;
    Dragged = false;
    List.Report({ListEventKind::ColumnsChanged});
}

} // namespace intuition
