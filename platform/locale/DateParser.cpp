#include "platform/locale/DateParser.h"

#include "platform/dos/Dates.h"
#include "platform/locale/DateCodes.h"
#include "platform/locale/LocaleData.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <utility>

namespace locale {
namespace {

constexpr std::uint32_t FirstYear = 1978;   // two digits count from here
constexpr std::size_t EnglishShortName = 3; // bytes of "Sep", "Wed"
constexpr std::size_t LongYear = 4;         // digits

constexpr std::string_view EnglishWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};
constexpr std::string_view EnglishMonths[] = {"January",   "February", "March",    "April",
                                              "May",       "June",     "July",     "August",
                                              "September", "October",  "November", "December"};
constexpr std::string_view EnglishHalves[] = {"AM", "PM"};

// Which names a text may use.
enum class Names { UsersLanguage, EnglishToo };

// What of a date a text has named so far.
struct DateFields {
    std::optional<std::uint32_t> Century, Year, Month, Day, DayOfYear;
    std::optional<std::uint32_t> Hour, Hour12, Half, Minute, Second; // Half: 0 AM, 1 PM
};

std::uint32_t FullYear(std::uint32_t twoDigits) {
    return FirstYear + (twoDigits + 100 - FirstYear % 100) % 100;
}

bool IsBlank(char32_t c) {
    return c == ' ' || (c >= '\t' && c <= '\r') || c == 0xA0 || c == 0x2009 || c == 0x202F;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsSame(char32_t a, char32_t b) {
    return utility::ToLower(a) == utility::ToLower(b) || (IsBlank(a) && IsBlank(b));
}

// The bytes of the text's beginning that are the name; 0 when it begins otherwise.
std::size_t LengthOf(std::string_view name, std::string_view text) {
    std::size_t at = 0;
    for (std::size_t in = 0; in < name.size();) {
        if (at == text.size())
            return 0;
        const utility::Character wanted = utility::Decode(name, in);
        const utility::Character found = utility::Decode(text, at);
        if (!IsSame(wanted.Code, found.Code))
            return 0;
        in += wanted.Length;
        at += found.Length;
    }
    return at;
}

// The name that the text begins with; the longest one, as "1" begins "12" where months are counted.
struct FoundName {
    std::size_t Index = 0;
    std::size_t Length = 0; // 0: none
    void Try(std::string_view name, std::string_view text, std::size_t index) {
        const std::size_t length = LengthOf(name, text);
        if (length > Length)
            *this = {index, length};
    }
};

void TryForms(std::span<const NameForms> names, std::string_view text, FoundName& found) {
    for (std::size_t index = 0; index < names.size(); ++index) {
        const NameForms& name = names[index];
        for (const std::string* form : {&name.Plain, &name.FirstLower, &name.FirstUpper, &name.Upper}) {
            found.Try(*form, text, index);
            if (form->ends_with('.'))
                found.Try(std::string_view(*form).substr(0, form->size() - 1), text, index);
        }
    }
}

void TryEnglish(std::span<const std::string_view> names, std::string_view text, FoundName& found) {
    for (std::size_t index = 0; index < names.size(); ++index) {
        found.Try(names[index], text, index);
        found.Try(names[index].substr(0, EnglishShortName), text, index);
    }
}

// The moment that the fields name, if they do.
std::optional<std::uint32_t> MomentOf(const DateFields& fields) {
    std::uint32_t year = fields.Year.value_or(FirstYear);
    if (fields.Century)
        year = *fields.Century * 100 + year % 100;
    std::uint32_t hour = fields.Hour12.value_or(0);
    if (fields.Half && hour > 12)
        return std::nullopt;
    if (fields.Half && fields.Hour12)
        hour = hour % 12 + *fields.Half * 12;
    dos::ClockData date{};
    date.Second = static_cast<std::uint16_t>(fields.Second.value_or(0));
    date.Minute = static_cast<std::uint16_t>(fields.Minute.value_or(0));
    date.Hour = static_cast<std::uint16_t>(fields.Hour.value_or(hour));
    date.Day = static_cast<std::uint16_t>(fields.Day.value_or(1));
    date.Month = static_cast<std::uint16_t>(fields.Month.value_or(1));
    date.Year = static_cast<std::uint16_t>(year);
    const std::optional<std::uint32_t> moment = dos::CheckDate(date);
    if (!moment || !fields.DayOfYear || fields.Day || fields.Month)
        return moment;
    const std::uint64_t later = *moment + std::uint64_t{*fields.DayOfYear - 1} * dos::SecondsPerDay;
    if (later > std::numeric_limits<std::uint32_t>::max() ||
        dos::Amiga2Date(static_cast<std::uint32_t>(later)).Year != year)
        return std::nullopt;
    return static_cast<std::uint32_t>(later);
}

// Takes a text apart, code by code.
class DateReader {
public:
    DateReader(std::string_view text, Names names) : Rest(text), Allowed(names), Data(CurrentData()) {}

    // False when the text does not go on in this form.
    [[nodiscard]] bool Read(std::string_view format) { return ReadCodes(format, false); }
    [[nodiscard]] bool IsAtEnd() {
        SkipBlanks();
        return Rest.empty();
    }
    [[nodiscard]] const DateFields& Fields() const { return Found; }
    // A weekday at this place, 0 for Sunday.
    [[nodiscard]] std::optional<std::uint32_t> Weekday();

private:
    bool ReadCodes(std::string_view format, bool codeFollows);
    bool ReadCode(std::string_view code, bool codeFollows);
    bool ReadName(char code);
    bool ReadHalf();
    bool ReadDate(char code, bool codeFollows);
    bool ReadTime(char code);
    bool ReadYear(bool isLong, bool codeFollows);
    bool ReadZone();
    bool ReadLiteral(std::string_view literal);
    void SkipBlanks();
    [[nodiscard]] std::size_t DigitsAhead();
    bool Number(std::optional<std::uint32_t>& number, std::size_t digits, std::uint32_t least,
                std::uint32_t most);
    // For what must be well formed and decides nothing.
    bool PassNumber(std::size_t digits, std::uint32_t most) {
        std::optional<std::uint32_t> unused;
        return Number(unused, digits, 0, most);
    }
    std::optional<std::uint32_t> TakeName(const FoundName& name);
    std::optional<std::uint32_t> Month();

    std::string_view Rest;
    Names Allowed;
    const LocaleData& Data;
    DateFields Found;
};

void DateReader::SkipBlanks() {
    while (!Rest.empty()) {
        const utility::Character c = utility::Decode(Rest, 0);
        if (!IsBlank(c.Code))
            return;
        Rest.remove_prefix(c.Length);
    }
}

std::size_t DateReader::DigitsAhead() {
    SkipBlanks();
    const auto end = std::ranges::find_if_not(Rest, IsDigit);
    return static_cast<std::size_t>(end - Rest.begin());
}

bool DateReader::Number(std::optional<std::uint32_t>& number, std::size_t digits, std::uint32_t least,
                        std::uint32_t most) {
    const std::size_t count = std::min(DigitsAhead(), digits);
    std::uint32_t value = 0;
    for (const char digit : Rest.substr(0, count))
        value = value * 10 + static_cast<std::uint32_t>(digit - '0');
    if (count == 0 || value < least || value > most)
        return false;
    Rest.remove_prefix(count);
    number = value;
    return true;
}

std::optional<std::uint32_t> DateReader::TakeName(const FoundName& name) {
    if (name.Length == 0)
        return std::nullopt;
    Rest.remove_prefix(name.Length);
    return static_cast<std::uint32_t>(name.Index);
}

std::optional<std::uint32_t> DateReader::Weekday() {
    SkipBlanks();
    FoundName name;
    for (const auto* names : {&Data.ShortWeekdays, &Data.Weekdays, &Data.LoneWeekdays})
        TryForms(*names, Rest, name);
    if (name.Length == 0 && Allowed == Names::EnglishToo)
        TryEnglish(EnglishWeekdays, Rest, name);
    return TakeName(name);
}

std::optional<std::uint32_t> DateReader::Month() {
    SkipBlanks();
    FoundName name;
    for (const auto* names : {&Data.ShortMonths, &Data.Months, &Data.LoneMonths})
        TryForms(*names, Rest, name);
    if (name.Length == 0 && Allowed == Names::EnglishToo)
        TryEnglish(EnglishMonths, Rest, name);
    const auto month = TakeName(name);
    return month ? std::optional(*month + 1) : std::nullopt;
}

// A language that writes nothing there is content with nothing.
bool DateReader::ReadHalf() {
    SkipBlanks();
    FoundName name;
    TryForms(Data.DayHalves, Rest, name);
    TryEnglish(EnglishHalves, Rest, name);
    Found.Half = TakeName(name);
    return Found.Half || (Data.DayHalves[0].Plain.empty() && Data.DayHalves[1].Plain.empty());
}

bool DateReader::ReadName(char code) {
    switch (code) {
    case 'a':
    case 'A':
        return Weekday().has_value();
    case 'p':
        return ReadHalf();
    default:
        Found.Month = Month();
        return Found.Month.has_value();
    }
}

// Either form of the year may stand for the other, unless digits that belong to the next code could
// follow.
bool DateReader::ReadYear(bool isLong, bool codeFollows) {
    const std::size_t ahead = DigitsAhead();
    const bool takesLong = isLong || (ahead == LongYear && !codeFollows);
    if (!Number(Found.Year, takesLong ? LongYear : 2, 0, 9999))
        return false;
    if (ahead <= 2 || !takesLong)
        Found.Year = FullYear(*Found.Year);
    return true;
}

// The offset of a zone, "+HHMM" or "-HHMM".
bool DateReader::ReadZone() {
    SkipBlanks();
    if (!Rest.starts_with('+') && !Rest.starts_with('-'))
        return false;
    Rest.remove_prefix(1);
    return DigitsAhead() >= 4 && PassNumber(2, 23) && PassNumber(2, 59);
}

bool DateReader::ReadDate(char code, bool codeFollows) {
    switch (code) {
    case 'C':
        return Number(Found.Century, 2, 0, 99);
    case 'd':
    case 'e':
        return Number(Found.Day, 2, 1, 31);
    case 'j':
        return Number(Found.DayOfYear, 3, 1, 366);
    case 'm':
        return Number(Found.Month, 2, 1, 12);
    case 'U':
    case 'W':
        return PassNumber(2, 53);
    case 'w':
        return PassNumber(1, 6);
    default:
        return ReadYear(code == 'Y', codeFollows);
    }
}

bool DateReader::ReadTime(char code) {
    switch (code) {
    case 'H':
    case 'q':
        return Number(Found.Hour, 2, 0, 23);
    case 'I':
    case 'Q':
        return Number(Found.Hour12, 2, 0, 23);
    case 'M':
        return Number(Found.Minute, 2, 0, 59);
    case 'S':
        return Number(Found.Second, 2, 0, 59);
    default:
        return ReadZone();
    }
}

// One character; a blank stands for any number of them.
bool DateReader::ReadLiteral(std::string_view literal) {
    const utility::Character wanted = utility::Decode(literal, 0);
    if (IsBlank(wanted.Code)) {
        SkipBlanks();
        return true;
    }
    if (Rest.empty())
        return false;
    const utility::Character found = utility::Decode(Rest, 0);
    if (!IsSame(wanted.Code, found.Code))
        return false;
    Rest.remove_prefix(found.Length);
    return true;
}

// `code` begins with the code's letter.
bool DateReader::ReadCode(std::string_view code, bool codeFollows) {
    const char letter = code.front();
    if (const std::string_view compound = CompoundOf(letter); !compound.empty())
        return ReadCodes(compound, codeFollows);
    if (std::string_view("aAbBhp").find(letter) != std::string_view::npos)
        return ReadName(letter);
    if (std::string_view("CdejmUWwyY").find(letter) != std::string_view::npos)
        return ReadDate(letter, codeFollows);
    if (std::string_view("HqIQMSz").find(letter) != std::string_view::npos)
        return ReadTime(letter);
    if (letter == 'n' || letter == 't') {
        SkipBlanks();
        return true;
    }
    return ReadLiteral(code);
}

bool DateReader::ReadCodes(std::string_view format, bool codeFollows) {
    while (!format.empty()) {
        const std::size_t length = utility::Decode(format, 0).Length;
        if (format.front() != '%') {
            if (!ReadLiteral(format))
                return false;
            format.remove_prefix(length);
            continue;
        }
        format.remove_prefix(1);
        if (!format.empty() && DateFlagOf(format.front()) != DateFlag::None)
            format.remove_prefix(1);
        if (format.empty())
            return true;
        const std::size_t codeLength = utility::Decode(format, 0).Length;
        const std::string_view behind = format.substr(codeLength);
        if (!ReadCode(format, behind.empty() ? codeFollows : behind.starts_with('%')))
            return false;
        format = behind;
    }
    return true;
}

// The fields of a text that has this form as a whole.
std::optional<DateFields> FieldsOf(std::string_view format, std::string_view text, Names names) {
    DateReader reader(text, names);
    return reader.Read(format) && reader.IsAtEnd() ? std::optional(reader.Fields()) : std::nullopt;
}

// Everything that a free text means is put together from a day and a time of it.
constexpr std::uint32_t MaxDay = std::numeric_limits<std::uint32_t>::max() / dos::SecondsPerDay;

std::optional<std::uint32_t> DayFrom(std::uint32_t today, std::int64_t distance) {
    const std::int64_t day = today + distance;
    return day < 0 || day > MaxDay ? std::nullopt : std::optional(static_cast<std::uint32_t>(day));
}

std::optional<std::uint32_t> NamedDayOf(std::string_view text, std::uint32_t today, NamedDay which) {
    constexpr std::pair<std::string_view, int> words[] = {{"yesterday", -1}, {"today", 0}, {"tomorrow", 1}};
    for (const auto& [word, distance] : words)
        if (utility::Stricmp(word, text) == 0)
            return DayFrom(today, distance);
    DateReader reader(text, Names::EnglishToo);
    const std::optional<std::uint32_t> weekday = reader.Weekday();
    if (!weekday || !reader.IsAtEnd())
        return std::nullopt;
    const std::uint32_t ahead = (*weekday + 7 - today % 7) % 7; // day 0 is a Sunday
    if (which == NamedDay::Next)
        return DayFrom(today, ahead == 0 ? 7 : ahead);
    return DayFrom(today, std::int64_t{ahead} - 7);
}

// Days since 1 January 1978 of "dd-mmm-yy", "yyyy-mm-dd" or a named day.
std::optional<std::uint32_t> DayOf(std::string_view text, std::uint32_t today, NamedDay which) {
    const bool beginsWithYear = text.find_first_not_of("0123456789") == LongYear;
    const auto fields = FieldsOf(beginsWithYear ? "%Y-%m-%d" : "%d-%b-%y", text, Names::EnglishToo);
    if (!fields)
        return NamedDayOf(text, today, which);
    const std::optional<std::uint32_t> moment = MomentOf(*fields);
    return moment ? std::optional(*moment / dos::SecondsPerDay) : std::nullopt;
}

// Seconds since midnight of "hh:mm" or "hh:mm:ss".
std::optional<std::uint32_t> TimeOf(std::string_view text) {
    for (const std::string_view format : {"%H:%M", "%H:%M:%S"})
        if (const auto fields = FieldsOf(format, text, Names::UsersLanguage))
            return MomentOf(*fields);
    return std::nullopt;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::optional<std::uint32_t> Together(std::optional<std::uint32_t> day, std::optional<std::uint32_t> time) {
    if (!day || !time)
        return std::nullopt;
    const std::uint64_t moment = std::uint64_t{*day} * dos::SecondsPerDay + *time;
    if (moment > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(moment);
}

} // namespace

std::optional<std::uint32_t> ParseDate(std::string_view format, std::string_view text) {
    const std::optional<DateFields> fields = FieldsOf(format, text, Names::UsersLanguage);
    return fields ? MomentOf(*fields) : std::nullopt;
}

std::optional<std::uint32_t> ParseFreeDate(std::string_view text, std::uint32_t now, NamedDay weekday) {
    const std::uint32_t today = now / dos::SecondsPerDay;
    const std::string_view all = Trimmed(text);
    if (const auto day = DayOf(all, today, weekday))
        return Together(day, 0);
    if (const auto time = TimeOf(all))
        return Together(today, time);
    const std::size_t first = all.find_first_of(" \t");
    if (first == std::string_view::npos)
        return std::nullopt;
    const std::size_t last = all.find_last_of(" \t");
    if (const auto time = TimeOf(all.substr(last + 1)))
        return Together(DayOf(Trimmed(all.substr(0, last)), today, weekday), time);
    return Together(DayOf(Trimmed(all.substr(first)), today, weekday), TimeOf(all.substr(0, first)));
}

} // namespace locale
