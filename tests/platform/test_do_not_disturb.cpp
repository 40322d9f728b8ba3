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
    // GNOME and its relatives, each chosen by its desktop's name (Cinnamon's walks GNOME's way);
    // MATE's key says the opposite.
    void gsettings_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("on");
        QTest::addColumn<QString>("off");
        QTest::newRow("GNOME") << u"ubuntu:GNOME"_s << u"org.gnome.desktop.notifications"_s
                               << u"show-banners"_s << u"false"_s << u"true"_s;
        QTest::newRow("MATE") << u"MATE"_s << u"org.mate.NotificationDaemon"_s
                              << u"do-not-disturb"_s << u"true"_s << u"false"_s;
    }

    void gsettings()
    {
        QFETCH(QString, desktop);
        QFETCH(QString, schema);
        QFETCH(QString, key);
        QFETCH(QString, on);
        QFETCH(QString, off);
        std::unique_ptr<DoNotDisturb> watcher(DoNotDisturbWatchers::make(desktop));
        QVERIFY(watcher->isKnown() && !watcher->isOn());
        QSignalSpy changed(watcher.get(), &DoNotDisturb::changed);
        QCOMPARE(QProcess::execute(u"gsettings"_s, { u"set"_s, schema, key, on }), 0);
        QVERIFY(becomes(*watcher, true));
        // Read at start as well.
        QVERIFY(std::unique_ptr<DoNotDisturb>(DoNotDisturbWatchers::make(desktop))->isOn());
        QCOMPARE(QProcess::execute(u"gsettings"_s, { u"set"_s, schema, key, off }), 0);
        QVERIFY(becomes(*watcher, false));
        QCOMPARE(changed.size(), 2);
    }

    void xfconf()
    {
        const auto query = [](const QStringList &change) {
            return QProcess::execute(
                       u"xfconf-query"_s,
                       QStringList { u"-c"_s, u"xfce4-notifyd"_s, u"-p"_s, u"/do-not-disturb"_s }
                           + change)
                == 0;
        };
        query({});
        std::unique_ptr<DoNotDisturb> watcher(DoNotDisturbWatchers::make(u"XFCE"_s));
        // No such property yet: off.
        QVERIFY(becomes(*watcher, false));
        QVERIFY(query({ u"--create"_s, u"-t"_s, u"bool"_s, u"-s"_s, u"true"_s }));
        QVERIFY(becomes(*watcher, true));
        QVERIFY(
            becomes(*std::unique_ptr<DoNotDisturb>(DoNotDisturbWatchers::make(u"XFCE"_s)), true));
        const QList<std::pair<QStringList, bool>> changes { { { u"-s"_s, u"false"_s }, false },
                                                            { { u"-s"_s, u"true"_s }, true },
                                                            { { u"-r"_s }, false } };
        for (const auto &[change, on] : changes) {
            QVERIFY(query(change));
            QVERIFY(becomes(*watcher, on));
        }
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
