// Protect, Filenote, SetDate: what is told about an object.
#include "platform/commands/ListFormat.h"
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Changes.h"
#include "platform/dos/Dates.h"
#include "platform/dos/Errors.h"
#include "platform/locale/DateParser.h"
#include "platform/utility/Text.h"

#include <functional>

namespace commands {

namespace {

constexpr std::uint32_t AllowedBits =
    dos::ProtectRead | dos::ProtectWrite | dos::ProtectExecute | dos::ProtectDelete;

enum class FlagAction { Set, Add, Remove };

// The letters of a FLAGS argument, as bits that are set for what the letter shows.
struct Flags {
    std::uint32_t Shown = 0;
    FlagAction Action = FlagAction::Set;
};

// Nothing with IoErr for another letter, and for signs against switches.
std::optional<Flags> ReadFlags(std::string_view text, bool isAdd, bool isSub) {
    constexpr std::string_view allLetters = "hsparwed";
    Flags flags;
    const bool hasSign = text.starts_with('+') || text.starts_with('-');
    isAdd = isAdd || text.starts_with('+');
    isSub = isSub || text.starts_with('-');
    if (hasSign)
        text.remove_prefix(1);
    for (const char letter : utility::Fold(text)) {
        const std::size_t bit = allLetters.find(letter);
        if (bit == std::string_view::npos || (isAdd && isSub)) {
            dos::SetIoErr(dos::ErrorBadTemplate);
            return {};
        }
        flags.Shown |= dos::ProtectHold >> bit;
    }
    flags.Action = isAdd ? FlagAction::Add : isSub ? FlagAction::Remove : FlagAction::Set;
    return flags;
}

// The letters r, w, e and d show a bit that is clear.
bool Protect(const Flags& flags, const std::string& path) {
    const std::uint32_t allowed = flags.Shown & AllowedBits;
    const std::uint32_t others = flags.Shown & ~AllowedBits;
    switch (flags.Action) {
    case FlagAction::Add:
        return dos::ChangeProtection(path, others, allowed);
    case FlagAction::Remove:
        return dos::ChangeProtection(path, allowed, others);
    default:
        return dos::SetProtection(path, flags.Shown ^ AllowedBits);
    }
}

// A drawer that may not be read or entered any more shows nothing of what is in it, so that comes first; one
// that may again has to be changed first.
Order OrderOf(const Flags& flags) {
    constexpr std::uint32_t needed = dos::ProtectRead | dos::ProtectExecute;
    const bool takes = flags.Action == FlagAction::Set
                           ? (flags.Shown & needed) != needed
                           : flags.Action == FlagAction::Remove && (flags.Shown & needed) != 0;
    return takes ? Order::DrawersLast : Order::DrawersFirst;
}

bool IsLink(const Found& object) {
    return object.Data && (object.Data->Type & dos::TypeLinkFlag) != 0;
}

using Change = std::function<bool(const Found& object)>;

// Changes every object an argument means. A link has nothing of its own to change: one that a walk comes
// across is passed over, since what it leads to may lie anywhere.
int ChangeAll(Context& context, const dos::ArgResults& arguments, std::string_view done, const Change& change,
              Order order = Order::DrawersFirst) {
    const Depth depth = arguments.Flag("ALL") ? Depth::All : Depth::Objects;
    const bool isQuiet = arguments.Flag("QUIET") || done.empty();
    const Visit visit = [&](const Found& object) -> Outcome {
        if (IsLink(object))
            return ReturnOk;
        if (!change(object))
            return FailedChange(context, object.Text);
        if (!isQuiet && (depth == Depth::All || object.Data))
            PrintLine(context, Shown(context, object.Text).append(done));
        return ReturnOk;
    };
    return ForEach(context, *arguments.Text("FILE"), depth, visit, order);
}

// The date that the words name; the weekday before a date says nothing more.
std::optional<std::uint32_t> ReadDate(const dos::ArgResults& arguments, std::uint32_t now) {
    std::string text;
    std::string behindFirst;
    for (const std::string_view name : {"WEEKDAY", "DATE", "TIME"}) {
        const auto word = arguments.Text(name);
        if (!word)
            continue;
        if (!text.empty())
            behindFirst += (behindFirst.empty() ? "" : " ") + *word;
        text += (text.empty() ? "" : " ") + *word;
    }
    if (text.empty())
        return now;
    auto date = locale::ParseFreeDate(text, now);
    if (!date && arguments.Text("WEEKDAY") && locale::ParseFreeDate(*arguments.Text("WEEKDAY"), now))
        date = locale::ParseFreeDate(behindFirst, now);
    return date;
}

} // namespace

int RunProtect(Context& context, const dos::ArgResults& arguments) {
    const auto flags = ReadFlags(*arguments.Text("FLAGS"), arguments.Flag("ADD"), arguments.Flag("SUB"));
    if (!flags) {
        ComplainWith(context, *arguments.Text("FLAGS"), "invalid flag");
        return ReturnFail;
    }
    return ChangeAll(
        context, arguments, "...done", [&](const Found& object) { return Protect(*flags, object.Path); },
        OrderOf(*flags));
}

int RunFilenote(Context& context, const dos::ArgResults& arguments) {
    const std::string comment = arguments.Text("COMMENT").value_or("");
    return ChangeAll(context, arguments, "...done",
                     [&](const Found& object) { return dos::SetComment(object.Path, comment); });
}

int RunSetDate(Context& context, const dos::ArgResults& arguments) {
    const auto date = ReadDate(arguments, dos::CurrentAmigaSeconds());
    if (!date) {
        ComplainWith(context, "", "invalid date or time");
        return ReturnFail;
    }
    return ChangeAll(context, arguments, "",
                     [&](const Found& object) { return dos::SetDate(object.Path, *date); });
}

} // namespace commands
