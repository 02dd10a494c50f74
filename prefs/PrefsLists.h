// The ten lists of the preferences document as a table: how each is read into its records and written from
// them. It opens no file and shows nothing.
#pragma once

#include "platform/application/Dictionary.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace solvane {

// One list. The lists must have been made.
struct PrefsList {
    std::string_view Key;
    // Empties the list and fills it from the array, null when the document has none. How many elements were
    // of no use and passed over; nothing when a record cannot be made, and those before it stay.
    std::optional<std::size_t> (*Load)(const application::PrefsArray* from);
    application::PrefsArray (*Save)();
};

// In the order of the document.
[[nodiscard]] std::span<const PrefsList> PrefsLists();

// Makes the lists, empty. False without a memory pool.
[[nodiscard]] bool CreatePrefsLists();
void FreePrefsLists();

// What a first start fills the lists with; each replaces what its list has. False when a record cannot be
// made.
[[nodiscard]] bool RestoreDefaultToolbar();
[[nodiscard]] bool RestoreDefaultFavorites();

} // namespace solvane
