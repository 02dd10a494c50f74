// What the locale service knows of the user's locale, in the form that its texts are made of.
// Private to platform/locale.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace locale {

// A name and the forms of it that the flags of FormatDate ask for.
struct NameForms {
    std::string Plain, FirstLower, FirstUpper, Upper;
};

struct LocaleData {
    // Names within a date; weekdays begin with Sunday, months with January.
    std::array<NameForms, 7> ShortWeekdays, Weekdays;
    std::array<NameForms, 12> ShortMonths, Months;
    // The same names standing alone, which some languages inflect.
    std::array<NameForms, 7> LoneWeekdays;
    std::array<NameForms, 12> LoneMonths;
    std::array<NameForms, 2> DayHalves; // AM, PM
    std::string DateTimeFormat, ShortDateTimeFormat;
    std::string GroupSeparator, DecimalPoint;
    std::vector<std::string> Languages; // "german"; the best first, never empty
};

// The data in use; they stay valid and unchanged for the life of the process.
[[nodiscard]] const LocaleData& CurrentData();

// The date by the names of these data.
void AppendDate(std::string& text, std::string_view format, std::uint32_t amigaSeconds,
                const LocaleData& data);

} // namespace locale
