// Date, Wait, Fault: the clock, and what numbers mean.
#include "platform/commands/Runs.h"
#include "platform/commands/TextOutput.h"
#include "platform/dos/Dates.h"
#include "platform/dos/Errors.h"
#include "platform/locale/DateParser.h"
#include "platform/locale/Locale.h"

#include <algorithm>
#include <limits>

namespace commands {

namespace {

constexpr std::uint64_t SecondsPerMinute = 60;
constexpr std::uint64_t MillisecondsPerSecond = 1000;

// Waits in pieces that the clock of Pause can hold; the return code.
int WaitSeconds(Context& context, std::uint64_t seconds) {
    std::uint64_t left = seconds * MillisecondsPerSecond;
    while (left != 0 && context.Pause && !IsStopped(context)) {
        const auto now = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(left, std::numeric_limits<std::uint32_t>::max()));
        context.Pause(now);
        left -= now;
    }
    return IsStopped(context) ? Complain(context) : ReturnOk;
}

} // namespace

int RunDate(Context& context, const dos::ArgResults& arguments) {
    TextOutput to(context, arguments.Text("TO"));
    if (!to.IsOpen())
        return Complain(context, *arguments.Text("TO"));
    PrintLine(context, locale::FormatDate("%A %d-%b-%y %H:%M:%S", dos::CurrentAmigaSeconds()));
    return to.Finish();
}

int RunWait(Context& context, const dos::ArgResults& arguments) {
    const std::uint32_t now = dos::CurrentAmigaSeconds();
    if (const auto until = arguments.Text("UNTIL")) {
        const auto moment = locale::ParseFreeDate(*until, now);
        if (!moment) {
            ComplainWith(context, *until, "invalid time");
            return ReturnFail;
        }
        // A time that is over today is meant for tomorrow.
        return WaitSeconds(context, *moment >= now
                                        ? *moment - now
                                        : dos::SecondsPerDay - (now - *moment) % dos::SecondsPerDay);
    }
    const long number = arguments.Number("").value_or(1);
    if (number < 0) {
        dos::SetIoErr(dos::ErrorBadNumber);
        Complain(context);
        return ReturnFail;
    }
    return WaitSeconds(context,
                       static_cast<std::uint64_t>(number) * (arguments.Flag("MIN") ? SecondsPerMinute : 1));
}

int RunFault(Context& context, const dos::ArgResults& arguments) {
    for (const long code : arguments.Numbers(""))
        PrintLine(context, dos::Fault(code, "Fault " + std::to_string(code)));
    return ReturnOk;
}

} // namespace commands
