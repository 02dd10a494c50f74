#include "platform/exec/RuntimeDirectory.h"

#include "platform/exec/Descriptor.h"

#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace exec {

namespace {

std::mutex Guard;
std::optional<std::string> Kept; // empty text: not to be trusted

// A directory of this user. One of another user is no base, it would get leftovers that lock its
// owner out.
bool IsOwnBase(const std::string& base) {
    struct stat found {};
    return base.starts_with('/') && stat(base.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == geteuid();
}

// Who may write into the base could put something else into our place, unless it is sticky.
bool IsOpenToAll(const std::string& base) {
    struct stat found {};
    return stat(base.c_str(), &found) != 0 ||
           ((found.st_mode & (S_IWGRP | S_IWOTH)) != 0 && (found.st_mode & S_ISVTX) == 0);
}

std::string DirectoryFromEnvironment() {
    const char* const value = std::getenv("XDG_RUNTIME_DIR");
    const std::string base = value != nullptr ? value : "";
    if (!IsOwnBase(base)) {
        return "/tmp/solvane-" + std::to_string(geteuid());
    }
    return IsOpenToAll(base) ? std::string() : base + "/solvane";
}

std::string Trusted(std::string path) {
    return !path.empty() && OpenPrivateDirectory(AT_FDCWD, path.c_str()).IsOpen() ? std::move(path)
                                                                                  : std::string();
}

} // namespace

const std::string& RuntimeDirectory() {
    const std::lock_guard lock(Guard);
    if (!Kept) {
        Kept = Trusted(DirectoryFromEnvironment());
    }
    return *Kept;
}

bool UseRuntimeDirectory(std::string_view path) {
    const std::lock_guard lock(Guard);
    Kept.reset();
    if (path.empty()) {
        return true;
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1); // a link with "/" behind it would be followed
    }
    Kept = Trusted(std::string(path));
    return !Kept->empty();
}

} // namespace exec
