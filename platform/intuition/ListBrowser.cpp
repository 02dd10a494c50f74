#include "platform/intuition/ListBrowser.h"

#include "platform/intuition/ListView.h"
#include "platform/intuition/Native.h"

#include <QScrollBar>

namespace intuition {

namespace {

ListView& ViewOf(ListBrowser& list) {
    return WidgetOf<ListView>(list);
}
const ListView& ViewOf(const ListBrowser& list) {
    return WidgetOf<ListView>(list);
}

} // namespace

RowLook ListSource::Row(std::size_t) const {
    return {};
}

ListBrowser::ListBrowser(std::uint16_t id, ListKeys keys)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<ListView>(id, keys))) {}

ListBrowser::~ListBrowser() = default;

void ListBrowser::SetColumns(std::vector<Column> columns) {
    ViewOf(*this).SetColumns(std::move(columns));
}

std::vector<int> ListBrowser::ColumnWidths() const {
    const ListHeader& titles = ViewOf(*this).Titles();
    std::vector<int> widths;
    for (int section = 0; section < titles.count(); ++section)
        widths.push_back(titles.sectionSize(section));
    return widths;
}

void ListBrowser::FitColumns() {
    ViewOf(*this).FitColumns();
}

std::vector<std::size_t> ListBrowser::ColumnOrder() const {
    const ListHeader& titles = ViewOf(*this).Titles();
    std::vector<std::size_t> order;
    for (int place = 0; place < titles.count(); ++place)
        order.push_back(static_cast<std::size_t>(titles.logicalIndex(place)));
    return order;
}

void ListBrowser::SetSortColumn(std::size_t column, bool ascending) {
    ViewOf(*this).Titles().SetArrow(column, ascending);
}

void ListBrowser::SetTitlesShown(bool shown) {
    ViewOf(*this).setHeaderHidden(!shown);
}

void ListBrowser::Attach(const ListSource* source) {
    ViewOf(*this).Attach(source);
}

void ListBrowser::Detach() {
    ViewOf(*this).Attach(nullptr);
}

void ListBrowser::Refresh() {
    ViewOf(*this).viewport()->update();
}

void ListBrowser::RefreshRow(std::size_t row) {
    ListView& view = ViewOf(*this);
    if (row >= view.Model().Rows())
        return;
    const int top = static_cast<int>(row) * view.RowHeight() - view.verticalScrollBar()->value();
    view.viewport()->update(0, top, view.viewport()->width(), view.RowHeight());
}

std::size_t ListBrowser::Top() const {
    return ViewOf(*this).Top();
}

void ListBrowser::SetTop(std::size_t row) {
    ViewOf(*this).SetTop(row);
}

std::size_t ListBrowser::VisibleRows() const {
    return ViewOf(*this).VisibleRows();
}

void ListBrowser::MakeVisible(std::size_t row) {
    ViewOf(*this).MakeVisible(row);
}

void ListBrowser::ScrollSideways(int units) {
    QScrollBar* bar = ViewOf(*this).horizontalScrollBar();
    bar->setValue(bar->value() + units);
}

std::size_t ListBrowser::Current() const {
    return ViewOf(*this).Current();
}

void ListBrowser::SetCurrent(std::size_t row) {
    ViewOf(*this).SetCurrent(row);
}

std::size_t ListBrowser::MenuRow() const {
    return ViewOf(*this).MenuRow();
}

void ListBrowser::SetSelection(ListSelection kind) {
    ViewOf(*this).SetSelectionKind(kind);
}

bool ListBrowser::IsSelected(std::size_t row) const {
    return ViewOf(*this).Selection().Has(row);
}

bool ListBrowser::IsDisabled(std::size_t row) const {
    return !ViewOf(*this).IsSelectable(row);
}

std::size_t ListBrowser::SelectedCount() const {
    return ViewOf(*this).Selection().Count();
}

std::vector<std::size_t> ListBrowser::SelectedRows() const {
    return ViewOf(*this).Selection().Rows();
}

void ListBrowser::Select(std::size_t row, bool selected) {
    ViewOf(*this).Select(row, selected);
}

void ListBrowser::SelectRows(const std::vector<std::size_t>& rows) {
    ViewOf(*this).SelectRows(rows);
}

void ListBrowser::SelectAll() {
    ViewOf(*this).SelectEvery(true);
}

void ListBrowser::ClearSelection() {
    ViewOf(*this).SelectEvery(false);
}

void ListBrowser::EditCell(std::size_t row, std::size_t column, std::string_view text,
                           std::size_t maximumBytes) {
    ViewOf(*this).EditCell(row, column, text, maximumBytes);
}

bool ListBrowser::IsEditing() const {
    return ViewOf(*this).IsEditing();
}

const std::string& ListBrowser::EditedText() const {
    return ViewOf(*this).Edited();
}

ListEvent ListBrowser::NextEvent() {
    return ViewOf(*this).Fetch();
}

void ListBrowser::SetImageHeight(int height) {
    ViewOf(*this).SetImageHeight(height);
}

void ListBrowser::SetRowLines(int lines) {
    ViewOf(*this).SetRowLines(lines);
}

void ListBrowser::SetStripes(bool on) {
    ViewOf(*this).SetStripes(on);
}

void ListBrowser::SetVerticalSeparators(bool on) {
    ViewOf(*this).SetSeparators(on);
}

} // namespace intuition
