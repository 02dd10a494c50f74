#include "platform/intuition/TreeBrowser.h"

#include "platform/intuition/Native.h"
#include "platform/intuition/TreeView.h"

namespace intuition {

namespace {

TreeView& ViewOf(TreeBrowser& tree) {
    return WidgetOf<TreeView>(tree);
}
const TreeView& ViewOf(const TreeBrowser& tree) {
    return WidgetOf<TreeView>(tree);
}

} // namespace

TreeBrowser::TreeBrowser(std::uint16_t id, std::string_view name)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<TreeView>(id))) {
    ViewOf(*this).setAccessibleName(DisplayText(name));
}

TreeBrowser::~TreeBrowser() = default;

void TreeBrowser::SetRows(std::vector<TreeRow> rows) {
    ViewOf(*this).SetRows(std::move(rows));
}

const std::vector<TreeRow>& TreeBrowser::Rows() const {
    return ViewOf(*this).Rows();
}

void TreeBrowser::SetImageSource(std::function<ImageId(std::size_t row)> source) {
    ViewOf(*this).ImageSource = std::move(source);
    ViewOf(*this).viewport()->update();
}

void TreeBrowser::SetBackgrounds(std::optional<Rgb> first, std::optional<Rgb> other) {
    ViewOf(*this).Backgrounds[0] = first;
    ViewOf(*this).Backgrounds[1] = other;
    ViewOf(*this).viewport()->update();
}

std::size_t TreeBrowser::Selected() const {
    return ViewOf(*this).Selected();
}

std::size_t TreeBrowser::MenuRow() const {
    return ViewOf(*this).MenuRow;
}

void TreeBrowser::SetSelected(std::size_t row) {
    ViewOf(*this).SetSelected(row);
}

TreeEvent TreeBrowser::NextEvent() {
    return ViewOf(*this).Fetch();
}

void TreeBrowser::RefreshRow(std::size_t row) {
    TreeView& view = ViewOf(*this);
    if (const QTreeWidgetItem* item = view.ItemOf(row))
        view.viewport()->update(view.visualItemRect(item));
}

bool TreeBrowser::IsOnScreen(std::size_t row) const {
    const TreeView& view = ViewOf(*this);
    const QTreeWidgetItem* item = view.ItemOf(row);
    return item != nullptr && view.visualItemRect(item).intersects(view.viewport()->rect());
}

} // namespace intuition
