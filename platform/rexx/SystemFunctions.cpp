// Ports, clips, libraries and the process of a script.
#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Volumes.h"
#include "platform/exec/PublicPorts.h"
#include "platform/rexx/ScriptFunctions.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace rexx {

namespace {

constexpr long TicksPerSecond = 50;
constexpr long LongestDelay = TicksPerSecond * 60 * 60 * 24; // ticks
constexpr std::size_t LongestClip = 64 * 1024;               // bytes
constexpr std::size_t LongestClipName = 100;                 // bytes
constexpr std::string_view ClipDrawer = "T:RexxClips";
constexpr std::string_view HexDigits = "0123456789abcdef";

using Names = std::vector<std::string>;

// A clip is a small file; its name may hold anything, the file's holds hexadecimal digits.
std::optional<std::string> ClipPath(std::string_view name) {
    if (name.empty() || name.size() > LongestClipName) {
        return std::nullopt;
    }
    std::string path = std::string(ClipDrawer) + "/";
    for (const char byte : name) {
        const auto value = static_cast<unsigned char>(byte);
        path += HexDigits[value / 16];
        path += HexDigits[value % 16];
    }
    return path;
}

std::string ClipName(std::string_view fileName) {
    std::string name;
    for (std::size_t at = 0; at + 1 < fileName.size(); at += 2) {
        const std::size_t high = HexDigits.find(fileName[at]);
        const std::size_t low = HexDigits.find(fileName[at + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) {
            return {};
        }
        name += static_cast<char>(high * 16 + low);
    }
    return name;
}

Names ClipNames() {
    Names names;
    dos::DirContext drawer = dos::ObtainDirContext(ClipDrawer);
    while (const dos::ExamineData* object = drawer ? dos::ExamineDir(drawer) : nullptr) {
        if (std::string name = ClipName(object->Name); !name.empty()) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

std::optional<std::string> GetClip(const FunctionArguments& arguments) {
    const auto path = ClipPath(arguments[0]);
    return path ? dos::ReadWhole(*path, LongestClip).value_or("") : "";
}

std::optional<std::string> SetClip(const FunctionArguments& arguments) {
    const auto path = ClipPath(arguments[0]);
    if (!path || arguments[1].size() > LongestClip) {
        return "0";
    }
    if (!arguments.Has(1) || arguments[1].empty()) {
        return dos::Delete(*path) || dos::IoErr() == dos::ErrorObjectNotFound ? "1" : "0";
    }
    return dos::CreateDirs(ClipDrawer) && dos::WriteWhole(*path, arguments[1]) ? "1" : "0";
}

// Libraries of functions: what scripts ask for is there from the start.
Names& Libraries() {
    static Names names = {"rexxsupport.library", "rexxsyslib.library"};
    return names;
}

std::optional<std::string> AddLib(const FunctionArguments& arguments) {
    const std::string name(arguments[0]);
    Names& names = Libraries();
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        names.push_back(name);
    }
    return "1";
}

std::optional<std::string> RemLib(const FunctionArguments& arguments) {
    return std::erase(Libraries(), std::string(arguments[0])) != 0 ? "1" : "0";
}

Names VolumeNames() {
    Names names;
    for (const dos::VolumeInfo& volume : dos::Volumes()) {
        names.push_back(volume.Volume);
    }
    return names;
}

Names DeviceNames() {
    Names names;
    for (const dos::VolumeInfo& volume : dos::Volumes()) {
        names.push_back(volume.Device);
    }
    return names;
}

Names AssignNames() {
    Names names;
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        names.push_back(assign.Name);
    }
    return names;
}

// One name: whether it is there. None: all, with blanks or the text asked for between them.
std::string TellOf(const Names& names, const FunctionArguments& arguments) {
    if (!arguments[1].empty()) {
        return std::find(names.begin(), names.end(), arguments[1]) != names.end() ? "1" : "0";
    }
    std::string all;
    for (const std::string& name : names) {
        all += (all.empty() ? "" : std::string(arguments.Has(2) ? arguments[2] : " ")) + name;
    }
    return all;
}

std::optional<std::string> Show(const FunctionArguments& arguments) {
    switch (arguments.Letter(0, ' ')) {
    case 'C':
        return TellOf(ClipNames(), arguments);
    case 'F':
        return TellOf(OpenStreams(), arguments);
    case 'I':
        return TellOf({}, arguments);
    case 'L':
        return TellOf(Libraries(), arguments);
    case 'P':
        return TellOf(exec::ListPorts(), arguments);
    default:
        return std::nullopt;
    }
}

std::optional<std::string> ShowList(const FunctionArguments& arguments) {
    switch (arguments.Letter(0, ' ')) {
    case 'A':
        return TellOf(AssignNames(), arguments);
    case 'D':
    case 'H':
        return TellOf(DeviceNames(), arguments);
    case 'L':
        return TellOf(Libraries(), arguments);
    case 'P':
        return TellOf(exec::ListPorts(), arguments);
    case 'V':
        return TellOf(VolumeNames(), arguments);
    default:
        return std::nullopt;
    }
}

std::optional<std::string> Delay(const FunctionArguments& arguments) {
    const auto ticks = arguments.Number(0);
    if (!ticks || *ticks < 0) {
        return std::nullopt;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1000) * std::min(*ticks, LongestDelay) /
                                TicksPerSecond);
    return "";
}

std::optional<std::string> ChangeDirectory(const FunctionArguments& arguments) {
    const std::string before = dos::NameFromLock(dos::CurrentDirLock());
    if (!arguments[1].empty()) {
        const dos::FileLock drawer = dos::Lock(arguments[1]);
        const auto object = drawer ? dos::ExamineObject(drawer) : std::nullopt;
        if (!object || object->Type != dos::TypeDrawer) {
            return std::nullopt;
        }
        dos::CurrentDir(drawer);
    }
    return before;
}

// Attributes of the process. Priority and stack are the host's matter: what is set is what is told.
std::optional<std::string> Pragma(const FunctionArguments& arguments) {
    static std::string priority = "0";
    static std::string stack = "65536";
    switch (arguments.Letter(0, ' ')) {
    case 'D':
        return ChangeDirectory(arguments);
    case 'P':
        return arguments.Has(1) ? std::exchange(priority, std::string(arguments[1])) : priority;
    case 'S':
        return arguments.Has(1) ? std::exchange(stack, std::string(arguments[1])) : stack;
    case 'I':
        return "1";
    case 'W':
        return dos::SetRequesters(false) ? "WORKBENCH" : "NULL"; // nobody is there to be asked
    case '*':
        return "1";
    default:
        return std::nullopt;
    }
}

constexpr ScriptFunction Table[] = {
    {"ADDLIB", 1, 4, AddLib}, {"DELAY", 1, 1, Delay},       {"GETCLIP", 1, 1, GetClip},
    {"PRAGMA", 1, 2, Pragma}, {"REMLIB", 1, 1, RemLib},     {"SETCLIP", 1, 2, SetClip},
    {"SHOW", 1, 3, Show},     {"SHOWLIST", 1, 3, ShowList},
};

} // namespace

std::span<const ScriptFunction> SystemFunctions() {
    return Table;
}

} // namespace rexx
