// The user's locale: names of days and months, formats of dates and numbers, language, case of
// whole texts. Reads the host's locale variables once, at first use; every call is thread safe
// afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace locale {

// The date in the form of the format's codes ("%d-%b-%y %T"); a code that is not known writes its
// own character. The date is local wall time and is not shifted.
[[nodiscard]] std::string FormatDate(std::string_view format, std::uint32_t amigaSeconds);
// The same, appended to a text of the caller: many dates without an allocation each.
void AppendDate(std::string& text, std::string_view format, std::uint32_t amigaSeconds);

// Bytes that every text of DateTimeFormat stays within, as in the 35 byte buffers of AmigaOS.
inline constexpr std::size_t MaxDateText = 34;

// Date with time in the locale's own order, as FormatDate codes. The first has the names of days
// and months, short, where the text fits MaxDateText with them.
[[nodiscard]] std::string DateTimeFormat();
[[nodiscard]] std::string ShortDateTimeFormat();

// The name of a month (1 to 12) standing alone, as over a calendar; empty for another number.
[[nodiscard]] std::string MonthName(std::uint16_t month);

// May be empty (no grouping) and may be several bytes long.
[[nodiscard]] std::string GroupSeparator();
[[nodiscard]] std::string DecimalPoint();

// "german.language"; "english.language" for the C locale and for languages without a catalog name.
[[nodiscard]] std::string LanguageName();

inline constexpr std::size_t MaxLanguages = 10;
// The languages that the user wants, the best first: English names in small letters, "german". Never
// empty.
[[nodiscard]] std::vector<std::string> PreferredLanguages();

// The whole text in one case by the rules of the user's language; its length in bytes may change.
// Invalid bytes stay.
[[nodiscard]] std::string ToUpper(std::string_view text);
[[nodiscard]] std::string ToLower(std::string_view text);

// Has the locale variables read again, as after a change of the language. Texts that were returned
// stay valid.
void Reset();

} // namespace locale
