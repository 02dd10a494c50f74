#include "platform/exec/Descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace exec {

namespace {

constexpr mode_t OwnerRights = 0700;
constexpr mode_t OthersRights = 0077;

bool IsPrivate(int directory) {
    struct stat found {};
    return fstat(directory, &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == geteuid() &&
           (found.st_mode & OwnerRights) == OwnerRights && (found.st_mode & OthersRights) == 0;
}

} // namespace

void Descriptor::Close() noexcept {
    if (Number >= 0) {
        close(std::exchange(Number, -1));
    }
}

Descriptor OpenPrivateDirectory(int parent, const char* path) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor directory(openat(parent, path, flags));
    if (!directory.IsOpen() && errno == ENOENT) {
        // Another instance may be quicker with it.
        if (mkdirat(parent, path, OwnerRights) == 0 || errno == EEXIST) {
            directory = Descriptor(openat(parent, path, flags));
        }
    }
    return directory.IsOpen() && IsPrivate(directory.Get()) ? std::move(directory) : Descriptor();
}

} // namespace exec
