// List and Dir: what is in a drawer.
#include "platform/commands/ListFormat.h"
#include "platform/commands/Runs.h"
#include "platform/commands/TextOutput.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Dates.h"
#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Paths.h"
#include "platform/dos/Patterns.h"
#include "platform/locale/DateParser.h"
#include "platform/locale/Locale.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace commands {

namespace {

constexpr std::size_t NameWidth = 24; // characters
constexpr std::size_t SizeWidth = 7;
constexpr std::size_t DirWidth = 32; // of a name in the two columns of Dir

// The kinds of objects to show, and how deep to go.
struct Choice {
    bool Files = true, Drawers = true, All = false;
};

Choice ChoiceOf(const dos::ArgResults& arguments) {
    const bool files = arguments.Flag("FILES");
    const bool drawers = arguments.Flag("DIRS");
    return {files || !drawers, drawers || !files, arguments.Flag("ALL")};
}

struct ListOptions {
    Choice Shown;
    std::optional<dos::Pattern> Names;
    std::optional<std::string> Part; // of a name
    std::optional<std::uint32_t> Since, UpTo;
    std::optional<std::string> Format;
    bool IsQuick = false, HasDates = true, HasHeads = true, InBlocks = false;
    DayForm Days = DayForm::Relative;
    std::uint32_t Now = 0;
};

// What a group of objects adds up to.
struct Sums {
    std::uint64_t Files = 0, Drawers = 0, Blocks = 0;
};

// The objects to show of one drawer, and what the drawer is called.
struct Group {
    dos::FileLock Drawer;
    std::string Text;
    std::vector<dos::ExamineData> Objects;
};

std::string Count(std::uint64_t number, std::string_view one, std::string_view many) {
    return std::to_string(number).append(" ").append(number == 1 ? one : many);
}

std::string SumText(const Sums& sums) {
    std::string text;
    if (sums.Files != 0)
        text += Count(sums.Files, "file - ", "files - ");
    if (sums.Drawers != 0)
        text += Count(sums.Drawers, "directory - ", "directories - ");
    return text + Count(sums.Blocks, "block used", "blocks used");
}

bool IsChosen(const ListOptions& options, const dos::ExamineData& data) {
    const bool isDrawer = data.Type == dos::TypeDrawer;
    if (isDrawer ? !options.Shown.Drawers : !options.Shown.Files)
        return false;
    if (options.Names && !options.Names->Matches(data.Name))
        return false;
    if (options.Part && utility::Fold(data.Name).find(*options.Part) == std::string::npos)
        return false;
    return (!options.Since || data.Date >= *options.Since) && (!options.UpTo || data.Date <= *options.UpTo);
}

std::string SizeText(const ListOptions& options, const dos::ExamineData& data) {
    if (data.Type == dos::TypeDrawer)
        return "Dir";
    if ((data.Type & dos::TypeLinkFlag) != 0)
        return "Link";
    if (data.Type != dos::TypeFile)
        return "Special";
    if (data.Size == 0)
        return "empty";
    return std::to_string(options.InBlocks ? BlocksOf(data.Size) : data.Size);
}

void PrintUsual(Context& context, const ListOptions& options, const dos::ExamineData& data) {
    std::string line = Shown(context, data.Name);
    if (!options.IsQuick) {
        line = PadRight(line, NameWidth) + " " + PadLeft(SizeText(options, data), SizeWidth) + " " +
               ProtectionText(data.Protection);
        if (options.HasDates)
            line +=
                " " + PadRight(DayText(data.Date, options.Days, options.Now), 9) + " " + TimeText(data.Date);
    }
    PrintLine(context, line);
    if (options.IsQuick)
        return;
    if (!data.LinkTarget.empty())
        PrintLine(context, "-> " + Shown(context, data.LinkTarget));
    if (!data.Comment.empty())
        PrintLine(context, ": " + Shown(context, data.Comment));
}

void PrintHead(Context& context, const ListOptions& options, const Group& group) {
    if (!options.HasHeads || options.Format || options.IsQuick)
        return;
    std::string name = dos::NameFromLock(group.Drawer);
    PrintLine(context, "Directory \"" + Shown(context, name.empty() ? group.Text : name) + "\" on " +
                           locale::FormatDate("%A %d-%b-%y", options.Now));
}

// Prints a group; false after a break.
bool PrintGroup(Context& context, const ListOptions& options, const Group& group, Sums& all) {
    const std::string drawer = JoinText(group.Text, "");
    const std::string full = JoinText(dos::NameFromLock(group.Drawer), "");
    Sums sums;
    PrintHead(context, options, group);
    for (const dos::ExamineData& data : group.Objects) {
        if (IsStopped(context))
            return false;
        if (!IsChosen(options, data))
            continue;
        ++(data.Type == dos::TypeDrawer ? sums.Drawers : sums.Files);
        sums.Blocks += BlocksOf(data.Size);
        if (options.Format)
            PrintLine(context, FormatListLine(context, *options.Format, {data, drawer, full}));
        else
            PrintUsual(context, options, data);
    }
    if (options.HasHeads && !options.Format && !options.IsQuick)
        PrintLine(context, SumText(sums));
    all = {all.Files + sums.Files, all.Drawers + sums.Drawers, all.Blocks + sums.Blocks};
    return true;
}

// What is given to each group of a walk: false ends it.
using ShowGroup = std::function<bool(const Group& group)>;

// Shows a drawer and, if asked, all below it: each drawer whole before the ones in it.
int ShowTree(Context& context, const Found& top, bool isAll, const ShowGroup& show) {
    std::vector<Found> open{top};
    int code = ReturnOk;
    while (!open.empty()) {
        const Found next = std::move(open.back());
        open.pop_back();
        const InDrawer current(next);
        Group group{dos::Lock(next.Path), next.Text, {}};
        if (!group.Drawer) {
            code = std::max(code, Complain(context, next.Text));
            continue;
        }
        auto objects = ReadDrawer(context, group.Drawer, next.Text, code);
        if (!objects)
            continue;
        group.Objects = std::move(*objects);
        if (!show(group))
            return std::max(code, Complain(context));
        const auto from = static_cast<std::ptrdiff_t>(open.size());
        for (const dos::ExamineData& data : group.Objects)
            if (isAll && data.Type == dos::TypeDrawer)
                open.push_back({group.Drawer, data.Name, JoinText(next.Text, data.Name), {}});
        std::reverse(open.begin() + from, open.end());
    }
    return code;
}

// A path that is no pattern: the contents of a drawer (of each, for a multi-assign), or the one object.
int ShowPath(Context& context, const std::string& path, bool isAll, const ShowGroup& show) {
    const dos::FileLock lock = dos::Lock(path);
    auto data = lock ? dos::ExamineObject(lock) : std::nullopt;
    if (!data)
        return Complain(context, path);
    if (data->Type != dos::TypeDrawer) {
        const std::string_view name = dos::FilePart(path);
        Group group{dos::ParentDir(lock), path.substr(0, path.size() - name.size()), {}};
        group.Objects.push_back(std::move(*data));
        return show(group) ? ReturnOk : Complain(context);
    }
    bool isComplete = true;
    const std::vector<dos::FileLock> locks = dos::LockAllTargets(path, &isComplete);
    int code = isComplete ? ReturnOk : Complain(context, path);
    for (const dos::FileLock& each : locks) {
        const std::string text = locks.size() == 1 ? path : dos::NameFromLock(each);
        code = std::max(code, ShowTree(context, {each, "", text, {}}, isAll, show));
        if (IsStopped(context))
            break;
    }
    return code;
}

// What a pattern means, the objects of one drawer together.
int ShowMatches(Context& context, Matches& matches, bool isAll, const ShowGroup& show) {
    int code = matches.Code;
    std::vector<Found> drawers;
    for (std::size_t at = 0; at < matches.Objects.size();) {
        const Found first = matches.Objects[at];
        const std::string& text = first.Text;
        Group group{first.Drawer, text.substr(0, text.size() - first.Path.size()), {}};
        for (; at < matches.Objects.size() && matches.Objects[at].Drawer.Body() == first.Drawer.Body();
             ++at) {
            if (isAll && matches.Objects[at].Data->Type == dos::TypeDrawer)
                drawers.push_back(matches.Objects[at]);
            group.Objects.push_back(std::move(*matches.Objects[at].Data));
        }
        if (!show(group))
            return std::max(code, Complain(context));
    }
    for (const Found& drawer : drawers)
        code = std::max(code, ShowTree(context, drawer, true, show));
    return code;
}

int ShowArgument(Context& context, const std::string& argument, bool isAll, const ShowGroup& show) {
    Matches matches = Expand(context, argument);
    if (!matches.IsPattern)
        return ShowPath(context, argument, isAll, show);
    if (!matches.Objects.empty() || matches.Code != ReturnOk)
        return ShowMatches(context, matches, isAll, show);
    ComplainWith(context, argument, "no object matches");
    return ReturnWarn;
}

// A date of an option; false when its text is none.
bool ReadDate(const dos::ArgResults& arguments, std::string_view name, std::uint32_t now,
              std::optional<std::uint32_t>& date) {
    const auto text = arguments.Text(name);
    date = text ? locale::ParseFreeDate(*text, now) : std::nullopt;
    if (text && !date)
        dos::SetIoErr(dos::ErrorBadNumber);
    return !text || date;
}

std::optional<ListOptions> ReadOptions(const dos::ArgResults& arguments) {
    ListOptions options;
    options.Now = dos::CurrentAmigaSeconds();
    if (const auto pattern = arguments.Text("PAT")) {
        options.Names = dos::Pattern::Parse(*pattern, dos::PatternCase::Ignore);
        if (!options.Names)
            return {};
    }
    if (!ReadDate(arguments, "SINCE", options.Now, options.Since) ||
        !ReadDate(arguments, "UPTO", options.Now, options.UpTo))
        return {};
    if (const auto part = arguments.Text("SUB"))
        options.Part = utility::Fold(*part);
    options.Shown = ChoiceOf(arguments);
    options.Format = arguments.Text("LFORMAT");
    options.IsQuick = arguments.Flag("QUICK");
    options.HasDates = !arguments.Flag("NODATES");
    options.HasHeads = !arguments.Flag("NOHEAD");
    options.InBlocks = arguments.Flag("BLOCK");
    options.Days = arguments.Flag("DATES") ? DayForm::Plain : DayForm::Relative;
    return options;
}

// One drawer of Dir: its drawers by name, then its files in two columns.
bool PrintDir(Context& context, const Choice& choice, const Group& group, std::size_t depth) {
    const std::string indent(depth * 5, ' ');
    std::vector<std::string> files;
    for (const dos::ExamineData& data : group.Objects) {
        if (IsStopped(context))
            return false;
        if (data.Type != dos::TypeDrawer)
            files.push_back(Shown(context, data.Name));
        else if (choice.Drawers)
            PrintLine(context, indent + "     " + Shown(context, data.Name) + " (dir)");
    }
    for (std::size_t i = 0; choice.Files && i < files.size(); i += 2) {
        const bool isLast = i + 1 == files.size();
        PrintLine(context,
                  indent + "  " + (isLast ? files[i] : PadRight(files[i], DirWidth) + " " + files[i + 1]));
    }
    return !IsStopped(context);
}

// The choice of Dir, whose OPT takes the letters of old: A all, D drawers only, F files only.
std::optional<Choice> DirChoice(const dos::ArgResults& arguments) {
    Choice choice = ChoiceOf(arguments);
    for (const char letter : utility::Fold(arguments.Text("OPT").value_or(""))) {
        if (letter == 'a')
            choice.All = true;
        else if (letter == 'd')
            choice.Files = false;
        else if (letter == 'f')
            choice.Drawers = false;
        else
            return {};
    }
    return choice;
}

} // namespace

int RunList(Context& context, const dos::ArgResults& arguments) {
    const auto options = ReadOptions(arguments);
    if (!options) {
        Complain(context);
        return ReturnFail;
    }
    TextOutput to(context, arguments.Text("TO"));
    if (!to.IsOpen())
        return Complain(context, *arguments.Text("TO"));
    std::vector<std::string> paths = arguments.Multi("DIR");
    if (paths.empty())
        paths.emplace_back();
    int code = ReturnOk;
    Sums all;
    for (const std::string& path : paths) {
        code = std::max(code, ShowArgument(context, path, options->Shown.All, [&](const Group& group) {
                            return PrintGroup(context, *options, group, all);
                        }));
        if (IsStopped(context))
            break;
    }
    if (options->Shown.All && options->HasHeads && !options->Format && !options->IsQuick)
        PrintLine(context, "TOTAL: " + SumText(all));
    return std::max(code, to.Finish());
}

int RunDir(Context& context, const dos::ArgResults& arguments) {
    const auto choice = DirChoice(arguments);
    if (!choice) {
        ComplainWith(context, "", "OPT takes the letters A, D and F");
        return ReturnFail;
    }
    const std::string path = arguments.Text("DIR").value_or("");
    bool isFirst = true;
    return ShowArgument(context, path, choice->All, [&](const Group& group) {
        if (!std::exchange(isFirst, false))
            PrintLine(context, Shown(context, group.Text) + " (dir)");
        return PrintDir(context, *choice, group, 0);
    });
}

} // namespace commands
