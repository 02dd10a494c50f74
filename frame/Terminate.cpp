#include "frame/Terminate.h"

#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

namespace solvane {

void Terminate(std::string_view text) {
    SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Error, text,
                    SAK_LocaleString(MSG_TERMINATE_GAD));
}

void TellAndContinue(std::string_view text) {
    SAK_EasyRequest(nullptr, RequesterTitle.View(), RequesterImage::Information, text,
                    SAK_LocaleString(MSG_CONTINUE_GAD));
}

} // namespace solvane
