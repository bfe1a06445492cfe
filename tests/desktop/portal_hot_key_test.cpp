#include "platform/desktop/portal/portal_hot_key.h"

#include "platform/desktop/hot_key.h"
#include "support/run_tests.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QScopeGuard>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

/// A desktop that keeps one key for whoever asks.
class Portal final : public QDBusVirtualObject {
public:
    explicit Portal(const QDBusConnection& bus) : _bus(bus) {
        _bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this,
                                   QDBusConnection::SubPath);
        _bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        calls += message.member();
        const QVariantMap options =
            qdbus_cast<QVariantMap>(message.arguments().value(message.arguments().size() - 1));
        if (message.member() == u"CreateSession") {
            session = u"/org/freedesktop/portal/desktop/session/"_s +
                      options[u"session_handle_token"_s].toString();
            QDBusMessage response =
                QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
                                               message.service().mid(1).replace(u'.', u'_'),
                                               options[u"handle_token"_s].toString()),
                                           u"org.freedesktop.portal.Request"_s, u"Response"_s);
            response << answer << QVariantMap{{u"session_handle"_s, session}};
            _bus.send(response);
        } else if (message.member() == u"BindShortcuts") {
            const auto shortcuts = message.arguments()[1].value<QDBusArgument>();
            shortcuts.beginArray();
            shortcuts.beginStructure();
            QVariantMap about;
            shortcuts >> id >> about;
            shortcuts.endStructure();
            shortcuts.endArray();
            trigger = about[u"preferred_trigger"_s].toString();
        }
        return true;
    }
    void press(const QString& inSession) {
        QDBusMessage pressed =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.GlobalShortcuts"_s, u"Activated"_s);
        pressed << QVariant::fromValue(QDBusObjectPath(inSession)) << id << qulonglong(1)
                << QVariantMap();
        _bus.send(pressed);
    }

    uint answer = 0;
    QStringList calls;
    QString session;
    QString id;
    QString trigger;

private:
    QDBusConnection _bus;
};

TEST(PortalHotKey, IsAskedForInASessionAndGivenBack) {
    QProcess daemon; // of a bus of the test's own
    const auto end = qScopeGuard([&] {
        daemon.kill();
        daemon.waitForFinished();
    });
    daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    ASSERT_TRUE(daemon.waitForReadyRead(10'000));
    const QString address = QString::fromLatin1(daemon.readLine()).trimmed();
    Portal portal(QDBusConnection::connectToBus(address, u"desktop"_s));
    const QDBusConnection ours = QDBusConnection::connectToBus(address, u"launcher"_s);
    ASSERT_TRUE(ours.isConnected());
    int presses = 0;
    const auto chord = *keyChord(u"control+option+space"_s);
    auto key = std::make_unique<PortalHotKey>(ours, chord, [&] { ++presses; });
    test::processEventsUntil([&] { return !portal.trigger.isEmpty(); });
    EXPECT_EQ(portal.trigger, u"CTRL+ALT+space");
    portal.press(u"/somebody/elses"_s);
    portal.press(portal.session);
    test::processEventsUntil([&] { return presses > 0; });
    EXPECT_EQ(presses, 1);
    key.reset();
    test::processEventsUntil([&] { return portal.calls.contains(u"Close"_s); });

    portal.answer = 1; // the user refused
    portal.calls.clear();
    key = std::make_unique<PortalHotKey>(ours, chord, [] {});
    test::processEventsUntil([&] { return portal.calls.contains(u"CreateSession"_s); });
    for (int i = 0; i < 2; ++i) { // whatever it does about the answer comes before these
        portal.calls.removeAll(u"Ping"_s);
        ours.send(QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                 u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.example.Test"_s, u"Ping"_s));
        test::processEventsUntil([&] { return portal.calls.contains(u"Ping"_s); });
    }
    EXPECT_FALSE(portal.calls.contains(u"BindShortcuts"_s));
}

} // namespace
} // namespace tessellar
