// The thread's side of the notice board: talks to the session bus and may wait for it. Private to
// platform/application.
#pragma once

#include "platform/application/Notices.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QThread>

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace application {

class NoticeDesk : public QObject {
    Q_OBJECT

public:
    NoticeDesk(QString address, std::function<void()> picked);
    ~NoticeDesk() override;

    // On the desk's own thread; the bus is asked for at the first notice.
    void Show(const QString& program, const QString& desktopEntry, const Notice& notice);

    // From any thread: no pick is told from now on.
    void Forget();

    std::atomic<int> Waiting = 0; // notices handed over and not yet shown

private Q_SLOTS:
    void ActionInvoked(uint id, const QString& action);

private:
    bool IsOpen();

    const QString Address; // of the bus
    std::mutex Lock;       // of Picked
    std::function<void()> Picked;
    std::optional<QDBusConnection> Bus;
    bool TakesMarkup = false;
    std::deque<uint> Shown; // those that can be picked
};

} // namespace application
