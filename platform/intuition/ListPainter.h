// How a row of a list looks: background, images, texts cut to their columns, the mark of the current row.
// Private to this service.
#pragma once

#include "platform/intuition/ListBrowser.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPalette>

#include <array>
#include <vector>

class QPainter;

namespace intuition {

inline constexpr int CellInset = 5; // layout units between a column's edge and what it shows

struct RowState {
    QRect Area;
    QPalette::ColorGroup Group = QPalette::Active;
    bool Selected = false;
    bool Current = false; // draws the focus mark
    bool Striped = false;
};

class ListPainter {
public:
    explicit ListPainter(const QFont& font);
    void SetFont(const QFont& font);

    [[nodiscard]] int TextHeight() const { return Plain.height(); }
    // The width at which nothing of the cell is cut.
    [[nodiscard]] int NeededWidth(const CellLook& cell) const;
    // About that width, without forming or shaping the text.
    [[nodiscard]] int EstimatedWidth(const CellLook& cell) const;

    // Background and text colour of a row, for what its cells do not say.
    struct RowColours {
        QColor Background, Text;
    };
    [[nodiscard]] static RowColours ColoursOf(const RowLook& look, const RowState& state,
                                              const QPalette& palette);
    void DrawCell(QPainter& painter, const QRect& area, const CellLook& cell, Align align,
                  const RowColours& colours, const RowState& state) const;

private:
    void DrawGauge(QPainter& painter, const QRect& area, int percent, const RowColours& colours,
                   const RowState& state) const;
    void DrawLine(QPainter& painter, const QRect& area, std::string_view text, const QFont& font,
                  Align align) const;
    [[nodiscard]] const QFont& FontOf(const CellLook& cell) const;

    std::array<QFont, 8> Fonts; // by bold 1, italic 2, underline 4
    QFontMetrics Plain;
    std::array<std::array<int, 256>, 2> Advances = {}; // of each byte of a text, plain and bold
};

// The colour itself where it can be read on the background, else one of its hue that can.
[[nodiscard]] QColor ReadableOn(const QColor& background, const QColor& colour);
// The colour drawn back towards the background as far as it can still be read well.
[[nodiscard]] QColor FaintOn(const QColor& background, const QColor& colour);

} // namespace intuition
