#include "platform/locale/Locale.h"

#include "platform/dos/Dates.h"
#include "platform/locale/DatePattern.h"
#include "platform/locale/LocaleData.h"
#include "platform/utility/Text.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <deque>
#include <initializer_list>
#include <memory>
#include <mutex>

namespace locale {
namespace {

// One reading of the user's locale. What was handed out stays, so readers need no lock; a new one
// is made only when the language changes.
struct Reading {
    LocaleData Data;
    QLocale Characters;
};

struct {
    std::mutex Lock;                               // over Readings
    std::deque<std::unique_ptr<Reading>> Readings; // all that were made
    std::atomic<const Reading*> Current = nullptr; // the last of them, null before the first
} State;

std::string Utf8(const QString& text) {
    return text.toStdString();
}

std::string_view Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

// "sr_RS.UTF-8@latin" as the host's locale data name it: "sr_Latn_RS".
QLocale LocaleFromName(std::string_view name) {
    std::string code(name.substr(0, name.find_first_of(".@")));
    const std::string_view script = name.ends_with("@latin")        ? "_Latn"
                                    : name.ends_with("@cyrillic")   ? "_Cyrl"
                                    : name.ends_with("@devanagari") ? "_Deva"
                                                                    : "";
    code.insert(std::min(code.find('_'), code.size()), script);
    return QLocale(QString::fromStdString(code));
}

// The name that rules a category: LC_ALL, the category's own variable, LANG.
std::string_view CategoryName(const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"})
        if (const std::string_view name = Variable(variable); !name.empty())
            return name;
    return "C";
}

QLocale CategoryLocale(const char* category) {
    return LocaleFromName(CategoryName(category));
}

// The English name of a language in small letters, as drawers of catalogs have it; empty for a name
// that the host's locale data do not know.
std::string LanguageOf(std::string_view localeName) {
    const QLocale::Language language = LocaleFromName(localeName).language();
    switch (language) {
    case QLocale::C:
    case QLocale::AnyLanguage:
        return localeName.starts_with("C") || localeName.starts_with("POSIX") ? "english" : "";
    case QLocale::NorwegianBokmal:
    case QLocale::NorwegianNynorsk:
        return "norwegian";
    default:
        return Utf8(QLocale::languageToString(language).toLower());
    }
}

void AddLanguage(std::vector<std::string>& languages, std::string language) {
    if (!language.empty() && languages.size() < MaxLanguages &&
        std::ranges::find(languages, language) == languages.end())
        languages.push_back(std::move(language));
}

// LANGUAGE is a list of wishes that counts where messages are not in the C locale; the language of the
// messages stands behind them.
std::vector<std::string> ReadLanguages() {
    const std::string messages = LanguageOf(CategoryName("LC_MESSAGES"));
    const bool isPlain = CategoryLocale("LC_MESSAGES").language() == QLocale::C;
    std::string_view wishes = isPlain ? std::string_view() : Variable("LANGUAGE");
    std::vector<std::string> languages;
    while (!wishes.empty()) {
        const std::size_t end = std::min(wishes.find(':'), wishes.size());
        AddLanguage(languages, LanguageOf(wishes.substr(0, end)));
        wishes.remove_prefix(std::min(end + 1, wishes.size()));
    }
    AddLanguage(languages, messages);
    if (languages.empty())
        languages.emplace_back("english");
    return languages;
}

qsizetype FirstLength(const QString& text) {
    return text.size() > 1 && text.at(0).isHighSurrogate() ? 2 : std::min<qsizetype>(text.size(), 1);
}

NameForms MakeForms(const QLocale& times, const QString& name) {
    const QString first = name.left(FirstLength(name));
    const QString rest = name.mid(FirstLength(name));
    return {Utf8(name), Utf8(times.toLower(first) + rest), Utf8(times.toUpper(first) + rest),
            Utf8(times.toUpper(name))};
}

void LoadNames(const QLocale& times, LocaleData& data) {
    for (int day = 0; day < 7; ++day) {
        const auto at = static_cast<std::size_t>(day);
        const int isoDay = day == 0 ? 7 : day; // Monday is 1
        data.ShortWeekdays[at] = MakeForms(times, times.dayName(isoDay, QLocale::ShortFormat));
        data.Weekdays[at] = MakeForms(times, times.dayName(isoDay));
        data.LoneWeekdays[at] = MakeForms(times, times.standaloneDayName(isoDay));
    }
    for (int month = 1; month <= 12; ++month) {
        const auto at = static_cast<std::size_t>(month - 1);
        data.ShortMonths[at] = MakeForms(times, times.monthName(month, QLocale::ShortFormat));
        data.Months[at] = MakeForms(times, times.monthName(month));
        data.LoneMonths[at] = MakeForms(times, times.standaloneMonthName(month));
    }
    data.DayHalves = {MakeForms(times, times.amText()), MakeForms(times, times.pmText())};
}

// True when no date of the format is longer than MaxDateText; late days and hours have the longest
// numbers.
bool FitsDateText(const std::string& format, const LocaleData& data) {
    if (format.size() > MaxDateText)
        return false;
    for (std::uint16_t month = 1; month <= 12; ++month)
        for (std::uint16_t day = 22; day <= 28; ++day) {
            const std::uint32_t date = dos::Date2Amiga({58, 58, 22, day, month, 2028, 0});
            std::string text;
            AppendDate(text, format, date, data);
            if (text.size() > MaxDateText)
                return false;
        }
    return true;
}

void LoadFormats(const QLocale& times, LocaleData& data) {
    const auto date = [&times](QLocale::FormatType type) {
        return CodesFromPattern(Utf8(times.dateFormat(type))) + ' ';
    };
    const auto time = [&times](QLocale::FormatType type) {
        return CodesFromPattern(Utf8(times.timeFormat(type)));
    };
    const std::string shortDate = date(QLocale::ShortFormat);
    data.ShortDateTimeFormat = shortDate + time(QLocale::ShortFormat);
    data.DateTimeFormat = date(QLocale::LongFormat) + time(QLocale::LongFormat);
    if (!FitsDateText(data.DateTimeFormat, data))
        data.DateTimeFormat = shortDate + time(QLocale::LongFormat);
    if (!FitsDateText(data.DateTimeFormat, data)) // long words for AM and PM
        data.DateTimeFormat = shortDate + "%H:%M:%S";
}

std::unique_ptr<Reading> ReadLocale() {
    auto reading = std::make_unique<Reading>();
    const QLocale times = CategoryLocale("LC_TIME");
    const QLocale numbers = CategoryLocale("LC_NUMERIC");
    LoadNames(times, reading->Data);
    LoadFormats(times, reading->Data);
    reading->Data.GroupSeparator = Utf8(numbers.groupSeparator());
    reading->Data.DecimalPoint = Utf8(numbers.decimalPoint());
    reading->Data.Languages = ReadLanguages();
    reading->Characters = CategoryLocale("LC_CTYPE");
    return reading;
}

const Reading& MakeCurrent() {
    const std::lock_guard guard(State.Lock);
    State.Readings.push_back(ReadLocale());
    State.Current.store(State.Readings.back().get(), std::memory_order_release);
    return *State.Readings.back();
}

const Reading& CurrentReading() {
    const Reading* current = State.Current.load(std::memory_order_acquire);
    return current != nullptr ? *current : MakeCurrent();
}

// Where the run of valid characters, or of invalid bytes, that begins at `at` ends.
std::size_t RunEnd(std::string_view text, std::size_t at, bool valid) {
    while (at < text.size()) {
        const utility::Character c = utility::Decode(text, at);
        if ((c.Code < utility::InvalidByteBase) != valid)
            break;
        at += c.Length;
    }
    return at;
}

// Converts the valid runs of a text, which may hold invalid bytes.
template <typename Conversion>
std::string ConvertValid(std::string_view text, Conversion convert) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t validEnd = RunEnd(text, at, true);
        result += Utf8(convert(QString::fromUtf8(text.data() + at, static_cast<qsizetype>(validEnd - at))));
        at = RunEnd(text, validEnd, false);
        result += text.substr(validEnd, at - validEnd);
    }
    return result;
}

} // namespace

const LocaleData& CurrentData() {
    return CurrentReading().Data;
}

std::string DateTimeFormat() {
    return CurrentData().DateTimeFormat;
}

std::string ShortDateTimeFormat() {
    return CurrentData().ShortDateTimeFormat;
}

std::string MonthName(std::uint16_t month) {
    return month < 1 || month > 12 ? std::string() : CurrentData().LoneMonths[month - 1U].Plain;
}

std::string GroupSeparator() {
    return CurrentData().GroupSeparator;
}

std::string DecimalPoint() {
    return CurrentData().DecimalPoint;
}

std::string LanguageName() {
    return CurrentData().Languages.front() + ".language";
}

std::vector<std::string> PreferredLanguages() {
    return CurrentData().Languages;
}

std::string ToUpper(std::string_view text) {
    const QLocale& characters = CurrentReading().Characters;
    return ConvertValid(text, [&](const QString& valid) { return characters.toUpper(valid); });
}

std::string ToLower(std::string_view text) {
    const QLocale& characters = CurrentReading().Characters;
    return ConvertValid(text, [&](const QString& valid) { return characters.toLower(valid); });
}

void Reset() {
    MakeCurrent();
}

} // namespace locale
