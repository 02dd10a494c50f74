#include "platform/intuition/RequestDialog.h"

#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"

#include <QBoxLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>

namespace intuition {

namespace {

constexpr int Margin = 12, Gap = 12, ButtonGap = 6; // layout units
constexpr int TextWidth = 420;                      // at which text wraps
constexpr qsizetype LongestWord = 40;               // characters that stay unbroken
constexpr int TallestPart = 2;                      // text takes at most one such part of the screen's height
constexpr QChar BreakHere{0x200B};                  // zero width space

QStyle::StandardPixmap StandardImage(RequesterImage image) {
    switch (image) {
    case RequesterImage::Warning:
        return QStyle::SP_MessageBoxWarning;
    case RequesterImage::Error:
        return QStyle::SP_MessageBoxCritical;
    case RequesterImage::Question:
        return QStyle::SP_MessageBoxQuestion;
    default:
        return QStyle::SP_MessageBoxInformation;
    }
}

// A long name has no place to break at, so every place in it becomes one.
QString Breakable(const QString& text) {
    QString broken;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start;
        while (end < text.size() && text[end].isSpace() == text[start].isSpace())
            ++end;
        const bool isLong = end - start > LongestWord && !text[start].isSpace();
        for (; start < end; ++start) {
            broken.append(text[start]);
            const bool between =
                start + 1 < end && !text[start + 1].isMark() && !text[start + 1].isLowSurrogate();
            if (isLong && between)
                broken.append(BreakHere);
        }
    }
    return broken;
}

std::unique_ptr<QLabel> MakeText(const std::string& text) {
    auto label = std::make_unique<QLabel>();
    label->setTextFormat(Qt::PlainText);
    label->setText(Breakable(DisplayText(text, Lines::Many)));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QSize natural = label->fontMetrics().size(0, label->text());
    const int width = std::min(natural.width() + 1, TextWidth);
    label->setFixedSize(width, label->heightForWidth(width));
    return label;
}

std::unique_ptr<QWidget> Scrolled(std::unique_ptr<QWidget> text, int height) {
    auto area = std::make_unique<QScrollArea>();
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFixedSize(text->width() + area->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + Gap, height);
    area->setWidget(text.release());
    return area;
}

// The key that a button's label marks, as a plain key press gives it.
int MarkedKey(const QPushButton& button) {
    const QKeySequence sequence = QKeySequence::mnemonic(button.text());
    return sequence.isEmpty() ? 0 : static_cast<int>(sequence[0].key());
}

} // namespace

BlockWhileAsking::BlockWhileAsking(Window* parent)
    : Blocked(parent != nullptr ? &parent->Native() : NativeWindow::MostRecent()) {
    if (Blocked != nullptr)
        Blocked->Block();
}

BlockWhileAsking::~BlockWhileAsking() {
    if (Blocked != nullptr)
        Blocked->Unblock();
}

QWidget* BlockWhileAsking::ParentOfDialog() const {
    return Blocked != nullptr && Blocked->isVisible() ? Blocked : nullptr;
}

RequestDialog::RequestDialog(QWidget* parent, const EasyRequestSpec& spec, std::unique_ptr<QWidget> body)
    : QDialog(parent) {
    setWindowTitle(TitleText(spec.Title));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setWindowModality(parent == nullptr ? Qt::ApplicationModal : Qt::WindowModal);
    auto column = std::make_unique<QVBoxLayout>();
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->setSpacing(Gap);
    column->setSizeConstraint(QLayout::SetFixedSize);
    if (!spec.Text.empty()) {
        auto row = std::make_unique<QHBoxLayout>();
        row->setSpacing(Gap);
        AddText(*row, spec);
        column->addLayout(row.release());
    }
    if (body)
        column->addWidget(body.release());
    AddButtons(*column, spec);
    setLayout(column.release());
}

void RequestDialog::AddText(QBoxLayout& row, const EasyRequestSpec& spec) {
    if (spec.Image != RequesterImage::None) {
        auto image = std::make_unique<QLabel>();
        const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
        image->setPixmap(
            style()->standardIcon(StandardImage(spec.Image)).pixmap(QSize(size, size), devicePixelRatio()));
        row.addWidget(image.release(), 0, Qt::AlignTop);
    }
    auto text = MakeText(spec.Text);
    setAccessibleDescription(DisplayText(spec.Text, Lines::Many));
    const int tallest = QGuiApplication::primaryScreen()->availableGeometry().height() / TallestPart;
    if (text->height() > tallest)
        row.addWidget(Scrolled(std::move(text), tallest).release());
    else
        row.addWidget(text.release());
    row.addStretch();
}

void RequestDialog::AddButtons(QBoxLayout& column, const EasyRequestSpec& spec) {
    const std::vector<std::string> labels =
        spec.Gadgets.empty() ? std::vector<std::string>{"_OK"} : spec.Gadgets;
    auto row = std::make_unique<QHBoxLayout>();
    row->setSpacing(ButtonGap);
    row->addStretch();
    for (std::size_t at = 0; at < labels.size(); ++at) {
        auto button = std::make_unique<QPushButton>(MarkedText(labels[at]));
        const int answer = at + 1 == labels.size() ? 0 : static_cast<int>(at) + 1;
        connect(button.get(), &QPushButton::clicked, this, [this, answer] { done(answer); });
        button->setDefault(at == 0);
        Buttons.push_back(button.get());
        row->addWidget(button.release());
    }
    Buttons.front()->setFocus();
    column.addLayout(row.release());
}

// The marked letter alone presses its button; the toolkit serves it with Alt.
void RequestDialog::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0) {
        for (QPushButton* button : Buttons) {
            if (event->key() == MarkedKey(*button)) {
                button->click();
                return;
            }
        }
    }
    QDialog::keyPressEvent(event);
}

// Buttons, Escape and the close gadget end here; the latter two with 0.
void RequestDialog::done(int result) {
    Answer = result;
    Answered = true;
    if (Owner != nullptr)
        exec::Signal(Owner, Mask);
    QDialog::done(result);
}

int RequestDialog::Ask() {
    const int signal = exec::AllocSignal();
    if (signal < 0)
        return -1;
    Owner = exec::FindTask();
    Mask = exec::SignalMask{1} << signal;
    show();
    while (!Answered) {
        if ((exec::Wait(Mask | exec::BreakControlC) & exec::BreakControlC) != 0) {
            exec::Signal(Owner, exec::BreakControlC); // for the loop, which ends the program
            break;
        }
    }
    Owner = nullptr;
    exec::FreeSignal(signal);
    return Answer;
}

} // namespace intuition
