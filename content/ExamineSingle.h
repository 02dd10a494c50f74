// One object by its path as a record, for commands that concern no shown entry. ContentList is not touched.
#pragma once

#include <string_view>

namespace solvane {

enum class WithType { No, Yes };

// Puts a short record of the object into ExamineSingleList and ExamineSingleNode: kind, name, path, size and
// date text of a file or drawer, only the date of anything else. The record before it goes. False when the
// object cannot be examined (dos::IoErr) or no record can be made; ExamineSingleNode is null then.
[[nodiscard]] bool ExamineSingle(std::string_view path);

// The same with date, protection, comment and, for a file where it is asked for, the type.
[[nodiscard]] bool ExamineSingleFull(std::string_view path, WithType getType);

} // namespace solvane
