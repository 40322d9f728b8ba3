#include "dbus_do_not_disturb.h"
#include "do_not_disturb_watchers.h"
#include "gsettings_do_not_disturb.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Family = GSettingsDoNotDisturb::Family;

namespace {
// Waits for the watcher to say on, or off.
bool becomes(DoNotDisturb &watcher, bool on)
{
    return QTest::qWaitFor([&] { return watcher.isKnown() && watcher.isOn() == on; }, 5000);
}
} // namespace

// A notification server as Plasma's answers: its Inhibited property, announced when it changes.
class NotificationServer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
    Q_PROPERTY(bool Inhibited READ inhibited)

public:
    NotificationServer(QObject *owner, QDBusConnection bus)
        : QDBusAbstractAdaptor(owner)
        , m_bus(std::move(bus))
    {
    }

    [[nodiscard]] bool inhibited() const { return m_inhibited; }

    void setInhibited(bool inhibited)
    {
        m_inhibited = inhibited;
        auto signal = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                 u"org.freedesktop.DBus.Properties"_s,
                                                 u"PropertiesChanged"_s);
        signal << u"org.freedesktop.Notifications"_s
               << QVariantMap { { u"Inhibited"_s, inhibited } } << QStringList();
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
    bool m_inhibited = false;
};

// A notification server that is busy at first: its first answer is an error.
class BusyNotificationServer : public QDBusVirtualObject {
public:
    int asked = 0;

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() != "Get"_L1)
            return false;
        connection.send(
            ++asked == 1
                ? message.createErrorReply(u"org.freedesktop.DBus.Error.Failed"_s, u"busy"_s)
                : message.createReply(QVariant::fromValue(QDBusVariant(true))));
        return true;
    }
};

// Each watcher against the settings store its desktop keeps Do Not Disturb in: GSettings through
// dconf and xfconfd on a private bus, and a stand-in for Plasma's notification server.
class DoNotDisturbTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void gsettings_data()
    {
        QTest::addColumn<Family>("family");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("on");
        QTest::addColumn<QString>("off");
        QTest::newRow("GNOME") << Family::Gnome << u"org.gnome.desktop.notifications"_s
                               << u"show-banners"_s << u"false"_s << u"true"_s;
        QTest::newRow("Cinnamon") << Family::Cinnamon << u"org.cinnamon.desktop.notifications"_s
                                  << u"display-notifications"_s << u"false"_s << u"true"_s;
        QTest::newRow("MATE") << Family::Mate << u"org.mate.NotificationDaemon"_s
                              << u"do-not-disturb"_s << u"true"_s << u"false"_s;
    }

    void gsettings()
    {
        QFETCH(Family, family);
        QFETCH(QString, schema);
        QFETCH(QString, key);
        QFETCH(QString, on);
        QFETCH(QString, off);
        QVERIFY(GSettingsDoNotDisturb::isAvailable(family));

        GSettingsDoNotDisturb watcher(family);
        QVERIFY(watcher.isKnown());
        QVERIFY(!watcher.isOn());
        QSignalSpy changed(&watcher, &DoNotDisturb::changed);
        QCOMPARE(QProcess::execute(u"gsettings"_s, { u"set"_s, schema, key, on }), 0);
        QVERIFY(becomes(watcher, true));
        // Read at start as well.
        QVERIFY(GSettingsDoNotDisturb(family).isOn());
        QCOMPARE(QProcess::execute(u"gsettings"_s, { u"set"_s, schema, key, off }), 0);
        QVERIFY(becomes(watcher, false));
        QCOMPARE(changed.size(), 2);
    }

    void xfconf()
    {
        const QStringList property { u"-c"_s, u"xfce4-notifyd"_s, u"-p"_s, u"/do-not-disturb"_s };
        QProcess::execute(u"xfconf-query"_s, property);
        XfconfDoNotDisturb watcher(QDBusConnection::sessionBus());
        // No such property yet: off.
        QVERIFY(becomes(watcher, false));
        QCOMPARE(
            QProcess::execute(
                u"xfconf-query"_s,
                property + QStringList { u"--create"_s, u"-t"_s, u"bool"_s, u"-s"_s, u"true"_s }),
            0);
        QVERIFY(becomes(watcher, true));
        QVERIFY(
            becomes(*std::make_unique<XfconfDoNotDisturb>(QDBusConnection::sessionBus()), true));
        QCOMPARE(
            QProcess::execute(u"xfconf-query"_s, property + QStringList { u"-s"_s, u"false"_s }),
            0);
        QVERIFY(becomes(watcher, false));
        QCOMPARE(
            QProcess::execute(u"xfconf-query"_s, property + QStringList { u"-s"_s, u"true"_s }), 0);
        QVERIFY(becomes(watcher, true));
        QCOMPARE(QProcess::execute(u"xfconf-query"_s, property + QStringList { u"-r"_s }), 0);
        QVERIFY(becomes(watcher, false));
    }

    void plasma()
    {
        NotificationsDoNotDisturb watcher(QDBusConnection::sessionBus());
        // No server yet: off.
        QVERIFY(becomes(watcher, false));

        // The server comes up with Do Not Disturb on.
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"notifications"_s);
        QObject object;
        auto *server = new NotificationServer(&object, bus);
        server->setInhibited(true);
        QVERIFY(bus.registerObject(u"/org/freedesktop/Notifications"_s, &object,
                                   QDBusConnection::ExportAdaptors));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));
        QVERIFY(becomes(watcher, true));
        server->setInhibited(false);
        QVERIFY(becomes(watcher, false));
        server->setInhibited(true);
        QVERIFY(becomes(watcher, true));
        // It ends: nothing holds notifications back any more.
        bus.unregisterService(u"org.freedesktop.Notifications"_s);
        QVERIFY(becomes(watcher, false));
        QDBusConnection::disconnectFromBus(u"notifications"_s);
    }

    // A read that fails is logged and asked again, and counts as neither on nor off meanwhile.
    void unreadable()
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"busy"_s);
        BusyNotificationServer server;
        QVERIFY(bus.registerVirtualObject(u"/org/freedesktop/Notifications"_s, &server));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));
        QTest::ignoreMessage(QtWarningMsg, "Couldn't read the Do Not Disturb filter: busy");
        NotificationsDoNotDisturb watcher(QDBusConnection::sessionBus());
        QTRY_COMPARE(server.asked, 1);
        QVERIFY(!watcher.isKnown());
        QVERIFY(becomes(watcher, true));
        QCOMPARE(server.asked, 2);
        bus.unregisterService(u"org.freedesktop.Notifications"_s);
        QDBusConnection::disconnectFromBus(u"busy"_s);
    }

    void chosenByDesktop_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("name");
        QTest::newRow("GNOME") << u"ubuntu:GNOME"_s
                               << u"org.gnome.desktop.notifications show-banners"_s;
        QTest::newRow("Plasma") << u"KDE"_s << u"org.freedesktop.Notifications Inhibited"_s;
        QTest::newRow("XFCE") << u"XFCE"_s << u"xfconf xfce4-notifyd /do-not-disturb"_s;
        QTest::newRow("sway") << u"sway"_s << u"none"_s;
    }

    void chosenByDesktop()
    {
        QFETCH(QString, desktop);
        QFETCH(QString, name);
        std::unique_ptr<DoNotDisturb> watcher(DoNotDisturbWatchers::make(desktop));
        QCOMPARE(watcher->name(), name);
    }
};

QTEST_GUILESS_MAIN(DoNotDisturbTest)
#include "test_do_not_disturb.moc"
