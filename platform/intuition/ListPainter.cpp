#include "platform/intuition/ListPainter.h"

#include "platform/intuition/Native.h"

#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace intuition {

namespace {

constexpr int ImageGap = 5; // between image and text
constexpr int WidestGauge = 200, UsualGauge = 100;
constexpr double Legible = 3; // contrast below which a colour of the program's is changed
constexpr double Good = 4.5;  // and that to which it is changed

QColor ColourOf(const Rgb& rgb) {
    return {rgb.Red, rgb.Green, rgb.Blue};
}

double Linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

QColor Mix(const QColor& from, const QColor& to, float share) {
    return QColor::fromRgbF(from.redF() + (to.redF() - from.redF()) * share,
                            from.greenF() + (to.greenF() - from.greenF()) * share,
                            from.blueF() + (to.blueF() - from.blueF()) * share);
}

QRect Placed(const QSize& size, const QRect& area, Qt::Alignment align) {
    const int left =
        (align & Qt::AlignHCenter) != 0 ? area.left() + (area.width() - size.width()) / 2 : area.left();
    return {QPoint(left, area.top() + (area.height() - size.height()) / 2), size};
}

// Draws the image and returns the width it took.
int DrawImage(QPainter& painter, const QRect& area, const CellLook& cell, QPalette::ColorGroup group) {
    const QPixmap picture = PixmapOf(cell.Image);
    if (picture.isNull() || area.width() <= 0)
        return 0;
    QSize size = picture.deviceIndependentSize().toSize();
    if (size.width() > area.width() || size.height() > area.height())
        size.scale(area.size(), Qt::KeepAspectRatio);
    const QRect place = Placed(size, area, cell.Text.empty() ? Qt::AlignHCenter : Qt::AlignLeft);
    if (group == QPalette::Disabled)
        painter.setOpacity(0.5);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, picture);
    painter.setOpacity(1);
    return size.width();
}

// Of a character of several bytes the first stands for all; from the third plane on they are wide ones.
int AdvanceOf(unsigned char byte, const QFontMetrics& metrics) {
    if (byte < 0x80)
        return metrics.horizontalAdvance(QLatin1Char(static_cast<char>(byte)));
    if (byte < 0xC0)
        return 0;
    return byte < 0xE2 ? metrics.horizontalAdvance(QLatin1Char('m')) : metrics.height();
}

constexpr int Steps = 16;

// The first colour on the way that can be read well, else its end.
QColor FirstGood(const QColor& background, const QColor& from, const QColor& end, int step) {
    for (; step < Steps; ++step) {
        const QColor candidate = Mix(from, end, static_cast<float>(step) / Steps);
        if (Contrast(background, candidate) >= Good)
            return candidate;
    }
    return end;
}

QColor FarthestFrom(const QColor& background) {
    return Contrast(background, Qt::white) > Contrast(background, Qt::black) ? Qt::white : Qt::black;
}

} // namespace

QColor ReadableOn(const QColor& background, const QColor& colour) {
    if (Contrast(background, colour) >= Legible)
        return colour;
    return FirstGood(background, colour, FarthestFrom(background), 1);
}

QColor FaintOn(const QColor& background, const QColor& colour) {
    const QColor full = Contrast(background, colour) >= Good ? colour : FarthestFrom(background);
    return FirstGood(background, background, full, Steps / 2);
}

ListPainter::ListPainter(const QFont& font) : Plain(font) {
    SetFont(font);
}

void ListPainter::SetFont(const QFont& font) {
    for (std::size_t kind = 0; kind < Fonts.size(); ++kind) {
        Fonts[kind] = font;
        Fonts[kind].setBold(font.bold() || (kind & 1U) != 0);
        Fonts[kind].setItalic(font.italic() || (kind & 2U) != 0);
        Fonts[kind].setUnderline((kind & 4U) != 0);
    }
    Plain = QFontMetrics(font);
    for (std::size_t bold = 0; bold < Advances.size(); ++bold) {
        const QFontMetrics metrics(Fonts[bold]);
        for (std::size_t byte = 0; byte < Advances[bold].size(); ++byte)
            Advances[bold][byte] = AdvanceOf(static_cast<unsigned char>(byte), metrics);
    }
}

const QFont& ListPainter::FontOf(const CellLook& cell) const {
    return Fonts[(cell.Bold ? 1U : 0U) + (cell.Italic ? 2U : 0U) + (cell.Underline ? 4U : 0U)];
}

int ListPainter::NeededWidth(const CellLook& cell) const {
    const int image = SizeOfImage(cell.Image).Width;
    int text = QFontMetrics(FontOf(cell)).horizontalAdvance(DisplayText(cell.Text));
    for (const std::string& more : cell.More)
        text = std::max(text, Plain.horizontalAdvance(DisplayText(more)));
    if (cell.Gauge)
        text = std::max(text, UsualGauge + ImageGap + Plain.horizontalAdvance(QStringLiteral("100%")));
    return 2 * CellInset + image + text + (image > 0 && text > 0 ? ImageGap : 0) + 1;
}

int ListPainter::EstimatedWidth(const CellLook& cell) const {
    const auto width = [](std::string_view text, const std::array<int, 256>& advances) {
        return std::accumulate(text.begin(), text.end(), 0, [&advances](int sum, char each) {
            return sum + advances[static_cast<unsigned char>(each)];
        });
    };
    int widest = width(cell.Text, Advances[cell.Bold ? 1 : 0]);
    for (const std::string& more : cell.More)
        widest = std::max(widest, width(more, Advances[0]));
    return widest;
}

ListPainter::RowColours ListPainter::ColoursOf(const RowLook& look, const RowState& state,
                                               const QPalette& palette) {
    const QPalette::ColorGroup textGroup = look.Disabled ? QPalette::Disabled : state.Group;
    if (state.Selected)
        return {palette.color(state.Group, QPalette::Highlight),
                palette.color(textGroup, QPalette::HighlightedText)};
    const QColor text = palette.color(textGroup, QPalette::Text);
    if (!look.Background)
        return {palette.color(state.Group, state.Striped ? QPalette::AlternateBase : QPalette::Base), text};
    const QColor background = ColourOf(*look.Background);
    return {background, ReadableOn(background, text)};
}

void ListPainter::DrawCell(QPainter& painter, const QRect& area, const CellLook& cell, Align align,
                           const RowColours& colours, const RowState& state) const {
    // A column of images alone is narrow, so its insets give way first.
    const int inset = cell.Text.empty() ? std::min(CellInset, area.width() / 10) : CellInset;
    QRect inside = area.adjusted(inset, 0, -inset, 0);
    if (const int taken = DrawImage(painter, inside, cell, state.Group); taken > 0)
        inside.setLeft(inside.left() + taken + ImageGap);
    const int line = TextHeight();
    const auto lines =
        static_cast<int>((cell.Text.empty() ? 0 : 1 + cell.More.size()) + (cell.Gauge ? 1 : 0));
    if (lines == 0 || inside.width() <= 0)
        return;
    QRect place(inside.left(), inside.top() + (inside.height() - lines * line) / 2, inside.width(), line);
    if (cell.Text.empty()) {
        DrawGauge(painter, place, *cell.Gauge, colours, state);
        return;
    }
    painter.setPen(cell.Colour && !state.Selected ? ReadableOn(colours.Background, ColourOf(*cell.Colour))
                                                  : colours.Text);
    DrawLine(painter, place, cell.Text, FontOf(cell), align);
    painter.setPen(colours.Text);
    for (const std::string& more : cell.More) {
        place.translate(0, line);
        DrawLine(painter, place, more, Fonts[0], align);
    }
    if (cell.Gauge) {
        place.translate(0, line);
        DrawGauge(painter, place, *cell.Gauge, colours, state);
    }
}

// A bar with its number behind it. On a selected row it has the colour of the text, on others that of a
// selection where that can be told from the background.
void ListPainter::DrawGauge(QPainter& painter, const QRect& area, int percent, const RowColours& colours,
                            const RowState& state) const {
    const int level = std::clamp(percent, 0, 100);
    const QString number = QStringLiteral("%1%").arg(level);
    const int numberWidth = Plain.horizontalAdvance(QStringLiteral("100%")) + ImageGap;
    const int height = std::max(area.height() / 2, 4);
    QRect bar(area.left(), area.top() + (area.height() - height) / 2,
              std::min(area.width() - numberWidth, WidestGauge), height);
    painter.setFont(Fonts[0]);
    painter.setPen(colours.Text);
    if (bar.width() > height) {
        const QColor full = QGuiApplication::palette().color(state.Group, QPalette::Highlight);
        painter.fillRect(bar, Mix(colours.Background, colours.Text, 0.18F));
        bar.setWidth(std::max(bar.width() * level / 100, level > 0 ? 1 : 0));
        painter.fillRect(bar, state.Selected ? colours.Text : ReadableOn(colours.Background, full));
    }
    const int left = area.left() + std::min(area.width(), WidestGauge + numberWidth) - numberWidth + ImageGap;
    painter.drawText(std::max(left, area.left()),
                     area.top() + (area.height() - Plain.height()) / 2 + Plain.ascent(), number);
}

void ListPainter::DrawLine(QPainter& painter, const QRect& area, std::string_view text, const QFont& font,
                           Align align) const {
    const QFontMetrics metrics(font);
    const QString shown = metrics.elidedText(DisplayText(text), Qt::ElideRight, area.width());
    const int room = align == Align::Left ? 0 : area.width() - metrics.horizontalAdvance(shown);
    const int shift = align == Align::Centre ? room / 2 : room;
    painter.setFont(font);
    painter.drawText(area.left() + shift,
                     area.top() + (area.height() - metrics.height()) / 2 + metrics.ascent(), shown);
}

} // namespace intuition
