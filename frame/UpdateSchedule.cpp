#include "frame/UpdateSchedule.h"

#include "model/Prefs.h"
#include "online/UpdateCheck.h"
#include "platform/dos/Dates.h"
#include "platform/dos/Files.h"
#include "sak/Format.h"

#include <charconv>
#include <optional>
#include <string>

namespace solvane {

namespace {

constexpr const char* LastCheckFile = "ENVARC:Solvane/lastupdatecheck";
constexpr std::size_t LongestNumber = 32;

// Amiga seconds of the last check; nothing when there was none.
std::optional<std::uint64_t> LastCheck() {
    const auto text = dos::ReadWhole(LastCheckFile, LongestNumber);
    std::uint64_t seconds = 0;
    if (!text || std::from_chars(text->data(), text->data() + text->size(), seconds).ec != std::errc()) {
        return std::nullopt;
    }
    return seconds;
}

} // namespace

std::uint32_t UpdateInterval(std::int32_t frequency) {
    switch (frequency) {
    case 0:
        return 86400;
    case 1:
        return 604800;
    default:
        return 2635200;
    }
}

void CheckForUpdates() {
    const std::uint32_t now = dos::CurrentAmigaSeconds();
    const auto last = LastCheck();
    if (last && *last + UpdateInterval(Prefs.UpdateFrequency) >= now) {
        return;
    }
    if (dos::WriteWhole(LastCheckFile, FormatText("%lu\n", now))) {
        CheckLatestVersion(1);
    }
}

} // namespace solvane
