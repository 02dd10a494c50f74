// Notices over a session bus of the test's own, with a desktop that takes them and picks one.
#include "platform/application/Notices.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace application {
namespace {

const QString Service = QStringLiteral("org.freedesktop.Notifications");
const QString Object = QStringLiteral("/org/freedesktop/Notifications");
const QString ServerName = QStringLiteral("desktop");
constexpr int StartTimeout = 60000; // milliseconds; only against a bus that never starts

class Desktop : public QDBusVirtualObject {
public:
    explicit Desktop(QStringList abilities) : Abilities(std::move(abilities)) {}

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QStringLiteral("GetCapabilities"))
            return connection.send(message.createReply(Abilities));
        Seen.push_back(message.arguments());
        return connection.send(message.createReply(static_cast<uint>(Seen.size())));
    }

    QStringList Abilities;
    std::vector<QVariantList> Seen;
};

class Notices : public testing::Test {
protected:
    Notices() { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); }
    ~Notices() override {
        QDBusConnection::disconnectFromBus(ServerName);
        Bus.kill();
        Bus.waitForFinished();
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void StartBus() {
        Bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                  QStringLiteral("--print-address")});
        ASSERT_TRUE(Bus.waitForReadyRead(StartTimeout)) << "no dbus-daemon";
        qputenv("DBUS_SESSION_BUS_ADDRESS", Bus.readLine().trimmed());
    }
    void Serve(Desktop& desktop) {
        QDBusConnection server =
            QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), ServerName);
        ASSERT_TRUE(server.registerVirtualObject(Object, &desktop));
        ASSERT_TRUE(server.registerService(Service));
    }
    static void Pick(uint id) {
        QDBusMessage picked = QDBusMessage::createSignal(Object, Service, QStringLiteral("ActionInvoked"));
        picked << id << QStringLiteral("default");
        ASSERT_TRUE(QDBusConnection(ServerName).send(picked));
    }
    static void WaitForNotices(const Desktop& desktop, std::size_t count) {
        while (desktop.Seen.size() < count)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    int Count = 1;
    std::string Name = "test";
    std::array<char*, 2> Arguments = {Name.data(), nullptr};
    QCoreApplication Application{Count, Arguments.data()};
    QProcess Bus;
};

TEST_F(Notices, APickOfANoticeThatBringsToFrontSetsTheSignal) {
    StartBus();
    Desktop desktop({QStringLiteral("body-markup")});
    Serve(desktop);
    NoticeBoard board("Solvane", "solvane");
    board.Post({.Title = "plain", .Text = "x"});
    board.Post({.Title = "Solvane", .Text = "a <b> & c", .Image = "/p q.png", .BringsToFront = true});
    WaitForNotices(desktop, 2);
    const QVariantList& front = desktop.Seen[1];
    EXPECT_EQ(front[0].toString().toStdString(), "Solvane");
    EXPECT_EQ(front[2].toString().toStdString(), "file:///p q.png");
    EXPECT_EQ(front[3].toString().toStdString(), "Solvane");
    EXPECT_EQ(front[4].toString().toStdString(), "a &lt;b&gt; &amp; c") << "names are no markup";
    EXPECT_EQ(front[5].toStringList().size(), 2);
    EXPECT_TRUE(desktop.Seen[0][5].toStringList().isEmpty());
    board.Post({.Title = "third", .Text = "after the answer of the second"});
    WaitForNotices(desktop, 3);
    Pick(2);
    EXPECT_EQ(exec::Wait(board.Mask()), board.Mask());
}

TEST_F(Notices, TextStandsAsItIsWhereTheDesktopKnowsNoMarkup) {
    StartBus();
    Desktop desktop({});
    Serve(desktop);
    NoticeBoard board("Solvane", "solvane");
    board.Post({.Title = "t", .Text = "a <b> & c"});
    WaitForNotices(desktop, 1);
    EXPECT_EQ(desktop.Seen[0][4].toString().toStdString(), "a <b> & c");
}

TEST_F(Notices, NothingHappensWithoutABusOrADesktop) {
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    { NoticeBoard("Solvane", "solvane").Post({.Title = "t", .Text = "x", .BringsToFront = true}); }
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    { NoticeBoard("Solvane", "solvane").Post({.Title = "t", .Text = "x"}); }
    StartBus(); // nobody on it shows notices
    NoticeBoard board("Solvane", "solvane");
    for (int notice = 0; notice < 1000; ++notice)
        board.Post({.Title = "t", .Text = "x", .BringsToFront = true});
}

} // namespace
} // namespace application
