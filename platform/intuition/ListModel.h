// The model between a ListSource and the toolkit's list view: flat, holds no text, asks the source when the
// view or a screen reader asks it. Private to this service.
#pragma once

#include "platform/intuition/ListBrowser.h"

#include <QAbstractItemModel>

#include <vector>

namespace intuition {

class ListModel : public QAbstractItemModel {
public:
    void SetColumns(std::vector<Column> columns);
    void Attach(const ListSource* source);

    [[nodiscard]] const std::vector<Column>& Columns() const { return Titles; }
    [[nodiscard]] std::size_t Rows() const { return static_cast<std::size_t>(Count); }
    // The source while it has this row, else null.
    [[nodiscard]] const ListSource* SourceOf(std::size_t row) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString SpokenRow(std::size_t row) const;

    const ListSource* Source = nullptr;
    int Count = 0;
    std::vector<Column> Titles;
};

} // namespace intuition
