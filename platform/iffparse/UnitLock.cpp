#include "platform/iffparse/UnitLock.h"

#include "platform/dos/Errors.h"
#include "platform/exec/RuntimeDirectory.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace iffparse {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto LookAgain = std::chrono::milliseconds(5);

enum class LockResult { Taken, Busy, Failed };

// The lock belongs to this very opening of the file: a second one in the same process waits too.
LockResult TryLock(int file) {
    while (flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return LockResult::Busy;
        if (errno != EINTR)
            return LockResult::Failed;
    }
    return LockResult::Taken;
}

// Someone may have removed the file, as a cleaner of old files does: then others lock a new one.
bool IsStillThere(int file, const std::string& path) {
    struct stat held {};
    struct stat named {};
    return fstat(file, &held) == 0 && lstat(path.c_str(), &named) == 0 && held.st_ino == named.st_ino &&
           held.st_dev == named.st_dev;
}

std::unique_ptr<UnitLock> FailHost() {
    dos::SetIoErr(dos::ErrorFromErrno(errno, dos::Operation::Write));
    return nullptr;
}

} // namespace

UnitLock::~UnitLock() {
    // Before the close: a child process that is being started may still hold a copy.
    flock(Descriptor, LOCK_UN);
    close(Descriptor);
}

std::unique_ptr<UnitLock> LockUnit(std::uint32_t unit, std::uint32_t patience) {
    const std::string& directory = exec::RuntimeDirectory();
    if (directory.empty()) {
        dos::SetIoErr(dos::ErrorDeviceNotMounted);
        return nullptr;
    }
    const std::string path = directory + "/clipboard-" + std::to_string(unit);
    const auto end = Clock::now() + std::chrono::milliseconds(patience);
    while (true) {
        const int file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
        if (file < 0)
            return FailHost();
        auto lock = std::make_unique<UnitLock>(file);
        const LockResult result = TryLock(file);
        if (result == LockResult::Failed)
            return FailHost();
        if (result == LockResult::Taken && IsStillThere(file, path))
            return lock;
        if (Clock::now() >= end) {
            dos::SetIoErr(dos::ErrorObjectInUse);
            return nullptr;
        }
        std::this_thread::sleep_for(LookAgain);
    }
}

} // namespace iffparse
