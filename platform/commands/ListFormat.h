// One object as a line of List: in its usual form, or by the codes of LFORMAT. Private to
// platform/commands.
#pragma once

#include "platform/commands/Context.h"
#include "platform/dos/Examine.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace commands {

inline constexpr std::uint64_t BlockSize = 512; // bytes; in which sizes in blocks are told

// What the codes of a line tell about.
struct ListedObject {
    const dos::ExamineData& Data;
    std::string_view Drawer;     // path of its drawer as the user wrote it, "" or with its end ":" or "/"
    std::string_view FullDrawer; // the same as the full name of the drawer
};

// A line by the codes of LFORMAT, without regard to case, no line end added:
//   %n name                 %m name without its extension   %e extension
//   %p path of the drawer   %f full path of the drawer      %s name or path by turns (see below)
//   %l bytes                %b blocks
//   %a protection           %c comment                      %d date   %t time   %% "%"
// "%20n" fills up from the left to 20 characters, "%-20n" from the right, "%.8n" cuts to 8. One %s is the
// name; of two, three and four the first, of four the third as well, is the path. What a code inserts
// between quotes of the format is escaped, so that the line can be run.
[[nodiscard]] std::string FormatListLine(const Context& context, std::string_view format,
                                         const ListedObject& object);

enum class DayForm { Relative, Plain }; // "Today", "Monday" for the days of the last week, or always a date
[[nodiscard]] std::string DayText(std::uint32_t date, DayForm form, std::uint32_t now);
[[nodiscard]] std::string TimeText(std::uint32_t date);
// The eight letters, "----rwed".
[[nodiscard]] std::string ProtectionText(std::uint32_t bits);
[[nodiscard]] std::uint64_t BlocksOf(std::uint64_t bytes) noexcept;

} // namespace commands
