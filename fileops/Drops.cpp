#include "fileops/Drops.h"

#include "interface/Iconify.h"
#include "interface/Tell.h"
#include "model/Program.h"
#include "platform/intuition/AppIcon.h"
#include "sak/Messages.h"

namespace solvane {

void AppMsgFunc(const std::vector<std::string>& objects) {
    if (objects.empty()) {
        return;
    }
    Tell(AcceptDD() ? MSG_COMMAND_COMES_LATER : MSG_CAN_NOT_COPY_HERE);
}

bool AppIconMsg(exec::MsgPort& port, IconDrop drop) {
    bool isOpened = false;
    while (auto message = exec::GetMsg(port)) {
        if (const auto* deed = dynamic_cast<const intuition::AppMessage*>(message.get())) {
            if (deed->Quits) {
                done = 1;
            } else if (deed->Arguments.empty() || drop == IconDrop::Opens) {
                isOpened = true;
            } else {
                AppMsgFunc(deed->Arguments);
            }
        }
        exec::ReplyMsg(std::move(message));
    }
    if (isOpened) {
        Uniconify();
    }
    return isOpened;
}

} // namespace solvane
