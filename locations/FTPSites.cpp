#include "locations/FTPSites.h"

#include "sak/FilenameSupport.h"
#include "sak/Format.h"

#include <string>

namespace solvane {

Text<1024> MountPathOf(const FTPSitesNode& site) {
    std::string root;
    if (site.Anonymous != 0) {
        root = FormatText("FTPMount:%s,%lu", site.Address, site.Port);
    } else if (site.Username.Empty() && site.Password.Empty()) {
        root = FormatText("FTPMount:@%s,%lu", site.Address, site.Port);
    } else {
        root = FormatText("FTPMount:%s@%s,%lu", site.Username, site.Address, site.Port);
    }
    Text<1024> path = root;
    if (!site.RemoteDrawer.Empty() && !SAK_JoinFilename(path, root, site.RemoteDrawer)) {
        path.Clear();
    }
    return path;
}

} // namespace solvane
