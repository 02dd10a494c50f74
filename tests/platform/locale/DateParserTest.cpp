#include "platform/locale/DateParser.h"

#include "platform/dos/Dates.h"
#include "tests/platform/locale/ScopedLocale.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using locale::NamedDay;

// "2025-09-03 00:05:09", or "none".
std::string Shown(std::optional<std::uint32_t> moment) {
    return moment ? locale::FormatDate("%F %T", *moment) : "none";
}

struct Row {
    std::string_view Format, Text, Expected;
};

void ExpectDates(std::initializer_list<Row> rows) {
    for (const Row& row : rows)
        EXPECT_EQ(Shown(locale::ParseDate(row.Format, row.Text)), row.Expected)
            << row.Format << " | " << row.Text;
}

TEST(ParseDateTest, ReadsWhatFormatDateWritesInEveryLanguage) {
    const std::string_view wholeFormats[] = {
        "%c",
        "%d-%b-%Y %T",
        "%F %X",
        "%^A, %e. %^B %Y %r",
        "%+a %>B %-d %Y %Q.%M.%-S %+p",
        "%Y%m%d%H%M%S",
        "%<A %<B %d %-Y %R:%S",
        "%Y/%j %q:%-M:%S",
        "%C|%y %h %d %T %z week %U %W %w%%",
    };
    std::mt19937 random(7);
    for (const char* name :
         {"C", "de_DE", "el_GR", "es_ES", "fi_FI", "fr_FR", "it_IT", "ja_JP", "ko_KR", "lt_LT", "nl_NL",
          "pl_PL", "pt_BR", "ru_RU", "tr_TR", "vi_VN", "zh_CN", "hr_HR", "ka_GE"}) {
        const ScopedLocale user(name);
        for (int turn = 0; turn < 100; ++turn) {
            const auto moment = static_cast<std::uint32_t>(random());
            for (const std::string_view format : wholeFormats)
                ASSERT_EQ(locale::ParseDate(format, locale::FormatDate(format, moment)), moment)
                    << name << ' ' << format << ": " << locale::FormatDate(format, moment);
        }
        const std::uint32_t near = dos::Date2Amiga({56, 34, 22, 28, 9, 2028, 0}); // two digits are enough
        for (const std::string& format : {locale::DateTimeFormat(), locale::ShortDateTimeFormat()}) {
            const std::string text = locale::FormatDate(format, near);
            const auto moment = locale::ParseDate(format, text);
            ASSERT_TRUE(moment) << name << ' ' << text;
            EXPECT_EQ(locale::FormatDate(format, *moment), text) << name;
            EXPECT_EQ(*moment / 60, near / 60) << name << ' ' << text; // some show no seconds
        }
    }
}

TEST(ParseDateTest, FormsThatPeopleTypeAreUnderstood) {
    const ScopedLocale english("C");
    ExpectDates({
        {"%d-%b-%y %T", "3-sep-25 0:5:9", "2025-09-03 00:05:09"},
        {"%d-%b-%y %T", "  03-SEPTEMBER-2025   00:05:09 ", "2025-09-03 00:05:09"},
        {"%d.%m.%y", "31.12.77", "2077-12-31 00:00:00"},
        {"%d.%m.%y", "01.01.78", "1978-01-01 00:00:00"},
        {"%d.%m.%y", "01.01.00", "2000-01-01 00:00:00"},
        {"%Y", "99", "1999-01-01 00:00:00"},
        {"%y%m%d", "250903", "2025-09-03 00:00:00"},
        {"%D %T", "9/3/2025 00:05:09", "2025-09-03 00:05:09"},
        {"%I:%M %p", "12:05 am", "1978-01-01 00:05:00"},
        {"%I:%M %p", "12:05PM", "1978-01-01 12:05:00"},
        {"%Q %p", "11 pm", "1978-01-01 23:00:00"},
        {"%I:%M", "12:05", "1978-01-01 12:05:00"},
        {"%a %d %b %Y", "Fri 03 Sep 2025", "2025-09-03 00:00:00"}, // it was a Wednesday
        {"%Y %j", "2024 366", "2024-12-31 00:00:00"},
        {"%n%H%tUhr %%%k%", "5 uhr %K", "1978-01-01 05:00:00"},
        {"%-é", "É", "1978-01-01 00:00:00"},
        {"", "", "1978-01-01 00:00:00"},
    });
    const ScopedLocale german("de_DE.UTF-8");
    ExpectDates({
        {"%d. %b %Y", "3. Sept 2025", "2025-09-03 00:00:00"}, // without the dot of "Sept."
        {"%d. %b %Y", "3. märz 2025", "2025-03-03 00:00:00"},
        {"%d. %b %Y", "3. MÄRZ 2025", "2025-03-03 00:00:00"},
        {"%d. %b %Y", "3. March 2025", "none"},
        {"%A, %d.%m.%Y", "mittwoch, 03.09.2025", "2025-09-03 00:00:00"},
    });
}

TEST(ParseDateTest, WhatIsNoDateGivesNothing) {
    const ScopedLocale english("C");
    for (const auto& [format, text] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
             {"%F", ""},
             {"%F", "2025-09-"},
             {"%F", "2025-09-31"},
             {"%F", "2025-13-01"},
             {"%F", "2025-02-29"},
             {"%F", "1977-12-31"},
             {"%F", "2114-02-08"},
             {"%F", "2025-09-03x"},
             {"%F", "-2025-09-03"},
             {"%F", "2025-+9-03"},
             {"%F", "20250-09-03"},
             {"%F %T", "2114-02-07 06:28:16"},
             {"%T", "24:00:00"},
             {"%T", "23:60:00"},
             {"%T", "23:59:60"},
             {"%I %p", "13 PM"},
             {"%I %p", "1"},
             {"%I %p", "1 xm"},
             {"%Y %j", "2025 366"},
             {"%Y %j", "2114 100"},
             {"%j", "0"},
             {"%y", "123"},
             {"%d %b", "3 Sap"},
             {"%a", "Someday"},
             {"%z", "0200"},
             {"%z", "+02"},
             {"%H \xFF", "5 \xFE"},
         })
        EXPECT_EQ(Shown(locale::ParseDate(format, text)), "none") << format << " | " << text;
}

TEST(ParseFreeDateTest, DaysAndTimesStandAloneOrTogether) {
    const ScopedLocale german("de_DE.UTF-8");
    const std::uint32_t now = dos::Date2Amiga({9, 5, 13, 3, 9, 2025, 0}); // a Wednesday
    struct FreeRow {
        std::string_view Text, Expected;
        NamedDay Weekday = NamedDay::Last;
    };
    const FreeRow rows[] = {
        {"01-Jan-78", "1978-01-01 00:00:00"},
        {"3-märz-2030", "2030-03-03 00:00:00"},
        {"31-DEC-99 23:59:59", "1999-12-31 23:59:59"},
        {"2024-02-29", "2024-02-29 00:00:00"},
        {"12:34", "2025-09-03 12:34:00"},
        {"today", "2025-09-03 00:00:00"},
        {"ToMorrow 1:02", "2025-09-04 01:02:00"},
        {" 01:02:03\tyesterday ", "2025-09-02 01:02:03"},
        {"tuesday", "2025-09-02 00:00:00"},
        {"Di.", "2025-09-02 00:00:00"},
        {"thu", "2025-08-28 00:00:00"},
        {"Donnerstag 8:00", "2025-09-04 08:00:00", NamedDay::Next},
        {"wednesday", "2025-08-27 00:00:00"},
        {"wednesday", "2025-09-10 00:00:00", NamedDay::Next},
        {"", "none"},
        {"now", "none"},
        {"25-09-03", "none"}, // which of them is the year?
        {"30-Feb-24", "none"},
        {"2024-02-30", "none"},
        {"today tomorrow", "none"},
        {"12:34 12:35", "none"},
        {"12:34:56:78", "none"},
        {"today 24:00", "none"},
        {"wednesdays", "none"},
    };
    for (const FreeRow& row : rows)
        EXPECT_EQ(Shown(locale::ParseFreeDate(row.Text, now, row.Weekday)), row.Expected) << row.Text;
}

TEST(ParseFreeDateTest, DaysBeyondTheCalendarGiveNothing) {
    const ScopedLocale english("C");
    constexpr std::uint32_t last = 0xFFFFFFFF; // 7 February 2114, 06:28:15
    EXPECT_EQ(locale::ParseFreeDate("yesterday", 5), std::nullopt);
    EXPECT_EQ(locale::ParseFreeDate("monday", 5), std::nullopt);
    EXPECT_EQ(locale::ParseFreeDate("tomorrow", last), std::nullopt);
    EXPECT_EQ(locale::ParseFreeDate("today 06:28:15", last), last);
    EXPECT_EQ(locale::ParseFreeDate("today 06:28:16", last), std::nullopt);
}

} // namespace
