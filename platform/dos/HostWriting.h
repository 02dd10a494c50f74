// What every change to host files is made of: temporary files that take the place of their target,
// renames that replace nothing, spots with their drawer and name. Private to platform/dos.
#pragma once

#include "platform/dos/Errors.h"
#include "platform/dos/HostLocks.h"

#include <optional>
#include <string>
#include <string_view>

namespace dos {

// Sets IoErr from errno; always false.
bool Refuse(int hostError, Operation operation);

// Finds an object that is there, with the drawer it lies in and its name; false with IoErr, 202 for
// the root of a volume.
[[nodiscard]] bool FindEntry(const HostLock& start, std::string_view rest, LastLink last, WalkMode& mode,
                             Spot& spot);
// Fills in the drawer and the name of an object that was reached without a name. False with errno;
// EBUSY for a root.
[[nodiscard]] bool CompleteSpot(Spot& spot);

enum class Existing { Replaced, Kept }; // what becomes of an object that has the name already

// A new file beside its target, without a name or under one that no one else has. It removes itself
// unless it has taken a place. The drawer's descriptor is the caller's and must live longer.
class Temporary {
public:
    Temporary() = default;
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;
    ~Temporary();

    // Open for reading and writing; false with errno.
    [[nodiscard]] bool Make(int drawer, unsigned mode) { return Make(drawer, mode, mode); }
    // The second mode is for one that others can see before it takes its place.
    [[nodiscard]] bool Make(int drawer, unsigned mode, unsigned modeWhileNamed);
    [[nodiscard]] int File() const noexcept { return Open.Get(); }
    // Becomes the object of that name; false with errno, EEXIST where another is kept.
    [[nodiscard]] bool TakePlace(const std::string& name, Existing existing);

private:
    HostFd Open;
    int Drawer = NoDescriptor;
    std::string Name; // empty: nothing to remove
};

inline constexpr unsigned ModeOfNewFile = 0666;
inline constexpr unsigned ModeOfReplacement = 0600; // until it has the modes of the old file

// All of it or false with errno.
[[nodiscard]] bool WriteAll(int file, std::string_view bytes);
// Gives a new file modes, owner and attributes of the one that it replaces; the archive bit is
// cleared. False with errno. Where the owner cannot be kept, the file is the writer's own.
[[nodiscard]] bool Inherit(int old, int file);
// Has the entries of a drawer written to the disk, where that can be done.
void SyncDrawer(int drawer);

// Renames without ever replacing anything: EEXIST where an object has the name. Works on hosts that
// cannot do this in one step, and for a mere change of case on disks that fold. False with errno,
// and all is as before.
[[nodiscard]] bool RenameEntry(int fromDrawer, const std::string& from, int toDrawer, const std::string& to,
                               unsigned mode);

// The host wants permissions of a drawer's owner before an entry of it goes, AmigaDOS only those of the
// entry: the modes to give back when they were lent to a drawer of this user's. Nothing when none were
// lacking or the host does not let us.
[[nodiscard]] std::optional<unsigned> LendForRemoval(int drawer);
void GiveBackModes(int drawer, unsigned modes);

// The same while it lives.
class RemovalLoan {
public:
    explicit RemovalLoan(int drawer) : Drawer(drawer), Before(LendForRemoval(drawer)) {}
    RemovalLoan(const RemovalLoan&) = delete;
    RemovalLoan& operator=(const RemovalLoan&) = delete;
    ~RemovalLoan() {
        if (Before)
            GiveBackModes(Drawer, *Before);
    }

private:
    int Drawer;
    std::optional<unsigned> Before;
};

// Some disks tell of trouble only when a file is closed; false with errno.
[[nodiscard]] bool IsWellClosed(int file);

enum class Flush { Now, Later }; // when the disk itself has what was written

// Puts bytes under a name: whole or not at all. old is what has the name now, NoDescriptor for
// nothing. False with errno, EEXIST where there was nothing and is something by now.
[[nodiscard]] bool ReplaceBytes(int drawer, const std::string& name, int old, std::string_view bytes,
                                Flush flush);

// Gives a file of the host these contents, as ReplaceBytes does; a link to it stays one. False with
// errno.
[[nodiscard]] bool ReplaceHostText(const std::string& hostPath, std::string_view text);

} // namespace dos
