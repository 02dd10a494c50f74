#include "locations/RenamedVolume.h"

#include "sak/FilenameSupport.h"

#include <string>

namespace solvane {

bool RenamedVolume::PutIn(Text<1024>& path) const {
    Text<1024> root;
    if (!SAK_GetDeviceRoot(path, root) || root != Before) {
        return false;
    }
    // A root that differs from the name in case may differ in length.
    const std::string renamed = std::string(Now).append(path.View().substr(root.Size()));
    if (renamed.size() > Text<1024>::Limit) {
        return false;
    }
    path = renamed;
    return true;
}

bool RenamedVolume::PutIn(Text<128>& name) const {
    if (name != Before) {
        return false;
    }
    name = Now;
    return true;
}

bool RenamedVolume::Has(const Text<1024>& path) const {
    Text<1024> root;
    return SAK_GetDeviceRoot(path, root) && root == Now;
}

} // namespace solvane
