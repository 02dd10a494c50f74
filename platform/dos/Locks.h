// Locks: hold on an object whatever it is called meanwhile. Names from locks, the current drawer of
// a thread, and what happens when a path names a volume that nobody knows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace dos {

struct LockBody;

// A value that is cheap to copy; the object is let go with the last copy. False when empty.
class FileLock {
public:
    FileLock() = default;
    explicit FileLock(std::shared_ptr<const LockBody> body) noexcept : Held(std::move(body)) {}

    explicit operator bool() const noexcept { return Held != nullptr; }
    [[nodiscard]] const std::shared_ptr<const LockBody>& Body() const noexcept { return Held; }

private:
    std::shared_ptr<const LockBody> Held;
};

// A lock on what the path leads to, soft links followed. Empty with IoErr: 205 nothing there, 218
// unknown volume, 217 links in circles, 226 a disk that does not answer.
[[nodiscard]] FileLock Lock(std::string_view path);

// The drawer that holds the object. Empty with IoErr 0 for a root.
[[nodiscard]] FileLock ParentDir(const FileLock& lock);

// The same object, under whatever names. Two empty locks are the same.
[[nodiscard]] bool SameLock(const FileLock& a, const FileLock& b);

// "Volume:part/part" as the object is called now; empty with IoErr when it has no name any more.
[[nodiscard]] std::string NameFromLock(const FileLock& lock);

enum class DevName { FullPath, DeviceOnly }; // "DH1:part/part" or "DH1" (no colon)
[[nodiscard]] std::string DevNameFromLock(const FileLock& lock, DevName form);

// Where relative paths of the calling thread start; gives the old one back. An empty lock means the
// root of SYS:, where every thread begins.
FileLock CurrentDir(FileLock newCurrent);
[[nodiscard]] FileLock CurrentDirLock();

// Whether the calling thread may ask the person for a missing volume; the old value comes back. On
// at the start of every thread.
bool SetRequesters(bool on);

// Asked for a volume that is not there ("Please insert volume ..."); true means look again. Without
// a hook, or with requesters off, the answer is no. Called on the thread of the failing call.
using VolumeRequest = std::function<bool(std::string_view volume)>;
void SetVolumeRequest(VolumeRequest request);

} // namespace dos
