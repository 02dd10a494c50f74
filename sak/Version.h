// Version strings that programs carry within them: "$VER: name version (date) comment". Reads the beginning
// of a file and runs nothing.
#pragma once

#include "sak/Text.h"

#include <string_view>

namespace solvane {

// --- State: the result of the last SAK_GetVersion, empty where it has no such part ---

extern Text<512> SAK_GetVersionFull; // all of it, in one line
extern Text<128> SAK_GetVersionName;
extern Text<20> SAK_GetVersionVersion;
extern Text<20> SAK_GetVersionPort; // a word in square brackets behind the version
extern Text<20> SAK_GetVersionDate; // without its parentheses
extern Text<256> SAK_GetVersionComment;

// Looks for the version string in the first 64 KiB of the file. Object files and archives (".o", ".lha") are
// not searched: true, and nothing found. False when there is none, or the file cannot be read.
[[nodiscard]] bool SAK_GetVersion(std::string_view path);

} // namespace solvane
