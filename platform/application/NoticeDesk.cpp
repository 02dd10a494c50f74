#include "platform/application/NoticeDesk.h"

#include <QDBusReply>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace application {

namespace {

constexpr std::size_t MostRemembered = 64; // notices that can still be picked
constexpr int AnswerTimeout = 5000;        // milliseconds

const QString Service = QStringLiteral("org.freedesktop.Notifications");
const QString Object = QStringLiteral("/org/freedesktop/Notifications");
const QString ConnectionName = QStringLiteral("solvane-notices");

QDBusMessage CallOf(const QString& method) {
    return QDBusMessage::createMethodCall(Service, Object, Service, method);
}

} // namespace

NoticeDesk::NoticeDesk(QString address, std::function<void()> picked)
    : Address(std::move(address)), Picked(std::move(picked)) {}

NoticeDesk::~NoticeDesk() {
    if (Bus)
        QDBusConnection::disconnectFromBus(ConnectionName);
}

bool NoticeDesk::IsOpen() {
    if (!Bus) {
        Bus = QDBusConnection::connectToBus(Address, ConnectionName);
        Bus->connect(Service, Object, Service, QStringLiteral("ActionInvoked"), this,
                     SLOT(ActionInvoked(uint, QString)));
        const QDBusReply<QStringList> abilities =
            Bus->call(CallOf(QStringLiteral("GetCapabilities")), QDBus::Block, AnswerTimeout);
        TakesMarkup = abilities.isValid() && abilities.value().contains(QStringLiteral("body-markup"));
    }
    return Bus->isConnected();
}

void NoticeDesk::Show(const QString& program, const QString& desktopEntry, const Notice& notice) {
    if (!IsOpen())
        return;
    const QString text = QString::fromStdString(notice.Text);
    QVariantMap hints{{QStringLiteral("desktop-entry"), desktopEntry}};
    QString icon;
    if (!notice.Image.empty()) {
        icon = QUrl::fromLocalFile(QString::fromStdString(notice.Image)).toString();
        hints.insert(QStringLiteral("image-path"), icon);
    }
    const QStringList actions =
        notice.BringsToFront ? QStringList{QStringLiteral("default"), program} : QStringList();
    QDBusMessage call = CallOf(QStringLiteral("Notify"));
    call << program << uint{0} << icon << QString::fromStdString(notice.Title)
         << (TakesMarkup ? text.toHtmlEscaped() : text) << actions << hints << -1;
    const QDBusReply<uint> id = Bus->call(call, QDBus::Block, AnswerTimeout);
    if (id.isValid() && notice.BringsToFront) {
        Shown.push_back(id.value());
        if (Shown.size() > MostRemembered)
            Shown.pop_front();
    }
}

void NoticeDesk::ActionInvoked(uint id, const QString& /*action*/) {
    const std::lock_guard guard(Lock);
    if (Picked && std::find(Shown.begin(), Shown.end(), id) != Shown.end())
        Picked();
}

void NoticeDesk::Forget() {
    const std::lock_guard guard(Lock);
    Picked = nullptr;
}

} // namespace application
