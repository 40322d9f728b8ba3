#include "desktop_notifications.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// A notification server that keeps what it was asked to show.
class NotificationServer : public QDBusAbstractAdaptor
{
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
        shown.append({app, replaces, body, actions});
        return 40 + uint(shown.size());
    }
};

// Failures nobody saw, told through the desktop's notifications.
class DesktopNotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toldAndActedOn()
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"server"_s);
        QObject object;
        auto *server = new NotificationServer(&object);
        QVERIFY(bus.registerObject(u"/org/freedesktop/Notifications"_s, &object,
                                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));

        bool windowOpen = true;
        int fixed = 0;
        DesktopNotifications notifications(QDBusConnection::sessionBus(), [&] { return windowOpen; });
        const auto failure = [&](const QString &body) {
            notifications.notify({.topic = u"shuffle"_s,
                                  .title = u"Shuffle couldn't change your wallpaper"_s,
                                  .body = body,
                                  .actionLabel = u"Shuffle Settings"_s,
                                  .action = [&] { ++fixed; }});
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
        QCOMPARE(server->shown[0].actions.size(), 2);
        QCOMPARE(server->shown[0].actions[1], u"Shuffle Settings"_s);
        // The next failure of the same kind takes its place.
        failure(u"Still busy."_s);
        QTRY_COMPARE(server->shown.size(), 2);
        QCOMPARE(server->shown[1].replaces, 41u);

        // Only our own notification's action counts.
        const auto invoke = [&](uint id) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                     u"org.freedesktop.Notifications"_s,
                                                     u"ActionInvoked"_s);
            signal << id << server->shown[0].actions[0];
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
};

QTEST_GUILESS_MAIN(DesktopNotificationsTest)
#include "test_desktop_notifications.moc"
