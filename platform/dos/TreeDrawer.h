// One drawer of a tree that is walked: what is in it, and its way back up. Private to platform/dos.
#pragma once

#include "platform/dos/TreeWork.h"

#include <memory>
#include <string>
#include <vector>

namespace dos {

enum class TreeKind { File, Link, Drawer, Other };

struct TreeEntry {
    std::string Name; // as the host has it
    TreeKind Kind = TreeKind::File;
    bool HasSidecar = false;
};

// What a drawer holds; sidecars go with their owners, temporary files are left out.
struct TreeContents {
    std::vector<TreeEntry> Drawers;
    std::vector<TreeEntry> Others;
};

enum class Temporaries { LeftOut, Listed };

// Reads an open drawer; false with errno.
[[nodiscard]] bool ReadTreeDrawer(int drawer, Temporaries rule, TreeContents& contents);

// Opens a drawer without following a link; empty with errno.
[[nodiscard]] SharedFd OpenTreeDrawer(int in, const std::string& name);
// Opens the parent of a drawer again; empty with errno when that is another one by now.
[[nodiscard]] SharedFd OpenParent(int drawer, const ObjectId& parent);

// Lets go of a drawer and those above it that nobody else holds, one after another: a tree can be
// deeper than calls within each other can go.
template <typename Node>
void FreeUpwards(std::shared_ptr<Node>& parent) {
    while (parent && parent.use_count() == 1)
        parent = std::shared_ptr<Node>(std::move(parent->Parent));
}

// The path of an entry below the top, for people.
template <typename Node>
[[nodiscard]] std::string TreePath(const Node& node, const std::string& name) {
    std::vector<const std::string*> parts{&name};
    for (const Node* at = &node; at->Parent; at = at->Parent.get())
        parts.push_back(&at->Name);
    std::string path;
    for (auto part = parts.rbegin(); part != parts.rend(); ++part)
        if (!(*part)->empty())
            path.append(path.empty() ? "" : "/").append(**part);
    return path;
}

} // namespace dos
