#include "platform/application/Start.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

namespace application {

namespace {

namespace fs = std::filesystem;

// A flag line of a processor can be long, a line of a broken file endless.
constexpr std::size_t LongestLine = 16384;

// The value behind "key : value" when the line has that key.
std::string_view ValueOf(std::string_view line, std::string_view key) {
    if (!line.starts_with(key)) {
        return {};
    }
    const std::size_t colon = line.find(": ");
    return colon == std::string_view::npos ? std::string_view{} : line.substr(colon + 2);
}

} // namespace

ProgramPlaces FindProgram(const char* firstArgument) {
    ProgramPlaces places;
    places.ProgramName = fs::path(firstArgument != nullptr ? firstArgument : "").filename().string();
    std::error_code error;
    const fs::path binary = fs::read_symlink("/proc/self/exe", error);
    if (error) {
        return places;
    }
    if (places.ProgramName.empty()) {
        places.ProgramName = binary.filename().string();
    }
    const fs::path drawer = (binary.parent_path() / ".." / "share" / "solvane").lexically_normal();
    if (fs::is_directory(drawer, error)) {
        places.ProgramDrawer = drawer.string();
        places.SystemSkeleton = (drawer / "System").string();
    }
    return places;
}

StartMessage ReadStartMessage(int argc, char** argv) {
    StartMessage message;
    int first = 1;
    if (argc > 1 && std::string_view(argv[1]) == WorkbenchOption) {
        message.FromWorkbench = true;
        first = 2;
    }
    for (int i = first; i < argc; ++i) {
        message.Arguments.emplace_back(argv[i]);
    }
    std::error_code error;
    message.CurrentDirectory = fs::current_path(error).string();
    return message;
}

void SecureStandardStreams() {
    int descriptor = 0;
    do {
        descriptor = open("/dev/null", O_RDWR);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0) {
        close(descriptor);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

std::size_t StackSize() {
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return std::numeric_limits<std::size_t>::max();
    }
    return limit.rlim_cur;
}

Machine DescribeMachine() {
    Machine machine;
    std::ifstream processors("/proc/cpuinfo");
    std::string line;
    while ((machine.Name.empty() || machine.Extensions.empty()) && std::getline(processors, line)) {
        line.resize(std::min(line.size(), LongestLine));
        if (machine.Name.empty()) {
            machine.Name = ValueOf(line, "model name");
        }
        if (machine.Extensions.empty()) {
            machine.Extensions = ValueOf(line, "flags");
        }
        if (line.empty()) {
            break;
        }
    }
    return machine;
}

std::string SnapshotFile() {
    constexpr const char* variable = "SOLVANE_SNAPSHOT";
    const char* value = std::getenv(variable);
    std::string file = value != nullptr ? value : "";
    ::unsetenv(variable);
    return file;
}

} // namespace application
