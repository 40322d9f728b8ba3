#include "bus_stand_in.h"
#include "do_not_disturb.h"
#include "do_not_disturb_watchers.h"

#include <QDBusVariant>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// Waits for the watcher to say on, or off.
bool becomes(DoNotDisturb &watcher, bool on)
{
    return QTest::qWaitFor([&] { return watcher.isKnown() && watcher.isOn() == on; }, 5000);
}
} // namespace

// Each watcher against the settings store its desktop keeps Do Not Disturb in: GSettings through
// dconf and xfconfd on a private bus, and a stand-in for Plasma's notification server.
class DoNotDisturbTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // GNOME and its relatives, each chosen by its desktop's name (Cinnamon's walks GNOME's way;
    // MATE's key says the opposite), and XFCE's xfconfd, where off is the property removed: read
    // at start, and followed.
    void settingsStores_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QStringList>("on"); // a program and its arguments
        QTest::addColumn<QStringList>("off");
        const auto gsettings = [](const QString &schema, const QString &key, const QString &value) {
            return QStringList { u"gsettings"_s, u"set"_s, schema, key, value };
        };
        const auto notifications = u"org.gnome.desktop.notifications"_s;
        QTest::newRow("GNOME") << u"ubuntu:GNOME"_s
                               << gsettings(notifications, u"show-banners"_s, u"false"_s)
                               << gsettings(notifications, u"show-banners"_s, u"true"_s);
        const auto mate = u"org.mate.NotificationDaemon"_s;
        QTest::newRow("MATE") << u"MATE"_s << gsettings(mate, u"do-not-disturb"_s, u"true"_s)
                              << gsettings(mate, u"do-not-disturb"_s, u"false"_s);
        const QStringList xfconf { u"xfconf-query"_s, u"-c"_s, u"xfce4-notifyd"_s, u"-p"_s,
                                   u"/do-not-disturb"_s };
        QTest::newRow("XFCE") << u"XFCE"_s
                              << xfconf
                + QStringList { u"--create"_s, u"-t"_s, u"bool"_s, u"-s"_s, u"true"_s }
                              << xfconf + QStringList { u"-r"_s };
    }

    void settingsStores()
    {
        QFETCH(QString, desktop);
        QFETCH(QStringList, on);
        QFETCH(QStringList, off);
        const auto run = [](const QStringList &command) {
            return QProcess::execute(command[0], command.mid(1)) == 0;
        };
        run(off);
        std::unique_ptr<DoNotDisturb> watcher(DoNotDisturbWatchers::make(desktop));
        QVERIFY(becomes(*watcher, false));
        QSignalSpy changed(watcher.get(), &DoNotDisturb::changed);
        QVERIFY(run(on));
        QVERIFY(becomes(*watcher, true));
        QVERIFY(becomes(*std::unique_ptr<DoNotDisturb>(DoNotDisturbWatchers::make(desktop)), true));
        QVERIFY(run(off));
        QVERIFY(becomes(*watcher, false));
        QCOMPARE(changed.size(), 2);
    }

    // A read that fails is logged and asked again, and counts as neither on nor off meanwhile;
    // then changes are followed until the server ends.
    void plasma()
    {
        // A desktop that keeps none.
        QCOMPARE(std::unique_ptr<DoNotDisturb>(DoNotDisturbWatchers::make(u"sway"_s))->name(),
                 u"none"_s);
        // Plasma's notification server: its Inhibited property, announced when it changes. Busy,
        // it answers the first read with an error.
        bool inhibited = true;
        int asked = 0;
        BusStandIn server(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                          [&](const QDBusMessage &call) {
                              if (call.member() != "Get"_L1)
                                  return QDBusMessage();
                              if (++asked == 1)
                                  return call.createErrorReply(QDBusError::Failed, u"busy"_s);
                              return call.createReply(QVariant::fromValue(QDBusVariant(inhibited)));
                          });
        QVERIFY(server.start());
        QTest::ignoreMessage(QtWarningMsg, "Couldn't read the Do Not Disturb filter: busy");
        std::unique_ptr<DoNotDisturb> watcher(DoNotDisturbWatchers::make(u"KDE"_s));
        QTRY_COMPARE(asked, 1);
        QVERIFY(!watcher->isKnown());
        QVERIFY(becomes(*watcher, true));
        QCOMPARE(asked, 2);
        for (const bool on : { false, true }) {
            inhibited = on;
            server.emitSignal(u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                              { u"org.freedesktop.Notifications"_s,
                                QVariantMap { { u"Inhibited"_s, on } }, QStringList() });
            QVERIFY(becomes(*watcher, on));
        }
        // It ends: nothing holds notifications back any more.
        server.stop();
        QVERIFY(becomes(*watcher, false));
    }
};

QTEST_GUILESS_MAIN(DoNotDisturbTest)
#include "test_do_not_disturb.moc"
