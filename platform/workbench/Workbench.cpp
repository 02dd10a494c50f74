#include "platform/workbench/Workbench.h"

#include "platform/dos/CommandSearch.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Paths.h"
#include "platform/dos/ReadArgs.h"
#include "platform/dos/System.h"
#include "platform/icon/Icon.h"
#include "platform/intuition/Requesters.h"
#include "platform/workbench/DesktopEntries.h"

#include <QMimeDatabase>
#include <QString>

#include <cstddef>
#include <mutex>
#include <set>
#include <span>
#include <utility>
#include <vector>

namespace workbench {

namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t HeadSize = 16'384; // bytes looked at, as the host's own sniffing does

struct ModuleState {
    std::mutex Guard;
    Hooks Behind;
    std::set<std::string> Allowed; // programs that may be started without a question
};

ModuleState& State() {
    static ModuleState state;
    return state;
}

Hooks CurrentHooks() {
    const std::lock_guard hold(State().Guard);
    return State().Behind;
}

bool Refuse(long error) {
    dos::SetIoErr(error);
    return false;
}

// The current drawer of the thread for a while.
class InDrawer {
public:
    explicit InDrawer(const dos::FileLock& drawer) : Before(dos::CurrentDir(drawer)) {}
    InDrawer(const InDrawer&) = delete;
    InDrawer& operator=(const InDrawer&) = delete;
    ~InDrawer() { dos::CurrentDir(Before); }

private:
    dos::FileLock Before;
};

bool StartLine(const std::string& line) {
    const bool hasStarted = dos::StartSystem(line) == 0;
    if (hasStarted)
        dos::SetIoErr(0);
    return hasStarted;
}

bool OpenDrawer(const std::string& path) {
    const Hooks hooks = CurrentHooks();
    if (hooks.OpenDrawer)
        return hooks.OpenDrawer(path);
    return StartLine("PROGDIR:solvane " + dos::QuoteArgument(path));
}

LaunchAnswer AskUser(const std::string& path) {
    const int answer =
        intuition::EasyRequest(nullptr, {.Title = "Workbench",
                                         .Text = "\"" + path + "\"\nis a program. Do you want to start it?",
                                         .Image = intuition::RequesterImage::Question,
                                         .Gadgets = {"_Start", "_Cancel"}});
    return answer == 1 ? LaunchAnswer::Start : LaunchAnswer::Refuse;
}

bool MayStart(const std::string& path) {
    ModuleState& state = State();
    {
        const std::lock_guard hold(state.Guard);
        if (state.Allowed.contains(path))
            return true;
    }
    const Hooks hooks = CurrentHooks();
    if ((hooks.MayStart ? hooks.MayStart(path) : AskUser(path)) == LaunchAnswer::Refuse)
        return Refuse(dos::ErrorBreak);
    const std::lock_guard hold(state.Guard);
    state.Allowed.insert(path);
    return true;
}

// Host files on foreign disks often have every mode set: what has a known type that is no program is no
// program.
bool IsProgram(const QMimeType& type) {
    for (const char* name :
         {"application/x-executable", "application/x-sharedlib", "application/x-pie-executable",
          "application/x-shellscript", "application/x-perl", "text/x-python", "application/x-ruby",
          "application/vnd.appimage"})
        if (type.inherits(QString::fromLatin1(name)))
            return true;
    return type.isDefault();
}

std::vector<std::string> NamesOf(const QMimeType& type) {
    std::vector<std::string> names = {type.name().toStdString()};
    for (const QString& parent : type.allAncestors())
        names.push_back(parent.toStdString());
    return names;
}

bool StartProgram(const std::string& path, const dos::FileLock& drawer) {
    const InDrawer there(drawer);
    return MayStart(path) && StartLine(dos::QuoteArgument(path));
}

// The default tool is a path, or the name of a program of ours or of the host. The program that was asked
// about is the one that is started: by its path, since its name alone could stand for a built-in command.
bool OpenWithTool(const std::string& tool, const std::string& path, const dos::FileLock& drawer) {
    const InDrawer there(drawer);
    const std::optional<dos::FoundProgram> program = dos::FindProgram(tool);
    if (!program)
        return false;
    const std::string toolPath = dos::FromHostPath(program->HostPath);
    return MayStart(toolPath) && StartLine(dos::QuoteArgument(toolPath) + " " + dos::QuoteArgument(path));
}

// By the name and the first bytes. They are read through dos, which waits for no disk that does not answer;
// of what cannot be read the name alone tells.
QMimeType TypeOf(const std::string& path, const std::string& hostPath) {
    const QMimeDatabase database;
    const QString name = QString::fromLocal8Bit(hostPath.substr(hostPath.rfind('/') + 1).c_str());
    QByteArray head(HeadSize, '\0');
    dos::FileHandle file = dos::OpenOld(path);
    const std::int64_t size =
        file ? dos::Read(file, std::as_writable_bytes(std::span(head.data(), HeadSize))) : -1;
    if (size >= 0)
        return database.mimeTypeForFileNameAndData(name, head.left(size));
    const QList<QMimeType> types = database.mimeTypesForFileName(name);
    return types.isEmpty() ? database.mimeTypeForName(u"application/octet-stream"_s) : types.constFirst();
}

bool OpenWithHost(const QMimeType& type, const std::string& hostPath) {
    const std::optional<DesktopEntry> entry = DefaultApplication(NamesOf(type));
    return entry ? dos::StartHostProgram(CommandFor(*entry, hostPath)) : Refuse(dos::ErrorObjectNotFound);
}

bool OpenFile(const std::string& path, const dos::FileLock& drawer) {
    const std::optional<std::string> hostPath = dos::HostPath(path);
    if (!hostPath)
        return false;
    const std::optional<icon::DiskObject> object = icon::GetDiskObject(path);
    const bool isTool = object && object->Type == icon::IconType::Tool;
    // A disk of somebody else can name any tool, so that is asked about too. A missing one is passed over.
    if (object && !isTool && !object->DefaultTool.empty() &&
        (OpenWithTool(object->DefaultTool, path, drawer) || dos::IoErr() == dos::ErrorBreak))
        return dos::IoErr() != dos::ErrorBreak;
    const QMimeType type = TypeOf(path, *hostPath);
    if (dos::FindProgram(path) && (isTool || IsProgram(type)))
        return StartProgram(path, drawer);
    return OpenWithHost(type, *hostPath);
}

} // namespace

void SetHooks(Hooks hooks) {
    const std::lock_guard hold(State().Guard);
    State().Behind = std::move(hooks);
    State().Allowed.clear();
}

bool WBRun(std::string_view path) {
    const dos::FileLock lock = dos::Lock(path);
    const auto object = lock ? dos::ExamineObject(lock) : std::nullopt;
    const std::string name = object ? dos::NameFromLock(lock) : std::string();
    if (name.empty())
        return false;
    if (object->Type == dos::TypeDrawer)
        return OpenDrawer(name);
    if (object->Type != dos::TypeFile)
        return Refuse(dos::ErrorObjectWrongType);
    return OpenFile(name, dos::ParentDir(lock));
}

void AddWBRunCommand() {
    dos::SetBuiltIn("WBRun", [](std::string_view arguments) -> dos::BuiltInResult {
        constexpr long codeError = 10;
        constexpr long codeFail = 20;
        const auto parsed = dos::ReadArgs("FILE/M/A,SHOW/K", arguments);
        if (!parsed)
            return {codeFail, dos::Fault(dos::IoErr(), "WBRun") + "\n"};
        dos::BuiltInResult result;
        for (const std::string& path : parsed->Multi("FILE")) {
            if (WBRun(path))
                continue;
            result.Code = codeError;
            result.Output += dos::Fault(dos::IoErr(), path) + "\n";
        }
        return result;
    });
}

} // namespace workbench
