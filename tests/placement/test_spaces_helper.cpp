#include "await_task.h"
#include "defaults.h"
#include "helper_process.h"
#include "spaces_helper.h"
#include "test_clock.h"
#include "test_files.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Status = SpacesHelper::Status;

namespace {
const QString helperProgram = QStringLiteral(QUENNET_HELPER);

bool helperOwnsItsName()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(
        QLatin1StringView(HelperBus::service));
}
} // namespace

// The helper's autostart entry and the running helper, on a private session bus, with the real
// quennet-helper program.
class SpacesHelperTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    struct Rig {
        explicit Rig(const QString &folder, const QString &build = u"0.1.0"_s)
            : defaults(folder + u"/defaults.ini"_s)
            , process(QDBusConnection::sessionBus(), HelperBus::pidFilePath())
            , clock(std::make_shared<TestClock>(QDateTime::currentDateTimeUtc(), true))
            , helper({ .defaults = &defaults,
                       .process = &process,
                       .clock = clock,
                       .program = helperProgram,
                       .build = build,
                       .autostartFolder = folder + u"/autostart"_s })
        {
        }

        Defaults defaults;
        HelperProcess process;
        std::shared_ptr<TestClock> clock;
        SpacesHelper helper;
    };

private Q_SLOTS:
    void initTestCase()
    {
        // Where the helper has something to do: elsewhere it ends at once.
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    }

    void cleanup()
    {
        if (helperOwnsItsName()) {
            HelperProcess process(QDBusConnection::sessionBus(), HelperBus::pidFilePath());
            awaitTask(process.end());
        }
        QFile::remove(m_folder.filePath(u"autostart/app.quennet.Quennet.helper.desktop"_s));
        QFile::remove(m_folder.filePath(u"defaults.ini"_s));
    }

    // An entry switched off in the desktop's settings, or naming a program that is gone. Registered
    // by build 0.0.9, the helper still runs when 0.1.0 starts: it is ended, unregistered, and
    // registered again 10 s later. Not wanted any more, it goes.
    void entryWantedStaleAndNotWanted()
    {
        const QString entry = m_folder.filePath(u"autostart/app.quennet.Quennet.helper.desktop"_s);
        QVERIFY(writeFile(entry,
                          "[Desktop Entry]\nType=Application\nExec=" + helperProgram.toUtf8()
                              + "\nX-GNOME-Autostart-enabled=false\n"));
        QCOMPARE(Rig(m_folder.path()).helper.status(), Status::RequiresApproval);
        QVERIFY(writeFile(entry, "[Desktop Entry]\nExec=\"/gone/quennet helper\"\n"));
        QCOMPARE(Rig(m_folder.path()).helper.status(), Status::NotFound);
        QVERIFY(QFile::remove(entry));
        {
            Rig old(m_folder.path(), u"0.0.9"_s);
            QCOMPARE(old.helper.status(), Status::NotRegistered);
            old.helper.setWanted(true);
            QCOMPARE(old.helper.status(), Status::Enabled);
            QCOMPARE(AutostartEntry(u"app.quennet.Quennet.helper.desktop"_s,
                                    m_folder.filePath(u"autostart"_s))
                         .program(),
                     helperProgram);
            // Started at once, not only at the next login.
            QTRY_VERIFY(helperOwnsItsName());
        }
        const auto oldPid =
            HelperProcess(QDBusConnection::sessionBus(), HelperBus::pidFilePath()).pid();
        QVERIFY(oldPid);

        Rig rig(m_folder.path());
        auto check = rig.helper.checkRunning();
        QTRY_VERIFY(!QFile::exists(rig.helper.entryPath()));
        QVERIFY(!helperOwnsItsName());
        rig.clock->advance(9999ms);
        QVERIFY(!QFile::exists(rig.helper.entryPath()));
        rig.clock->advance(1ms);
        QVERIFY(check.isReady());
        QCOMPARE(rig.helper.status(), Status::Enabled);
        QTRY_VERIFY(helperOwnsItsName());
        QVERIFY(rig.process.pid() != oldPid);

        // Once per launch; and the same build is left running.
        const auto newPid = rig.process.pid();
        awaitTask(rig.helper.checkRunning());
        Rig next(m_folder.path());
        awaitTask(next.helper.checkRunning());
        QCOMPARE(next.process.pid(), newPid);

        rig.helper.setWanted(false);
        QCOMPARE(rig.helper.status(), Status::NotRegistered);
        QVERIFY(!QFile::exists(rig.helper.entryPath()));
        QTRY_VERIFY(!helperOwnsItsName());
    }

    void aHelperWithoutABusIsEndedByItsPidFile()
    {
        // A quennet-helper that cannot reach the session bus.
        QProcess stray;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
        stray.setProcessEnvironment(environment);
        stray.start(helperProgram, {});
        QTRY_VERIFY(QFile::exists(HelperBus::pidFilePath()));
        HelperProcess process(QDBusConnection::sessionBus(), HelperBus::pidFilePath());
        QCOMPARE(process.pid().value_or(0), stray.processId());
        awaitTask(process.end());
        QTRY_COMPARE(stray.state(), QProcess::NotRunning);
        QCOMPARE(stray.exitStatus(), QProcess::CrashExit);

        // A pid file naming some other process ends nothing.
        QProcess other;
        other.start(u"sleep"_s, { u"30"_s });
        QVERIFY(other.waitForStarted());
        QVERIFY(writeFile(HelperBus::pidFilePath(), QByteArray::number(other.processId())));
        QCOMPARE(process.pid(), std::nullopt);
        awaitTask(process.end());
        QVERIFY(!other.waitForFinished(300));
        other.kill();
        other.waitForFinished();
        QFile::remove(HelperBus::pidFilePath());
    }
};

QTEST_GUILESS_MAIN(SpacesHelperTest)
#include "test_spaces_helper.moc"
