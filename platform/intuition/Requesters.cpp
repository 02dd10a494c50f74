#include "platform/intuition/Requesters.h"

#include "platform/intuition/Application.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/RequestDialog.h"

#include <cstdio>
#include <utility>

namespace intuition {

namespace {

RequestHandler Handler; // empty: the user is asked

// A terminal obeys control characters, so it gets texts as they would be shown.
void PrintRequest(const EasyRequestSpec& spec) {
    const std::string title = DisplayText(spec.Title).toStdString();
    const std::string text = DisplayText(spec.Text, Lines::Many).toStdString();
    std::fputs((title.empty() ? text + "\n" : title + ": " + text + "\n").c_str(), stderr);
}

} // namespace

int EasyRequest(Window* parent, const EasyRequestSpec& spec) {
    if (Handler)
        return Handler(spec);
    if (!DisplayIsOpen()) {
        PrintRequest(spec);
        return 0;
    }
    const BlockWhileAsking blocked(parent);
    RequestDialog dialog(blocked.ParentOfDialog(), spec);
    return dialog.Ask();
}

RequestHandler SetRequestHandler(RequestHandler handler) {
    return std::exchange(Handler, std::move(handler));
}

} // namespace intuition
