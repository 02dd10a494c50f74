#include "frame/ArgumentParser.h"

#include "automation/Commodity.h"
#include "interface/Tell.h"
#include "locations/Navigation.h"
#include "model/Program.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Paths.h"
#include "platform/dos/ReadArgs.h"
#include "platform/icon/Icon.h"
#include "platform/utility/Text.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Icons.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

constexpr std::string_view Template =
    "PATH/M,WIN_X/K/N,WIN_Y/K/N,WIN_W/K/N,WIN_H/K/N,ICONIFY/S,ICON_X/K/N,ICON_Y/K/N,PUBSCREEN/K,"
    "LANGUAGE/K";
constexpr std::string_view RestartMarker = "DO_OPEN_WINDOW";
constexpr std::array<std::string_view, 8> ValueOptions = {"WIN_X",  "WIN_Y",  "WIN_W",     "WIN_H",
                                                          "ICON_X", "ICON_Y", "PUBSCREEN", "LANGUAGE"};

bool IsValueOption(std::string_view word) {
    for (const std::string_view option : ValueOptions) {
        if (utility::Stricmp(word, option) == 0) {
            return true;
        }
    }
    return false;
}

// The text exists and is shown nowhere: a wrong command line starts the program as if it were empty.
// Intended.
Text<1024> UsageText() {
    return std::string_view("\nUsage: "
                            "Solvane"
                            " [PATH <Path>]\n"
                            "       [WIN_X <X Coord>] [WIN_Y <Y Coord>] [WIN_W <Window Width>] "
                            "[WIN_H <Window Height>]\n"
                            "       [ICONIFY] [ICON_X <X Coord>] [ICON_Y <Y Coord>]\n"
                            "       [PUBSCREEN <Name>] [LANGUAGE <language>]\n"
                            "           Path = Open this path at startup\n"
                            "          Win_X = X coordinate for window\n"
                            "          Win_Y = Y coordinate for window\n"
                            "          Win_W = Width for window\n"
                            "          Win_H = Height for window\n"
                            "        Iconify = Start in iconified mode\n"
                            "         Icon_X = X coordinate for AppIcon\n"
                            "         Icon_Y = Y coordinate for AppIcon\n"
                            "      PubScreen = Name of public screen to open window on\n"
                            "       Language = Preferred locale strings language\n\n");
}

// One word of the host's command line, so that ReadArgs sees what the user meant: an option with its value
// keeps its "=", a word that ReadArgs would take apart is quoted.
std::string LineWord(std::string_view word) {
    const std::size_t equals = word.find('=');
    if (equals != std::string_view::npos && IsValueOption(word.substr(0, equals))) {
        return std::string(word.substr(0, equals + 1)) + dos::QuoteArgument(word.substr(equals + 1));
    }
    const bool plain = !word.empty() && word.find_first_of(" \t\n=\";*") == std::string_view::npos;
    return plain ? std::string(word) : dos::QuoteArgument(word);
}

// A path that does not fit is refused; the program starts without it.
bool AddStartLocation(std::string_view location) {
    if (location.size() > Text<1024>::Limit) {
        Tell(MSG_PATH_TOO_LONG);
        return true;
    }
    NodePointer<TabsNode> node = SAK_CreateGenericListNode<TabsNode>();
    if (!node) {
        TellTerminate(MSG_NO_LIST_NODE);
        return false;
    }
    node->Path = location;
    SAK_AddGenericListNode(*CommandLineTabsList, std::move(node));
    return true;
}

// What a user or icon named, as a path of volumes. The words of places are not looked for on the host.
std::string StartPath(const std::string& given, const std::string& hostDirectory) {
    return NavigationWordOf(given).empty() ? dos::FromHostPath(given, hostDirectory) : given;
}

enum class PathOutcome { Taken, RestartMarker, Failed };

PathOutcome TakePaths(const std::vector<std::string>& paths, const std::string& hostDirectory) {
    for (const std::string& path : paths) {
        if (utility::Stricmp(path, RestartMarker) == 0) {
            done2 = 1;
            return PathOutcome::RestartMarker;
        }
        if (!AddStartLocation(StartPath(path, hostDirectory))) {
            return PathOutcome::Failed;
        }
    }
    if (!paths.empty()) {
        PathSpecified = 1;
    }
    return PathOutcome::Taken;
}

// A number of 0 reads like an option that was not given; intended.
void TakeNumber(const dos::ArgResults& arguments, std::string_view option, std::int32_t& variable) {
    const long number = arguments.Number(option).value_or(0);
    if (number != 0) {
        variable = static_cast<std::int32_t>(number);
    }
}

void TakeOptions(const dos::ArgResults& arguments) {
    TakeNumber(arguments, "WIN_X", Win_X);
    TakeNumber(arguments, "WIN_Y", Win_Y);
    TakeNumber(arguments, "WIN_W", Win_W);
    TakeNumber(arguments, "WIN_H", Win_H);
    TakeNumber(arguments, "ICON_X", Icon_X);
    TakeNumber(arguments, "ICON_Y", Icon_Y);
    if (arguments.Flag("ICONIFY")) {
        StartIconified = 1;
    }
    if (const auto screen = arguments.Text("PUBSCREEN")) {
        DefaultPubScreenID = *screen;
    }
    if (const auto language = arguments.Text("LANGUAGE")) {
        SAK_PreferredLanguage = *language;
    }
}

// Arguments that cannot be parsed are no reason not to start: the program runs as if there were none.
bool ParseShellArguments(const application::StartMessage& start) {
    FromShell = 1;
    [[maybe_unused]] const Text<1024> usage = UsageText();
    const auto arguments = dos::ReadArgs(Template, ArgumentLine(start.Arguments));
    if (!arguments) {
        return true;
    }
    switch (TakePaths(arguments->Multi("PATH"), start.CurrentDirectory)) {
    case PathOutcome::Failed:
        return false;
    case PathOutcome::RestartMarker:
        return true;
    case PathOutcome::Taken:
        break;
    }
    TakeOptions(*arguments);
    return true;
}

bool StackIsEnough() {
    const std::size_t stack = application::StackSize();
    if (stack >= LeastStack) {
        return true;
    }
    TellTerminate(FormatMessage(MSG_STACK_TOO_LOW, RequesterTitle.View(),
                                SAK_LocalizeNumber(static_cast<std::int64_t>(stack)),
                                SAK_LocalizeNumber(static_cast<std::int64_t>(LeastStack))));
    return false;
}

bool TakeToolTypes(bool pathsWanted) {
    const auto object = SAK_GetProgramIcon(ProgramName.View(), ProgramDir.View());
    if (!object) {
        return true;
    }
    if (const auto path = icon::FindToolType(*object, "PATH"); path && pathsWanted) {
        if (!AddStartLocation(StartPath(*path, {}))) {
            return false;
        }
        PathSpecified = 1;
    }
    if (const auto screen = icon::FindToolType(*object, "PUBSCREEN")) {
        DefaultPubScreenID = *screen;
    }
    if (const auto language = icon::FindToolType(*object, "LANGUAGE")) {
        SAK_PreferredLanguage = *language;
    }
    if (const auto hotKey = icon::FindToolType(*object, "HOTKEY")) {
        HotKeyOfIcon = *hotKey;
    }
    return true;
}

// Objects that the user picked on the desktop win over the place that the icon names.
bool ParseWorkbenchArguments(const application::StartMessage& start) {
    FromShell = 0;
    if (!StackIsEnough()) {
        return false;
    }
    for (const std::string& object : start.Arguments) {
        const std::string path = dos::FromHostPath(object, start.CurrentDirectory);
        if (!AddStartLocation(SAK_FileExists(path) ? dos::PathPart(path) : std::string_view(path))) {
            return false;
        }
        PathSpecified = 1;
    }
    return TakeToolTypes(start.Arguments.empty());
}

} // namespace

std::string ArgumentLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += line.empty() ? "" : " ";
        line += LineWord(word);
    }
    return line + "\n";
}

bool ArgumentParser(const application::StartMessage& start) {
    return start.FromWorkbench ? ParseWorkbenchArguments(start) : ParseShellArguments(start);
}

} // namespace solvane
