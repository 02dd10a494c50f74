#include "platform/dos/Dates.h"

#include "tests/platform/utility/ScopedVariable.h"

#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace {

// A zone rule for the life of the object, without need of the host's zone files.
class ScopedZone {
public:
    explicit ScopedZone(const std::string& rule) : Variable("TZ", rule) { dos::ResetZone(); }
    ~ScopedZone() { dos::ResetZone(); }

private:
    ScopedVariable Variable;
};

const std::string CentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
const std::string Newfoundland = "NST3:30NDT,M3.2.0/0:01,M11.1.0/0:01"; // changes at one minute past midnight
constexpr std::int64_t Summer2024 = 1711846800;                         // 31 March 2024, 01:00 UTC

std::uint32_t LocalSeconds(std::uint16_t year, std::uint16_t month, std::uint16_t day, std::uint16_t hour,
                           std::uint16_t minute) {
    return dos::Date2Amiga({0, minute, hour, day, month, year, 0});
}

TEST(DatesTest, CalendarAgreesWithTheGregorianOne) {
    namespace chrono = std::chrono;
    const chrono::sys_days epoch = chrono::year(1978) / 1 / 1;
    for (std::uint32_t day = 0; day <= std::numeric_limits<std::uint32_t>::max() / dos::SecondsPerDay;
         ++day) {
        const chrono::year_month_day expected = epoch + chrono::days(day);
        const dos::ClockData date = dos::Amiga2Date(day * dos::SecondsPerDay + 3723);
        ASSERT_EQ(int{date.Year}, int{expected.year()});
        ASSERT_EQ(unsigned{date.Month}, unsigned{expected.month()});
        ASSERT_EQ(unsigned{date.Day}, unsigned{expected.day()});
        ASSERT_EQ(date.WeekDay, chrono::weekday(epoch + chrono::days(day)).c_encoding());
        ASSERT_EQ(date.Hour * 10000 + date.Minute * 100 + date.Second, 10203);
        ASSERT_EQ(dos::CheckDate(date), day * dos::SecondsPerDay + 3723);
    }
}

TEST(DatesTest, CheckDateRefusesWhatIsNoDate) {
    using Date = dos::ClockData;
    EXPECT_EQ(dos::CheckDate(Date{0, 0, 0, 23, 7, 1985, 0}), 238464000U);
    EXPECT_EQ(dos::CheckDate(Date{15, 28, 6, 7, 2, 2114, 0}), std::numeric_limits<std::uint32_t>::max());
    for (const Date& date :
         {Date{16, 28, 6, 7, 2, 2114, 0}, Date{0, 0, 0, 29, 2, 2023, 0}, Date{0, 0, 0, 29, 2, 2100, 0},
          Date{0, 0, 0, 0, 1, 2000, 0}, Date{0, 0, 0, 1, 13, 2000, 0}, Date{0, 0, 24, 1, 1, 2000, 0},
          Date{0, 60, 0, 1, 1, 2000, 0}, Date{0, 0, 0, 31, 12, 1977, 0}})
        EXPECT_EQ(dos::CheckDate(date), std::nullopt) << date.Year << '-' << date.Month << '-' << date.Day;
}

TEST(DatesTest, LocalTimeFollowsTheClockOverAChangeOfItsOffset) {
    const ScopedZone zone(CentralEurope);
    EXPECT_EQ(dos::AmigaSecondsFromUnix(Summer2024 - 1), LocalSeconds(2024, 3, 31, 1, 59) + 59);
    EXPECT_EQ(dos::AmigaSecondsFromUnix(Summer2024), LocalSeconds(2024, 3, 31, 3, 0));
    EXPECT_EQ(dos::AmigaSecondsFromUnix(Summer2024 + 86400 * 200), LocalSeconds(2024, 10, 17, 3, 0));
    EXPECT_EQ(dos::UnixFromAmigaSeconds(LocalSeconds(2024, 1, 31, 1, 0)), 1706659200);
    EXPECT_EQ(dos::ZoneOffset(LocalSeconds(2024, 7, 1, 0, 0)), 7200);
    EXPECT_EQ(dos::ZoneOffset(LocalSeconds(2024, 1, 1, 0, 0)), 3600);
}

TEST(DatesTest, TimesThatTheClockSkipsOrRepeatsHaveOneMoment) {
    const ScopedZone zone(CentralEurope);
    EXPECT_EQ(dos::UnixFromAmigaSeconds(LocalSeconds(2024, 3, 31, 2, 30)), Summer2024 + 1800);
    const std::int64_t winter2024 = 1729990800; // 27 October 2024, 01:00 UTC
    EXPECT_EQ(dos::UnixFromAmigaSeconds(LocalSeconds(2024, 10, 27, 2, 30)), winter2024 - 1800);
}

// Compares with the host's own conversion at random moments and around each change of the offset.
TEST(DatesTest, AgreesWithTheHostInEveryZone) {
    for (const std::string& rule :
         {CentralEurope, Newfoundland, std::string("<+1245>-12:45<+1345>,M9.5.0/2:45,M4.1.0/3:45"),
          std::string("UTC0"), std::string("<-12>12")}) {
        const ScopedZone zone(rule);
        std::mt19937 random(3);
        std::uniform_int_distribution<std::int64_t> anyMoment(dos::UnixOfAmigaEpoch + 86400, 4547000000);
        for (int i = 0; i < 4000; ++i) {
            const std::int64_t moment = i % 2 == 0 ? anyMoment(random) : Summer2024 - 20 * 86400 + i * 61;
            const std::time_t time = moment;
            std::tm host{};
            ::localtime_r(&time, &host);
            const std::uint32_t seconds = dos::AmigaSecondsFromUnix(moment);
            const dos::ClockData date = dos::Amiga2Date(seconds);
            ASSERT_EQ(date.Hour * 60 + date.Minute, host.tm_hour * 60 + host.tm_min) << rule << ' ' << moment;
            ASSERT_EQ(date.Day, host.tm_mday) << rule << ' ' << moment;
            ASSERT_EQ(dos::AmigaSecondsFromUnix(dos::UnixFromAmigaSeconds(seconds)), seconds);
        }
    }
}

TEST(DatesTest, MomentsOutsideTheRangeGiveItsEnds) {
    const ScopedZone zone(CentralEurope);
    constexpr auto last = std::numeric_limits<std::uint32_t>::max();
    for (const std::int64_t moment :
         {std::numeric_limits<std::int64_t>::min(), std::int64_t{0}, dos::UnixOfAmigaEpoch - 3601})
        EXPECT_EQ(dos::AmigaSecondsFromUnix(moment), 0U);
    EXPECT_EQ(dos::AmigaSecondsFromUnix(dos::UnixOfAmigaEpoch), 3600U);
    for (const std::int64_t moment : {dos::UnixOfAmigaEpoch + last, std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(dos::AmigaSecondsFromUnix(moment), last);
    EXPECT_EQ(dos::UnixFromAmigaSeconds(0), dos::UnixOfAmigaEpoch - 3600);
    EXPECT_EQ(dos::UnixFromAmigaSeconds(last), dos::UnixOfAmigaEpoch + last - 3600);
}

TEST(DatesTest, ThreadsThatMeetAtNewDatesAgree) {
    const ScopedZone zone(CentralEurope);
    std::vector<std::vector<std::uint32_t>> results(4);
    std::vector<std::jthread> threads;
    for (auto& result : results)
        threads.emplace_back([&result] {
            for (std::int64_t moment = dos::UnixOfAmigaEpoch; moment < 4000000000; moment += 999983)
                result.push_back(dos::AmigaSecondsFromUnix(moment));
        });
    threads.clear();
    for (const auto& result : results)
        EXPECT_EQ(result, results.front());
}

TEST(DatesTest, DateStampsCountDaysMinutesAndTicks) {
    const dos::DateStamp stamp = dos::DateStampFromSeconds(238464000 + 3661);
    EXPECT_EQ(stamp.Days, 2760);
    EXPECT_EQ(stamp.Minute, 61);
    EXPECT_EQ(stamp.Tick, 50);
    EXPECT_EQ(dos::SecondsFromDateStamp(stamp), 238464000U + 3661);
    EXPECT_EQ(dos::SecondsFromDateStamp({-1, 0, 0}), 0U);
    EXPECT_EQ(dos::SecondsFromDateStamp({0, 1441, 149}), 86462U);
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(dos::SecondsFromDateStamp({most, most, most}), std::numeric_limits<std::uint32_t>::max());
}

TEST(DatesTest, NowLiesWithinItsDay) {
    const std::uint32_t before = dos::CurrentAmigaSeconds();
    const dos::DateStamp now = dos::CurrentDateStamp();
    const std::uint32_t after = dos::CurrentAmigaSeconds();
    EXPECT_GE(dos::SecondsFromDateStamp(now), before);
    EXPECT_LE(dos::SecondsFromDateStamp(now), after);
    EXPECT_LT(now.Tick, 60 * dos::TicksPerSecond);
}

} // namespace
