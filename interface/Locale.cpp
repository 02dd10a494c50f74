#include "interface/Locale.h"

#include "model/Program.h"
#include "platform/dos/System.h"
#include "platform/intuition/Application.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

namespace solvane {

namespace {

constexpr std::uint32_t CatalogVersion = 2; // the least that fits the numbers of today

void TakeUnits() {
    SizeUnits.B = SAK_LocaleString(MSG_UNIT_B);
    SizeUnits.KB = SAK_LocaleString(MSG_UNIT_KB);
    SizeUnits.MB = SAK_LocaleString(MSG_UNIT_MB);
    SizeUnits.GB = SAK_LocaleString(MSG_UNIT_GB);
    SizeUnits.TB = SAK_LocaleString(MSG_UNIT_TB);
}

// What speaks beside the texts of our own: the toolkit, and the program behind "CON:" windows.
void TellOthers() {
    intuition::SetLanguage(SAK_TextLanguage.View());
    dos::SetConsoleTexts({.Language = std::string(SAK_TextLanguage.View()),
                          .Input = std::string(SAK_LocaleString(MSG_CONSOLE_INPUT)),
                          .Output = std::string(SAK_LocaleString(MSG_CONSOLE_OUTPUT)),
                          .Ended = std::string(SAK_LocaleString(MSG_CONSOLE_ENDED))});
}

} // namespace

void SetupLocale() {
    SAK_LocaleClose();
    // A catalog that is too old counts as none, and nobody is told.
    static_cast<void>(
        SAK_LocaleOpen("solvane.catalog", SAK_PreferredLanguage.View(), "english", CatalogVersion));
    SAK_LanguageCheck();
    TakeUnits();
    TellOthers();
}

} // namespace solvane
