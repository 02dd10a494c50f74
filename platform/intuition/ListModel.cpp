#include "platform/intuition/ListModel.h"

#include "platform/intuition/Native.h"

#include <algorithm>
#include <limits>

namespace intuition {

namespace {

int HostAlign(Align align) {
    switch (align) {
    case Align::Centre:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    case Align::Right:
        return Qt::AlignRight | Qt::AlignVCenter;
    case Align::Left:
        break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

} // namespace

void ListModel::SetColumns(std::vector<Column> columns) {
    beginResetModel();
    Titles = std::move(columns);
    endResetModel();
}

void ListModel::Attach(const ListSource* source) {
    beginResetModel();
    Source = source;
    const std::size_t rows = source == nullptr ? 0 : source->RowCount();
    Count = static_cast<int>(std::min<std::size_t>(rows, std::numeric_limits<int>::max()));
    endResetModel();
}

const ListSource* ListModel::SourceOf(std::size_t row) const {
    return Source != nullptr && row < Rows() && row < Source->RowCount() ? Source : nullptr;
}

QModelIndex ListModel::index(int row, int column, const QModelIndex& parent) const {
    if (parent.isValid() || row < 0 || row >= Count || column < 0 || column >= columnCount())
        return {};
    return createIndex(row, column);
}

QModelIndex ListModel::parent(const QModelIndex&) const {
    return {};
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count;
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(Titles.size());
}

bool ListModel::hasChildren(const QModelIndex& parent) const {
    return !parent.isValid() && Count > 0;
}

Qt::ItemFlags ListModel::flags(const QModelIndex&) const {
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    const ListSource* source = index.isValid() ? SourceOf(row) : nullptr;
    if (source == nullptr)
        return {};
    if (role == Qt::AccessibleTextRole && index.column() == 0)
        return SpokenRow(row);
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return DisplayText(source->Cell(row, static_cast<std::size_t>(index.column())).Text);
    return {};
}

// The first cell speaks for the row: the entry's name, then what the other columns say.
QString ListModel::SpokenRow(std::size_t row) const {
    const QString name = DisplayText(Source->Name(row));
    QString spoken = name;
    for (std::size_t column = 0; column < Titles.size(); ++column) {
        const CellLook cell = Source->Cell(row, column);
        const QString text = DisplayText(cell.Text);
        if (!text.isEmpty() && text != name)
            spoken += QStringLiteral(", ") + text;
        for (const std::string& more : cell.More)
            spoken += QStringLiteral(", ") + DisplayText(more);
        if (cell.Gauge)
            spoken += QStringLiteral(", %1%").arg(*cell.Gauge);
    }
    return spoken;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const Column& column = Titles[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole)
        return DisplayText(column.Title);
    if (role == Qt::TextAlignmentRole)
        return HostAlign(column.Alignment);
    return {};
}

} // namespace intuition
