#include "platform/exec/Forbid.h"

#include "platform/exec/Descriptor.h"
#include "platform/exec/RuntimeDirectory.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>

namespace exec {

namespace {

enum class Patience { Wait, Attempt };

std::mutex ProcessLock;   // held while a thread of this process is inside
Descriptor ProcessesLock; // the lock file, while held; under ProcessLock

bool LockFile(int file, Patience patience) {
    const int operation = patience == Patience::Wait ? LOCK_EX : LOCK_EX | LOCK_NB;
    int result = 0;
    do {
        result = flock(file, operation);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

// Someone may have removed the file while its lock was waited for: then others lock a new one.
bool IsStillThere(int file, const std::string& path) {
    struct stat held {};
    struct stat named {};
    return fstat(file, &held) == 0 && lstat(path.c_str(), &named) == 0 && held.st_ino == named.st_ino &&
           held.st_dev == named.st_dev;
}

// Not open when the lock is not to be had.
Descriptor LockProcesses(const std::string& path, Patience patience) {
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    while (true) {
        Descriptor file(open(path.c_str(), flags, 0600));
        if (!file.IsOpen() || !LockFile(file.Get(), patience)) {
            return {};
        }
        if (IsStillThere(file.Get(), path)) {
            return file;
        }
    }
}

void Leave() {
    if (ProcessesLock.IsOpen()) {
        // Before the close: a child process that is being started may still hold a copy.
        flock(ProcessesLock.Get(), LOCK_UN);
        ProcessesLock.Close();
    }
    ProcessLock.unlock();
}

// The nesting of one thread; what it leaves open ends with it.
struct Nesting {
    int Depth = 0;
    ~Nesting() {
        if (Depth > 0) {
            Leave();
        }
    }
};

thread_local Nesting Own;

std::string LockFilePath() {
    const std::string& directory = RuntimeDirectory();
    return directory.empty() ? std::string() : directory + "/forbid";
}

} // namespace

void Forbid() {
    if (Own.Depth++ > 0) {
        return;
    }
    ProcessLock.lock();
    if (const std::string path = LockFilePath(); !path.empty()) {
        ProcessesLock = LockProcesses(path, Patience::Wait);
    }
}

bool AttemptForbid() {
    if (Own.Depth > 0) {
        ++Own.Depth;
        return true;
    }
    if (!ProcessLock.try_lock()) {
        return false;
    }
    if (const std::string path = LockFilePath(); !path.empty()) {
        ProcessesLock = LockProcesses(path, Patience::Attempt);
        if (!ProcessesLock.IsOpen()) {
            ProcessLock.unlock();
            return false;
        }
    }
    Own.Depth = 1;
    return true;
}

void Permit() {
    if (Own.Depth > 0 && --Own.Depth == 0) {
        Leave();
    }
}

} // namespace exec
