#include "frame/Libraries.h"

#include "interface/Tell.h"
#include "platform/dos/Examine.h"
#include "platform/intuition/Application.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace solvane {

namespace {

// A service that can be missing although it is linked in, because it needs files of the installation.
struct LibraryItem {
    std::string_view ShortName;
    MessageNumber Message; // when it is missing
    std::uint32_t Version;
    std::uint32_t Revision;
    bool (*Open)();
};

bool DrawerIsThere(std::string_view path) {
    const auto found = dos::ExamineObject(path);
    return found && found->Type == dos::TypeDrawer;
}

// The images of all classes stand in the program's drawer; an installation without them is broken.
constexpr std::array Items = {
    LibraryItem{"icon", MSG_NO_LIBRARY, 53, 1, [] { return DrawerIsThere("SYS:"); }},
    LibraryItem{"bitmap", MSG_NO_CLASS, 53, 1, [] { return DrawerIsThere("PROGDIR:Images"); }},
};

} // namespace

bool OpenLibrariesClasses() {
    for (const LibraryItem& item : Items) {
        if (!item.Open()) {
            TellTerminate(FormatMessage(item.Message, item.ShortName, item.Version, item.Revision));
            return false;
        }
    }
    return true;
}

void CloseLibrariesClasses() {
    intuition::CloseDisplay();
}

} // namespace solvane
