// Reads drawers into ContentList: one record per object, with every text that a row will show already formed.
// It sorts nothing and builds no rows; it shows a requester only when a record cannot be made.
#pragma once

#include "platform/dos/Examine.h"
#include "platform/dos/Locks.h"

#include <functional>
#include <string_view>
#include <vector>

namespace solvane {

// Calls function with a lock on each drawer that the path stands for: one round for a plain volume, one per
// target of a multi-assign, in its order. Targets that do not have the object are passed over. False as soon
// as the function is, and when the walk over the targets broke off (dos::IoErr has the reason).
[[nodiscard]] bool DoAllAssigns(std::string_view path,
                                const std::function<bool(const dos::FileLock&)>& function);

// One drawer that can be read, opened.
struct OpenedDrawer {
    dos::FileLock Lock;
    dos::DirContext Objects;
};

// Opens all drawers that the path stands for, in their order. Those that cannot be read are left out; when
// none can, dos::IoErr has the reason, and the result is empty.
[[nodiscard]] std::vector<OpenedDrawer> OpenDrawers(std::string_view path);

// Appends the objects of one drawer to ContentList, its links to LinksList also, and forms the totals anew:
// those of a multi-assigned drawer are the totals of its last part, which is intended. CurrentPath must end
// in ":" or "/".
void ListContents(OpenedDrawer& drawer);

} // namespace solvane
