// What the window tells about the place on show and about what is selected in it, by the kind of place: the
// Details pane, the status bar, and what can be picked in menus and toolbar.
#pragma once

#include <cstdint>

namespace solvane {

// Of what kind the entries of a place are.
enum class Figures : std::uint8_t {
    OfPlaces, // devices and assigns, with figures of their own
    Counts,   // places without sizes
    Bytes,    // files and drawers
    Online,   // what can be fetched
};
[[nodiscard]] Figures FiguresOnShow();

// What is selected, or the place when nothing is. Records and counts must have the selection already.
void TellContentSelection();

// The place, when nothing in it is selected or that is not meant.
void TellPlace();

} // namespace solvane
