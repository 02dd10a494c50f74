// The names that keys have in the texts of commodities. Private to this service.
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

class QKeyEvent;
class QLineEdit;

namespace intuition {

struct KeyCombination;

// The symbol of the key with that name, a single character or a word of the table; 0 for none.
[[nodiscard]] std::uint32_t SymbolOfKeyName(std::string_view name);

// Which key of a keyboard a combination means. The table has a row of as many symbols for each key: for each
// of two layouts the one without and the one with Shift, then others, which take qualifiers of no name here.
[[nodiscard]] std::optional<std::size_t> FindKey(std::span<const std::uint32_t> table,
                                                 std::size_t symbolsOfKey, const KeyCombination& keys);

// The combination that a key press makes, as a text for ParseKeyCombination. Empty for a qualifier alone and
// for a key without a name.
[[nodiscard]] std::string CombinationOf(const QKeyEvent& event);

// From now on the field shows the combination that is pressed in it. Tab, Return and Escape alone do there
// what they always do.
void ShowPressedKeys(QLineEdit& field);

} // namespace intuition
