// A list of rows in two levels: heads that open and close, and children under them. It keeps its rows; one
// row at a time is selected, and the program routes by the text that a row carries.
#pragma once

#include "platform/intuition/Gadget.h"
#include "platform/intuition/Images.h"
#include "platform/intuition/ListBrowser.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace intuition {

enum class TreeRowKind : std::uint8_t {
    Plain,
    Head,      // the children that follow belong to it
    Child,     // without a head before it as Plain
    Separator, // a line; it can be neither selected nor reached by keys
};

// Texts are data, as in a list.
struct TreeRow {
    TreeRowKind Kind = TreeRowKind::Plain;
    std::string Label;
    std::string UserData;          // what the program knows the row by; not shown
    std::string Hint = {};         // shown when the pointer rests on the row; empty: none
    ImageId Image = ImageId::None; // must outlive the rows
    bool IsOpen = true;            // of a head: its children show
    std::optional<Rgb> Colour = std::nullopt;
    bool Bold = false, Italic = false, Underline = false;
};

// Reasons, with the values that the program's list events have.
enum class TreeEventKind : std::uint16_t { None = 0, Select = 1, Close = 2, Open = 4 };

struct TreeEvent {
    TreeEventKind Kind = TreeEventKind::None;
    std::size_t Row = NoRow;
};

// A click selects a row and is an event; arrows move a mark, and Return or Space choose the row under it as a
// click does. Left and Right close and open heads. Other keys, and typed text, go to the window. A click does
// not take the keyboard away from where it is.
class TreeBrowser : public Gadget {
public:
    // name: what a screen reader calls the list.
    TreeBrowser(std::uint16_t id, std::string_view name);
    ~TreeBrowser() override;

    // Replaces all rows; nothing is selected, the scroll position stays as far as it can. Waiting events are
    // forgotten.
    void SetRows(std::vector<TreeRow> rows);
    [[nodiscard]] const std::vector<TreeRow>& Rows() const; // IsOpen as the user has it now
    // Asked at each drawing of a row for the picture to show in place of its Image; None takes that.
    void SetImageSource(std::function<ImageId(std::size_t row)> source);
    // Backgrounds of the first and every other row; none: the desktop's.
    void SetBackgrounds(std::optional<Rgb> first, std::optional<Rgb> other);

    // NoRow: none. A row that is hidden under a closed head stays selected.
    [[nodiscard]] std::size_t Selected() const;
    // No event comes of it. The row is scrolled to when it shows; a separator or NoRow selects nothing.
    void SetSelected(std::size_t row);

    // Fetches the event that belongs to the oldest unfetched GadgetUp; Kind None when its row is gone.
    [[nodiscard]] TreeEvent NextEvent();

    // The row that a menu was asked for last; NoRow: for none, or the rows have been replaced since.
    [[nodiscard]] std::size_t MenuRow() const;

    void RefreshRow(std::size_t row);
    [[nodiscard]] bool IsOnScreen(std::size_t row) const;
};

} // namespace intuition
