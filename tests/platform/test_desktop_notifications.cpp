#include "desktop_notifications.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// A notification server that keeps what it was asked to show.
class NotificationServer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        QString app;
        uint replaces;
        QString body;
        QStringList actions;
    };
    QList<Shown> shown;

    explicit NotificationServer(QObject *owner)
        : QDBusAbstractAdaptor(owner)
    {
    }

public Q_SLOTS:
    uint Notify(const QString &app, uint replaces, const QString &, const QString &,
                const QString &body, const QStringList &actions, const QVariantMap &, int)
    {
        shown.append({ app, replaces, body, actions });
        return 40 + uint(shown.size());
    }
};

// The desktop portal's notifications, as a sandboxed Quennet reaches them.
class NotificationPortal : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Notification")

public:
    struct Added {
        QString id;
        QVariantMap notification;
    };
    QList<Added> added;

    explicit NotificationPortal(QObject *owner)
        : QDBusAbstractAdaptor(owner)
    {
    }

public Q_SLOTS:
    void AddNotification(const QString &id, const QVariantMap &notification)
    {
        added.append({ id, notification });
    }
};

// Failures nobody saw, told through the desktop's notifications.
class DesktopNotificationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toldAndActedOn()
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"server"_s);
        QObject object;
        auto *server = new NotificationServer(&object);
        QVERIFY(
            bus.registerObject(u"/org/freedesktop/Notifications"_s, &object,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));

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
        QVERIFY(server->shown.isEmpty());

        windowOpen = false;
        failure(u"<b>Busy</b> & slow"_s);
        QTRY_COMPARE(server->shown.size(), 1);
        QCOMPARE(server->shown[0].app, u"Quennet"_s);
        QCOMPARE(server->shown[0].body, u"&lt;b&gt;Busy&lt;/b&gt; &amp; slow"_s);
        // A click on the notification does what its button does.
        QCOMPARE(
            server->shown[0].actions,
            QStringList({ u"default"_s, u"Shuffle Settings"_s, u"fix"_s, u"Shuffle Settings"_s }));
        // The next failure of the same kind takes its place.
        failure(u"Still busy."_s);
        QTRY_COMPARE(server->shown.size(), 2);
        QCOMPARE(server->shown[1].replaces, 41u);

        // Only our own notification's action counts.
        const auto invoke = [&](uint id) {
            auto signal =
                QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                           u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s);
            signal << id << server->shown[0].actions[2];
            bus.send(signal);
        };
        invoke(7);
        invoke(42);
        QTRY_COMPARE(fixed, 1);
        QTest::qWait(50);
        QCOMPARE(fixed, 1);

        bus.unregisterService(u"org.freedesktop.Notifications"_s);
        QDBusConnection::disconnectFromBus(u"server"_s);
    }

    void throughThePortalInASandbox()
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
        QObject object;
        auto *portal = new NotificationPortal(&object);
        QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &object,
                                   QDBusConnection::ExportAdaptors));
        QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));

        int fixed = 0;
        DesktopNotifications notifications(QDBusConnection::sessionBus(),
                                           DesktopNotifications::Channel::Portal,
                                           [] { return false; });
        notifications.notify({ .topic = u"session"_s,
                               .title = u"You've been signed out"_s,
                               .body = u"<b>Sign in</b> again"_s,
                               .actionLabel = u"Sign In"_s,
                               .action = [&] { ++fixed; } });
        QTRY_COMPARE(portal->added.size(), 1);
        // The topic is the portal's id, so the next of the topic replaces it there.
        QCOMPARE(portal->added[0].id, u"session"_s);
        const QVariantMap shown = portal->added[0].notification;
        QCOMPARE(shown[u"body"_s].toString(), u"<b>Sign in</b> again"_s);
        const auto buttons = qdbus_cast<QList<QVariantMap>>(shown[u"buttons"_s]);
        QCOMPARE(buttons.size(), 1);
        QCOMPARE(buttons[0][u"label"_s].toString(), u"Sign In"_s);
        QCOMPARE(shown[u"default-action"_s], buttons[0][u"action"_s]);

        const auto invoke = [&](const QString &id) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                     u"org.freedesktop.portal.Notification"_s,
                                                     u"ActionInvoked"_s);
            signal << id << buttons[0][u"action"_s].toString() << QVariantList { QVariant(0) };
            bus.send(signal);
        };
        invoke(u"shuffle"_s);
        invoke(u"session"_s);
        QTRY_COMPARE(fixed, 1);
        QTest::qWait(50);
        QCOMPARE(fixed, 1);

        bus.unregisterService(u"org.freedesktop.portal.Desktop"_s);
        QDBusConnection::disconnectFromBus(u"portal"_s);
    }
};

QTEST_GUILESS_MAIN(DesktopNotificationsTest)
#include "test_desktop_notifications.moc"
