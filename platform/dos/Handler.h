// What stands behind a device name: a record of functions per kind of device, found through one
// ordered table (Handlers.cpp). Private to platform/dos; callers of dos never ask which handler
// they have. A new kind of device is a source with one such record and one row of the table.
#pragma once

#include "platform/dos/Copy.h"
#include "platform/dos/Examine.h"
#include "platform/dos/Files.h"
#include "platform/dos/Info.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dos {

struct Handler;

// What a lock holds; handlers derive their own from it.
struct LockBody {
    explicit LockBody(const Handler& owner) : Owner(&owner) {}
    LockBody(const LockBody&) = delete;
    LockBody& operator=(const LockBody&) = delete;
    virtual ~LockBody() = default;

    const Handler* Owner;
};
using LockRef = std::shared_ptr<const LockBody>;

enum class LastLink { Follow, Keep }; // what becomes of a soft link at the end of a path

enum class NameForm { Volume, Device, DeviceOnly }; // "Home:a", "DH1:a", "DH1"

// One walk over a drawer. Next fills the record with the next object; false at the end (IoErr 232)
// or when the drawer cannot be read on.
class Lister {
public:
    virtual ~Lister() = default;
    [[nodiscard]] virtual bool Next(ExamineData& object) = 0;
};

// An open file. Read gives the bytes read, 0 at the end; Write all that it was given; Seek the new
// position from the start, SetSize the new size; each -1 with IoErr on failure. What was written
// counts from a successful Close on; without one it is dropped. A Read that may wait without a limit
// ends with 304 when the calling task gets BreakControlC.
class Stream {
public:
    virtual ~Stream() = default;
    [[nodiscard]] virtual std::int64_t Read(std::span<std::byte> buffer) = 0;
    [[nodiscard]] virtual std::int64_t Write(std::span<const std::byte> bytes) = 0;
    [[nodiscard]] virtual std::int64_t Seek(std::int64_t offset, SeekFrom from) = 0;
    [[nodiscard]] virtual std::int64_t SetSize(std::int64_t offset, SeekFrom from) = 0;
    [[nodiscard]] virtual bool Close() = 0;
    // For a child process that reads or writes the stream itself: a descriptor of its own for it,
    // NoDescriptor where there is none, and the host's name of the terminal that it is.
    [[nodiscard]] virtual int ForChild() { return -1; }
    // The same for one that only reads: it begins where Read would, and Read goes on where it ends.
    [[nodiscard]] virtual int ForReader() { return ForChild(); }
    [[nodiscard]] virtual std::string Terminal() const { return {}; }
};

// What stands behind a handle; null for an empty one.
[[nodiscard]] Stream* StreamOf(FileHandle& file) noexcept;

// One change of what is told about an object; the field that has a value is set.
struct MetadataChange {
    std::optional<std::uint32_t> Protection{};
    std::uint32_t KeptProtection = 0; // the bits of Protection that stay as they are
    std::optional<std::string> Comment{};
    std::optional<std::uint32_t> Date{}; // seconds since 1 January 1978
};

// Where a soft link is to lead: one of both is not empty.
struct SoftTarget {
    std::string HostPath{}; // absolute
    std::string Relative{}; // AmigaDOS path from the drawer of the link
};

// Every function reports failure by an empty result or false, the reason in IoErr. A null entry is
// an operation that this kind of device does not know (209). "start, rest" is a place and the part
// of a path that leads on from it, in AmigaDOS form without a device.
struct Handler {
    std::string_view Name;                    // for people who read lists, "host files"
    bool (*Knows)(std::string_view device);   // a device or volume of this handler; touches no disk
    LockRef (*Root)(std::string_view device); // the root of a device that it knows
    LockRef (*RootOf)(const LockRef& lock);   // root of the volume on which lock lies
    LockRef (*Locate)(const LockRef& start, std::string_view rest, LastLink last);
    LockRef (*Parent)(const LockRef& lock); // null with IoErr 0 for a root
    bool (*Same)(const LockBody& a, const LockBody& b);
    std::string (*NameOf)(const LockBody& lock, NameForm form);
    bool (*Examine)(const LockRef& lock, ExamineData& object);
    std::unique_ptr<Lister> (*List)(const LockRef& lock);
    std::unique_ptr<Stream> (*Open)(const LockRef& start, std::string_view rest, OpenMode mode);
    bool (*CreateDrawer)(const LockRef& start, std::string_view rest);
    bool (*WriteWhole)(const LockRef& start, std::string_view rest, std::string_view bytes);
    bool (*Delete)(const LockRef& start, std::string_view rest);
    bool (*Rename)(const LockRef& start, std::string_view rest, const LockRef& toStart,
                   std::string_view toRest);
    // Copies an object to a place of the same handler, where it can do better than a stream. Moves
    // was tried before: what is left of it is to remove the source.
    CopyResult (*Copy)(const LockRef& start, std::string_view rest, const LockRef& toStart,
                       std::string_view toRest, const CopyOptions& options, const CopyProgress& progress);
    bool (*MakeSoftLink)(const LockRef& start, std::string_view rest, const SoftTarget& target);
    bool (*MakeHardLink)(const LockRef& start, std::string_view rest, const LockRef& target);
    bool (*Change)(const LockRef& start, std::string_view rest, const MetadataChange& change);
    bool (*Info)(const LockRef& lock, InfoData& info);
    // The host's path of an object that exists or could; empty when it has none.
    std::string (*HostName)(const LockRef& start, std::string_view rest);
};

// All handlers, asked for a device name in this order.
[[nodiscard]] std::span<const Handler* const> Handlers() noexcept;

extern const Handler NilHandler;
extern const Handler ConsoleHandler;
extern const Handler HostHandler; // drawers of the host: every disk volume

} // namespace dos
