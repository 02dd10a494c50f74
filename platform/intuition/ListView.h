// The widget behind a list: mouse and keys become selection and events, rows are drawn by ListPainter.
// Private to this service.
#pragma once

#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/ListModel.h"
#include "platform/intuition/ListPainter.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/RowSelection.h"

#include <QAbstractItemDelegate>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QTreeView>

#include <deque>
#include <memory>

namespace intuition {

class CellEditor;
class ListView;

// Titles: the arrow is the program's, and a drag is reported once, when it ends.
class ListHeader : public QHeaderView {
public:
    explicit ListHeader(ListView& list);
    // Titles can be clicked and moved. A view that takes a header forbids both, so this follows.
    void AllowInput();
    void SetArrow(std::size_t column, bool ascending);
    // Brings sizes and order to what the columns say.
    void Restore(const std::vector<Column>& columns);
    // What the title needs, the arrow of the sort included.
    [[nodiscard]] int NeededWidth(int section) const;
    // Sets the width without a report.
    void SetWidth(int section, int width);

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override;
    void paintSection(QPainter* painter, const QRect& area, int section) const override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void KeepFixedColumns(int section, int from, int to);

    ListView& List;
    std::size_t ArrowColumn = NoRow;
    bool ArrowAscending = true;
    bool Adjusting = false; // sizes and places are being set, not dragged
    bool Dragged = false;
};

// Gives the view row heights without a look at any row; rows draw themselves.
class RowMeasure : public QAbstractItemDelegate {
public:
    explicit RowMeasure(const ListView& list) : List(list) {}
    void paint(QPainter*, const QStyleOptionViewItem&, const QModelIndex&) const override {}
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const ListView& List;
};

enum class EditEnd { Keep, Cancel, Drop }; // Drop tells nobody

class ListView : public QTreeView, public KeepsEvents {
public:
    ListView(std::uint16_t id, ListKeys keys);
    ~ListView() override;

    void SetColumns(std::vector<Column> columns);
    void FitColumns();
    void Attach(const ListSource* source);
    [[nodiscard]] const ListModel& Model() const { return Rows; }
    [[nodiscard]] ListHeader& Titles() { return Header; }
    [[nodiscard]] const ListHeader& Titles() const { return Header; }

    [[nodiscard]] int RowHeight() const;
    [[nodiscard]] std::size_t Top() const;
    void SetTop(std::size_t row);
    [[nodiscard]] std::size_t VisibleRows() const;
    void MakeVisible(std::size_t row);
    [[nodiscard]] std::size_t Current() const;
    void SetCurrent(std::size_t row);

    [[nodiscard]] const RowSelection& Selection() const { return Chosen; }
    [[nodiscard]] std::size_t MenuRow() const { return RowOfMenu; }
    [[nodiscard]] bool IsSelectable(std::size_t row) const;
    void Select(std::size_t row, bool selected);
    void SelectEvery(bool selected);
    void SelectRows(const std::vector<std::size_t>& rows);
    void SetSelectionKind(ListSelection kind) { Kind = kind; }

    void SetImageHeight(int height);
    void SetRowLines(int lines);
    void SetStripes(bool on);
    void SetSeparators(bool on);

    void EditCell(std::size_t row, std::size_t column, std::string_view text, std::size_t maximumBytes);
    void EndEdit(EditEnd how);
    [[nodiscard]] bool IsEditing() const;
    [[nodiscard]] const std::string& Edited() const { return EditedText; }

    void Report(const ListEvent& event);
    [[nodiscard]] ListEvent Fetch();
    void ForgetEvents() override { Events.clear(); }

protected:
    int sizeHintForColumn(int column) const override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    [[nodiscard]] std::size_t RowAt(const QPoint& position) const;
    [[nodiscard]] int WidestCell(std::size_t column) const;
    [[nodiscard]] RowState StateOf(std::size_t row, const QRect& area) const;
    void DrawCells(QPainter& painter, std::size_t row, const RowLook& look, const RowState& state) const;
    void PressRow(std::size_t row, Qt::KeyboardModifiers modifiers);
    void PressBesideRows(Qt::KeyboardModifiers modifiers);
    void PressForMenu(const QPoint& place);
    void AskForMenuByKey();
    void SelectOnly(std::size_t row);
    void SelectFromAnchor(std::size_t row);
    void MoveCurrent(std::size_t row, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] std::size_t TargetOfKey(int key) const;
    bool ServeKey(const QKeyEvent& event);
    bool FindTyped(const QString& typed);
    void ShowSelection();
    void SpeakSelection();
    void ShowColumn(int section);
    void Remeasure();

    std::uint16_t Id;
    ListKeys Keys;
    ListSelection Kind = ListSelection::Extended;
    ListModel Rows;
    ListHeader Header;
    RowMeasure Measure;
    ListPainter Painter;
    RowSelection Chosen;
    std::deque<ListEvent> Events;
    std::size_t Anchor = NoRow;  // where a range of Shift or a drag starts
    std::size_t Pressed = NoRow; // row under the held button
    std::size_t RowOfMenu = NoRow;
    bool Narrowing = false; // a selected row is held: letting go selects it alone
    bool Dragging = false;
    bool SpokenIsOld = false; // the toolkit's record of the selection waits to be brought up to date
    bool Stripes = true, Separators = false;
    int ImageHeight = 0;
    int RowLines = 1;
    // Over its cell while one is edited; what has ended it may still be under its event, so it goes at the
    // next.
    std::unique_ptr<CellEditor> Editor, EndedEditor;
    std::size_t EditedRow = NoRow, EditedColumn = 0;
    std::string EditedText; // when the last editor ended
    std::string Typed;      // type-ahead of a list with own keys
    QElapsedTimer SinceTyped;
};

} // namespace intuition
