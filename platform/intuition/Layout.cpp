#include "platform/intuition/Layout.h"

#include "platform/intuition/Native.h"
#include "platform/intuition/NativeBars.h"

#include <QBoxLayout>

#include <algorithm>

namespace intuition {

namespace {

struct BoxNative : GadgetNative {
    using GadgetNative::GadgetNative;
    QBoxLayout* Box = nullptr; // owned by the widget; null where the widget has bars
    std::vector<int> Weights;
};

BoxNative& NativeOf(Layout& layout) {
    return static_cast<BoxNative&>(layout.Native());
}
const BoxNative& NativeOf(const Layout& layout) {
    return static_cast<const BoxNative&>(layout.Native());
}

BarSplitter& BarsOf(BoxNative& native) {
    return static_cast<BarSplitter&>(*native.Widget);
}
const BarSplitter& BarsOf(const BoxNative& native) {
    return static_cast<const BarSplitter&>(*native.Widget);
}

std::unique_ptr<GadgetNative> MakeBars(const LayoutSpec& spec) {
    const bool across = spec.Direction == Orientation::Horizontal;
    auto bars = std::make_unique<BarSplitter>(across ? Qt::Horizontal : Qt::Vertical, spec.Spacing);
    bars->setContentsMargins(spec.Margin, spec.Margin, spec.Margin, spec.Margin);
    return std::make_unique<BoxNative>(std::move(bars));
}

std::unique_ptr<GadgetNative> MakeBox(const LayoutSpec& spec) {
    const bool across = spec.Direction == Orientation::Horizontal;
    auto box = std::make_unique<QBoxLayout>(across ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    box->setSpacing(spec.Spacing);
    box->setContentsMargins(spec.Margin, spec.Margin, spec.Margin, spec.Margin);
    auto native = std::make_unique<BoxNative>(std::make_unique<QWidget>());
    native->Box = box.get();
    native->Widget->setLayout(box.release());
    return native;
}

} // namespace

Layout::Layout(const LayoutSpec& spec) : Gadget(0, spec.Bars ? MakeBars(spec) : MakeBox(spec)) {}

// Children lie in the layout's widget, so they go first.
Layout::~Layout() {
    Children.clear();
}

Gadget& Layout::Add(std::unique_ptr<Gadget> child, int weight) {
    return Insert(Children.size(), std::move(child), weight);
}

Gadget& Layout::Insert(std::size_t position, std::unique_ptr<Gadget> child, int weight) {
    position = std::min(position, Children.size());
    weight = std::max(weight, 0);
    const auto offset = static_cast<std::ptrdiff_t>(position);
    BoxNative& native = NativeOf(*this);
    QWidget* widget = child->Native().Widget.get();
    if (native.Box == nullptr) {
        BarsOf(native).InsertChild(static_cast<int>(position), widget, weight);
    } else {
        native.Box->insertWidget(static_cast<int>(position), widget, weight);
        native.Weights.insert(native.Weights.begin() + offset, weight);
    }
    return **Children.insert(Children.begin() + offset, std::move(child));
}

std::unique_ptr<Gadget> Layout::Remove(const Gadget& child) {
    const auto found = std::find_if(Children.begin(), Children.end(),
                                    [&](const auto& candidate) { return candidate.get() == &child; });
    if (found == Children.end())
        return nullptr;
    BoxNative& native = NativeOf(*this);
    const auto offset = found - Children.begin();
    QWidget* widget = (*found)->Native().Widget.get();
    if (native.Box == nullptr) {
        BarsOf(native).RemoveChild(static_cast<int>(offset));
    } else {
        native.Box->removeWidget(widget);
        native.Weights.erase(native.Weights.begin() + offset);
    }
    widget->setParent(nullptr);
    std::unique_ptr<Gadget> taken = std::move(*found);
    Children.erase(found);
    return taken;
}

Gadget* Layout::Child(std::size_t position) {
    return position < Children.size() ? Children[position].get() : nullptr;
}

std::vector<int> Layout::Weights() const {
    const BoxNative& native = NativeOf(*this);
    return native.Box == nullptr ? BarsOf(native).Weights() : native.Weights;
}

void Layout::SetWeights(const std::vector<int>& weights) {
    BoxNative& native = NativeOf(*this);
    if (native.Box == nullptr) {
        BarsOf(native).SetWeights(weights);
        return;
    }
    for (std::size_t at = 0; at < std::min(weights.size(), native.Weights.size()); ++at) {
        if (native.Weights[at] == 0 || weights[at] <= 0)
            continue;
        native.Weights[at] = weights[at];
        native.Box->setStretch(static_cast<int>(at), weights[at]);
    }
}

void Layout::SetDirection(Orientation direction) {
    BoxNative& native = NativeOf(*this);
    if (native.Box == nullptr)
        BarsOf(native).Turn(direction == Orientation::Horizontal ? Qt::Horizontal : Qt::Vertical);
}

} // namespace intuition
