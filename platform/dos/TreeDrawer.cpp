#include "platform/dos/TreeDrawer.h"

#include "platform/dos/HostDirectory.h"
#include "platform/dos/SidecarFiles.h"
#include "platform/dos/TemporaryNames.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>

namespace dos {

namespace {

TreeKind KindOfType(unsigned type) {
    switch (type) {
    case DT_REG:
        return TreeKind::File;
    case DT_LNK:
        return TreeKind::Link;
    case DT_DIR:
        return TreeKind::Drawer;
    default:
        return TreeKind::Other;
    }
}

// Some file systems do not tell the type in the drawer.
TreeKind KindOf(int drawer, const BareEntry& entry) {
    if (entry.Type != DT_UNKNOWN)
        return KindOfType(entry.Type);
    struct statx raw {};
    if (Host().Statx(drawer, entry.Name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &raw) != 0)
        return TreeKind::File; // opening it tells the reason
    return KindOfType(IFTODT(raw.stx_mode));
}

bool IsSidecarName(std::string_view name) {
    return name.size() > SidecarSuffix.size() && name.ends_with(SidecarSuffix);
}

// Takes sidecars out and marks their owners.
void JoinSidecars(int drawer, TreeContents& contents) {
    std::vector<std::string> owners;
    for (const TreeEntry& entry : contents.Others)
        if (entry.Kind == TreeKind::File && IsSidecarName(entry.Name))
            owners.push_back(entry.Name.substr(0, entry.Name.size() - SidecarSuffix.size()));
    if (owners.empty())
        return;
    std::unordered_map<std::string_view, TreeEntry*> known;
    for (auto* entries : {&contents.Drawers, &contents.Others})
        for (TreeEntry& entry : *entries)
            known.emplace(entry.Name, &entry);
    std::unordered_set<std::string> sidecars;
    for (const std::string& owner : owners) {
        const auto found = known.find(owner);
        SidecarFile sidecar;
        if (found == known.end())
            continue;
        // One that cannot be read may protect its owner: who works on that hears of it.
        if (FindSidecar(drawer, owner, sidecar) && sidecar.State != SidecarState::Ours)
            continue;
        found->second->HasSidecar = true;
        sidecars.insert(SidecarNameOf(owner));
    }
    std::erase_if(contents.Others, [&](const TreeEntry& entry) { return sidecars.contains(entry.Name); });
}

} // namespace

bool ReadTreeDrawer(int drawer, Temporaries rule, TreeContents& contents) {
    NameBlock block;
    long got = block.Fill(drawer);
    for (; got > 0; got = block.Fill(drawer))
        for (const BareEntry& entry : block.Entries()) {
            if (rule == Temporaries::LeftOut && IsTemporaryName(entry.View()))
                continue;
            const TreeKind kind = KindOf(drawer, entry);
            auto& entries = kind == TreeKind::Drawer ? contents.Drawers : contents.Others;
            entries.push_back({std::string(entry.View()), kind, false});
        }
    if (got < 0)
        return false;
    JoinSidecars(drawer, contents);
    return true;
}

SharedFd OpenTreeDrawer(int in, const std::string& name) {
    HostFd open(Host().Openat(in, name.c_str(),
                              O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0));
    return open ? std::make_shared<const HostFd>(std::move(open)) : nullptr;
}

SharedFd OpenParent(int drawer, const ObjectId& parent) {
    SharedFd up = OpenTreeDrawer(drawer, "..");
    ObjectFacts facts;
    if (!up || !FactsOf(up->Get(), facts))
        return nullptr;
    if (facts.Id == parent)
        return up;
    errno = ENOENT; // the tree was moved meanwhile
    return nullptr;
}

} // namespace dos
