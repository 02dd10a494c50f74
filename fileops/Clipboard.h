// Cut and copied entries, shared by all windows; the store comes with cutting and pasting.
#pragma once

namespace solvane {

[[nodiscard]] bool CCP_CreateClipboard();
void CCP_FreeClipboard();

} // namespace solvane
