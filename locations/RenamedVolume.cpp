#include "locations/RenamedVolume.h"

#include "sak/FilenameSupport.h"

#include <string>

namespace solvane {

namespace {

bool IsOn(const Text<1024>& path, std::string_view volume) {
    Text<1024> root;
    return SAK_GetDeviceRoot(path, root) && root == volume;
}

} // namespace

bool RenamedVolume::PutIn(Text<1024>& path) const {
    if (!IsOn(path, Before)) {
        return false;
    }
    const std::string renamed = std::string(Now).append(path.View().substr(Before.size()));
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
    return IsOn(path, Now);
}

} // namespace solvane
