#include "platform/iffparse/UnitLock.h"

#include "platform/dos/Errors.h"
#include "platform/exec/RuntimeDirectory.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace iffparse {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto LookAgain = std::chrono::milliseconds(1);

// Two bytes of the file are locked. The unit belongs to who has the one; the other is the turn: who
// has it is the next, and nobody else tries for the unit meanwhile. So one that opens the unit again
// and again does not keep out those who wait.
constexpr off_t UnitByte = 0;
constexpr off_t TurnByte = 1;
constexpr off_t AllBytes = 0; // as a length

enum class LockResult { Taken, Busy, Failed };

// The locks belong to this very opening of the file: a second one in the same process waits too.
LockResult TryLock(int file, short kind, off_t start, off_t length) {
    struct flock range {};
    range.l_type = kind;
    range.l_whence = SEEK_SET;
    range.l_start = start;
    range.l_len = length;
    while (fcntl(file, F_OFD_SETLK, &range) != 0) {
        if (errno == EAGAIN || errno == EACCES)
            return LockResult::Busy;
        if (errno != EINTR)
            return LockResult::Failed;
    }
    return LockResult::Taken;
}

// Waits for the turn and then for the unit.
LockResult WaitForUnit(int file, Clock::time_point end) {
    bool hasTurn = false;
    while (true) {
        const LockResult result = TryLock(file, F_WRLCK, hasTurn ? UnitByte : TurnByte, 1);
        if (result == LockResult::Taken && hasTurn)
            return TryLock(file, F_UNLCK, TurnByte, 1);
        hasTurn = hasTurn || result == LockResult::Taken;
        if (result == LockResult::Failed || (result == LockResult::Busy && Clock::now() >= end))
            return result;
        if (result == LockResult::Busy)
            std::this_thread::sleep_for(LookAgain);
    }
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
    TryLock(Descriptor, F_UNLCK, 0, AllBytes);
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
        const LockResult result = WaitForUnit(file, end);
        if (result == LockResult::Failed)
            return FailHost();
        if (result == LockResult::Taken && IsStillThere(file, path))
            return lock;
        if (result == LockResult::Busy || Clock::now() >= end) {
            dos::SetIoErr(dos::ErrorObjectInUse);
            return nullptr;
        }
    }
}

} // namespace iffparse
