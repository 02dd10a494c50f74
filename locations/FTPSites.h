// The user's FTP sites as places: the path at which a site is mounted.
#pragma once

#include "model/PrefsLists.h"

namespace solvane {

// "FTPMount:user@host,port" with the site's drawer behind it; empty when that does not fit. A password never
// stands in it.
[[nodiscard]] Text<1024> MountPathOf(const FTPSitesNode& site);

} // namespace solvane
