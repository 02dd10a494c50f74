#include "interface/Tell.h"

#include "interface/MainLayout.h"
#include "sak/Messages.h"

namespace solvane {

void Tell(std::string_view text, RequesterImage image) {
    SAK_EasyRequest(MainWindow.get(), RequesterTitle, image, text, SAK_LocaleString(MSG_CONTINUE_GAD));
}

void Tell(MessageNumber text, RequesterImage image) {
    Tell(SAK_LocaleString(text), image);
}

void TellTerminate(std::string_view text) {
    SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Error, text,
                    SAK_LocaleString(MSG_TERMINATE_GAD));
}

void TellTerminate(MessageNumber text) {
    TellTerminate(SAK_LocaleString(text));
}

void TellDosError(std::string_view text, long error) {
    SAK_IOErr = error;
    SAK_IOError(MainWindow.get(), RequesterTitle, text, SAK_LocaleString(MSG_DOS_ERROR),
                SAK_LocaleString(MSG_CONTINUE_GAD));
}

void TellDosError(MessageNumber text, long error) {
    TellDosError(SAK_LocaleString(text), error);
}

} // namespace solvane
