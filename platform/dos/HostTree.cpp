#include "platform/dos/HostTree.h"

#include "platform/dos/CopyContents.h"
#include "platform/dos/HostDirectory.h"
#include "platform/dos/HostFd.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dos {

namespace {

constexpr int DeepestTree = 64; // drawers within drawers

HostFd OpenDrawer(int in, const char* name) {
    return HostFd(Host().Openat(in, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC, 0));
}

bool NamesOf(int drawer, std::vector<std::string>& names) {
    return ForEachName(drawer, [&](std::string_view name) { names.emplace_back(name); });
}

bool CopyFile(int from, int to, const char* name, const struct statx& about) {
    const HostFd source(Host().Openat(from, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
    // A skeleton that is installed read-only becomes the user's own.
    const HostFd copy(Host().Openat(to, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                    (about.stx_mode & ACCESSPERMS) | S_IWUSR));
    if (!source || !copy)
        return false;
    const ContentsEnd end =
        ContentsCopier(CopyProgress()).Run(source.Get(), copy.Get(), about.stx_size, about.stx_blocks * 512);
    if (end == ContentsEnd::Changed)
        errno = EBUSY;
    return end == ContentsEnd::Done;
}

bool CopyLink(int from, int to, const char* name) {
    const std::string target = ReadLinkText(from, name);
    return !target.empty() && Host().Symlinkat(target.c_str(), to, name) == 0;
}

bool CopyContents(int from, int to, int depth);

bool CopyEntry(int from, int to, const char* name, int depth) {
    struct statx raw {};
    if (Host().Statx(from, name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &raw) != 0)
        return false;
    if (S_ISREG(raw.stx_mode))
        return CopyFile(from, to, name, raw);
    if (S_ISLNK(raw.stx_mode))
        return CopyLink(from, to, name);
    if (!S_ISDIR(raw.stx_mode))
        return true; // nothing that a skeleton could mean
    if (Host().Mkdirat(to, name, 0777) != 0)
        return false;
    const HostFd source = OpenDrawer(from, name);
    const HostFd copy = OpenDrawer(to, name);
    return source && copy && CopyContents(source.Get(), copy.Get(), depth + 1);
}

bool CopyContents(int from, int to, int depth) {
    std::vector<std::string> names;
    if (depth > DeepestTree) {
        errno = ELOOP;
        return false;
    }
    if (!NamesOf(from, names))
        return false;
    for (const std::string& name : names)
        if (!CopyEntry(from, to, name.c_str(), depth))
            return false;
    return true;
}

void RemoveContents(int drawer, int depth) {
    std::vector<std::string> names;
    if (depth > DeepestTree || !NamesOf(drawer, names))
        return;
    for (const std::string& name : names) {
        if (Host().Unlinkat(drawer, name.c_str(), 0) == 0)
            continue;
        if (const HostFd inner = OpenDrawer(drawer, name.c_str()))
            RemoveContents(inner.Get(), depth + 1);
        Host().Unlinkat(drawer, name.c_str(), AT_REMOVEDIR);
    }
}

} // namespace

bool MakeHostDrawers(const std::string& hostPath, unsigned mode) {
    for (std::size_t at = hostPath.find('/', 1);; at = hostPath.find('/', at + 1)) {
        const std::string drawer = hostPath.substr(0, at);
        if (Host().Mkdirat(AT_FDCWD, drawer.c_str(), mode) != 0 && errno != EEXIST) {
            struct statx raw {}; // some hosts refuse even what is there
            const int error = errno;
            if (Host().Statx(AT_FDCWD, drawer.c_str(), 0, STATX_TYPE, &raw) != 0) {
                errno = error;
                return false;
            }
        }
        if (at == std::string::npos)
            return true;
    }
}

bool CopyHostTree(const std::string& from, const std::string& to) {
    const HostFd source(Host().Openat(AT_FDCWD, from.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    if (!source || Host().Mkdirat(AT_FDCWD, to.c_str(), 0777) != 0)
        return false;
    const HostFd copy = OpenDrawer(AT_FDCWD, to.c_str());
    return copy && CopyContents(source.Get(), copy.Get(), 0);
}

void RemoveHostTree(const std::string& hostPath) {
    if (const HostFd drawer = OpenDrawer(AT_FDCWD, hostPath.c_str()))
        RemoveContents(drawer.Get(), 0);
    Host().Unlinkat(AT_FDCWD, hostPath.c_str(), AT_REMOVEDIR);
}

} // namespace dos
