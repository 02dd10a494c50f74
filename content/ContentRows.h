// How the records look as rows of the Content list: the source that the list browser draws from. Every text
// comes from the record at the moment of drawing; none is copied.
#pragma once

#include "content/RowPictures.h"
#include "content/SortKeys.h"
#include "model/ContentNode.h"
#include "platform/intuition/ListBrowser.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace solvane {

// What a Details cell of that column says about the entry.
[[nodiscard]] std::string_view CellText(const ContentNode& node, DetailsColumn column);

// "RRGGBB" as a colour; nothing when it is malformed or the default, which stands for the desktop's own
// colour.
[[nodiscard]] std::optional<intuition::Rgb> OwnColour(std::string_view digits,
                                                      std::string_view defaultDigits);

// Colour and style of the cells of one kind of entry.
struct KindLook {
    std::optional<intuition::Rgb> Colour;
    bool Bold = false, Italic = false, Underline = false;

    bool operator==(const KindLook&) const = default;
};

// All that the preferences say about how rows look.
struct RowLooks {
    KindLook Drawers, Files, Links, Devices, Assigns;
    std::array<std::optional<intuition::Rgb>, 2> Stripes; // background of the first and every other row
    IconBox Picture;
    bool ActualIcons = false;

    bool operator==(const RowLooks&) const = default;
};
[[nodiscard]] RowLooks LooksInForce(std::int32_t style);

// The rows of lblist2 in the columns given. Looks are taken from the preferences when the object is made.
class ContentRows : public intuition::ListSource {
public:
    // columns: what each cell of a row shows, from the first on; as ShownColumns has them for that style.
    // list: the one that draws them; without it no picture is looked up.
    ContentRows(std::vector<DetailsColumn> columns, std::int32_t style,
                intuition::ListBrowser* list = nullptr);

    // True when the rows are drawn in these columns and that style, as the preferences now want it.
    [[nodiscard]] bool IsFor(const std::vector<DetailsColumn>& columns, std::int32_t style) const {
        return Columns == columns && Style == style && Looks == LooksInForce(style);
    }
    // The rows are on show no longer: no picture is loaded for them until they are drawn again.
    void DropPictures() { Pictures.Drop(); }
    [[nodiscard]] std::size_t RowCount() const override;
    [[nodiscard]] intuition::CellLook Cell(std::size_t row, std::size_t column) const override;
    [[nodiscard]] intuition::RowLook Row(std::size_t row) const override;
    [[nodiscard]] std::string_view Name(std::size_t row) const override;

private:
    [[nodiscard]] const KindLook& LookOf(const ContentNode& node) const;
    [[nodiscard]] intuition::CellLook PlaceCell(std::size_t row, std::size_t column,
                                                const ContentNode& node) const;
    [[nodiscard]] intuition::CellLook NameCell(std::size_t row, const ContentNode& node) const;

    std::vector<DetailsColumn> Columns;
    std::int32_t Style;
    RowLooks Looks;
    // Drawing fetches pictures and forms labels, which changes nothing that a caller could see.
    mutable RowPictures Pictures;
    mutable std::vector<std::string> Label; // of the last cell
};

} // namespace solvane
