// What stands behind a device name: a record of functions per kind of device, found through one
// ordered table (Handlers.cpp). Private to platform/dos; callers of dos never ask which handler
// they have. A new kind of device is a source with one such record and one row of the table.
#pragma once

#include "platform/dos/Examine.h"

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

// An open file. Read gives the bytes read, 0 at the end, -1 with IoErr. Seek gives the new position
// from the start, -1 with IoErr.
class Stream {
public:
    virtual ~Stream() = default;
    [[nodiscard]] virtual std::int64_t Read(std::span<std::byte> buffer) = 0;
    [[nodiscard]] virtual std::int64_t Seek(std::int64_t offset, int origin) = 0;
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
    std::unique_ptr<Stream> (*OpenOld)(const LockRef& start, std::string_view rest);
    bool (*CreateDrawer)(const LockRef& start, std::string_view rest);
    bool (*WriteWhole)(const LockRef& start, std::string_view rest, std::string_view bytes);
    // The host's path of an object that exists or could; empty when it has none.
    std::string (*HostName)(const LockRef& start, std::string_view rest);
};

// All handlers, asked for a device name in this order.
[[nodiscard]] std::span<const Handler* const> Handlers() noexcept;

extern const Handler NilHandler;
extern const Handler HostHandler; // drawers of the host: every disk volume

} // namespace dos
