#include "platform/intuition/PopUpList.h"

#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Native.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace intuition {

namespace {

constexpr int MostVisible = 20;                    // choices
constexpr int NarrowestText = 16, WidestText = 60; // characters of a usual width
constexpr int MarkSide = 10;                       // layout units
constexpr int LineAlpha = 80;

// A mark in the colour of the text.
QPixmap MarkPicture(const QColor& colour, qreal ratio, ChoiceMark mark) {
    QPixmap picture(QSize(MarkSide, MarkSide) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    if (mark == ChoiceMark::None)
        return picture;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (mark == ChoiceMark::Dot) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(QRectF(2, 2, MarkSide - 4, MarkSide - 4));
    } else {
        painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({{1.5, 5.5}, {4, 8.5}, {8.5, 1.5}}));
    }
    return picture;
}

class ChoiceModel : public QAbstractListModel {
public:
    std::vector<PopUpChoice> Choices;
    std::array<QPixmap, 3> Marks; // by ChoiceMark

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Choices.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (row >= Choices.size())
            return {};
        const PopUpChoice& choice = Choices[row];
        if (role == Qt::DisplayRole)
            return choice.Separator ? QString() : DisplayText(choice.Label);
        if (role == Qt::DecorationRole && !choice.Separator)
            return Marks[static_cast<std::size_t>(choice.Mark)];
        if (role == Qt::AccessibleDescriptionRole)
            return choice.Separator ? QStringLiteral("separator") : QVariant();
        return {};
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (row >= Choices.size() || Choices[row].Separator || Choices[row].Disabled)
            return Qt::NoItemFlags;
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }
    [[nodiscard]] int FirstRow() const {
        const auto dot = std::ranges::find(Choices, ChoiceMark::Dot, &PopUpChoice::Mark);
        return dot == Choices.end() ? 0 : static_cast<int>(dot - Choices.begin());
    }
};

// A separator is a line through the middle of its row.
class ChoicePainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (!static_cast<const ChoiceModel*>(index.model())
                 ->Choices[static_cast<std::size_t>(index.row())]
                 .Separator) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QColor colour = option.palette.color(QPalette::Text);
        colour.setAlpha(LineAlpha);
        painter->setPen(colour);
        const int middle = option.rect.center().y();
        painter->drawLine(option.rect.left() + MarkSide, middle, option.rect.right() - MarkSide, middle);
    }
};

// The frame that pops up. It goes with the widget that stands for it in the layout.
class PopUpFrame : public QFrame {
public:
    explicit PopUpFrame(QWidget* parent) : QFrame(parent, Qt::Popup) {
        setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
        auto box = std::make_unique<QVBoxLayout>();
        box->setContentsMargins(0, 0, 0, 0);
        box->addWidget(&View);
        setLayout(box.release());
        View.setUniformItemSizes(true);
        View.setFrameStyle(QFrame::NoFrame);
        View.setTextElideMode(Qt::ElideMiddle);
        View.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        View.setMouseTracking(true);
        View.setModel(&Rows);
        View.setItemDelegate(&Painter);
        setFocusProxy(&View);
    }
    ChoiceModel Rows;
    ChoicePainter Painter;
    QListView View;

    void Place(const QWidget& under, int left);
};

void PopUpFrame::Place(const QWidget& under, int left) {
    std::size_t longest = 0;
    for (const PopUpChoice& choice : Rows.Choices)
        longest = std::max(longest, choice.Label.size());
    const int letters = std::clamp(static_cast<int>(longest), NarrowestText, WidestText) + 2;
    const int row = std::max(View.sizeHintForRow(0), 1);
    const int rows = std::clamp(static_cast<int>(Rows.Choices.size()), 1, MostVisible);
    resize(letters * fontMetrics().averageCharWidth() + 4 * MarkSide +
               View.verticalScrollBar()->sizeHint().width(),
           rows * row + 2 * frameWidth());
    const QRect screen = under.screen()->availableGeometry();
    QPoint corner = under.mapToGlobal(QPoint(left, under.height()));
    corner.setX(std::max(screen.left(), std::min(corner.x(), screen.right() - width())));
    corner.setY(std::max(screen.top(), std::min(corner.y(), screen.bottom() - height())));
    move(corner);
}

class PlaceHolder : public QWidget {
public:
    explicit PlaceHolder(std::uint16_t id) : Id(id) {
        setFixedSize(0, 0);
        hide();
    }

    void PopUp(const QWidget& under, std::vector<PopUpChoice> choices, int left) {
        Up = std::make_unique<PopUpFrame>(window());
        Up->setAccessibleName(accessibleName());
        Up->View.setAccessibleName(accessibleName());
        Up->Rows.Choices = std::move(choices);
        const QColor colour = Up->palette().color(QPalette::Text);
        for (const ChoiceMark mark : {ChoiceMark::None, ChoiceMark::Dot, ChoiceMark::Check})
            Up->Rows.Marks[static_cast<std::size_t>(mark)] = MarkPicture(colour, devicePixelRatioF(), mark);
        connect(&Up->View, &QListView::clicked, this, [this](const QModelIndex& at) { Pick(at.row()); });
        connect(&Up->View, &QListView::activated, this, [this](const QModelIndex& at) { Pick(at.row()); });
        Up->Place(under, left);
        Up->show();
        const QModelIndex first = Up->Rows.index(Up->Rows.FirstRow());
        Up->View.setCurrentIndex(first);
        Up->View.scrollTo(first);
        Up->View.setFocus();
    }
    [[nodiscard]] bool IsUp() const { return Up && Up->isVisible(); }
    [[nodiscard]] const std::vector<PopUpChoice>& Choices() const {
        static const std::vector<PopUpChoice> None;
        return Up ? Up->Rows.Choices : None;
    }

    std::size_t Picked = NoRow;

private:
    void Pick(int row) {
        if (!IsUp())
            return; // a click that was an activation too
        if (Up->Rows.flags(Up->Rows.index(row)) == Qt::NoItemFlags)
            return;
        Up->hide();
        Picked = static_cast<std::size_t>(row);
        PostFrom(*this, EventClass::GadgetUp, Id, static_cast<std::uint16_t>(std::min(row, 0xFFFF)));
    }

    std::uint16_t Id;
    std::unique_ptr<PopUpFrame> Up;
};

} // namespace

PopUpList::PopUpList(std::uint16_t id, std::string_view name)
    : Gadget(id, std::make_unique<GadgetNative>(std::make_unique<PlaceHolder>(id))) {
    WidgetOf<PlaceHolder>(*this).setAccessibleName(DisplayText(name));
}

void PopUpList::PopUp(const Gadget& under, std::vector<PopUpChoice> choices, int left) {
    if (!choices.empty())
        WidgetOf<PlaceHolder>(*this).PopUp(*under.Native().Widget, std::move(choices), left);
}

const std::vector<PopUpChoice>& PopUpList::Choices() const {
    return WidgetOf<PlaceHolder>(*this).Choices();
}

bool PopUpList::IsUp() const {
    return WidgetOf<PlaceHolder>(*this).IsUp();
}

std::size_t PopUpList::Picked() const {
    return WidgetOf<PlaceHolder>(*this).Picked;
}

} // namespace intuition
