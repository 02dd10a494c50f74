// Rename, MakeDir, MakeLink, Which: what things are called.
#include "platform/commands/Command.h"
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Changes.h"
#include "platform/dos/CommandSearch.h"
#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Paths.h"

#include <algorithm>
#include <span>

namespace commands {

namespace {

std::string_view WithoutSlash(std::string_view path) {
    if (path.size() > 1 && path.ends_with('/') && !path.ends_with("//"))
        path.remove_suffix(1);
    return path;
}

// Whether TO is a drawer to move into, and not the object itself in other letters.
bool IsInto(const std::vector<std::string>& from, const std::string& to) {
    if (!IsDrawer(to))
        return false;
    return from.size() != 1 || !dos::Lock(from[0]) || !dos::SameLock(dos::Lock(from[0]), dos::Lock(to));
}

int RenameOne(Context& context, const Found& object, const std::string& to, bool isInto, bool isQuiet) {
    const auto from = FullPath(object);
    const auto target = isInto ? dos::AddPart(to, dos::FilePart(WithoutSlash(object.Path))) : to;
    if (!from || !target || !dos::Rename(*from, *target))
        return Complain(context, object.Text);
    if (object.Data && !isQuiet)
        PrintLine(context, Shown(context, object.Text) + " as " + Shown(context, *target));
    return ReturnOk;
}

// The drawers in which the Shell looks for a program.
std::vector<dos::FileLock> CommandDrawers() {
    std::vector<dos::FileLock> drawers;
    for (const std::string& path : dos::ShellPath()) {
        bool isComplete = false; // a target that is missing holds no command
        for (dos::FileLock& lock : dos::LockAllTargets(path, &isComplete))
            drawers.push_back(std::move(lock));
    }
    return drawers;
}

// What the name may mean, in the order in which the Shell tries it.
std::vector<std::string> PlacesOf(const std::string& name) {
    if (name.find_first_of(":/") != std::string::npos)
        return dos::Lock(name) && !IsDrawer(name) ? std::vector{name} : std::vector<std::string>();
    std::vector<std::string> places;
    if (const Command* own = FindCommand(name))
        places.push_back("INTERNAL " + std::string(own->Name));
    for (const dos::FileLock& drawer : CommandDrawers()) {
        const auto path = dos::AddPart(dos::NameFromLock(drawer), name);
        if (path && dos::Lock(*path) && !IsDrawer(*path))
            places.push_back(*path);
    }
    if (const auto program = dos::FindHostProgram(name))
        places.push_back(dos::FromHostPath(program->HostPath));
    return places;
}

} // namespace

int RunRename(Context& context, const dos::ArgResults& arguments) {
    const std::string to = *arguments.Text("TO");
    const std::vector<std::string> from = arguments.Multi("FROM");
    const bool isInto = IsInto(from, to);
    int code = ReturnOk;
    for (const std::string& path : from) {
        const Matches matches = Expand(context, path);
        code = std::max(code, matches.Code);
        if (!isInto && (from.size() > 1 || matches.Objects.size() > 1)) {
            ComplainWith(context, to, "more than one object needs a drawer to go to");
            return ReturnFail;
        }
        if (matches.Objects.empty() && matches.Code == ReturnOk) {
            ComplainWith(context, path, "no object matches");
            code = std::max(code, ReturnWarn);
        }
        for (const Found& object : matches.Objects) {
            if (IsStopped(context))
                return std::max(code, Complain(context));
            code = std::max(code, RenameOne(context, object, to, isInto, arguments.Flag("QUIET")));
        }
    }
    return code;
}

int RunMakeDir(Context& context, const dos::ArgResults& arguments) {
    int code = ReturnOk;
    for (const std::string& name : arguments.Multi("NAME"))
        if (!dos::CreateDir(WithoutSlash(name)))
            code = std::max(code, Complain(context, name));
    return code;
}

int RunMakeLink(Context& context, const dos::ArgResults& arguments) {
    const std::string from = *arguments.Text("FROM");
    const std::string to = *arguments.Text("TO");
    if (!arguments.Flag("HARD"))
        return dos::MakeLink(from, to) ? ReturnOk : Complain(context, from);
    const dos::FileLock target = dos::Lock(to);
    if (!target)
        return Complain(context, to);
    return dos::MakeLink(from, target) ? ReturnOk : Complain(context, from);
}

int RunWhich(Context& context, const dos::ArgResults& arguments) {
    const std::string name = *arguments.Text("FILE");
    const std::vector<std::string> places = PlacesOf(name);
    const std::size_t count = arguments.Flag("ALL") ? places.size() : std::min<std::size_t>(1, places.size());
    for (const std::string& place : std::span(places).first(count))
        PrintLine(context, Shown(context, place));
    if (count > 0)
        return ReturnOk;
    PrintLine(context, Shown(context, name) + " not found");
    return ReturnWarn;
}

} // namespace commands
