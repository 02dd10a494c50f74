// Looks for what the program expects beside it: external tools, their versions, optional system parts.
#pragma once

namespace solvane {

// "Tools/xadunfile" exists and says its version, which goes to xadUnFileVersion without its point.
[[nodiscard]] bool CheckxadUnFileVersion();
// The tool exists in the program's drawer.
[[nodiscard]] bool CheckForjhead();
[[nodiscard]] bool CheckForjpegtran();

// "SYS:System/Format" exists and has a version; whose it is goes to EnhancerFormat.
[[nodiscard]] bool CheckFormatVersion();

// These find out about optional parts and always result in true.
[[nodiscard]] bool CheckForFTPMount();
[[nodiscard]] bool CheckSoundDatatypeVersion();

} // namespace solvane
