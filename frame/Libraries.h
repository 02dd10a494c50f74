// The services of the platform that the program cannot do without, opened in a fixed order with a message of
// its own for each that is missing.
#pragma once

namespace solvane {

// Opens everything; false after the message of the first required item that is missing.
[[nodiscard]] bool OpenLibrariesClasses();

// Closes whatever is open; safe on a partly opened set.
void CloseLibrariesClasses();

} // namespace solvane
