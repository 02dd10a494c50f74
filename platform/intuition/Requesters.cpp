#include "platform/intuition/Requesters.h"

#include "platform/intuition/Application.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/NativeWindow.h"
#include "platform/intuition/RequestDialog.h"

#include <cstdio>
#include <utility>

namespace intuition {

namespace {

RequestHandler Handler; // empty: the user is asked

// A window takes no input while its requester is up.
class BlockWhileAsking {
public:
    explicit BlockWhileAsking(NativeWindow* window) : Blocked(window) {
        if (Blocked != nullptr)
            Blocked->Block();
    }
    ~BlockWhileAsking() {
        if (Blocked != nullptr)
            Blocked->Unblock();
    }
    BlockWhileAsking(const BlockWhileAsking&) = delete;
    BlockWhileAsking& operator=(const BlockWhileAsking&) = delete;

private:
    NativeWindow* Blocked;
};

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
    NativeWindow* host = parent != nullptr ? &parent->Native() : NativeWindow::MostRecent();
    const BlockWhileAsking blocked(host);
    RequestDialog dialog(host != nullptr && host->isVisible() ? host : nullptr, spec);
    return dialog.Ask();
}

RequestHandler SetRequestHandler(RequestHandler handler) {
    return std::exchange(Handler, std::move(handler));
}

} // namespace intuition
