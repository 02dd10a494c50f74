#include "bench/scan/WalkLimits.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace solvane {

namespace {

constexpr std::size_t ReadSize = std::size_t{256} << 10; // bytes of names at a time
constexpr std::size_t HeadSize = 64;                     // bytes of each file

// Calls visit with the drawer's descriptor and each name, the kernel's records read as it packs them.
template <class Visit>
std::size_t Walk(const std::string& hostDrawer, Visit visit) {
    const int drawer = open(hostDrawer.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (drawer < 0) {
        return 0;
    }
    std::vector<char> buffer(ReadSize);
    std::size_t entries = 0;
    for (long got = 1; got > 0;) {
        got = syscall(SYS_getdents64, drawer, buffer.data(), buffer.size());
        for (long at = 0; at < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") {
                ++entries;
                visit(drawer, entry->d_name);
            }
        }
    }
    close(drawer);
    return entries;
}

void Ask(int drawer, const char* name) {
    struct statx facts;
    statx(drawer, name, AT_STATX_DONT_SYNC | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
          STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME, &facts);
}

void ReadHead(int drawer, const char* name) {
    std::array<char, HeadSize> head;
    const int file = openat(drawer, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file >= 0) {
        [[maybe_unused]] const long got = read(file, head.data(), head.size());
        close(file);
    }
}

} // namespace

std::size_t BareWalk(const std::string& hostDrawer) {
    return Walk(hostDrawer, Ask);
}

std::size_t BareWalkAndRead(const std::string& hostDrawer) {
    return Walk(hostDrawer, [](int drawer, const char* name) {
        Ask(drawer, name);
        ReadHead(drawer, name);
    });
}

} // namespace solvane
