#include "platform/intuition/NativeSpeedBar.h"

#include <QFrame>
#include <QIcon>
#include <QKeyEvent>
#include <QStyleOptionToolButton>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

constexpr int LongestText = 24;                     // characters of a usual width
constexpr int SeparatorWidth = 9, SeparatorGap = 3; // layout units; the gap is above and below the line
constexpr int LeastWidth = 40;                      // layout units
constexpr int WheelStep = 120;                      // eighths of a degree

class SpeedRowButton : public QToolButton {
public:
    explicit SpeedRowButton(SpeedRow& row) : QToolButton(&row), Row(row) {
        setAutoRaise(true);
        setFocusPolicy(Qt::NoFocus); // until it is the bar's stop
    }
    QIcon SelectedIcon;

protected:
    void initStyleOption(QStyleOptionToolButton* option) const override {
        QToolButton::initStyleOption(option);
        if (isDown() && !SelectedIcon.isNull())
            option->icon = SelectedIcon;
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (IsReturn(*event)) {
            if (!event->isAutoRepeat())
                click();
            return;
        }
        switch (event->key()) {
        case Qt::Key_Left:
            Row.MoveFocus(*this, -1);
            break;
        case Qt::Key_Right:
            Row.MoveFocus(*this, 1);
            break;
        case Qt::Key_Up:
        case Qt::Key_Down:
            break; // the bar has one line
        default:
            QToolButton::keyPressEvent(event);
            break;
        }
    }

private:
    SpeedRow& Row;
};

void Dress(SpeedRowButton& button, const SpeedButton& look, const QFontMetrics& font) {
    const QPixmap picture = PixmapOf(look.Image);
    if (const QPixmap selected = PixmapOf(look.Selected); !selected.isNull())
        button.SelectedIcon = QIcon(selected);
    button.setIcon(IconOf(look.Image, look.Ghosted));
    if (!picture.isNull())
        button.setIconSize(picture.deviceIndependentSize().toSize());
    const QString text =
        font.elidedText(DisplayText(look.Text), Qt::ElideRight, LongestText * font.averageCharWidth());
    const QString gap = text.isEmpty() || picture.isNull() ? QString() : QStringLiteral(" ");
    button.setText(gap + QString(text).replace(u'&', QStringLiteral("&&")));
    button.setToolButtonStyle(text.isEmpty()     ? Qt::ToolButtonIconOnly
                              : picture.isNull() ? Qt::ToolButtonTextOnly
                                                 : Qt::ToolButtonTextBesideIcon);
}

} // namespace

SpeedRow::SpeedRow(std::uint16_t id) : Id(id) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

std::unique_ptr<QWidget> SpeedRow::MakeWidget(const SpeedButton& button) {
    if (button.Separator) {
        auto line = std::make_unique<QFrame>(this);
        line->setFrameStyle(QFrame::VLine | QFrame::Sunken);
        return line;
    }
    auto made = std::make_unique<SpeedRowButton>(*this);
    Dress(*made, button, fontMetrics());
    made->setToolTip(HintText(button.Hint));
    made->setAccessibleName(DisplayText(button.Text.empty() ? button.Hint : button.Text));
    connect(made.get(), &QAbstractButton::clicked, this,
            [this, code = button.Code] { PostFrom(*this, EventClass::GadgetUp, Id, code); });
    return made;
}

void SpeedRow::SetButtons(const std::vector<SpeedButton>& buttons) {
    Items.clear();
    QWidget* before = this;
    for (const SpeedButton& button : buttons) {
        Items.push_back({MakeWidget(button), button.Code, button.Separator});
        QWidget* made = Items.back().Widget.get();
        setTabOrder(before, made); // after the bar, wherever that stands
        before = made;
    }
    updateGeometry();
    Arrange();
}

void SpeedRow::SetButtonLook(int at, const SpeedButton& look) {
    Dress(static_cast<SpeedRowButton&>(*Items[static_cast<std::size_t>(at)].Widget), look, fontMetrics());
    ArrangeLater();
}

// Once for all looks that change before the toolkit is back at its events: each arranging asks every button
// for its size.
void SpeedRow::ArrangeLater() {
    if (std::exchange(WillArrange, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            WillArrange = false;
            updateGeometry();
            Arrange();
        },
        Qt::QueuedConnection);
}

void SpeedRow::SetButtonDisabled(std::uint16_t code, bool disabled) {
    for (Item& item : Items) {
        if (!item.Separator && item.Code == code)
            item.Widget->setDisabled(disabled);
    }
    ChooseTabStop();
}

void SpeedRow::SetEnds(QWidget* left, QWidget* right) {
    Left = left;
    Right = right;
    for (QWidget* end : {left, right})
        end->setFocusPolicy(Qt::NoFocus);
    Arrange();
}

void SpeedRow::SetTop(int top) {
    First = top;
    Arrange();
}

const SpeedRow::Item* SpeedRow::Find(std::uint16_t code) const {
    const auto found = std::ranges::find_if(
        Items, [code](const Item& item) { return !item.Separator && item.Code == code; });
    return found != Items.end() ? &*found : nullptr;
}

bool SpeedRow::IsButtonDisabled(std::uint16_t code) const {
    const Item* item = Find(code);
    return item == nullptr || !item->Widget->isEnabledTo(this);
}

int SpeedRow::LeftOf(std::uint16_t code) const {
    const Item* item = Find(code);
    return item != nullptr && !item->Widget->isHidden() ? item->Widget->x() : 0;
}

int SpeedRow::WidthOf(int at) const {
    const Item& item = Items[static_cast<std::size_t>(at)];
    return item.Separator ? SeparatorWidth : item.Widget->sizeHint().width();
}

// The first button from which on all others have room.
int SpeedRow::LastTop() const {
    int room = width();
    int top = Total();
    while (top > 0 && room >= WidthOf(top - 1))
        room -= WidthOf(--top);
    return std::min(top, std::max(Total() - 1, 0));
}

void SpeedRow::Arrange() {
    First = std::clamp(First, 0, LastTop());
    Shown = 0;
    int reached = 0;
    for (int at = 0; at < Total(); ++at) {
        const Item& item = Items[static_cast<std::size_t>(at)];
        const int wide = WidthOf(at);
        // A single button that is wider than the bar is shown as far as it goes.
        const bool fits = at >= First && at == First + Shown && (reached + wide <= width() || at == First);
        item.Widget->setVisible(fits);
        if (!fits)
            continue;
        const int gap = item.Separator ? SeparatorGap : 0;
        item.Widget->setGeometry(reached, gap, wide, height() - 2 * gap);
        reached += wide;
        ++Shown;
    }
    if (Left)
        Left->setDisabled(First == 0);
    if (Right)
        Right->setDisabled(First + Shown >= Total());
    ChooseTabStop();
}

bool SpeedRow::CanHaveFocus(int at) const {
    const Item& item = Items[static_cast<std::size_t>(at)];
    return !item.Separator && item.Widget->isEnabledTo(this);
}

void SpeedRow::ChooseTabStop() {
    QWidget* chosen = nullptr;
    for (int at = First; at < First + Shown; ++at) {
        QWidget* widget = Items[static_cast<std::size_t>(at)].Widget.get();
        if (CanHaveFocus(at) && (chosen == nullptr || widget == TabStop))
            chosen = widget;
    }
    if (TabStop != nullptr && TabStop != chosen)
        TabStop->setFocusPolicy(Qt::NoFocus);
    TabStop = chosen;
    if (chosen != nullptr)
        chosen->setFocusPolicy(Qt::TabFocus);
}

void SpeedRow::MoveFocus(const QWidget& from, int step) {
    int at = 0;
    while (at < Total() && Items[static_cast<std::size_t>(at)].Widget.get() != &from)
        ++at;
    for (at += step; at >= 0 && at < Total(); at += step) {
        if (!CanHaveFocus(at))
            continue;
        if (at < First)
            SetTop(at);
        while (at >= First + Shown)
            SetTop(First + 1);
        QWidget* widget = Items[static_cast<std::size_t>(at)].Widget.get();
        widget->setFocus(Qt::TabFocusReason);
        if (TabStop != nullptr && TabStop != widget)
            TabStop->setFocusPolicy(Qt::NoFocus);
        TabStop = widget;
        widget->setFocusPolicy(Qt::TabFocus);
        return;
    }
}

// As high as its highest button, and while it is empty as one with text.
QSize SpeedRow::sizeHint() const {
    QToolButton sample;
    sample.setToolButtonStyle(Qt::ToolButtonTextOnly);
    sample.setText(QStringLiteral("x"));
    int wide = 0;
    int high = sample.sizeHint().height();
    for (int at = 0; at < Total(); ++at) {
        const Item& item = Items[static_cast<std::size_t>(at)];
        wide += WidthOf(at);
        if (!item.Separator)
            high = std::max(high, item.Widget->sizeHint().height());
    }
    return {std::max(wide, LeastWidth), high};
}

QSize SpeedRow::minimumSizeHint() const {
    return {LeastWidth, sizeHint().height()};
}

void SpeedRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Arrange();
}

void SpeedRow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        updateGeometry();
        Arrange();
    }
}

void SpeedRow::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() != Qt::NoModifier) {
        event->ignore();
        return;
    }
    const QPoint turn = event->angleDelta();
    WheelRest += turn.y() != 0 ? turn.y() : turn.x();
    for (; WheelRest >= WheelStep; WheelRest -= WheelStep)
        SetTop(First - 1);
    for (; WheelRest <= -WheelStep; WheelRest += WheelStep)
        SetTop(First + 1);
}

} // namespace intuition
