#include "platform/dos/Dates.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <limits>

namespace dos {
namespace {

constexpr std::int64_t LastSecond = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t Day = SecondsPerDay;

// The offsets of the local zone over the whole range of dates, in slots of about six days. A slot
// is filled when it is first asked for; threads that meet there write the same value.
constexpr int SlotBits = 19;
constexpr std::size_t SlotCount = std::size_t{1} << (32 - SlotBits);
constexpr std::int32_t SlotUnknown = 0;
constexpr std::int32_t SlotMixed = 1;      // the offset changes within the slot
constexpr std::int32_t SlotBase = 1 << 20; // else SlotBase + offset
std::array<std::atomic<std::int32_t>, SlotCount> OffsetSlots{};

std::int32_t AskOffset(std::int64_t unixSeconds) noexcept {
    const std::time_t moment = unixSeconds;
    std::tm calendar{};
    if (::localtime_r(&moment, &calendar) == nullptr)
        return 0;
    return static_cast<std::int32_t>(calendar.tm_gmtoff);
}

std::int32_t FillSlot(std::size_t slot) noexcept {
    const std::int64_t first = UnixOfAmigaEpoch + (static_cast<std::int64_t>(slot) << SlotBits);
    const std::int64_t last = first + (std::int64_t{1} << SlotBits) - 1;
    const std::int32_t offset = AskOffset(first);
    bool steady = AskOffset(last) == offset;
    for (std::int64_t moment = first + Day; steady && moment < last; moment += Day)
        steady = AskOffset(moment) == offset;
    const std::int32_t value = steady ? SlotBase + offset : SlotMixed;
    OffsetSlots[slot].store(value, std::memory_order_relaxed);
    return value;
}

// What local time is ahead of UTC at a moment, in seconds.
std::int32_t OffsetAt(std::int64_t unixSeconds) noexcept {
    const std::int64_t second = unixSeconds - UnixOfAmigaEpoch;
    if (second < 0 || second > LastSecond)
        return AskOffset(unixSeconds);
    const auto slot = static_cast<std::size_t>(second >> SlotBits);
    std::int32_t value = OffsetSlots[slot].load(std::memory_order_relaxed);
    if (value == SlotUnknown)
        value = FillSlot(slot);
    return value == SlotMixed ? AskOffset(unixSeconds) : value - SlotBase;
}

std::uint32_t Clamp(std::int64_t seconds) noexcept {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(seconds, 0, LastSecond));
}

bool IsLeapYear(int year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int year, int month) noexcept {
    constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

// Days from 1 January 1978 to 1 January of a year from 1978 on.
int DaysBeforeYear(int year) noexcept {
    const auto leapDays = [](int last) { return last / 4 - last / 100 + last / 400; };
    return (year - 1978) * 365 + leapDays(year - 1) - leapDays(1977);
}

} // namespace

std::uint32_t AmigaSecondsFromUnix(std::int64_t unixSeconds) noexcept {
    const std::int64_t near =
        std::clamp(unixSeconds, UnixOfAmigaEpoch - 2 * Day, UnixOfAmigaEpoch + LastSecond + 2 * Day);
    return Clamp(near + OffsetAt(near) - UnixOfAmigaEpoch);
}

std::int64_t UnixFromAmigaSeconds(std::uint32_t amigaSeconds) noexcept {
    const std::int64_t local = UnixOfAmigaEpoch + amigaSeconds;
    // A day to either side is past the moment in every zone, so these are the offsets around a near
    // change.
    const std::int32_t before = OffsetAt(local - Day);
    const std::int32_t after = OffsetAt(local + Day);
    if (before == after || OffsetAt(local - before) == before)
        return local - before;
    const bool isAfter = OffsetAt(local - after) == after;
    return local - (isAfter ? after : before);
}

std::int32_t ZoneOffset(std::uint32_t amigaSeconds) noexcept {
    return OffsetAt(UnixFromAmigaSeconds(amigaSeconds));
}

void ResetZone() noexcept {
    ::tzset();
    for (std::atomic<std::int32_t>& slot : OffsetSlots)
        slot.store(SlotUnknown, std::memory_order_relaxed);
}

std::uint32_t CurrentAmigaSeconds() noexcept {
    return AmigaSecondsFromUnix(std::time(nullptr));
}

DateStamp CurrentDateStamp() noexcept {
    std::timespec now{};
    std::timespec_get(&now, TIME_UTC);
    DateStamp stamp = DateStampFromSeconds(AmigaSecondsFromUnix(now.tv_sec));
    stamp.Tick += static_cast<std::int32_t>(now.tv_nsec / (1000000000 / TicksPerSecond));
    return stamp;
}

DateStamp DateStampFromSeconds(std::uint32_t amigaSeconds) noexcept {
    const std::uint32_t inDay = amigaSeconds % SecondsPerDay;
    return {static_cast<std::int32_t>(amigaSeconds / SecondsPerDay), static_cast<std::int32_t>(inDay / 60),
            static_cast<std::int32_t>(inDay % 60) * TicksPerSecond};
}

std::uint32_t SecondsFromDateStamp(const DateStamp& stamp) noexcept {
    return Clamp(stamp.Days * Day + stamp.Minute * std::int64_t{60} + stamp.Tick / TicksPerSecond);
}

ClockData Amiga2Date(std::uint32_t amigaSeconds) noexcept {
    const int days = static_cast<int>(amigaSeconds / SecondsPerDay);
    const std::uint32_t inDay = amigaSeconds % SecondsPerDay;
    int year = 1978 + days / 366; // never too late, at most one too early
    while (DaysBeforeYear(year + 1) <= days)
        ++year;
    int dayOfMonth = days - DaysBeforeYear(year);
    int month = 1;
    while (dayOfMonth >= DaysOfMonth(year, month))
        dayOfMonth -= DaysOfMonth(year, month++);
    return {static_cast<std::uint16_t>(inDay % 60),   static_cast<std::uint16_t>(inDay / 60 % 60),
            static_cast<std::uint16_t>(inDay / 3600), static_cast<std::uint16_t>(dayOfMonth + 1),
            static_cast<std::uint16_t>(month),        static_cast<std::uint16_t>(year),
            static_cast<std::uint16_t>(days % 7)};
}

std::optional<std::uint32_t> CheckDate(const ClockData& date) noexcept {
    if (date.Year < 1978 || date.Year > 2114 || date.Month < 1 || date.Month > 12 || date.Day < 1 ||
        date.Day > DaysOfMonth(date.Year, date.Month) || date.Hour > 23 || date.Minute > 59 ||
        date.Second > 59)
        return std::nullopt;
    int days = DaysBeforeYear(date.Year) + date.Day - 1;
    for (int month = 1; month < date.Month; ++month)
        days += DaysOfMonth(date.Year, month);
    const std::int64_t seconds =
        days * Day + date.Hour * std::int64_t{3600} + date.Minute * std::int64_t{60} + date.Second;
    if (seconds > LastSecond)
        return std::nullopt;
    return static_cast<std::uint32_t>(seconds);
}

std::uint32_t Date2Amiga(const ClockData& date) noexcept {
    return CheckDate(date).value_or(0);
}

} // namespace dos
