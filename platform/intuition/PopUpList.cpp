#include "platform/intuition/PopUpList.h"

#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Native.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace intuition {

namespace {

constexpr int MostVisible = 20;                    // choices
constexpr int NarrowestText = 16, WidestText = 60; // characters of a usual width
constexpr int MarkSide = 8;                        // layout units

// A dot in the colour of the text.
QPixmap MarkPicture(const QColor& colour, qreal ratio, bool drawn) {
    QPixmap picture(QSize(MarkSide, MarkSide) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    if (drawn) {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(QRectF(1, 1, MarkSide - 2, MarkSide - 2));
    }
    return picture;
}

class Choices : public QAbstractListModel {
public:
    std::vector<std::string> Labels;
    std::size_t Marked = NoRow;
    QPixmap Mark, NoMark;

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Labels.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (row >= Labels.size())
            return {};
        if (role == Qt::DisplayRole)
            return DisplayText(Labels[row]);
        if (role == Qt::DecorationRole)
            return row == Marked ? Mark : NoMark;
        return {};
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
        setFocusProxy(&View);
    }
    Choices Rows;
    QListView View;

    void Place(const QWidget& under);
};

void PopUpFrame::Place(const QWidget& under) {
    std::size_t longest = 0;
    for (const std::string& label : Rows.Labels)
        longest = std::max(longest, label.size());
    const int letters = std::clamp(static_cast<int>(longest), NarrowestText, WidestText) + 2;
    const int row = std::max(View.sizeHintForRow(0), 1);
    const int rows = std::clamp(static_cast<int>(Rows.Labels.size()), 1, MostVisible);
    resize(letters * fontMetrics().averageCharWidth() + 4 * MarkSide +
               View.verticalScrollBar()->sizeHint().width(),
           rows * row + 2 * frameWidth());
    const QRect screen = under.screen()->availableGeometry();
    QPoint corner = under.mapToGlobal(QPoint(0, under.height()));
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

    void PopUp(const QWidget& under, std::vector<std::string> labels, std::size_t marked) {
        Up = std::make_unique<PopUpFrame>(window());
        Up->setAccessibleName(accessibleName());
        Up->View.setAccessibleName(accessibleName());
        Up->Rows.Labels = std::move(labels);
        Up->Rows.Marked = marked;
        const QColor colour = Up->palette().color(QPalette::Text);
        Up->Rows.Mark = MarkPicture(colour, devicePixelRatioF(), true);
        Up->Rows.NoMark = MarkPicture(colour, devicePixelRatioF(), false);
        connect(&Up->View, &QListView::clicked, this, [this](const QModelIndex& at) { Pick(at.row()); });
        connect(&Up->View, &QListView::activated, this, [this](const QModelIndex& at) { Pick(at.row()); });
        Up->Place(under);
        Up->show();
        const QModelIndex first =
            Up->Rows.index(static_cast<int>(std::min(marked, Up->Rows.Labels.size() - 1)));
        Up->View.setCurrentIndex(first);
        Up->View.scrollTo(first);
        Up->View.setFocus();
    }
    [[nodiscard]] bool IsUp() const { return Up && Up->isVisible(); }

    std::size_t Picked = NoRow;

private:
    void Pick(int row) {
        if (!IsUp())
            return; // a click that was an activation too
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

void PopUpList::PopUp(const Gadget& under, const std::vector<std::string>& labels, std::size_t marked) {
    if (!labels.empty())
        WidgetOf<PlaceHolder>(*this).PopUp(*under.Native().Widget, labels, marked);
}

bool PopUpList::IsUp() const {
    return WidgetOf<PlaceHolder>(*this).IsUp();
}

std::size_t PopUpList::Picked() const {
    return WidgetOf<PlaceHolder>(*this).Picked;
}

} // namespace intuition
