// How the records look as rows of the Content list: the source that the list browser draws from. Every text
// comes from the record at the moment of drawing; none is copied.
#pragma once

#include "content/SortKeys.h"
#include "model/ContentNode.h"
#include "platform/intuition/ListBrowser.h"

#include <string_view>
#include <vector>

namespace solvane {

// What a Details cell of that column says about the entry.
[[nodiscard]] std::string_view CellText(const ContentNode& node, DetailsColumn column);

// "RRGGBB" as a colour; nothing when it is malformed or the default, which stands for the desktop's own
// colour.
[[nodiscard]] std::optional<intuition::Rgb> OwnColour(std::string_view digits,
                                                      std::string_view defaultDigits);

// The rows of lblist2 in the columns given. Looks are taken from the preferences when the object is made.
class ContentRows : public intuition::ListSource {
public:
    // columns: what each cell of a row shows, from the first on.
    explicit ContentRows(std::vector<DetailsColumn> columns);
    ~ContentRows() override;
    ContentRows(const ContentRows&) = delete;
    ContentRows& operator=(const ContentRows&) = delete;

    [[nodiscard]] std::size_t RowCount() const override;
    [[nodiscard]] intuition::CellLook Cell(std::size_t row, std::size_t column) const override;
    [[nodiscard]] intuition::RowLook Row(std::size_t row) const override;
    [[nodiscard]] std::string_view Name(std::size_t row) const override;

private:
    // Colour and style of the cells of one kind of entry.
    struct KindLook {
        std::optional<intuition::Rgb> Colour;
        bool Bold = false, Italic = false, Underline = false;
    };
    [[nodiscard]] const KindLook& LookOf(const ContentNode& node) const;

    std::vector<DetailsColumn> Columns;
    KindLook Drawers, Files, Links;
    std::optional<intuition::Rgb> Stripes[2]; // background of the first and every other row
    intuition::ImageId DrawerImage, FileImage;
};

} // namespace solvane
