#include "platform/dos/Errors.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/HostTree.h"
#include "platform/dos/UserHome.h"
#include "platform/dos/VolumeTable.h"
#include "platform/dos/Volumes.h"
#include "platform/exec/RuntimeDirectory.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace dos {

namespace {

constexpr std::size_t LargestConfiguration = 1u << 20; // bytes of a file that users edit

// The host drawers of this user.
struct UserDrawers {
    std::string Home;
    std::string Data;          // XDG_DATA_HOME, ours in it
    std::string Configuration; // XDG_CONFIG_HOME
};

struct AssignDefault {
    std::string_view Name;
    std::string_view Target;
};

// ENVARC:, APPDIR: and the user's drawers depend on the host and are made apart.
constexpr std::array<AssignDefault, 12> StandardAssigns = {{
    {"SYS", "DH0:"}, // the volume may be called otherwise
    {"C", "SYS:C"},
    {"S", "SYS:S"},
    {"L", "SYS:L"},
    {"LIBS", "SYS:Libs"},
    {"LOCALE", "SYS:Locale"},
    {"DEVS", "SYS:Devs"},
    {"FONTS", "SYS:Fonts"},
    {"REXX", "SYS:S"},
    {"ENV", "RAM:Env"},
    {"T", "RAM:T"},
    {"CLIPS", "RAM:Clipboards"},
}};

constexpr std::array<std::string_view, 11> SystemNames = {
    "C", "Devs", "Fonts", "L", "Libs", "Locale", "Prefs", "Rexxc", "S", "System", "Utilities"};
constexpr std::array<std::string_view, 3> RamNames = {"Env", "T", "Clipboards"};

struct UserDrawer {
    std::string_view Name;    // of the assign
    std::string_view Key;     // in user-dirs.dirs
    std::string_view Default; // below the home drawer
};

constexpr std::array<UserDrawer, 6> UserDrawerRows = {{
    {"Desktop", "XDG_DESKTOP_DIR", "Desktop"},
    {"Documents", "XDG_DOCUMENTS_DIR", "Documents"},
    {"Downloads", "XDG_DOWNLOAD_DIR", "Downloads"},
    {"Music", "XDG_MUSIC_DIR", "Music"},
    {"Pictures", "XDG_PICTURES_DIR", "Pictures"},
    {"Videos", "XDG_VIDEOS_DIR", "Videos"},
}};

bool Fail(const std::string& text, long error) {
    AddSetUpProblem(text);
    SetIoErr(error);
    return false;
}

bool FailHost(const std::string& text, int hostError) {
    return Fail(text + ": " + std::strerror(hostError), ErrorFromErrno(hostError, Operation::Write));
}

UserDrawers FindUserDrawers() {
    UserDrawers drawers;
    drawers.Home = HomeOfUser();
    drawers.Data = DrawerFromEnvironment("XDG_DATA_HOME", drawers.Home + "/.local/share") + "/solvane";
    drawers.Configuration = DrawerFromEnvironment("XDG_CONFIG_HOME", drawers.Home + "/.config");
    return drawers;
}

bool IsThere(const std::string& hostPath) {
    struct statx raw {};
    return Host().Statx(AT_FDCWD, hostPath.c_str(), 0, STATX_TYPE, &raw) == 0;
}

template <std::size_t Count>
bool MakeAll(const std::string& in, const std::array<std::string_view, Count>& names) {
    for (const std::string_view name : names)
        if (!MakeHostDrawers(in + "/" + std::string(name), 0777))
            return false;
    return true;
}

// Makes the system drawer under another name and puts it in place when it is whole: a start that is
// cut short leaves nothing half made, and of two first starts at a time one wins.
bool MakeSystemDrawer(const std::string& skeleton, const std::string& drawer) {
    const std::string parent = drawer.substr(0, drawer.rfind('/'));
    const std::string fresh = drawer + ".new-" + std::to_string(::getpid());
    if (!MakeHostDrawers(parent, 0700))
        return FailHost("The drawer " + parent + " cannot be made", errno);
    RemoveHostTree(fresh);
    const bool isCopied = skeleton.empty() || CopyHostTree(skeleton, fresh);
    const int copyError = errno;
    const bool isMade =
        isCopied && MakeAll(fresh, SystemNames) &&
        Host().Renameat2(AT_FDCWD, fresh.c_str(), AT_FDCWD, drawer.c_str(), RENAME_NOREPLACE) == 0;
    const int error = isCopied ? errno : copyError;
    if (isMade)
        return true;
    RemoveHostTree(fresh);
    if (IsThere(drawer)) // another start was quicker
        return true;
    return FailHost("The system drawer " + drawer + " cannot be made from \"" + skeleton + "\"", error);
}

bool Add(VolumeInfo volume) {
    const std::string root = volume.HostRoot;
    return AddSystemVolume(std::move(volume)) || Fail("The drawer " + root + " cannot be used", IoErr());
}

bool MakeVolumes(const SystemDrawers& drawers, const UserDrawers& user) {
    const std::string system = user.Data + "/Workbench";
    const std::string ram = exec::RuntimeDirectory() + "/RAM";
    if (!IsThere(system) && !MakeSystemDrawer(drawers.SystemSkeleton, system))
        return false;
    if (!MakeHostDrawers(ram, 0700) || !MakeAll(ram, RamNames))
        return FailHost("The RAM disk " + ram + " cannot be made", errno);
    return Add({.Device = "DH0", .Volume = "Workbench", .HostRoot = system, .Names = NameRule::Fold}) &&
           Add({.Device = "DH1", .Volume = "Home", .HostRoot = user.Home}) &&
           Add({.Device = "DH2", .Volume = "Host", .HostRoot = "/"}) &&
           Add({.Device = "RAM", .Volume = "RAM Disk", .HostRoot = ram, .Names = NameRule::Fold});
}

// A late assign waits for a drawer that is not there yet.
void AssignNow(std::string_view name, std::vector<std::string> targets) {
    if (!SetAssign(name, AssignKind::Directory, targets) && !SetAssign(name, AssignKind::Late, targets))
        AddSetUpProblem("The assign " + std::string(name) + ": cannot be made");
}

// Disks are named as soon as one is asked for, which making the assigns does.
void KeepNamesOfAssignsFree() {
    std::vector<std::string> names = {"ENVARC", "APPDIR"};
    for (const AssignDefault& row : StandardAssigns)
        names.emplace_back(row.Name);
    for (const UserDrawer& row : UserDrawerRows)
        names.emplace_back(row.Name);
    KeepNamesFree(std::move(names));
}

// The value of a line KEY="$HOME/text" with "\" before special characters; nothing when the key is
// not there.
std::optional<std::string> UserDirValue(std::string_view text, std::string_view key,
                                        const std::string& home) {
    std::optional<std::string> found;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(key) || !line.substr(key.size()).starts_with("=\""))
            continue;
        line.remove_prefix(key.size() + 2);
        std::string value;
        for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
            i += line[i] == '\\' && i + 1 < line.size() ? 1 : 0;
            value.push_back(line[i]);
        }
        if (value.starts_with("$HOME"))
            value.replace(0, 5, home);
        found = value;
    }
    return found;
}

void AssignUserDrawers(const UserDrawers& user) {
    const std::string text =
        ReadHostText(user.Configuration + "/user-dirs.dirs", LargestConfiguration).value_or("");
    for (const UserDrawer& row : UserDrawerRows) {
        std::string path =
            UserDirValue(text, row.Key, user.Home).value_or(user.Home + "/" + std::string(row.Default));
        while (path.size() > 1 && path.ends_with('/'))
            path.pop_back();
        // The home drawer itself is how users say that they want none.
        if (path.starts_with('/') && path != user.Home)
            AssignNow(row.Name, {FromHostPath(path)});
    }
}

bool MakeAssigns(const SystemDrawers& drawers, const UserDrawers& user) {
    const std::string archive = user.Configuration + "/solvane/Env-Archive";
    if (!MakeHostDrawers(archive, 0700))
        return FailHost("The drawer " + archive + " cannot be made", errno);
    for (const AssignDefault& row : StandardAssigns)
        AssignNow(row.Name, {std::string(row.Target)});
    // What the user keeps comes first, what the system drawer brings along stands behind it.
    AssignNow("ENVARC", {FromHostPath(archive), "SYS:Prefs/Env-Archive"});
    if (!drawers.ProgramDrawer.empty()) {
        const std::string program = FromHostPath(drawers.ProgramDrawer);
        SetProgramDrawer(program);
        const std::string inside = program + (program.ends_with(':') ? "" : "/");
        AssignNow("APPDIR", {program, inside + "Tools"});
        // The user's own commands come before those that are installed.
        if (IsThere(drawers.ProgramDrawer + "/C") && !AddToAssign("C", inside + "C", AssignEnd::Last))
            AddSetUpProblem("The assign C: " + inside + "C cannot be added");
    }
    AssignUserDrawers(user);
    return true;
}

} // namespace

bool SetUpSystem(const SystemDrawers& drawers) {
    if (exec::RuntimeDirectory().empty())
        return Fail("The private runtime directory cannot be trusted", ErrorObjectInUse);
    const UserDrawers user = FindUserDrawers();
    if (user.Home.empty() || user.Home == "/.")
        return Fail("This user has no home drawer", ErrorObjectNotFound);
    const std::string mountFile = user.Configuration + "/solvane/mounts.toml";
    KeepNamesOfAssignsFree();
    ReadVolumeLabels(mountFile);
    if (!MakeVolumes(drawers, user) || !MakeAssigns(drawers, user))
        return false;
    ReadMountFile(mountFile, user.Home);
    return true;
}

} // namespace dos
