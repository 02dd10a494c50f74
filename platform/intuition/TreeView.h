// The widget behind a tree list: the toolkit's tree, whose rows name ours by number. Private to this service.
#pragma once

#include "platform/intuition/Native.h"
#include "platform/intuition/TreeBrowser.h"

#include <QStyledItemDelegate>
#include <QTreeWidget>

#include <deque>

namespace intuition {

class TreeView;

// Draws a row from its record; the toolkit's item has the text for screen readers and type-ahead alone.
class TreeDelegate : public QStyledItemDelegate {
public:
    explicit TreeDelegate(const TreeView& tree) : Tree(tree) {}
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const TreeView& Tree;
};

class TreeView : public QTreeWidget, public KeepsEvents {
public:
    explicit TreeView(std::uint16_t id);

    void SetRows(std::vector<TreeRow> rows);
    [[nodiscard]] const std::vector<TreeRow>& Rows() const { return Records; }
    [[nodiscard]] std::size_t Selected() const { return Chosen; }
    void SetSelected(std::size_t row);
    [[nodiscard]] TreeEvent Fetch();
    void ForgetEvents() override { Events.clear(); }
    [[nodiscard]] QTreeWidgetItem* ItemOf(std::size_t row) const;

    // The number of the row of an index; NoRow for none.
    [[nodiscard]] std::size_t RowOf(const QModelIndex& index) const;
    [[nodiscard]] ImageId ImageOf(std::size_t row) const;
    [[nodiscard]] QColor BackgroundOf(std::size_t row) const;

    // The row that a menu was asked for last.
    std::size_t MenuRow = NoRow;
    std::function<ImageId(std::size_t)> ImageSource;
    std::optional<Rgb> Backgrounds[2];

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void AddRow(std::size_t row);
    void NoteOpen(const QTreeWidgetItem& head, bool isOpen);
    void Choose(std::size_t row);
    void AskForMenu(std::size_t row, const QPoint& place);
    void Report(TreeEventKind kind, std::size_t row);

    std::uint16_t Id;
    TreeDelegate Drawing;
    std::vector<TreeRow> Records;
    std::vector<QTreeWidgetItem*> Items; // by row; the widget owns them
    std::size_t Chosen = NoRow;
    bool Filling = false; // heads open because rows are set
    std::deque<TreeEvent> Events;
};

} // namespace intuition
