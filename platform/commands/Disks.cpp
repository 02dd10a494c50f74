// Assign, Relabel and Info: the names that stand before a colon, and how full the disks behind them are.
#include "platform/commands/Runs.h"
#include "platform/commands/Walk.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Info.h"
#include "platform/dos/Volumes.h"
#include "platform/utility/Text.h"

#include <algorithm>

namespace commands {

namespace {

constexpr std::size_t UnitWidth = 10, NumberWidth = 8, AssignWidth = 15; // characters

std::string WithoutColon(std::string name) {
    if (name.ends_with(':'))
        name.pop_back();
    return name;
}

bool IsSame(std::string_view a, std::string_view b) {
    return utility::Stricmp(a, b) == 0;
}

void PrintVolumes(Context& context) {
    PrintLine(context, "Volumes:");
    for (const dos::VolumeInfo& volume : dos::Volumes())
        PrintLine(context, Shown(context, volume.Volume) + " [Mounted]");
}

// A path that is looked up later stands in brackets, as "<Work:x>" when at its first use and "[Work:x]"
// when at every use.
std::string TargetText(const Context& context, const dos::AssignInfo& assign, const std::string& target) {
    switch (assign.Kind) {
    case dos::AssignKind::Late:
        return "<" + Shown(context, target) + ">";
    case dos::AssignKind::NonBinding:
        return "[" + Shown(context, target) + "]";
    default:
        return Shown(context, target);
    }
}

void PrintAssign(Context& context, const dos::AssignInfo& assign) {
    std::string before = PadRight(Shown(context, assign.Name), AssignWidth);
    for (const std::string& target : assign.Targets) {
        PrintLine(context, before + TargetText(context, assign, target));
        before = PadLeft("+ ", AssignWidth);
    }
}

void PrintAssigns(Context& context) {
    PrintLine(context, "Directories:");
    std::vector<dos::AssignInfo> all = dos::Assigns();
    std::sort(all.begin(), all.end(),
              [](const auto& a, const auto& b) { return utility::Stricmp(a.Name, b.Name) < 0; });
    for (const dos::AssignInfo& assign : all)
        PrintAssign(context, assign);
}

void PrintDevices(Context& context) {
    PrintLine(context, "Devices:");
    std::string line;
    for (const dos::VolumeInfo& volume : dos::Volumes())
        line += (line.empty() ? "" : " ") + Shown(context, volume.Device);
    PrintLine(context, line);
}

int PrintLists(Context& context, const dos::ArgResults& arguments) {
    const bool isAll = !arguments.Flag("VOLS") && !arguments.Flag("DIRS") && !arguments.Flag("DEVICES");
    if (isAll || arguments.Flag("VOLS"))
        PrintVolumes(context);
    if (isAll || arguments.Flag("DIRS"))
        PrintAssigns(context);
    if (isAll || arguments.Flag("DEVICES"))
        PrintDevices(context);
    return ReturnOk;
}

// Tells whether the name is known, and what it stands for.
int TellExistence(Context& context, const std::string& name) {
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        if (IsSame(assign.Name, name)) {
            PrintAssign(context, assign);
            return ReturnOk;
        }
    }
    if (dos::IsKnownDevice(name)) {
        PrintLine(context, Shown(context, name));
        return ReturnOk;
    }
    PrintLine(context, Shown(context, name) + ": not assigned");
    return ReturnWarn;
}

bool ChangeTargets(const dos::ArgResults& arguments, const std::string& name,
                   const std::vector<std::string>& targets) {
    const bool isRemove = arguments.Flag("REMOVE");
    const auto end = arguments.Flag("PREPEND") ? dos::AssignEnd::First : dos::AssignEnd::Last;
    return std::all_of(targets.begin(), targets.end(), [&](const std::string& target) {
        return isRemove ? dos::RemoveFromAssign(name, target) : dos::AddToAssign(name, target, end);
    });
}

bool Change(const dos::ArgResults& arguments, const std::string& name,
            const std::vector<std::string>& targets) {
    const bool isPart = arguments.Flag("ADD") || arguments.Flag("PREPEND") || arguments.Flag("REMOVE");
    if (isPart && !targets.empty())
        return ChangeTargets(arguments, name, targets);
    auto kind = dos::AssignKind::Directory;
    if (arguments.Flag("DEFER"))
        kind = dos::AssignKind::Late;
    else if (arguments.Flag("PATH"))
        kind = dos::AssignKind::NonBinding;
    return dos::SetAssign(name, kind, targets);
}

// Switches that say how a target is to be taken; without one they would remove the assign.
bool WantsTarget(const dos::ArgResults& arguments) {
    return arguments.Flag("ADD") || arguments.Flag("PREPEND") || arguments.Flag("DEFER") ||
           arguments.Flag("PATH");
}

// A size with three digits and a letter, "1.5G".
std::string SizeText(std::uint64_t blocks, std::uint64_t bytesPerBlock) {
    constexpr std::string_view allLetters = "KMGTPE";
    const long double bytes = static_cast<long double>(blocks) * static_cast<long double>(bytesPerBlock);
    long double value = bytes / 1024;
    std::size_t letter = 0;
    for (; value >= 1000 && letter + 1 < allLetters.size(); ++letter)
        value /= 1024;
    const auto tenths = static_cast<std::uint64_t>(value * 10);
    std::string text = std::to_string(tenths / 10);
    if (tenths < 1000 && letter > 0)
        text += "." + std::to_string(tenths % 10);
    return text + allLetters[letter];
}

std::string UsageText(const dos::InfoData& info) {
    const std::uint64_t free = info.Blocks - std::min(info.Blocks, info.BlocksUsed);
    const auto percent = info.Blocks == 0 ? 0
                                          : static_cast<int>(100 * static_cast<long double>(info.BlocksUsed) /
                                                                 static_cast<long double>(info.Blocks) +
                                                             0.5L);
    std::string text;
    for (const std::uint64_t blocks : {info.Blocks, info.BlocksUsed, free})
        text += PadLeft(SizeText(blocks, info.BytesPerBlock), NumberWidth);
    text += PadLeft(std::to_string(percent) + "%", 6);
    return text + "  " + (info.State == dos::DiskState::WriteProtected ? "Read Only " : "Read/Write");
}

bool IsAsked(const std::vector<std::string>& names, const dos::VolumeInfo& volume) {
    return names.empty() || std::any_of(names.begin(), names.end(), [&](const std::string& name) {
               return IsSame(WithoutColon(name), volume.Device) || IsSame(WithoutColon(name), volume.Volume);
           });
}

int PrintDisks(Context& context, const std::vector<std::string>& names,
               const std::vector<dos::VolumeInfo>& volumes) {
    PrintLine(context, "Mounted disks:");
    PrintLine(context, PadRight("Unit", UnitWidth) + "    Size    Used    Free  Full  Status      Name");
    int code = ReturnOk;
    for (const dos::VolumeInfo& volume : volumes) {
        if (IsStopped(context))
            return Complain(context);
        if (!IsAsked(names, volume))
            continue;
        const auto info = dos::Info(volume.Device + ":");
        if (!info)
            code = std::max(code, ReturnWarn);
        PrintLine(context, PadRight(volume.Device + ":", UnitWidth) +
                               (info ? UsageText(*info) : PadRight("  " + dos::Fault(dos::IoErr()), 42)) +
                               "  " + Shown(context, volume.Volume));
    }
    return code;
}

} // namespace

int RunAssign(Context& context, const dos::ArgResults& arguments) {
    const auto given = arguments.Text("NAME");
    if (!given)
        return PrintLists(context, arguments);
    const std::string name = WithoutColon(*given);
    if (!given->ends_with(':')) {
        ComplainWith(context, *given, "a name needs its colon");
        return ReturnFail;
    }
    if (arguments.Flag("EXISTS"))
        return TellExistence(context, name);
    const std::vector<std::string> targets = arguments.Multi("TARGET");
    if (targets.empty() && WantsTarget(arguments)) {
        dos::SetIoErr(dos::ErrorRequiredArgMissing);
        Complain(context);
        return ReturnFail;
    }
    if (!Change(arguments, name, targets))
        return Complain(context, *given);
    if (arguments.Flag("LIST"))
        PrintLists(context, arguments);
    if (context.ScriptDepth != 0)
        return ReturnOk;
    ComplainWith(context, *given, "holds until this program ends; mounts.toml keeps assigns for good");
    return ReturnWarn;
}

int RunRelabel(Context& context, const dos::ArgResults& arguments) {
    const std::string volume = *arguments.Text("DRIVE");
    return dos::Relabel(volume, *arguments.Text("NAME")) ? ReturnOk : Complain(context, volume);
}

int RunInfo(Context& context, const dos::ArgResults& arguments) {
    const std::vector<std::string> names = arguments.Multi("DEVICE");
    const std::vector<dos::VolumeInfo> volumes = dos::Volumes();
    for (const std::string& name : names) {
        if (std::none_of(volumes.begin(), volumes.end(),
                         [&](const dos::VolumeInfo& volume) { return IsAsked({name}, volume); })) {
            dos::SetIoErr(dos::ErrorDeviceNotMounted);
            return Complain(context, name);
        }
    }
    int code = ReturnOk;
    if (arguments.Flag("DISKS") || !arguments.Flag("VOLS"))
        code = PrintDisks(context, names, volumes);
    if (names.empty() && (arguments.Flag("VOLS") || !arguments.Flag("DISKS")))
        PrintVolumes(context);
    return code;
}

} // namespace commands
