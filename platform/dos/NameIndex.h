// Which entry of a host drawer is meant by a name: the one that the host calls so, one whose name is
// escaped there, one that differs in case only, or an alias. What a drawer holds is remembered as long as its
// times stay the same, so a miss does not walk a large drawer again. Private to platform/dos; safe from any
// thread.
#pragma once

#include "platform/dos/Aliases.h"
#include "platform/dos/HostFd.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace dos {

enum class NameMatch { AliasOnly, Folded };

// A drawer and its times, which tell of any change to its entries.
struct DrawerStamp {
    ObjectId Id;
    std::int64_t Modified = 0; // nanoseconds since 1970
    std::int64_t Changed = 0;
    bool operator==(const DrawerStamp&) const = default;
};

// The host's name of the entry of drawer (a descriptor, O_PATH will do) that name means in another
// case or as an alias; nothing when there is none or the drawer cannot be read. Of names that differ
// in case only the first in byte order is meant; never the sidecar of an object.
[[nodiscard]] std::optional<std::string> FindRealName(int drawer, std::string_view name, NameMatch match,
                                                      MetadataRule rule);

// Opens an entry by the host's name; empty with errno.
using EntryOpener = std::function<HostFd(const std::string& hostName)>;
// Opens the entry that a name means on that volume. hostName becomes what the host calls it or, where
// there is none (errno ENOENT), what it would be called.
[[nodiscard]] HostFd OpenMeant(int drawer, const VolumeInfo& on, std::string_view name, std::string& hostName,
                               const EntryOpener& open);
// The same for the drawer's own disk; the descriptor is an O_PATH one.
[[nodiscard]] HostFd OpenMeant(int drawer, const VolumeInfo& on, std::string_view name,
                               std::string& hostName);

// The name under which an entry is shown: as it would be without escapes, or its alias.
[[nodiscard]] std::string ShownName(int drawer, std::string_view hostName, MetadataRule rule);

// A change of this process to the entries of a drawer. Made just before it, ended just after it: what
// is remembered of the drawer goes on to be true when nobody else has changed the drawer before,
// and is forgotten else.
class OwnChange {
public:
    explicit OwnChange(int drawer);
    // The names that went and came; empty for none.
    void End(std::string_view gone, std::string_view made) const;

    // The drawer of a move may be both.
    friend void EndMove(const OwnChange& out, std::string_view from, const OwnChange& in,
                        std::string_view to);

private:
    int Drawer;
    DrawerStamp Before; // empty while nothing was remembered: then it is no stamp of any drawer
};

void EndMove(const OwnChange& out, std::string_view from, const OwnChange& in, std::string_view to);

// Forgets what is remembered of a drawer after changes of this process that are too many to tell of one by
// one. Asks nothing of the host.
void ForgetDrawer(const ObjectId& drawer);

} // namespace dos
