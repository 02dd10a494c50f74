#include "platform/intuition/Screens.h"

#include "platform/intuition/Native.h"
#include "platform/utility/Text.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace intuition {

namespace {

QMetaObject::Connection Watch;

std::string NameOf(const QScreen& screen) {
    return screen.name().toStdString();
}

} // namespace

QScreen* ScreenOf(std::string_view name) {
    if (utility::Stricmp(name, WorkbenchScreen) == 0)
        return QGuiApplication::primaryScreen();
    QScreen* folded = nullptr;
    for (QScreen* screen : QGuiApplication::screens()) {
        if (NameOf(*screen) == name)
            return screen;
        if (folded == nullptr && utility::Stricmp(NameOf(*screen), name) == 0)
            folded = screen;
    }
    return folded;
}

std::optional<std::string> FindScreen(std::string_view name) {
    if (utility::Stricmp(name, WorkbenchScreen) == 0)
        return std::string(WorkbenchScreen);
    const QScreen* screen = name.empty() ? nullptr : ScreenOf(name);
    return screen != nullptr ? std::optional(NameOf(*screen)) : std::nullopt;
}

void WatchScreens(std::function<void(const std::string& name)> lost) {
    QObject::disconnect(std::exchange(Watch, {}));
    if (lost && qGuiApp != nullptr)
        Watch = QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, qGuiApp,
                                 [lost = std::move(lost)](const QScreen* screen) { lost(NameOf(*screen)); });
}

} // namespace intuition
