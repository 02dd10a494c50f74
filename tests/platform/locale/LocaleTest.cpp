#include "platform/locale/Locale.h"

#include "platform/dos/Dates.h"
#include "tests/platform/locale/ScopedLocale.h"

#include <ctime>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <vector>

namespace {

const std::uint32_t EarlyDate = dos::Date2Amiga({9, 5, 0, 3, 9, 2025, 0});    // a Wednesday
const std::uint32_t LateDate = dos::Date2Amiga({56, 34, 12, 31, 3, 1998, 0}); // a Tuesday

struct Row {
    std::string_view Format, Early, Late;
};

void ExpectDates(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(locale::FormatDate(row.Format, EarlyDate), row.Early) << row.Format;
        EXPECT_EQ(locale::FormatDate(row.Format, LateDate), row.Late) << row.Format;
    }
}

TEST(FormatDateTest, AgreesWithTheHostOnSharedCodes) {
    const ScopedLocale english("C");
    std::mt19937 random(11);
    for (int i = 0; i < 500; ++i) {
        const auto seconds = static_cast<std::uint32_t>(random());
        const std::time_t moment = dos::UnixOfAmigaEpoch + seconds;
        std::tm date{};
        ::gmtime_r(&moment, &date);
        for (const char code : std::string_view("aAbBhCdDeFHIjmMpRSTUwWyYnt%")) {
            const std::string format = {'%', code, '|'};
            std::string expected(64, '\0');
            expected.resize(std::strftime(expected.data(), expected.size(), format.c_str(), &date));
            ASSERT_EQ(locale::FormatDate(format, seconds), expected) << seconds;
        }
    }
}

TEST(FormatDateTest, HasCodesOfItsOwn) {
    const ScopedLocale english("C");
    ExpectDates({
        {"%d-%b-%y %T", "03-Sep-25 00:05:09", "31-Mar-98 12:34:56"},
        {"%c", "Wed Sep 03 00:05:09 2025", "Tue Mar 31 12:34:56 1998"},
        {"%x %X", "09/03/25 00:05:09", "03/31/98 12:34:56"},
        {"%r", "12:05:09 AM", "12:34:56 PM"},
        {"%-d.%-m.%-y %-M %-S", "3.9.25 5 9", "31.3.98 34 56"},
        {"%-Y %-j %-C", "2025 246 20", "1998 90 19"},
        {"%q %Q", "0 12", "12 12"},
        {"%-a %+a %^a", "wed Wed WED", "tue Tue TUE"},
        {"%-A %+A %^A", "wednesday Wednesday WEDNESDAY", "tuesday Tuesday TUESDAY"},
        {"%<A %>A %<B %>B", "wednesday Wednesday september September", "tuesday Tuesday march March"},
        {"%-b %+b %^b %-B %^B", "sep Sep SEP september SEPTEMBER", "mar Mar MAR march MARCH"},
        {"%-p %+p %^p", "aM AM AM", "pM PM PM"},
    });
}

TEST(FormatDateTest, CopesWithAnyFormat) {
    const ScopedLocale english("C");
    ExpectDates({
        {"", "", ""},
        {"100%", "100", "100"},
        {"%-", "", ""},
        {"%k%-k%<%", "kk%", "kk%"},
        {"%é \xFF", "é \xFF", "é \xFF"},
        {"%%d", "%d", "%d"},
    });
}

TEST(FormatDateTest, NamesAndTheirCasesAreThoseOfTheLanguage) {
    {
        const ScopedLocale french("fr_FR.UTF-8");
        ExpectDates({{"%B %+B %^B", "septembre Septembre SEPTEMBRE", "mars Mars MARS"}});
    }
    {
        const ScopedLocale polish("pl_PL.UTF-8"); // two forms of the months, letters outside ASCII
        ExpectDates({{"%d %B", "03 września", "31 marca"},
                     {"%>B %<B %^A", "Wrzesień wrzesień ŚRODA", "Marzec marzec WTOREK"}});
        EXPECT_EQ(locale::MonthName(3), "marzec");
    }
    {
        const ScopedLocale turkish("tr_TR.UTF-8");
        EXPECT_EQ(locale::ToUpper("izmir"), "İZMİR");
        EXPECT_EQ(locale::ToLower("ISPARTA"), "ısparta");
    }
    EXPECT_EQ(locale::MonthName(0), "");
    EXPECT_EQ(locale::MonthName(13), "");
}

TEST(FormatDateTest, ZoneIsTheHostsAtThatDate) {
    const ScopedVariable zone("TZ", "<-0330>3:30<-0230>,M3.2.0,M11.1.0");
    dos::ResetZone();
    ExpectDates({{"%z", "-0230", "-0230"}});
    EXPECT_EQ(locale::FormatDate("%z", LateDate + 86400U * 300), "-0330");
}

TEST(LocaleTest, DateFormatsFollowTheLocale) {
    struct Expected {
        const char* Name;
        std::string_view Long, Short;
    };
    const Expected rows[] = {
        {"C", "Wed, 3 Sep 2025 00:05:09", "3 Sep 2025 00:05:09"},
        {"en_US.UTF-8", "Wed, Sep 3, 2025 12:05:09 AM", "9/3/25 12:05 AM"},
        {"de_DE.UTF-8", "Mi., 3. Sept. 2025 00:05:09", "03.09.25 00:05"},
        {"ja_JP.UTF-8", "2025/09/03 0時05分09秒", "2025/09/03 0:05"},
        {"xx_YY.UTF-8", "Wed, 3 Sep 2025 00:05:09", "3 Sep 2025 00:05:09"},
    };
    for (const Expected& row : rows) {
        const ScopedLocale user(row.Name);
        EXPECT_EQ(locale::FormatDate(locale::DateTimeFormat(), EarlyDate), row.Long) << row.Name;
        EXPECT_EQ(locale::FormatDate(locale::ShortDateTimeFormat(), EarlyDate), row.Short) << row.Name;
    }
}

TEST(LocaleTest, DateTextsAndFormatsFitTheirBuffersInEveryLanguage) {
    for (const char* name : {"ru_RU", "ar_EG", "hi_IN", "th_TH", "el_GR", "es_ES", "lt_LT", "km_KH", "my_MM",
                             "ta_IN", "bo_CN"}) {
        const ScopedLocale user(name);
        const std::string format = locale::DateTimeFormat();
        EXPECT_LE(format.size(), locale::MaxDateText) << name;
        for (std::uint32_t day = 0; day < 400; ++day) {
            const std::uint32_t date = LateDate + 36000 + day * dos::SecondsPerDay;
            ASSERT_LE(locale::FormatDate(format, date).size(), locale::MaxDateText) << name;
        }
    }
}

TEST(LocaleTest, EachCategoryHasItsOwnVariable) {
    const ScopedVariable all("LC_ALL", ""), wishes("LANGUAGE", ""), lang("LANG", "en_US.UTF-8");
    const ScopedVariable numbers("LC_NUMERIC", "de_DE.UTF-8"), times("LC_TIME", "fr_FR.UTF-8");
    const ScopedVariable messages("LC_MESSAGES", "it_IT.UTF-8");
    locale::Reset();
    EXPECT_EQ(locale::GroupSeparator(), ".");
    EXPECT_EQ(locale::DecimalPoint(), ",");
    EXPECT_EQ(locale::FormatDate("%A", EarlyDate), "mercredi");
    EXPECT_EQ(locale::LanguageName(), "italian.language");
    const ScopedVariable first("LANGUAGE", "tlh:nl:de_AT:nl::en");
    locale::Reset();
    EXPECT_EQ(locale::LanguageName(), "dutch.language");
    EXPECT_EQ(locale::PreferredLanguages(),
              (std::vector<std::string>{"dutch", "german", "english", "italian"}));
    const ScopedVariable over("LC_ALL", "C.UTF-8");
    locale::Reset();
    EXPECT_EQ(locale::GroupSeparator(), ",");
    EXPECT_EQ(locale::LanguageName(), "english.language");
}

TEST(LocaleTest, LanguagesHaveFileNames) {
    const std::pair<const char*, std::string_view> rows[] = {
        {"es_ES", "spanish.language"},       {"de_AT.UTF-8", "german.language"},
        {"el_GR", "greek.language"},         {"en_GB", "english.language"},
        {"POSIX", "english.language"},       {"nb_NO", "norwegian.language"},
        {"sr_RS@latin", "serbian.language"},
    };
    for (const auto& [name, file] : rows) {
        const ScopedLocale user(name);
        EXPECT_EQ(locale::LanguageName(), file) << name;
    }
}

TEST(LocaleTest, ScriptOfTheLocaleCounts) {
    const ScopedLocale latin("sr_RS.UTF-8@latin");
    EXPECT_EQ(locale::FormatDate("%B", EarlyDate), "septembar");
}

TEST(LocaleTest, CaseOfWholeTextsKeepsInvalidBytes) {
    const ScopedLocale german("de_DE.UTF-8");
    EXPECT_EQ(locale::ToUpper("straße \xFF\xC3 ä"), "STRASSE \xFF\xC3 Ä");
    EXPECT_EQ(locale::ToLower("\xFF\xFFÄPFEL"), "\xFF\xFFäpfel");
    EXPECT_EQ(locale::ToUpper(""), "");
}

TEST(LocaleTest, TextsMayBeFormedInManyThreadsWhileTheLocaleIsReadAgain) {
    const ScopedLocale english("C");
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([] {
            for (std::uint32_t day = 0; day < 2000; ++day)
                ASSERT_EQ(locale::FormatDate("%F", EarlyDate), "2025-09-03");
        });
    for (int i = 0; i < 5; ++i)
        locale::Reset();
}

} // namespace
