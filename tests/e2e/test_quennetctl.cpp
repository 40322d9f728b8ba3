#include "defaults.h"
#include "placement.h"
#include "shop_profile.h"
#include "test_files.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {
struct Run {
    int status = -1;
    QString out, err;
};
} // namespace

// A person's script against Quennet under Xorg with two monitors: a session bus of its own that
// starts Quennet from its service file when the first quennetctl asks, the development shop,
// and what each command leaves in Quennet's records.
class QuennetctlTest : public QObject {
    Q_OBJECT

    SampleShop m_shop;
    QTemporaryDir m_bus;
    QProcess m_daemon;
    QString m_address;

    Run quennetctl(const QStringList &arguments,
                   const std::function<void(QProcess &)> &meanwhile = {})
    {
        QProcess process;
        process.start(QStringLiteral(QUENNETCTL), arguments);
        if (meanwhile)
            meanwhile(process);
        process.waitForFinished(120'000);
        return { process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                 QString::fromUtf8(process.readAllStandardOutput()),
                 QString::fromUtf8(process.readAllStandardError()) };
    }

    // What Quennet has recorded on each display: pack/colourway and edition.
    QStringList placed()
    {
        QStringList placed;
        const auto file = PlacementFile::decode(readAll(m_shop.folder + u"/placements.json"_s));
        for (const Placement &placement : file.placements)
            placed.append(placement.pack + u'/' + placement.colourway + u' ' + placement.edition);
        return placed;
    }

    // A setting as Quennet has saved it in its settings file.
    static QVariant stored(const QString &key)
    {
        QSettings settings(Defaults::defaultPath(), QSettings::IniFormat);
        settings.sync();
        return settings.value(key);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_shop.start());
        // A browser that opens nothing, and a bus that knows only Quennet's service file.
        QVERIFY(standInBrowser(m_bus.path()));
        const QString socket = m_bus.filePath(u"bus"_s);
        qputenv("QT_QUICK_BACKEND", "software");
        m_daemon.setProcessChannelMode(QProcess::ForwardedChannels);
        m_address = u"unix:path="_s + socket;
        m_daemon.start(u"dbus-daemon"_s,
                       { u"--nofork"_s, u"--config-file"_s, QStringLiteral(QUENNET_TEST_BUS_CONFIG),
                         u"--address"_s, m_address });
        QVERIFY(m_daemon.waitForStarted());
        QTRY_VERIFY(QFile::exists(socket));
        // Every quennetctl the test starts talks to that bus.
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
    }

    void cleanupTestCase()
    {
        // Quennet is the bus's child: end it by the process id the bus knows it by.
        auto bus = QDBusConnection::connectToBus(m_address, u"cleanup"_s);
        const auto pid = bus.interface()->servicePid(u"app.quennet.Quennet"_s);
        if (pid.isValid() && pid.value() > 0) {
            ::kill(pid_t(pid.value()), SIGTERM);
            QTRY_VERIFY(!bus.interface()->isServiceRegistered(u"app.quennet.Quennet"_s).value());
        }
        QDBusConnection::disconnectFromBus(u"cleanup"_s);
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    void aScriptOfCommands()
    {
        // The first call starts Quennet through the bus.
        QVERIFY(quennetctl({ u"status"_s }).out.startsWith(u"State: signedOut\n"_s));

        Run run = quennetctl({ u"sign-in"_s }, [this](QProcess &process) {
            // Approve the code it prints, as a person does on the page.
            QString printed;
            QTRY_VERIFY_WITH_TIMEOUT((printed += QString::fromUtf8(process.readAllStandardOutput()))
                                         .contains(u"Waiting for approval"_s),
                                     30'000);
            const QString code = printed.section(u"Code: "_s, 1).section(u'\n', 0, 0);
            QVERIFY(m_shop.shop.approve(code));
        });
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);

        run = quennetctl({ u"set"_s, u"aurora/emerald"_s, u"--edition"_s, u"dark"_s });
        QCOMPARE(run.err, QString());
        QCOMPARE(run.status, 0);
        QTRY_COMPARE(placed(), QStringList(2, u"aurora/emerald dark"_s));
        QCOMPARE(quennetctl({ u"get"_s }).out, u"aurora/emerald\tEmerald\tAurora\n"_s);

        // Each command reaches Quennet with its own arguments: what it changed is saved.
        for (const QStringList &command :
             { QStringList { u"shuffle"_s }, QStringList { u"favourite"_s },
               QStringList { u"shuffle-settings"_s, u"--on"_s, u"--interval"_s, u"hour"_s,
                             u"--source"_s, u"favourites"_s } }) {
            run = quennetctl(command);
            QVERIFY2(run.status == 0, qPrintable(run.err));
        }
        const QString shuffled = quennetctl({ u"get"_s }).out.section(u'\t', 0, 0);
        const QList<std::pair<QString, QString>> saved { { u"shufflePlayed"_s, shuffled },
                                                         { u"favouriteColourways"_s, shuffled },
                                                         { u"shuffleIsOn"_s, u"true"_s },
                                                         { u"shuffleInterval"_s, u"hour"_s },
                                                         { u"shuffleSource"_s, u"favourites"_s } };
        for (const auto &[key, value] : saved)
            QTRY_COMPARE(stored(key).toStringList(), QStringList { value });

        // Refusals go to standard error, with the status that tells them apart.
        run = quennetctl({ u"set"_s, u"harbour/slate"_s });
        QCOMPARE(run.err, u"That wallpaper isn't in your packs.\n"_s);
        QCOMPARE(run.status, 1);
        run = quennetctl({ u"set"_s, u"aurora/emerald"_s, u"--edition"_s, u"sepia"_s });
        QCOMPARE(run.err,
                 u"\"sepia\" isn't an edition. Use automatic, timeOfDay, light or dark.\n"_s);
        QCOMPARE(run.status, 2);
        QCOMPARE(run.out, QString());

        QCOMPARE(quennetctl({ u"sign-out"_s }).status, 0);
        QVERIFY(quennetctl({ u"status"_s }).out.startsWith(u"State: signedOut\n"_s));
    }
};

QTEST_MAIN(QuennetctlTest)
#include "test_quennetctl.moc"
