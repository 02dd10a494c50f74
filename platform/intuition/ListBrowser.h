// The list with columns. It draws from a source of rows that the program owns and holds no text itself:
// a hundred thousand rows cost one table entry each. It owns the selection; the program reads it when needed.
#pragma once

#include "platform/intuition/Gadget.h"
#include "platform/intuition/Images.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace intuition {

inline constexpr std::size_t NoRow = static_cast<std::size_t>(-1);

// What one cell shows. Text is data: one line, cut with "..." where it does not fit, control characters and
// invalid UTF-8 shown as marks.
struct CellLook {
    std::string_view Text; // valid until the next call of the source
    // Lines under the text, each shown as one line whatever is in it; as long valid as the text. Colour and
    // style are the text's alone.
    std::span<const std::string> More = {};
    ImageId Image = ImageId::None;
    std::optional<int> Gauge = std::nullopt; // 0 to 100: a bar that is so full stands under the texts
    std::optional<Rgb> Colour;               // none: the desktop's text colour
    bool Bold = false, Italic = false, Underline = false;
};

struct RowLook {
    std::optional<Rgb> Background; // none: the desktop's colours, alternating when stripes are on
    bool Disabled = false;         // drawn weak and not selectable
};

// Where rows come from. Called while the list draws, which may be at any exec::Wait or CheckSignal.
class ListSource {
public:
    virtual ~ListSource() = default;
    [[nodiscard]] virtual std::size_t RowCount() const = 0; // must not change while attached
    [[nodiscard]] virtual CellLook Cell(std::size_t row, std::size_t column) const = 0;
    [[nodiscard]] virtual RowLook Row(std::size_t row) const;
    // The entry's name: what a screen reader says first, and what the list's own type-ahead looks at.
    [[nodiscard]] virtual std::string_view Name(std::size_t row) const = 0;
};

struct Column {
    std::string Title;
    int Width = 100;
    bool Sortable = true;  // may carry the arrow; a click on the title is an event in any case
    bool Draggable = true; // may be moved
    Align Alignment = Align::Left;
    bool Stretch = false; // takes the width that is left; at most one column
};

// Reasons, with the values that the program's list events have.
enum class ListEventKind : std::uint16_t {
    None = 0,
    Select = 1,
    EditDone = 8,
    DoubleClick = 16, // also Return in a list with keys of its own
    TitleClick = 128,
    ColumnsChanged = 256, // moved or sized
    EditGivenUp = 512,
};

struct ListEvent {
    ListEventKind Kind = ListEventKind::None;
    std::size_t Row = NoRow; // NoRow: a click beside the rows that took the selection away
    std::size_t Column = 0;  // index into the columns as they were set
};

// Who moves the selection by keys. Program: every key goes to the window as RawKey. Own: arrows, pages, Home,
// End, Control+A and type-ahead work by themselves, as lists in dialogs want it.
enum class ListKeys { Program, Own };
// Persistent: a plain click adds to the selection or takes away from it.
enum class ListSelection { Single, Extended, Persistent };

class ListBrowser : public Gadget {
public:
    explicit ListBrowser(std::uint16_t id, ListKeys keys = ListKeys::Program);
    ~ListBrowser() override;

    // Replaces the columns. Widths are in layout units.
    void SetColumns(std::vector<Column> columns);
    [[nodiscard]] std::vector<int> ColumnWidths() const; // by column index, as they are now
    // Makes all columns behind the first so wide that no title and no cell is cut; one that stretches stays
    // as it is. Every cell of a long list is estimated, and the widest are measured.
    void FitColumns();
    [[nodiscard]] std::vector<std::size_t> ColumnOrder() const; // column indices from left to right
    void SetSortColumn(std::size_t column, bool ascending);     // the arrow only; NoRow shows none
    void SetTitlesShown(bool shown);

    // Shows the source's rows from the first on, nothing selected. The source must live until Detach, another
    // Attach or the end of the gadget; null is as Detach.
    void Attach(const ListSource* source);
    void Detach();
    // Draws again what changed in the records. Rows may not have come or gone.
    void Refresh();
    void RefreshRow(std::size_t row);

    [[nodiscard]] std::size_t Top() const; // first visible row
    void SetTop(std::size_t row);
    [[nodiscard]] std::size_t VisibleRows() const; // whole rows that fit, at least 1
    void MakeVisible(std::size_t row);
    void ScrollSideways(int units);

    // The row that carries the focus mark and from which Shift selects; NoRow for none.
    [[nodiscard]] std::size_t Current() const;
    void SetCurrent(std::size_t row);
    // What the last MenuVerify of this list is about: a row that can be selected, or NoRow for what lies
    // beside the rows.
    [[nodiscard]] std::size_t MenuRow() const;

    void SetSelection(ListSelection kind);
    [[nodiscard]] bool IsSelected(std::size_t row) const;
    [[nodiscard]] bool IsDisabled(std::size_t row) const; // cannot be selected; a row that is not there too
    [[nodiscard]] std::size_t SelectedCount() const;
    [[nodiscard]] std::vector<std::size_t> SelectedRows() const; // ascending
    void Select(std::size_t row, bool selected);                 // no event comes of it
    void SelectRows(const std::vector<std::size_t>& rows);       // adds to the selection, at once
    void SelectAll();
    void ClearSelection();

    // Lets the user edit a cell in place, from that text on; scrolls to it. Return, and a click elsewhere,
    // end it with an event EditDone; Escape, and scrolling, with EditGivenUp; other rows or columns without.
    void EditCell(std::size_t row, std::size_t column, std::string_view text, std::size_t maximumBytes);
    // From there on until the event EditDone has been fetched, if there is one.
    [[nodiscard]] bool IsEditing() const;
    // What the user has made of the last text, cut at a whole character.
    [[nodiscard]] const std::string& EditedText() const;

    // Fetches the event that belongs to the oldest unfetched GadgetUp of this list; Kind None when the rows
    // it spoke of are gone.
    [[nodiscard]] ListEvent NextEvent();

    // Rows are at least as high as the font needs, and as an image of this height needs.
    void SetImageHeight(int height);
    // Rows are at least as high as so many lines of text need; 1 at first.
    void SetRowLines(int lines);
    void SetStripes(bool on);
    void SetVerticalSeparators(bool on);
};

} // namespace intuition
