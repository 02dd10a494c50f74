#include "platform/intuition/NativeBars.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>

namespace intuition {

namespace {

constexpr int MinimumBar = 5; // layout units that a pointer can hit
constexpr int KeyStep = 16;   // of an arrow key, layout units
constexpr int KeyWholeWay = 1 << 16;

// As they lie: from the top down, and then from the left.
QList<BarHandle*> UsableBars(const QWidget& window) {
    QList<BarHandle*> bars;
    for (QSplitterHandle* handle : window.findChildren<QSplitterHandle*>()) {
        if (auto* bar = dynamic_cast<BarHandle*>(handle);
            bar != nullptr && bar->isVisible() && bar->isEnabled())
            bars.append(bar);
    }
    const auto place = [&window](const BarHandle* bar) {
        const QPoint corner = bar->mapTo(&window, QPoint());
        return std::pair(corner.y(), corner.x());
    };
    std::ranges::sort(bars, {}, place);
    return bars;
}

// What an arrow or End and Home do to a bar that moves along; 0: nothing.
int DistanceOf(int key, bool sideways) {
    switch (key) {
    case Qt::Key_Left:
        return sideways ? -KeyStep : 0;
    case Qt::Key_Right:
        return sideways ? KeyStep : 0;
    case Qt::Key_Up:
        return sideways ? 0 : -KeyStep;
    case Qt::Key_Down:
        return sideways ? 0 : KeyStep;
    case Qt::Key_Home:
        return -KeyWholeWay;
    case Qt::Key_End:
        return KeyWholeWay;
    default:
        return 0;
    }
}

bool IsMovingKey(int key) {
    return key >= Qt::Key_Home && key <= Qt::Key_Down;
}

bool EndsMoving(int key) {
    return key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

BarHandle::BarHandle(Qt::Orientation orientation, QSplitter* parent) : QSplitterHandle(orientation, parent) {}

void BarHandle::TakeKeyboard(QWidget* from) {
    Former = from;
    setFocusPolicy(Qt::StrongFocus); // screen readers pass over what has no policy
    setFocus(Qt::ShortcutFocusReason);
}

void BarHandle::GiveKeyboardBack() {
    if (Former != nullptr)
        Former->setFocus(Qt::OtherFocusReason);
    else
        clearFocus();
}

void BarHandle::MoveBy(int distance) {
    const bool sideways = orientation() == Qt::Horizontal;
    const int extent = sideways ? splitter()->width() : splitter()->height();
    moveSplitter(std::clamp((sideways ? x() : y()) + distance, 0, extent));
}

// Keys that would move something else are kept from the window.
void BarHandle::keyPressEvent(QKeyEvent* event) {
    if (EndsMoving(event->key()))
        GiveKeyboardBack();
    else if (IsMovingKey(event->key()))
        MoveBy(DistanceOf(event->key(), orientation() == Qt::Horizontal));
    else
        QSplitterHandle::keyPressEvent(event);
}

void BarHandle::focusInEvent(QFocusEvent* event) {
    QSplitterHandle::focusInEvent(event);
    update();
}

void BarHandle::focusOutEvent(QFocusEvent* event) {
    QSplitterHandle::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        setFocusPolicy(Qt::NoFocus);
    update();
}

void BarHandle::paintEvent(QPaintEvent* event) {
    QSplitterHandle::paintEvent(event);
    if (hasFocus())
        QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
}

bool BarHandle::focusNextPrevChild(bool) {
    GiveKeyboardBack();
    return true;
}

void FocusNextBar(QWidget& window) {
    const QList<BarHandle*> bars = UsableBars(window);
    QWidget* now = QApplication::focusWidget();
    auto* bar = dynamic_cast<BarHandle*>(now);
    const qsizetype next = bar != nullptr ? bars.indexOf(bar) + 1 : 0;
    if (next < bars.size())
        bars[next]->TakeKeyboard(bar != nullptr ? bar->Lender() : now);
    else if (bar != nullptr)
        bar->GiveKeyboardBack();
}

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

QSplitterHandle* BarSplitter::createHandle() {
    return std::make_unique<BarHandle>(orientation(), this).release(); // the splitter owns it
}

void BarSplitter::showEvent(QShowEvent* event) {
    QSplitter::showEvent(event);
    ApplyWeights();
}

} // namespace intuition
