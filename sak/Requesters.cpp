#include "sak/Requesters.h"

#include "platform/dos/Errors.h"
#include "platform/intuition/Window.h"
#include "platform/utility/Text.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <string>
#include <thread>

namespace solvane {

Text<100> RequesterTitle = "Solvane";
std::uint16_t SAK_AutoLockWindow = 0;
long SAK_IOErr = 0;

namespace {

std::vector<std::string> SplitGadgets(std::string_view gadgets) {
    std::vector<std::string> names;
    while (true) {
        const std::size_t bar = std::min(gadgets.find('|'), gadgets.size());
        names.emplace_back(gadgets.substr(0, bar));
        if (bar == gadgets.size()) {
            return names;
        }
        gadgets.remove_prefix(bar + 1);
    }
}

bool AskForVolume(std::string_view volume) {
    const WithoutRequesters quiet; // drawing the question may meet the same path
    const std::string text = FormatMessage(MSG_INSERT_VOLUME, volume);
    return SAK_EasyRequest(nullptr, RequesterTitle, RequesterImage::Question, text,
                           SAK_LocaleString(MSG_RETRY_CANCEL_GAD)) == 1;
}

} // namespace

int SAK_EasyRequest(intuition::Window* window, std::string_view title, RequesterImage image,
                    std::string_view text, std::string_view gadgets) {
    const intuition::EasyRequestSpec spec{
        std::string(title), std::string(text.substr(0, utility::CutLength(text, RequesterTextLimit))), image,
        SplitGadgets(gadgets)};
    const bool block = SAK_AutoLockWindow != 0;
    if (block) {
        SAK_BlockWindow(window, 1);
    }
    const int answer = intuition::EasyRequest(window, spec);
    if (block) {
        SAK_BlockWindow(window, 0);
    }
    return answer;
}

int SAK_EasyRequestArgs(intuition::Window* window, std::string_view title, RequesterImage image,
                        std::string_view format, std::string_view gadgets,
                        std::span<const FormatArg> arguments) {
    return SAK_EasyRequest(window, title, image, FormatPlain(format, arguments), gadgets);
}

int SAK_IOError(intuition::Window* window, std::string_view title, std::string_view text,
                std::string_view label, std::string_view gadgets) {
    std::string whole(text);
    whole.append(text.empty() ? "" : "\n\n").append(label).append("\n");
    return SAK_EasyRequest(window, title, RequesterImage::Error, whole + dos::Fault(SAK_IOErr, {}), gadgets);
}

void DisableRequesters() {
    dos::SetRequesters(false);
}

void EnableRequesters() {
    dos::SetRequesters(true);
}

MissingVolumeRequests::MissingVolumeRequests() {
    dos::SetVolumeRequest([asker = std::this_thread::get_id()](std::string_view volume) {
        return std::this_thread::get_id() == asker && AskForVolume(volume);
    });
}

MissingVolumeRequests::~MissingVolumeRequests() {
    dos::SetVolumeRequest({});
}

void SAK_BlockWindow(intuition::Window* window, int depth) {
    if (window) {
        window->Block(depth);
    }
}

} // namespace solvane
