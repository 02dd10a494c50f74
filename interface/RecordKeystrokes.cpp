#include "interface/RecordKeystrokes.h"

#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "platform/intuition/FormRequesters.h"
#include "platform/intuition/HotKey.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <string>

namespace solvane {

Text<128> RecordKeystrokesBuffer;

namespace {

constexpr std::string_view CapsLockMark = "-CAPSLOCK ";

// The text of a hot key apart from the mark before it.
struct Combination {
    std::string Keys;
    bool IgnoresCapsLock = false;

    [[nodiscard]] std::string Whole() const {
        return (IgnoresCapsLock ? std::string(CapsLockMark) : std::string()) + Keys;
    }
};

Combination TakenApart(const Text<128>& text) {
    const std::string_view whole = text;
    const bool isMarked = Text<128>(whole.substr(0, CapsLockMark.size())) == CapsLockMark;
    return {std::string(isMarked ? whole.substr(CapsLockMark.size()) : whole), isMarked};
}

intuition::FormAnswer Ask(const Combination& keys) {
    return intuition::AskForm(MainWindow.get(),
                              {.Title = std::string(RequesterTitle.View()),
                               .Fields = {{.Label = std::string(SAK_LocaleString(MSG_HOT_KEY)),
                                           .Text = keys.Keys,
                                           .TakesKeys = true}},
                               .Checks = {{.Label = std::string(SAK_LocaleString(MSG_IGNORE_CAPS_LOCK)),
                                           .Set = keys.IgnoresCapsLock}},
                               .Gadgets = {std::string(SAK_LocaleString(MSG_OK_GAD)),
                                           std::string(SAK_LocaleString(MSG_CANCEL_GAD))}});
}

} // namespace

bool RecordKeystrokesReq() {
    Combination keys = TakenApart(RecordKeystrokesBuffer);
    while (true) {
        const intuition::FormAnswer answer = Ask(keys);
        if (answer.Gadget < 0) {
            Tell(MSG_NO_WINDOW);
        }
        if (answer.Gadget < 1 || answer.Texts.empty()) {
            return false;
        }
        keys = {answer.Texts.front(), !answer.Checks.empty() && answer.Checks.front()};
        if (keys.Keys.empty()) {
            Tell(MSG_VALUE_EMPTY);
        } else if (!intuition::ParseKeyCombination(keys.Whole())) {
            Tell(MSG_INVALID_HOT_KEY);
        } else {
            RecordKeystrokesBuffer = keys.Whole();
            return true;
        }
    }
}

} // namespace solvane
