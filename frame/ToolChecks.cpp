#include "frame/ToolChecks.h"

#include "model/Program.h"
#include "platform/dos/Files.h"
#include "platform/dos/Volumes.h"
#include "platform/utility/Text.h"
#include "sak/FilenameSupport.h"
#include "sak/Version.h"

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace solvane {

namespace {

constexpr std::string_view VersionMark = "$VER: ";
constexpr std::string_view FormatTool = "SYS:System/Format";
constexpr std::size_t LargestTool = 64U << 20U; // bytes that are searched for a version string

Text<1024> ToolPath(std::string_view name) {
    Text<1024> path;
    if (!SAK_JoinFilename(path, ProgramDir.View(), "Tools/" + std::string(name))) {
        path.Clear();
    }
    return path;
}

bool ToolExists(std::string_view name) {
    const Text<1024> path = ToolPath(name);
    return !path.Empty() && SAK_FileExists(path.View());
}

// The text behind the version mark of a file, up to its terminator; empty where there is none.
std::string VersionStringOf(std::string_view path) {
    const auto bytes = dos::ReadWhole(path, LargestTool);
    const std::size_t mark = bytes ? bytes->find(VersionMark) : std::string::npos;
    if (mark == std::string::npos) {
        return {};
    }
    const std::size_t start = mark + VersionMark.size();
    const std::size_t end = bytes->find('\0', start);
    return bytes->substr(start, end == std::string::npos ? 0 : end - start);
}

// "xadunfile 1.2 (1.1.2026)" gives 12.
std::uint32_t VersionWithoutPoint(std::string_view version) {
    const std::size_t blank = version.find(' ');
    std::string digits(version.substr(blank == std::string_view::npos ? version.size() : blank + 1));
    if (const std::size_t point = digits.find('.'); point != std::string::npos) {
        digits.erase(point, 1);
    }
    std::uint32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

bool HasAssign(std::string_view name) {
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        if (utility::Stricmp(assign.Name, name) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

bool CheckxadUnFileVersion() {
    const std::string version = VersionStringOf(ToolPath("xadunfile").View());
    xadUnFileVersion = VersionWithoutPoint(version);
    return !version.empty();
}

bool CheckForjhead() {
    return ToolExists("jhead");
}

bool CheckForjpegtran() {
    return ToolExists("jpegtran");
}

bool CheckForFTPMount() {
    FoundFTPMountAssign = HasAssign("FTPMount") ? 1 : 0;
    FoundFTPMount = FoundFTPMountAssign;
    return true;
}

bool CheckFormatVersion() {
    EnhancerFormat = 0;
    if (!SAK_FileExists(FormatTool) || !SAK_GetVersion(FormatTool)) {
        return false;
    }
    const bool isEnhancer = SAK_GetVersionComment.View().find("A-EON Technology Ltd") != std::string::npos;
    EnhancerFormat = isEnhancer ? 1 : 0;
    return true;
}

// Sounds report how long they last and can pause here, so the enhanced branches are the ones in use.
bool CheckSoundDatatypeVersion() {
    FoundEnhancerSoundDatatype = 1;
    return true;
}

} // namespace solvane
