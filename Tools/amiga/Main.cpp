#include "platform/commands/Program.h"

#include <array>

namespace {

// What tools look for in the program file.
[[gnu::used]] constexpr auto VersionCookie = std::to_array("$VER: amiga 2.4 (21.11.2026)");

} // namespace

int main(int argc, char** argv) {
    return commands::RunProgram(argc, argv);
}
