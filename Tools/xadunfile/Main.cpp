// The archive tool that the program starts in a process of its own. This version tells its version
// and refuses every other request: it unpacks nothing.
#include <cstdio>
#include <string_view>

namespace {

constexpr std::string_view VersionText = "$VER: xadunfile 1.0 (21.11.2026)";
constexpr std::string_view VersionMark = "$VER: ";
constexpr int ReturnOk = 0;
constexpr int ReturnFail = 20;

bool AsksForVersion(int argc, char** argv) {
    return argc == 2 && (std::string_view(argv[1]) == "VERSION" || std::string_view(argv[1]) == "--version");
}

} // namespace

int main(int argc, char** argv) {
    if (AsksForVersion(argc, argv)) {
        std::puts(VersionText.substr(VersionMark.size()).data());
        return ReturnOk;
    }
    std::fputs("xadunfile: unpacking is not available in this version\n", stderr);
    return ReturnFail;
}
