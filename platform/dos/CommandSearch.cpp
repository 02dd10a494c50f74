#include "platform/dos/CommandSearch.h"

#include "platform/dos/DeviceProcs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/dos/HostFd.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Limits.h"
#include "platform/dos/LinkText.h"
#include "platform/dos/MountInfo.h"
#include "platform/dos/Paths.h"
#include "platform/utility/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace dos {

namespace {

constexpr std::string_view UsualHostPath = "/usr/local/bin:/usr/bin:/bin";
constexpr unsigned AnyExecute = 0111;

std::string HostParent(const std::string& hostPath) {
    return hostPath.substr(0, hostPath.rfind('/'));
}

struct Judgement {
    long Error = ErrorNoDisk;    // 0 for a program that can be run
    bool IsAbsoluteLink = false; // the entry itself
};

Judgement JudgeNow(const std::string& hostPath) {
    struct statx raw {};
    if (Host().Statx(AT_FDCWD, hostPath.c_str(), AT_STATX_DONT_SYNC, STATX_TYPE | STATX_MODE, &raw) != 0)
        return {ErrorFromErrno(errno, Operation::Lookup)};
    if (!IsFileMode(raw.stx_mode))
        return {ErrorObjectWrongType};
    if ((raw.stx_mode & AnyExecute) == 0)
        return {ErrorNotExecutable};
    return {0, ReadLinkText(AT_FDCWD, hostPath.c_str()).starts_with('/')};
}

// Any drawer of the path can lie on a disk that does not answer, and links lead there from others. One that
// did not answer is not waited for again.
Judgement Judge(const std::string& hostPath) {
    const std::string slowMount = SlowMountOf(*Mounts(), CleanHostPath(hostPath));
    return AskWithLimit<Judgement>(slowMount.empty() ? HostParent(hostPath) : slowMount,
                                   [hostPath](Progress&) { return JudgeNow(hostPath); });
}

std::string HostName(std::string_view hostPath) {
    return std::string(hostPath.substr(hostPath.rfind('/') + 1));
}

// The drawers of our programs as the host calls them.
std::vector<std::string> OurDrawers() {
    std::vector<std::string> drawers;
    std::vector<std::string> paths = ShellPath();
    paths.insert(paths.end(), {"PROGDIR:", "PROGDIR:C"});
    for (const std::string& path : paths) {
        bool isComplete = false;
        for (const FileLock& lock : LockAllTargets(path, &isComplete))
            if (auto drawer = HostPath(NameFromLock(lock))) {
                while (drawer->size() > 1 && drawer->ends_with('/'))
                    drawer->pop_back();
                drawers.push_back(*std::move(drawer));
            }
    }
    return drawers;
}

// Not what an absolute link leads to.
bool LiesInOurDrawers(const std::string& hostPath) {
    const std::vector<std::string> drawers = OurDrawers();
    return std::find(drawers.begin(), drawers.end(), HostParent(hostPath)) != drawers.end();
}

// A search that remembers the most telling reason for having found nothing.
class Search {
public:
    bool Take(const std::string& hostPath) {
        const auto [error, isAbsoluteLink] = Judge(hostPath);
        if (error == 0) {
            Found = FoundProgram{hostPath, HostName(hostPath)};
            IsAbsoluteLink = isAbsoluteLink;
        } else if (error != ErrorObjectNotFound && Reason == ErrorObjectNotFound) {
            Reason = error;
        }
        return error == 0;
    }
    bool TakeFrom(const FileLock& drawer, std::string_view name);
    std::optional<FoundProgram> Finish() {
        if (!Found)
            SetIoErr(Reason);
        return std::move(Found);
    }
    // For a search where programs of ours lie.
    std::optional<FoundProgram> FinishOurs() {
        if (Found)
            Found->IsOurs = !IsAbsoluteLink && LiesInOurDrawers(Found->HostPath);
        return Finish();
    }

private:
    bool TakeShown(const std::string& drawer, std::string_view name);

    std::optional<FoundProgram> Found;
    bool IsAbsoluteLink = false;
    long Reason = ErrorObjectNotFound;
};

bool Search::TakeShown(const std::string& drawer, std::string_view name) {
    const std::optional<std::string> path = AddPart(drawer, name, drawer.size() + name.size() + 2);
    const std::optional<std::string> hostPath = path ? HostPath(*path) : std::nullopt;
    return hostPath && Take(*hostPath);
}

// Commands are found whatever the case, on volumes that know case too; the exact name goes first.
bool Search::TakeFrom(const FileLock& drawer, std::string_view name) {
    const std::string path = NameFromLock(drawer);
    if (path.empty() || TakeShown(path, name))
        return !path.empty();
    DirContext context = ObtainDirContext(drawer);
    while (const ExamineData* object = context ? ExamineDir(context) : nullptr)
        if (utility::Stricmp(object->Name, name) == 0 && object->Name != name &&
            TakeShown(path, object->Name))
            return true;
    return false;
}

std::optional<FoundProgram> FindByPath(std::string_view word) {
    Search search;
    const std::string asHostPath(word);
    if (word.starts_with('/') && Judge(asHostPath).Error != ErrorObjectNotFound)
        static_cast<void>(search.Take(asHostPath));
    else if (const FileLock lock = Lock(word); lock) {
        if (const std::optional<std::string> hostPath = HostPath(word))
            static_cast<void>(search.Take(*hostPath));
    } else {
        return std::nullopt;
    }
    return search.FinishOurs();
}

void SearchHostPath(Search& search, const std::string& name) {
    const char* variable = std::getenv("PATH");
    const std::string_view path = variable ? std::string_view(variable) : UsualHostPath;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find(':', at), path.size());
        const std::string drawer(path.substr(at, end - at));
        at = end + 1;
        // A relative one would find what the user happens to look at.
        if (drawer.starts_with('/') && search.Take(drawer + "/" + name))
            return;
    }
}

} // namespace

std::vector<std::string> ShellPath() {
    return {"C:", "PROGDIR:Tools", "SYS:Rexxc", "SYS:System", "SYS:Utilities", "SYS:Tools", "S:"};
}

std::optional<FoundProgram> FindHostProgram(const std::string& name) {
    Search search;
    if (name.starts_with('/'))
        static_cast<void>(search.Take(name));
    else if (!name.empty() && name.find('/') == std::string::npos)
        SearchHostPath(search, name);
    return search.Finish();
}

std::optional<FoundProgram> FindProgram(std::string_view word) {
    if (word.find_first_of(":/") != std::string_view::npos)
        return FindByPath(word);
    Search search;
    for (const std::string& path : ShellPath()) {
        bool isComplete = false;
        for (const FileLock& drawer : LockAllTargets(path, &isComplete)) {
            if (search.TakeFrom(drawer, word))
                return search.FinishOurs();
        }
    }
    SearchHostPath(search, std::string(word));
    return search.Finish();
}

} // namespace dos
