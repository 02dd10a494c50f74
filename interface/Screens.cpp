#include "interface/Screens.h"

#include "model/Program.h"
#include "platform/intuition/Screens.h"

#include <memory>
#include <utility>

namespace solvane {

Text<140> ActiveScreen;

void OpenMainScreen() {
    if (!DefaultPubScreenID.Empty()) {
        DefaultPubScreenID = intuition::FindScreen(DefaultPubScreenID.View()).value_or("");
    }
}

void SetActiveScreen() {
    ActiveScreen = DefaultPubScreenID;
}

void ReleaseActiveScreen() {
    ActiveScreen.Clear();
}

std::string_view NameOfScreen() {
    return DefaultPubScreenID.Empty() ? intuition::WorkbenchScreen : DefaultPubScreenID.View();
}

void StartScreenNotification(exec::MsgPort& port) {
    intuition::WatchScreens([&port](const std::string& name) {
        auto message = std::make_unique<ScreenMessage>();
        message->What = ScreenEvent::ScreenCloses;
        message->Screen = name;
        exec::PutMsg(port, std::move(message));
    });
}

void EndScreenNotification() {
    intuition::WatchScreens({});
}

} // namespace solvane
