#include "frame/EntryPoint.h"

#include <array>

namespace {

// What tools look for in the program file: its version, and the stack that a Shell gives it.
[[gnu::used]] constexpr auto VersionCookie = std::to_array("$VER: Solvane 2.4 (19.06.2019)");
[[gnu::used]] constexpr auto StackCookie = std::to_array("$STACK:131072");

} // namespace

int main(int argc, char** argv) {
    return solvane::EntryPoint(argc, argv);
}
