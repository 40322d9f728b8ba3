#include "await_task.h"
#include "display_id.h"
#include "placement_records.h"
#include "test_clock.h"
#include "test_files.h"
#include "workspace_keeper.h"
#include "xfce_backend.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(30000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString image(int workspace, int monitor = 0)
{
    return u"/backdrop/screen0/monitorDUMMY%1/workspace%2/last-image"_s.arg(monitor).arg(workspace);
}

// What xfdesktop would read, or a change as its settings dialog makes it.
QString xfconf(const QString &property, const QString &value = {},
               const QString &type = u"string"_s)
{
    QStringList arguments { u"-c"_s, u"xfce4-desktop"_s, u"-p"_s, property };
    if (!value.isEmpty())
        arguments << u"--create"_s << u"-t"_s << type << u"-s"_s << value;
    return run(u"xfconf-query"_s, arguments);
}

// The window manager's part: how many workspaces there are and which one shows.
void workspaces(int count, int current)
{
    for (const auto &[atom, value] : { std::pair(u"_NET_NUMBER_OF_DESKTOPS"_s, count),
                                       std::pair(u"_NET_CURRENT_DESKTOP"_s, current) })
        run(u"xprop"_s,
            { u"-root"_s, u"-f"_s, atom, u"32c"_s, u"-set"_s, atom, QString::number(value) });
}
} // namespace

// The XFCE backend and the helper's keeper on it: a real xfconfd on a private bus and Xorg with two
// dummy monitors, where xprop plays the window manager switching workspaces.
class WorkspaceKeeperTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_ours = m_folder.filePath(u"ours.png"_s);
    std::unique_ptr<XfceBackend> m_backend;
    std::shared_ptr<TestClock> m_clock =
        std::make_shared<TestClock>(QDateTime::currentDateTimeUtc(), true);
    std::unique_ptr<WorkspaceKeeper> m_keeper;
    Placement m_placement {
        .pack = u"p"_s, .colourway = u"c"_s, .edition = u"light"_s, .path = m_ours, .setAt = 1
    };

    void record(bool useOnAllSpaces)
    {
        PlacementFile file;
        file.useOnAllSpaces = useOnAllSpaces;
        file.placements.insert(displayIds(m_backend->screens()).first(), m_placement);
        QVERIFY(PlacementRecords(m_folder.path()).save(file));
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(writeFile(m_ours, {})); }

    // Every workspace of a monitor is set; read back at start and after each set.
    void backendEachMonitorAndWorkspace()
    {
        // A monitor that xfdesktop already knows on two workspaces, where no window manager
        // counts them yet; DUMMY1 is new to it.
        xfconf(image(0), u"/old0.png"_s);
        xfconf(image(1), u"/old1.png"_s);
        XfceBackend backend(QDBusConnection::sessionBus());
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QTRY_COMPARE(backend.picture(screens[0]), u"/old0.png"_s);
        QCOMPARE(backend.picture(screens[1]), std::nullopt);
        awaitTask(backend.setPicture({ .path = u"/left.png"_s }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = u"/right.png"_s }, { screens[1] }));
        QCOMPARE(xfconf(image(1)), u"/left.png"_s);
        QCOMPARE(xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace1/image-style"_s), u"5"_s);
        QCOMPARE(xfconf(image(0, 1)), u"/right.png"_s);
        XfceBackend restarted(QDBusConnection::sessionBus());
        QTRY_COMPARE(restarted.picture(screens[1]), u"/right.png"_s);
        QCOMPARE(restarted.picture(screens[0]), u"/left.png"_s);
    }

    void aNewWorkspaceGetsThePlacement()
    {
        m_backend = std::make_unique<XfceBackend>(QDBusConnection::sessionBus());
        m_keeper = std::make_unique<WorkspaceKeeper>(m_backend.get(),
                                                     PlacementRecords(m_folder.path()), m_clock);
        // Quennet set the wallpaper on the two workspaces there were.
        workspaces(2, 0);
        xfconf(image(0), m_ours);
        xfconf(image(1), m_ours);
        // Nothing to do with xfdesktop's default of one picture for every workspace, nor with
        // "Use on all workspaces" off.
        record(true);
        QVERIFY(!m_backend->keepsPicturePerWorkspace());
        QSignalSpy reapplied(m_keeper.get(), &WorkspaceKeeper::reapplied);
        workspaces(3, 2);
        QTest::qWait(500);
        QCOMPARE(xfconf(image(2)), QString());
        workspaces(2, 0);
        record(false);
        xfconf(u"/backdrop/single-workspace-mode"_s, u"false"_s, u"bool"_s);
        QTRY_VERIFY(m_backend->keepsPicturePerWorkspace());
        workspaces(3, 2);
        QTest::qWait(500);
        QCOMPARE(reapplied.size(), 0);
        workspaces(2, 0);

        record(true);
        workspaces(3, 2);
        QVERIFY(!reapplied.isEmpty() || reapplied.wait(5000));
        QCOMPARE(xfconf(image(2)), m_ours);
        QCOMPARE(m_backend->picture(m_backend->screens().first()), m_ours);
        QVERIFY(!QFile::exists(PlacementRecords(m_folder.path()).releasedFilePath()));
    }

    void aPictureTheUserChoosesIsLetGoUntilAStart()
    {
        // xfconfd may still be telling of the keeper's own writes: those must not pass for the
        // user's change below.
        QTest::qWait(500);
        QSignalSpy changed(m_backend.get(), &DesktopBackend::picturesChanged);
        QSignalSpy released(m_keeper.get(), &WorkspaceKeeper::released);
        xfconf(image(2), u"/theirs.png"_s);
        QVERIFY(changed.wait(5000));
        m_clock->advance(2999ms);
        QCOMPARE(released.size(), 0);
        m_clock->advance(1ms);
        QCOMPARE(released.size(), 1);
        const PlacementRecords records(m_folder.path());
        QVERIFY(records.isReleased(displayIds(m_backend->screens()).first(), m_placement));

        // Let go of: not put back on the next switch.
        QSignalSpy reapplied(m_keeper.get(), &WorkspaceKeeper::reapplied);
        workspaces(3, 1);
        workspaces(3, 2);
        QTest::qWait(500);
        QCOMPARE(reapplied.size(), 0);
        QCOMPARE(xfconf(image(2)), u"/theirs.png"_s);

        // Not let go of, and started as at login, when the helper's own reading of xfconf has yet
        // to come: it waits for it, then puts back what is missing.
        QVERIFY(QFile::remove(records.releasedFilePath()));
        XfceBackend backend(QDBusConnection::sessionBus());
        WorkspaceKeeper keeper(&backend, records, m_clock);
        QSignalSpy putBack(&keeper, &WorkspaceKeeper::reapplied);
        keeper.start();
        QVERIFY(!putBack.isEmpty() || putBack.wait(5000));
        QCOMPARE(xfconf(image(2)), m_ours);
    }
};

QTEST_MAIN(WorkspaceKeeperTest)
#include "test_workspace_keeper.moc"
