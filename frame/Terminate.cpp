#include "frame/Terminate.h"

#include "sak/Requesters.h"

namespace solvane {

void Terminate(std::string_view text) {
    SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Error, text, "_Terminate");
}

void TellAndContinue(std::string_view text) {
    SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Information, text, "_Continue");
}

} // namespace solvane
