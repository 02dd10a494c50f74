// What is done to whole disks: formatting and giving them another name.
#pragma once

namespace solvane {

// At the Computer list: hands the selected device to SYS:System/Format, which asks before it does anything.
// The system's own device is refused; where there is no such program the user is told.
void FormatDisk();

// At the Computer list: asks for another name for the selected volume and gives it that name.
void RelabelDisk();

} // namespace solvane
