#include "platform/intuition/ClickTab.h"

#include "platform/intuition/Native.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QTabBar>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <deque>
#include <memory>
#include <set>
#include <utility>

namespace intuition {

namespace {

constexpr int WidestTab = 24; // characters of a usual width
constexpr int WheelStep = 120;

struct TabFacts {
    std::uint32_t UserData = 0;
    bool Extra = false;
};

class TabRow : public QTabBar, public KeepsEvents {
public:
    explicit TabRow(std::uint16_t id) : Id(id) {
        setDocumentMode(true);
        setExpanding(false);
        setUsesScrollButtons(true);
        setElideMode(Qt::ElideRight);
        setTabsClosable(true);
        setSelectionBehaviorOnRemove(QTabBar::SelectLeftTab);
        setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it was
        connect(this, &QTabBar::currentChanged, this, [this](int at) { Report(ClickTabKind::Pick, at); });
        connect(this, &QTabBar::tabCloseRequested, this, [this](int at) { Report(ClickTabKind::Close, at); });
    }

    void Show(const std::vector<ClickTabLook>& tabs, std::uint32_t current);
    void Rename(std::uint32_t userData, std::string_view text, std::string_view hint);

    // Picks the extra tab, wherever it has scrolled to.
    void PickExtra() {
        if (!Tabs.empty() && Tabs.back().Extra)
            Report(ClickTabKind::Pick, count() - 1);
    }
    [[nodiscard]] int WholeWidth() const {
        return count() == 0 ? 0 : tabRect(count() - 1).right() - tabRect(0).left() + 1;
    }

    void ForgetEvents() override { Events.clear(); }

    bool Attached = false;
    std::deque<ClickTabEvent> Events;

protected:
    QSize tabSizeHint(int index) const override {
        const QSize size = QTabBar::tabSizeHint(index);
        return size.boundedTo(QSize(fontMetrics().averageCharWidth() * WidestTab, size.height()));
    }
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }

    // One tab a step, never on to the extra one.
    void wheelEvent(QWheelEvent* event) override {
        WheelRest += event->angleDelta().y() + event->angleDelta().x();
        for (; WheelRest >= WheelStep; WheelRest -= WheelStep)
            Step(-1);
        for (; WheelRest <= -WheelStep; WheelRest += WheelStep)
            Step(1);
        event->accept();
    }

    void keyPressEvent(QKeyEvent* event) override {
        const int forth = layoutDirection() == Qt::RightToLeft ? -1 : 1;
        if (event->key() == Qt::Key_Left && event->modifiers() == Qt::NoModifier)
            Step(-forth);
        else if (event->key() == Qt::Key_Right && event->modifiers() == Qt::NoModifier)
            Step(forth);
        else if (!IsReturn(*event)) // the tab is on show already
            event->ignore();
    }

    // The middle button on a tab is its close mark, and no button of the window's.
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::MiddleButton && tabAt(event->pos()) >= 0)
            event->accept();
        else
            QTabBar::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        const int at = event->button() == Qt::MiddleButton ? tabAt(event->pos()) : -1;
        if (at < 0) {
            QTabBar::mouseReleaseEvent(event);
            return;
        }
        event->accept();
        if (!Tabs[static_cast<std::size_t>(at)].Extra)
            Report(ClickTabKind::Close, at);
    }

private:
    void Report(ClickTabKind kind, int at) {
        if (!Attached || at < 0 || static_cast<std::size_t>(at) >= Tabs.size())
            return;
        if (PostFrom(*this, EventClass::GadgetUp, Id))
            Events.push_back({kind, Tabs[static_cast<std::size_t>(at)].UserData});
    }
    void Step(int by) {
        const int to = currentIndex() + by;
        if (to >= 0 && to < count() && !Tabs[static_cast<std::size_t>(to)].Extra)
            setCurrentIndex(to);
    }
    void RemoveAllBut(const std::set<std::uint32_t>& staying);
    void Place(std::size_t at, const ClickTabLook& look);

    std::uint16_t Id;
    std::vector<TabFacts> Tabs; // as they stand in the row
    int WheelRest = 0;          // eighths of a degree that make no step yet
};

void TabRow::RemoveAllBut(const std::set<std::uint32_t>& staying) {
    for (std::size_t at = Tabs.size(); at-- > 0;) {
        if (!staying.contains(Tabs[at].UserData)) {
            removeTab(static_cast<int>(at));
            Tabs.erase(Tabs.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
}

void TabRow::Place(std::size_t at, const ClickTabLook& look) {
    const int place = static_cast<int>(at);
    if (at >= Tabs.size() || Tabs[at].UserData != look.UserData) {
        Tabs.insert(Tabs.begin() + static_cast<std::ptrdiff_t>(at), {look.UserData, look.Extra});
        insertTab(place, QString());
        if (look.Extra) {
            const auto side = static_cast<ButtonPosition>(
                style()->styleHint(QStyle::SH_TabBar_CloseButtonPosition, nullptr, this));
            setTabButton(place, side, nullptr);
        }
    }
    if (const QString text = DisplayTextWithoutMnemonic(look.Text); tabText(place) != text)
        setTabText(place, text);
    setTabToolTip(place, HintText(look.Hint));
}

void TabRow::Show(const std::vector<ClickTabLook>& tabs, std::uint32_t current) {
    Attached = false; // what follows is no pick of the user's
    std::set<std::uint32_t> staying;
    for (const ClickTabLook& look : tabs)
        staying.insert(look.UserData);
    RemoveAllBut(staying);
    for (std::size_t at = 0; at < tabs.size(); ++at) {
        Place(at, tabs[at]);
        if (tabs[at].UserData == current)
            setCurrentIndex(static_cast<int>(at));
    }
    Attached = true;
}

void TabRow::Rename(std::uint32_t userData, std::string_view text, std::string_view hint) {
    const auto found = std::find_if(Tabs.begin(), Tabs.end(),
                                    [userData](const TabFacts& tab) { return tab.UserData == userData; });
    if (found == Tabs.end())
        return;
    const int at = static_cast<int>(found - Tabs.begin());
    if (const QString shown = DisplayTextWithoutMnemonic(text); tabText(at) != shown)
        setTabText(at, shown);
    setTabToolTip(at, HintText(hint));
}

// The row, and behind it a button in place of the extra tab while that does not fit in with the others.
class TabStrip : public QWidget {
public:
    explicit TabStrip(std::uint16_t id) {
        auto row = std::make_unique<TabRow>(id);
        auto more = std::make_unique<QToolButton>();
        auto line = std::make_unique<QHBoxLayout>();
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(0);
        Row = row.get();
        More = more.get();
        More->setText(QStringLiteral("+"));
        More->setAutoRaise(true);
        More->setFocusPolicy(Qt::NoFocus);
        More->hide();
        connect(More, &QToolButton::clicked, Row, [this] { Row->PickExtra(); });
        line->addWidget(row.release(), 1);
        line->addWidget(more.release());
        setLayout(line.release());
        setFocusProxy(Row);
        setSizePolicy(Row->sizePolicy());
    }

    void ShowMore() { More->setVisible(Row->WholeWidth() > width()); }

    TabRow* Row = nullptr;
    QToolButton* More = nullptr;

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        ShowMore();
    }
};

} // namespace

ClickTab::ClickTab(std::uint16_t id, std::string_view name)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<TabStrip>(id))) {
    WidgetOf<TabStrip>(*this).Row->setAccessibleName(DisplayText(name));
}

void ClickTab::Attach(const std::vector<ClickTabLook>& tabs, std::uint32_t current) {
    auto& strip = WidgetOf<TabStrip>(*this);
    strip.Row->Show(tabs, current);
    if (!tabs.empty()) {
        strip.More->setToolTip(HintText(tabs.back().Text));
        strip.More->setAccessibleName(DisplayText(tabs.back().Text));
    }
    strip.ShowMore();
}

void ClickTab::Detach() {
    WidgetOf<TabStrip>(*this).Row->Attached = false;
}

void ClickTab::SetText(std::uint32_t userData, std::string_view text, std::string_view hint) {
    auto& strip = WidgetOf<TabStrip>(*this);
    strip.Row->Rename(userData, text, hint);
    strip.ShowMore();
}

ClickTabEvent ClickTab::NextEvent() {
    std::deque<ClickTabEvent>& events = WidgetOf<TabStrip>(*this).Row->Events;
    if (events.empty())
        return {};
    const ClickTabEvent event = events.front();
    events.pop_front();
    return event;
}

} // namespace intuition
