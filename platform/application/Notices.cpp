#include "platform/application/Notices.h"

#include "platform/application/NoticeDesk.h"

#include <QFileInfo>
#include <QMetaObject>

#include <utility>

namespace application {

namespace {

constexpr int MostWaiting = 16;            // notices not yet handed over
constexpr unsigned long EndTimeout = 1000; // milliseconds that the end waits for the bus

// Empty where there is no bus: the library, asked for one, would start one.
QString AddressOfBus() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString usual = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
    return !address.isEmpty() || !QFileInfo::exists(usual) ? address : QStringLiteral("unix:path=") + usual;
}

} // namespace

class NoticeBoard::Clerk {
public:
    Clerk(QString address, const std::string& program, const std::string& desktopEntry,
          std::function<void()> picked)
        : Program(QString::fromStdString(program)),
          DesktopEntry(QString::fromStdString(desktopEntry)),
          Thread(std::make_unique<QThread>()),
          Desk(std::make_unique<NoticeDesk>(std::move(address), std::move(picked))) {
        Desk->moveToThread(Thread.get());
        Thread->start();
    }
    Clerk(const Clerk&) = delete;
    Clerk& operator=(const Clerk&) = delete;
    // What was handed over is shown first. A thread that the bus does not let go of stays behind, with its
    // desk: the process is about to end.
    ~Clerk() {
        Desk->Forget();
        QMetaObject::invokeMethod(
            Desk.get(), [] { QThread::currentThread()->quit(); }, Qt::QueuedConnection);
        if (!Thread->wait(EndTimeout)) {
            static_cast<void>(Desk.release());
            static_cast<void>(Thread.release());
        }
    }

    void Hand(const Notice& notice) {
        if (Desk->Waiting.fetch_add(1) >= MostWaiting) {
            Desk->Waiting.fetch_sub(1);
            return;
        }
        NoticeDesk* desk = Desk.get();
        QMetaObject::invokeMethod(
            desk,
            [desk, notice, program = Program, entry = DesktopEntry] {
                desk->Show(program, entry, notice);
                desk->Waiting.fetch_sub(1);
            },
            Qt::QueuedConnection);
    }

private:
    QString Program, DesktopEntry;
    std::unique_ptr<QThread> Thread;
    std::unique_ptr<NoticeDesk> Desk;
};

NoticeBoard::NoticeBoard(const std::string& program, const std::string& desktopEntry)
    : Signal(exec::AllocSignal()) {
    const QString address = AddressOfBus();
    if (address.isEmpty())
        return;
    Behind =
        std::make_unique<Clerk>(address, program, desktopEntry, [task = exec::FindTask(), mask = Mask()] {
            if (mask != 0)
                exec::Signal(task, mask);
        });
}

NoticeBoard::~NoticeBoard() {
    Behind.reset();
    exec::FreeSignal(Signal);
}

void NoticeBoard::Post(const Notice& notice) {
    if (Behind)
        Behind->Hand(notice);
}

} // namespace application
