#include "platform/dos/Dates.h"
#include "platform/locale/DateCodes.h"
#include "platform/locale/Locale.h"
#include "platform/locale/LocaleData.h"

#include <cstdlib>

namespace locale {
namespace {

const std::string& FormOf(const NameForms& name, DateFlag flag) {
    switch (flag) {
    case DateFlag::Minus:
    case DateFlag::LoneLower:
        return name.FirstLower;
    case DateFlag::Plus:
    case DateFlag::LonePlus:
        return name.FirstUpper;
    case DateFlag::Upper:
        return name.Upper;
    case DateFlag::None:
        break;
    }
    return name.Plain;
}

bool IsLone(DateFlag flag) {
    return flag == DateFlag::LoneLower || flag == DateFlag::LonePlus;
}

// Writes one date into a text, code by code.
class DateWriter {
public:
    DateWriter(std::string& text, std::uint32_t seconds, const LocaleData& data)
        : Text(text), Seconds(seconds), Date(dos::Amiga2Date(seconds)), Data(data) {}
    void Write(std::string_view format);

private:
    void WriteCode(char code, DateFlag flag);
    bool WriteName(char code, DateFlag flag);
    bool WriteNumber(char code, DateFlag flag);
    void WriteZone();
    void Append(std::uint32_t number, std::size_t width, DateFlag flag, char pad = '0');
    [[nodiscard]] std::uint32_t DayOfYear() const; // 0 for 1 January
    [[nodiscard]] std::uint32_t Hour12() const { return (Date.Hour + 11U) % 12U + 1U; }

    std::string& Text;
    std::uint32_t Seconds;
    dos::ClockData Date;
    const LocaleData& Data;
};

void DateWriter::Append(std::uint32_t number, std::size_t width, DateFlag flag, char pad) {
    const std::string digits = std::to_string(number);
    if (flag != DateFlag::Minus && digits.size() < width)
        Text.append(width - digits.size(), pad);
    Text += digits;
}

std::uint32_t DateWriter::DayOfYear() const {
    dos::ClockData newYear{};
    newYear.Day = newYear.Month = 1;
    newYear.Year = Date.Year;
    return (Seconds - dos::Date2Amiga(newYear)) / dos::SecondsPerDay;
}

bool DateWriter::WriteName(char code, DateFlag flag) {
    const std::size_t month = Date.Month - 1U;
    switch (code) {
    case 'a':
        Text += FormOf(Data.ShortWeekdays[Date.WeekDay], flag);
        return true;
    case 'A':
        Text += FormOf((IsLone(flag) ? Data.LoneWeekdays : Data.Weekdays)[Date.WeekDay], flag);
        return true;
    case 'b':
    case 'h':
        Text += FormOf(Data.ShortMonths[month], flag);
        return true;
    case 'B':
        Text += FormOf((IsLone(flag) ? Data.LoneMonths : Data.Months)[month], flag);
        return true;
    case 'p':
        Text += FormOf(Data.DayHalves[Date.Hour / 12U], flag);
        return true;
    default:
        return false;
    }
}

bool DateWriter::WriteNumber(char code, DateFlag flag) {
    switch (code) {
    case 'C':
        Append(Date.Year / 100U, 2, flag);
        return true;
    case 'd':
        Append(Date.Day, 2, flag);
        return true;
    case 'e':
        Append(Date.Day, 2, flag, ' ');
        return true;
    case 'H':
        Append(Date.Hour, 2, flag);
        return true;
    case 'I':
        Append(Hour12(), 2, flag);
        return true;
    case 'j':
        Append(DayOfYear() + 1, 3, flag);
        return true;
    case 'm':
        Append(Date.Month, 2, flag);
        return true;
    case 'M':
        Append(Date.Minute, 2, flag);
        return true;
    case 'q':
        Append(Date.Hour, 1, flag);
        return true;
    case 'Q':
        Append(Hour12(), 1, flag);
        return true;
    case 'S':
        Append(Date.Second, 2, flag);
        return true;
    case 'U':
        Append((DayOfYear() + 7 - Date.WeekDay) / 7, 2, flag);
        return true;
    case 'w':
        Append(Date.WeekDay, 1, flag);
        return true;
    case 'W':
        Append((DayOfYear() + 7 - (Date.WeekDay + 6U) % 7) / 7, 2, flag);
        return true;
    case 'y':
        Append(Date.Year % 100U, 2, flag);
        return true;
    case 'Y':
        Append(Date.Year, 4, flag);
        return true;
    default:
        return false;
    }
}

// The offset of the host's zone at the date, "+HHMM" or "-HHMM".
void DateWriter::WriteZone() {
    const std::int32_t offset = dos::ZoneOffset(Seconds);
    const auto minutes = static_cast<std::uint32_t>(std::abs(offset) / 60);
    Text += offset < 0 ? '-' : '+';
    Append(minutes / 60 * 100 + minutes % 60, 4, DateFlag::None);
}

void DateWriter::WriteCode(char code, DateFlag flag) {
    const std::string_view compound = CompoundOf(code);
    if (!compound.empty())
        Write(compound);
    else if (code == 'z')
        WriteZone();
    else if (code == 'n')
        Text += '\n';
    else if (code == 't')
        Text += '\t';
    else if (!WriteName(code, flag) && !WriteNumber(code, flag))
        Text += code;
}

void DateWriter::Write(std::string_view format) {
    for (std::size_t at = 0; at < format.size(); ++at) {
        if (format[at] != '%') {
            Text += format[at];
            continue;
        }
        if (++at == format.size())
            return;
        const DateFlag flag = DateFlagOf(format[at]);
        if (flag != DateFlag::None && ++at == format.size())
            return;
        WriteCode(format[at], flag);
    }
}

} // namespace

void AppendDate(std::string& text, std::string_view format, std::uint32_t amigaSeconds,
                const LocaleData& data) {
    DateWriter(text, amigaSeconds, data).Write(format);
}

void AppendDate(std::string& text, std::string_view format, std::uint32_t amigaSeconds) {
    AppendDate(text, format, amigaSeconds, CurrentData());
}

std::string FormatDate(std::string_view format, std::uint32_t amigaSeconds) {
    std::string text;
    AppendDate(text, format, amigaSeconds);
    return text;
}

} // namespace locale
