#include "platform/intuition/NativeBars.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace intuition {

namespace {

constexpr int MinimumBar = 5; // layout units that a pointer can hit

} // namespace

BarSplitter::BarSplitter(Qt::Orientation orientation, int spacing) : QSplitter(orientation) {
    setChildrenCollapsible(false);
    setHandleWidth(std::max(spacing, MinimumBar));
    connect(this, &QSplitter::splitterMoved, this, [this] { ReadWeights(); });
}

int BarSplitter::Extent(const QSize& size) const {
    return orientation() == Qt::Horizontal ? size.width() : size.height();
}

void BarSplitter::InsertChild(int position, QWidget* widget, int weight) {
    insertWidget(position, widget);
    Shares.insert(Shares.begin() + position, weight);
    EnableBars();
    ApplyWeights();
}

void BarSplitter::RemoveChild(int position) {
    Shares.erase(Shares.begin() + position);
    widget(position)->setParent(nullptr);
    EnableBars();
    ApplyWeights();
}

// A bar beside a child without weight would only pull at its fixed size.
void BarSplitter::EnableBars() {
    for (int at = 1; at < count(); ++at) {
        const auto right = static_cast<std::size_t>(at);
        handle(at)->setEnabled(Shares[right] > 0 && Shares[right - 1] > 0);
    }
}

// Cumulative rounding, so that the weights keep their sum.
std::vector<int> BarSplitter::Weights() const {
    std::vector<int> weights;
    double reached = 0;
    long given = 0;
    for (const double share : Shares) {
        reached += share;
        const long whole = std::lround(reached) - given;
        given += whole;
        weights.push_back(static_cast<int>(whole));
    }
    return weights;
}

void BarSplitter::SetWeights(const std::vector<int>& weights) {
    for (std::size_t at = 0; at < std::min(weights.size(), Shares.size()); ++at) {
        if (Shares[at] > 0 && weights[at] > 0)
            Shares[at] = weights[at];
    }
    ApplyWeights();
}

void BarSplitter::Turn(Qt::Orientation orientation) {
    setOrientation(orientation);
    ApplyWeights();
}

void BarSplitter::ApplyWeights() {
    const double sum = std::accumulate(Shares.begin(), Shares.end(), 0.0);
    int left = Extent(contentsRect().size()) - handleWidth() * std::max(count() - 1, 0);
    QList<int> sizes;
    for (int at = 0; at < count(); ++at) {
        const int needed = Shares[static_cast<std::size_t>(at)] > 0 ? 0 : Extent(widget(at)->sizeHint());
        sizes.append(needed);
        left -= needed;
    }
    for (int at = 0; at < count(); ++at) {
        if (const double share = Shares[static_cast<std::size_t>(at)]; share > 0)
            sizes[at] = static_cast<int>(std::lround(std::max(left, 1) * share / sum));
    }
    setSizes(sizes);
}

void BarSplitter::ReadWeights() {
    const QList<int> now = sizes();
    const double sum = std::accumulate(Shares.begin(), Shares.end(), 0.0);
    double pixels = 0;
    for (int at = 0; at < count(); ++at)
        pixels += Shares[static_cast<std::size_t>(at)] > 0 ? now[at] : 0;
    for (int at = 0; at < count() && pixels > 0; ++at) {
        if (double& share = Shares[static_cast<std::size_t>(at)]; share > 0)
            share = std::max(sum * now[at] / pixels, 0.001); // a weighted child stays one
    }
}

void BarSplitter::resizeEvent(QResizeEvent* event) {
    QSplitter::resizeEvent(event);
    ApplyWeights();
}

void BarSplitter::showEvent(QShowEvent* event) {
    QSplitter::showEvent(event);
    ApplyWeights();
}

} // namespace intuition
