#include "platform/intuition/Menus.h"

#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"
#include "platform/intuition/Window.h"

#include <QAction>
#include <QActionGroup>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProxyStyle>
#include <QSet>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace intuition {

namespace {

constexpr int PicturePadding = 1; // over and under the picture of an item

// A menu that knows whether an item is picked by key.
class KeyMenu : public QMenu {
public:
    static inline bool PicksByKey = false;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        PicksByKey = true;
        QMenu::keyPressEvent(event);
        PicksByKey = false;
    }
};

// The qualifiers of a pick. Alt with a letter is how menus are reached, so that it says nothing about the
// item then.
std::uint16_t QualifierOfPick() {
    constexpr std::uint16_t alt = qualifier::LeftAlt | qualifier::RightAlt;
    const std::uint16_t held = CurrentQualifier();
    return static_cast<std::uint16_t>(KeyMenu::PicksByKey ? held & ~alt : held);
}

// The desktop's style with pictures of the size that the user wants. Long menus scroll: columns would hide
// what they belong to.
class MenuStyle : public QProxyStyle {
public:
    explicit MenuStyle(int imageSize) : ImageSize(imageSize) {}
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_SmallIconSize ? ImageSize : QProxyStyle::pixelMetric(metric, option, widget);
    }
    // Items without a picture are as high as their neighbours with one.
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type == CT_MenuItem && item != nullptr && item->maxIconWidth > 0 &&
            item->menuItemType != QStyleOptionMenuItem::Separator)
            size.setHeight(std::max(size.height(), ImageSize + 2 * PicturePadding));
        return size;
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int ImageSize;
};

using Letters = QSet<QChar>;

// Where a text has the letter that is its key; -1: it has none.
struct KeyedText {
    QString Text;
    qsizetype Place = -1;
};

// Looks for a letter that no neighbour has: the first of the text, the first of a word, any.
enum class KeyAt { Start, Word, Anywhere };

void GiveKey(KeyedText& keyed, Letters& taken, KeyAt where) {
    const QString& text = keyed.Text;
    const qsizetype end = where == KeyAt::Start ? std::min<qsizetype>(1, text.size()) : text.size();
    for (qsizetype at = 0; keyed.Place < 0 && at < end; ++at) {
        const bool begins = at == 0 || !text[at - 1].isLetterOrNumber();
        if ((begins || where == KeyAt::Anywhere) && text[at].isLetterOrNumber() &&
            !taken.contains(text[at].toUpper())) {
            keyed.Place = at;
            taken.insert(text[at].toUpper());
        }
    }
}

// As the toolkit wants it, which takes a lone "&" as the mark of the key.
QString MarkedKey(const KeyedText& keyed) {
    QString marked;
    for (qsizetype at = 0; at < keyed.Text.size(); ++at) {
        marked += at == keyed.Place ? QStringLiteral("&") : QString();
        marked += keyed.Text[at] == u'&' ? QStringLiteral("&&") : QString(keyed.Text[at]);
    }
    return marked;
}

// The toolkit keeps the pictures, so that they are read once.
QIcon IconOf(const MenuItem& item) {
    const HeldImage image(ObtainImage(item.Image)), ghosted(ObtainImage(item.Ghosted));
    return IconOf(image.Get(), ghosted.Get());
}

struct Node;

// The items of one menu, in order.
struct Level {
    QWidget* Shown = nullptr;                          // the strip or the menu that has them
    std::vector<std::unique_ptr<QActionGroup>> Groups; // of items of which one is chosen, from line to line
    std::vector<std::unique_ptr<Node>> Items;
};

// An item with what the toolkit has for it. Its own items go first, then what they lie in.
struct Node {
    MenuItem Facts; // without the items of a head
    Level* In = nullptr;
    bool Checked = false;
    std::unique_ptr<QMenu> Sub;
    std::unique_ptr<QAction> Plain; // of an item that is no head
    Level Below;

    [[nodiscard]] QAction* Action() const { return Sub ? Sub->menuAction() : Plain.get(); }
};

// The pictures of a menu are read when it is opened.
void ShowPictures(const Level& level) {
    for (const auto& node : level.Items) {
        if (!node->Facts.Image.empty() && node->Action()->icon().isNull())
            node->Action()->setIcon(IconOf(node->Facts));
    }
}

void AddToGroup(Level& level, Node& node) {
    const bool goesOn = !level.Items.empty() && level.Items.back()->Facts.Mark == MenuMark::Choice;
    if (!goesOn) {
        level.Groups.push_back(std::make_unique<QActionGroup>(nullptr));
        level.Groups.back()->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    }
    level.Groups.back()->addAction(node.Plain.get());
}

// Gives the items of a menu their texts; first letters go first. A tab parts the key that is told from the
// label.
void LabelItems(const Level& level, Letters taken) {
    std::vector<KeyedText> texts;
    for (const auto& node : level.Items)
        texts.push_back({DisplayText(node->Facts.Label)});
    for (const KeyAt where : {KeyAt::Start, KeyAt::Word, KeyAt::Anywhere}) {
        for (std::size_t at = 0; at < texts.size(); ++at) {
            if (level.Items[at]->Facts.Text == MenuText::Own)
                GiveKey(texts[at], taken, where);
        }
    }
    for (std::size_t at = 0; at < texts.size(); ++at) {
        const MenuItem& facts = level.Items[at]->Facts;
        QString text = MarkedKey(texts[at]);
        if (!facts.Key.empty())
            text += u'\t' + DisplayTextWithoutMnemonic(facts.Key);
        level.Items[at]->Action()->setText(text);
    }
}

void CollectIds(const Level& level, std::vector<std::uint16_t>& ids) {
    for (const auto& node : level.Items) {
        ids.push_back(node->Facts.Id);
        CollectIds(node->Below, ids);
    }
}

void CollectStates(const Level& level, std::vector<MenuAttrs>& states) {
    for (const auto& node : level.Items) {
        if (node->Facts.Id != 0)
            states.push_back({node->Facts.Id, !node->Action()->isEnabled(), node->Checked});
        CollectStates(node->Below, states);
    }
}

} // namespace

struct Menu::Native {
    explicit Native(const MenuSpec& spec);

    MenuStyle Style;
    QPointer<NativeWindow> Under;  // where a context menu was popped up last
    std::unique_ptr<QMenuBar> Bar; // of a strip; of a context menu Popped
    std::unique_ptr<QMenu> Popped;
    Letters NotKeys;
    Level Top;
    std::unordered_multimap<std::uint16_t, Node*> ById;

    [[nodiscard]] Node* Find(std::uint16_t id) const;
    std::unique_ptr<QMenu> MakeMenu(const Level& level);
    void Append(Level& level, const MenuItem& item);
    void Fill(Level& level, const std::vector<MenuItem>& items);
    void Label(const Level& level) { LabelItems(level, &level == &Top ? NotKeys : Letters()); }
    void Forget(const Node& node);
    void Pick(const Node& node) const;
};

Menu::Native::Native(const MenuSpec& spec) : Style(spec.ImageSize) {
    for (const char letter : spec.NotKeys)
        NotKeys.insert(QChar(QLatin1Char(letter)));
    if (spec.IsStrip) {
        Bar = std::make_unique<QMenuBar>();
        Bar->setNativeMenuBar(false);
        // Beside menus without room. The toolkit's picture for it is black, whatever the colours are.
        for (auto* more : Bar->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly))
            more->setArrowType(Qt::RightArrow);
        Top.Shown = Bar.get();
    } else {
        Popped = MakeMenu(Top);
        Top.Shown = Popped.get();
    }
    Fill(Top, spec.Items);
}

Node* Menu::Native::Find(std::uint16_t id) const {
    const auto found = ById.find(id);
    return found != ById.end() ? found->second : nullptr;
}

std::unique_ptr<QMenu> Menu::Native::MakeMenu(const Level& level) {
    auto menu = std::make_unique<KeyMenu>();
    menu->setStyle(&Style);
    QObject::connect(menu.get(), &QMenu::aboutToShow, [&level] { ShowPictures(level); });
    return menu;
}

// The toolkit turns the mark of an item round by itself; what it shows is the program's to say.
void Menu::Native::Pick(const Node& node) const {
    for (const auto& neighbour : node.In->Items) {
        if (neighbour->Action()->isCheckable())
            neighbour->Action()->setChecked(neighbour->Checked);
    }
    auto* window = Bar ? dynamic_cast<NativeWindow*>(Bar->window()) : Under.data();
    if (window != nullptr)
        window->Post({EventClass::MenuPick, 0, node.Facts.Id, QualifierOfPick()});
}

void Menu::Native::Append(Level& level, const MenuItem& item) {
    auto made = std::make_unique<Node>();
    Node& node = *made;
    node.Facts = item;
    node.Facts.Items.clear();
    node.In = &level;
    if (item.IsHead) {
        node.Sub = MakeMenu(node.Below);
        node.Below.Shown = node.Sub.get();
        Fill(node.Below, item.Items);
    } else {
        node.Plain = std::make_unique<QAction>();
        node.Plain->setSeparator(item.Id == 0);
        node.Plain->setCheckable(item.Mark != MenuMark::None);
        if (item.Mark == MenuMark::Choice)
            AddToGroup(level, node);
        node.Checked = item.Checked.value_or(false);
        node.Plain->setChecked(node.Checked);
        QObject::connect(node.Plain.get(), &QAction::triggered, [this, &node] { Pick(node); });
    }
    level.Shown->addAction(node.Action());
    if (item.Id != 0)
        ById.emplace(item.Id, &node);
    level.Items.push_back(std::move(made));
}

void Menu::Native::Fill(Level& level, const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items)
        Append(level, item);
    Label(level);
}

void Menu::Native::Forget(const Node& node) {
    for (const auto& item : node.Below.Items)
        Forget(*item);
    const auto [first, last] = ById.equal_range(node.Facts.Id);
    const auto known = std::find_if(first, last, [&](const auto& entry) { return entry.second == &node; });
    if (known != last)
        ById.erase(known);
}

Menu::Menu(const MenuSpec& spec) : Host(std::make_unique<Native>(spec)) {}

Menu::~Menu() = default;

void Menu::SetItems(std::uint16_t head, const std::vector<MenuItem>& items) {
    Node* node = Host->Find(head);
    if (node == nullptr || !node->Sub)
        return;
    std::vector<MenuAttrs> states;
    CollectStates(node->Below, states);
    for (const auto& item : node->Below.Items)
        Host->Forget(*item);
    node->Below.Items.clear();
    node->Below.Groups.clear();
    Host->Fill(node->Below, items);
    for (MenuAttrs& state : states) {
        const Node* same = Host->Find(state.Id);
        if (same != nullptr && same->Facts.Checked)
            state.Checked.reset();
        SetAttrs(state);
    }
}

void Menu::SetAttrs(const MenuAttrs& attrs) {
    const auto [first, last] = Host->ById.equal_range(attrs.Id);
    for (auto known = first; known != last; ++known) {
        Node& node = *known->second;
        if (attrs.Disabled)
            node.Action()->setEnabled(!*attrs.Disabled);
        if (attrs.Checked) {
            node.Checked = *attrs.Checked;
            node.Action()->setChecked(node.Checked);
        }
    }
}

std::optional<Menu::Look> Menu::LookOf(std::uint16_t id) const {
    const Node* node = Host->Find(id);
    if (node == nullptr)
        return std::nullopt;
    return Look{node->Facts.Label, node->Facts.Key, !node->Action()->isEnabled(), node->Checked};
}

std::vector<std::uint16_t> Menu::Ids() const {
    std::vector<std::uint16_t> ids;
    CollectIds(Host->Top, ids);
    return ids;
}

void Menu::AttachTo(Window& window) {
    if (Host->Bar)
        window.Native().SetStrip(Host->Bar.get());
}

void Menu::PopUp(Window& window, int left, int top) {
    if (!Host->Popped)
        return;
    NativeWindow& native = window.Native();
    Host->Under = &native;
    Host->Popped->setParent(&native, Host->Popped->windowFlags()); // the window lets go of it when it goes
    Host->Popped->popup(native.mapToGlobal(QPoint(left, top)));
}

bool Menu::IsUp() const {
    return Host->Popped && Host->Popped->isVisible();
}

} // namespace intuition
