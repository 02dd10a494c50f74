#include "platform/intuition/TreeView.h"

#include "platform/intuition/ListPainter.h"
#include "platform/intuition/Native.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

constexpr int RowNumber = Qt::UserRole;
constexpr QSize PictureSize(20, 18); // layout units
constexpr int RowPadding = 4;
constexpr int SeparatorHeight = 9;
constexpr int Indentation = 16;
constexpr std::size_t MaximumEvents = 64;

QColor ColourOf(const Rgb& rgb) {
    return {rgb.Red, rgb.Green, rgb.Blue};
}

// The picture as it is in every state: the toolkit would tint that of a selected row.
QIcon PlainIcon(ImageId image) {
    QIcon icon;
    if (const QPixmap picture = PixmapOf(image); !picture.isNull()) {
        icon.addPixmap(picture, QIcon::Normal);
        icon.addPixmap(picture, QIcon::Selected);
    }
    return icon;
}

} // namespace

void TreeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const std::size_t row = Tree.RowOf(index);
    if (row == NoRow)
        return;
    const TreeRow& record = Tree.Rows()[row];
    option->font.setBold(option->font.bold() || record.Bold);
    option->font.setItalic(record.Italic);
    option->font.setUnderline(record.Underline);
    option->decorationSize = PictureSize;
    option->icon = PlainIcon(Tree.ImageOf(row));
    if (!option->icon.isNull())
        option->features |= QStyleOptionViewItem::HasDecoration;
    const QColor text = record.Colour ? ColourOf(*record.Colour) : option->palette.color(QPalette::Text);
    option->palette.setColor(QPalette::Text, ReadableOn(Tree.BackgroundOf(row), text));
    option->state &= ~QStyle::State_MouseOver;
}

void TreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const std::size_t row = Tree.RowOf(index);
    if (row == NoRow || Tree.Rows()[row].Kind != TreeRowKind::Separator) {
        QStyleOptionViewItem shown =
            option; // a narrow list has a wider column; text is cut where it ends to show
        shown.rect.setRight(std::min(shown.rect.right(), Tree.viewport()->width() - 1));
        QStyledItemDelegate::paint(painter, shown, index);
        return;
    }
    const int middle = option.rect.center().y();
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawLine(RowPadding, middle, Tree.viewport()->width() - RowPadding, middle);
}

QSize TreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const std::size_t row = Tree.RowOf(index);
    if (row != NoRow && Tree.Rows()[row].Kind == TreeRowKind::Separator)
        return {0, SeparatorHeight};
    const int line = std::max(option.fontMetrics.height(), PictureSize.height());
    return {QStyledItemDelegate::sizeHint(option, index).width(), line + RowPadding};
}

TreeView::TreeView(std::uint16_t id) : Id(id), Drawing(*this) {
    setHeaderHidden(true);
    setColumnCount(1);
    setItemDelegate(&Drawing);
    setIconSize(PictureSize);
    setIndentation(Indentation);
    setExpandsOnDoubleClick(false);
    setSelectionMode(QAbstractItemView::NoSelection); // the selection is Chosen
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAutoScroll(false);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::TabFocus);
    setMinimumWidth(0);
    connect(this, &QTreeWidget::itemExpanded, this, [this](auto* head) { NoteOpen(*head, true); });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](auto* head) { NoteOpen(*head, false); });
}

void TreeView::AddRow(std::size_t row) {
    const TreeRow& record = Records[row];
    const bool isChild = record.Kind == TreeRowKind::Child;
    QTreeWidgetItem* head = isChild && !Items.empty() ? Items.back() : nullptr;
    while (head != nullptr && head->parent() != nullptr)
        head = head->parent();
    if (head != nullptr && Records[RowOf(indexFromItem(head))].Kind != TreeRowKind::Head)
        head = nullptr;
    auto item = std::make_unique<QTreeWidgetItem>();
    item->setText(0, DisplayText(record.Label));
    item->setData(0, RowNumber, static_cast<qulonglong>(row));
    if (!record.Hint.empty())
        item->setToolTip(0, HintText(record.Hint));
    if (record.Kind == TreeRowKind::Separator)
        item->setFlags(Qt::NoItemFlags);
    Items.push_back(item.get());
    if (head != nullptr)
        head->addChild(item.release());
    else
        addTopLevelItem(item.release());
}

void TreeView::SetRows(std::vector<TreeRow> rows) {
    const int place = verticalScrollBar()->value();
    Filling = true;
    Events.clear();
    Chosen = MenuRow = NoRow;
    clear();
    Items.clear();
    Records = std::move(rows);
    for (std::size_t row = 0; row < Records.size(); ++row)
        AddRow(row);
    for (std::size_t row = 0; row < Records.size(); ++row)
        Items[row]->setExpanded(Records[row].Kind == TreeRowKind::Head && Records[row].IsOpen);
    Filling = false;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(place);
}

QTreeWidgetItem* TreeView::ItemOf(std::size_t row) const {
    return row < Items.size() ? Items[row] : nullptr;
}

std::size_t TreeView::RowOf(const QModelIndex& index) const {
    bool isNumber = false;
    const qulonglong row = index.data(RowNumber).toULongLong(&isNumber);
    return isNumber && row < Records.size() ? static_cast<std::size_t>(row) : NoRow;
}

ImageId TreeView::ImageOf(std::size_t row) const {
    const ImageId own = ImageSource ? ImageSource(row) : ImageId::None;
    return own != ImageId::None ? own : Records[row].Image;
}

QColor TreeView::BackgroundOf(std::size_t row) const {
    const auto& own = Backgrounds[row % 2];
    return own ? ColourOf(*own) : palette().color(QPalette::Base);
}

void TreeView::SetSelected(std::size_t row) {
    QTreeWidgetItem* item = ItemOf(row);
    const bool canBe = item != nullptr && Records[row].Kind != TreeRowKind::Separator;
    Chosen = canBe ? row : NoRow;
    if (!canBe) {
        selectionModel()->clearSelection();
        return;
    }
    const QModelIndex index = indexFromItem(item);
    selectionModel()->select(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    if (item->parent() == nullptr || item->parent()->isExpanded())
        scrollToItem(item);
}

TreeEvent TreeView::Fetch() {
    if (Events.empty())
        return {};
    const TreeEvent event = Events.front();
    Events.pop_front();
    return event;
}

void TreeView::Report(TreeEventKind kind, std::size_t row) {
    if (Events.size() < MaximumEvents && PostFrom(*this, EventClass::GadgetUp, Id))
        Events.push_back({kind, row});
}

void TreeView::NoteOpen(const QTreeWidgetItem& head, bool isOpen) {
    const std::size_t row = RowOf(indexFromItem(&head));
    if (Filling || row == NoRow)
        return;
    Records[row].IsOpen = isOpen;
    Report(isOpen ? TreeEventKind::Open : TreeEventKind::Close, row);
}

void TreeView::Choose(std::size_t row) {
    if (row == NoRow || Records[row].Kind == TreeRowKind::Separator)
        return;
    SetSelected(row);
    Report(TreeEventKind::Select, row);
}

void TreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const std::size_t row = RowOf(index);
    if (row != NoRow && Backgrounds[row % 2])
        painter->fillRect(option.rect, BackgroundOf(row));
    QTreeWidget::drawRow(painter, option, index);
}

// The row is marked and not chosen: to go there is one of the things that its menu offers.
void TreeView::AskForMenu(std::size_t row, const QPoint& place) {
    MenuRow = row == NoRow || Records[row].Kind == TreeRowKind::Separator ? NoRow : row;
    if (MenuRow != NoRow)
        selectionModel()->setCurrentIndex(indexFromItem(ItemOf(MenuRow)), QItemSelectionModel::NoUpdate);
    PostMenuVerify(*this, Id, viewport()->mapTo(this, place));
}

void TreeView::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        AskForMenu(RowOf(indexAt(place)), place);
        return;
    }
    if (event->button() != Qt::LeftButton) {
        event->ignore(); // the window's
        return;
    }
    const QModelIndex index = indexAt(place);
    if (index.isValid() && !visualRect(index).contains(place))
        QTreeWidget::mousePressEvent(event); // beside the row stands the sign that opens it
    else
        Choose(RowOf(index));
}

void TreeView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        QTreeWidget::mouseReleaseEvent(event);
    else
        event->ignore();
}

// The second click of a double click is a click.
void TreeView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton &&
        !visualRect(indexAt(event->position().toPoint())).contains(event->position().toPoint()))
        QTreeWidget::mousePressEvent(event);
    else if (event->button() != Qt::LeftButton)
        event->ignore();
}

void TreeView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore(); // the window's
    else
        QTreeWidget::wheelEvent(event);
}

void TreeView::keyPressEvent(QKeyEvent* event) {
    if (IsMenuKey(*event)) {
        AskForMenu(RowOf(currentIndex()), visualRect(currentIndex()).bottomLeft());
        event->accept();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Choose(RowOf(currentIndex()));
        event->accept();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        QTreeWidget::keyPressEvent(event);
        if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right)
            scrollTo(currentIndex());
        event->accept();
        break;
    default:
        event->ignore(); // the window's
        break;
    }
}

} // namespace intuition
