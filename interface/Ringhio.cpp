#include "interface/Ringhio.h"

#include "model/Prefs.h"
#include "platform/application/Notices.h"
#include "platform/dos/HostPaths.h"
#include "sak/Text.h"

#include <memory>
#include <string>

namespace solvane {

namespace {

std::unique_ptr<application::NoticeBoard> Board; // null while the program is not registered

} // namespace

exec::SignalMask OpenNotices() {
    Board = std::make_unique<application::NoticeBoard>("Solvane", "solvane");
    return Board->Mask();
}

void CloseNotices() {
    Board.reset();
}

std::uint32_t RinghioMessage(std::string_view title, std::string_view text, std::string_view placement,
                             std::string_view image, std::string_view extra) {
    if (Prefs.EnableRinghio == 0 || !Board) {
        return RinghioAnswer;
    }
    std::string shown(Text<256>(text).View());
    if (!extra.empty()) {
        shown.append("\n").append(extra);
    }
    Board->Post({.Title = std::string(title),
                 .Text = shown,
                 .Image = image.empty() ? std::string() : dos::HostPath(image).value_or(std::string()),
                 .BringsToFront = placement == "FRONT"});
    return RinghioAnswer;
}

} // namespace solvane
