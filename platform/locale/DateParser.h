// Dates from texts: the way back from FormatDate, and the free form that people type in commands.
// Names compare without regard to case.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace locale {

// The moment that a text in the form of the format's codes names, as Amiga seconds. Names are those
// of the user's language, in any of their forms. What the format does not ask for is 1 January
// 1978, midnight. A year of two digits lies in 1978 to 2077; an hour without AM or PM is taken as
// it stands. Weekdays, weeks and the zone must be well formed but decide nothing. Blanks may be
// more or fewer than in the format. Nothing when the text has another form, or names no date from
// 1978 to 7 February 2114.
[[nodiscard]] std::optional<std::uint32_t> ParseDate(std::string_view format, std::string_view text);

// Which day the name of a weekday means: the last one before today, or the next one after.
enum class NamedDay { Last, Next };

// A day, a time, or both in any order with a blank between them. Days: "03-Sep-25", "3-sep-2025",
// "2025-09-03", "today", "yesterday", "tomorrow", a weekday; times: "12:34", "12:34:56". Names are
// English or in the user's language. A day alone means its midnight, a time alone that time today.
// Nothing when the text has another form or names no date.
[[nodiscard]] std::optional<std::uint32_t> ParseFreeDate(std::string_view text, std::uint32_t now,
                                                         NamedDay weekday = NamedDay::Last);

} // namespace locale
