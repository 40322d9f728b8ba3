#include "bus_stand_in.h"
#include "desktop_notifications.h"

#include <QDBusArgument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Failures nobody saw, told through the desktop's notifications. Each stand-in keeps the
// arguments of the calls it was sent.
class DesktopNotificationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toldAndActedOn()
    {
        // Notify's arguments: application, id it replaces, icon, title, body, actions, hints.
        QList<QVariantList> shown;
        BusStandIn server(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                          [&](const QDBusMessage &call) {
                              if (call.member() != "Notify"_L1)
                                  return QDBusMessage();
                              shown.append(call.arguments());
                              return call.createReply(40 + uint(shown.size()));
                          });
        QVERIFY(server.start());

        bool windowOpen = true;
        int fixed = 0;
        DesktopNotifications notifications(QDBusConnection::sessionBus(),
                                           DesktopNotifications::Channel::Server,
                                           [&] { return windowOpen; });
        const auto failure = [&](const QString &body) {
            notifications.notify({ .topic = u"shuffle"_s,
                                   .title = u"Shuffle couldn't change your wallpaper"_s,
                                   .body = body,
                                   .actionLabel = u"Shuffle Settings"_s,
                                   .action = [&] { ++fixed; } });
        };
        // A window says it already.
        failure(u"The shop is busy."_s);
        QTest::qWait(100);
        QVERIFY(shown.isEmpty());

        windowOpen = false;
        failure(u"<b>Busy</b> & slow"_s);
        QTRY_COMPARE(shown.size(), 1);
        QCOMPARE(shown[0][4].toString(), u"&lt;b&gt;Busy&lt;/b&gt; &amp; slow"_s);
        // A click on the notification does what its button does.
        const QStringList actions = shown[0][5].toStringList();
        QCOMPARE(
            actions,
            QStringList({ u"default"_s, u"Shuffle Settings"_s, u"fix"_s, u"Shuffle Settings"_s }));
        // The next failure of the same kind takes its place.
        failure(u"Still busy."_s);
        QTRY_COMPARE(shown.size(), 2);
        QCOMPARE(shown[1][1].toUInt(), 41u);

        // Only our own notification's action counts.
        for (const uint id : { 7u, 42u })
            server.emitSignal(u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s,
                              { id, actions[2] });
        QTRY_COMPARE(fixed, 1);
        QTest::qWait(50);
        QCOMPARE(fixed, 1);
    }

    void throughThePortalInASandbox()
    {
        QList<QVariantList> added; // id, notification
        BusStandIn portal(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                          [&](const QDBusMessage &call) {
                              if (call.member() != "AddNotification"_L1)
                                  return QDBusMessage();
                              added.append(call.arguments());
                              return call.createReply();
                          });
        QVERIFY(portal.start());

        int fixed = 0;
        DesktopNotifications notifications(QDBusConnection::sessionBus(),
                                           DesktopNotifications::Channel::Portal,
                                           [] { return false; });
        notifications.notify({ .topic = u"session"_s,
                               .title = u"You've been signed out"_s,
                               .body = u"<b>Sign in</b> again"_s,
                               .actionLabel = u"Sign In"_s,
                               .action = [&] { ++fixed; } });
        QTRY_COMPARE(added.size(), 1);
        // The topic is the portal's id, so the next of the topic replaces it there.
        QCOMPARE(added[0][0].toString(), u"session"_s);
        const auto shown = qdbus_cast<QVariantMap>(added[0][1]);
        QCOMPARE(shown[u"body"_s].toString(), u"<b>Sign in</b> again"_s);
        const auto buttons = qdbus_cast<QList<QVariantMap>>(shown[u"buttons"_s]);
        QCOMPARE(buttons.size(), 1);
        QCOMPARE(buttons[0][u"label"_s].toString(), u"Sign In"_s);
        QCOMPARE(shown[u"default-action"_s], buttons[0][u"action"_s]);

        for (const QString &id : { u"shuffle"_s, u"session"_s })
            portal.emitSignal(u"org.freedesktop.portal.Notification"_s, u"ActionInvoked"_s,
                              { id, buttons[0][u"action"_s], QVariantList { QVariant(0) } });
        QTRY_COMPARE(fixed, 1);
        QTest::qWait(50);
        QCOMPARE(fixed, 1);
    }
};

QTEST_GUILESS_MAIN(DesktopNotificationsTest)
#include "test_desktop_notifications.moc"
