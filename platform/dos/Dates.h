// Dates of dos: local wall time counted from 1 January 1978. Converts from and to the host's Unix
// time through the local calendar; texts of dates are the work of platform/locale.
#pragma once

#include <cstdint>
#include <optional>

namespace dos {

inline constexpr std::uint32_t SecondsPerDay = 86400;
inline constexpr std::int32_t TicksPerSecond = 50;
inline constexpr std::int64_t UnixOfAmigaEpoch =
    252460800; // 1 Jan 1978 00:00 as Unix time in a zone without offset

struct DateStamp {
    std::int32_t Days;   // since 1 January 1978
    std::int32_t Minute; // since midnight
    std::int32_t Tick;   // 1/50 s in the minute
};

// A calendar date; Year is full, Month 1 to 12, WeekDay 0 for Sunday.
struct ClockData {
    std::uint16_t Second, Minute, Hour;
    std::uint16_t Day, Month, Year;
    std::uint16_t WeekDay;
};

// Seconds since 1 January 1978 on the local clock. Moments outside the 32 bits give the first or
// the last one.
[[nodiscard]] std::uint32_t AmigaSecondsFromUnix(std::int64_t unixSeconds) noexcept;
// The moment at which the local clock shows these seconds. An hour that the clock shows twice means
// its first showing, one that it skips the moment that lies as far behind the change.
[[nodiscard]] std::int64_t UnixFromAmigaSeconds(std::uint32_t amigaSeconds) noexcept;
// What the local zone is ahead of UTC at that local time, in seconds.
[[nodiscard]] std::int32_t ZoneOffset(std::uint32_t amigaSeconds) noexcept;
// Has the zone rules read again; for a change of the TZ variable. Not while other threads convert.
void ResetZone() noexcept;

// The present moment on the local clock.
[[nodiscard]] std::uint32_t CurrentAmigaSeconds() noexcept;
[[nodiscard]] DateStamp CurrentDateStamp() noexcept;

[[nodiscard]] DateStamp DateStampFromSeconds(std::uint32_t amigaSeconds) noexcept;
// Fields out of their range count on; the result is clamped to the 32 bits.
[[nodiscard]] std::uint32_t SecondsFromDateStamp(const DateStamp& stamp) noexcept;

[[nodiscard]] ClockData Amiga2Date(std::uint32_t amigaSeconds) noexcept;
// WeekDay is not looked at. Nothing when the fields name no date of the calendar within the 32
// bits.
[[nodiscard]] std::optional<std::uint32_t> CheckDate(const ClockData& date) noexcept;
// The same without a check; 0 for what is no date.
[[nodiscard]] std::uint32_t Date2Amiga(const ClockData& date) noexcept;

} // namespace dos
