#include "await_task.h"
#include "xfce_backend.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
// What xfdesktop would read.
QString xfconf(const QString &property, const QString &value = {})
{
    QStringList arguments { u"-c"_s, u"xfce4-desktop"_s, u"-p"_s, property };
    if (!value.isEmpty())
        arguments << u"--create"_s << u"-t"_s << u"string"_s << u"-s"_s << value;
    QProcess process;
    process.start(u"xfconf-query"_s, arguments);
    process.waitForFinished(30000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}
} // namespace

// Against a real xfconfd, started by the private bus, with two dummy monitors.
class XfceBackendTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Read back at start and after each set.
    void eachMonitorAndWorkspace()
    {
        // A monitor that xfdesktop already knows on two workspaces; DUMMY1 is new to it.
        xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace0/last-image"_s, u"/old0.png"_s);
        xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace1/last-image"_s, u"/old1.png"_s);
        XfceBackend backend(QDBusConnection::sessionBus());
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QTRY_COMPARE(backend.picture(screens[0]), u"/old0.png"_s);
        QCOMPARE(backend.picture(screens[1]), std::nullopt);

        awaitTask(backend.setPicture({ .path = u"/left.png"_s }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = u"/right.png"_s }, { screens[1] }));
        QCOMPARE(xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace0/last-image"_s),
                 u"/left.png"_s);
        QCOMPARE(xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace1/last-image"_s),
                 u"/left.png"_s);
        QCOMPARE(xfconf(u"/backdrop/screen0/monitorDUMMY0/workspace1/image-style"_s), u"5"_s);
        QCOMPARE(xfconf(u"/backdrop/screen0/monitorDUMMY1/workspace0/last-image"_s),
                 u"/right.png"_s);
        // Read back by a backend started anew; a change by another program is seen.
        XfceBackend restarted(QDBusConnection::sessionBus());
        QTRY_COMPARE(restarted.picture(screens[1]), u"/right.png"_s);
        QSignalSpy changed(&restarted, &DesktopBackend::picturesChanged);
        xfconf(u"/backdrop/screen0/monitorDUMMY1/workspace0/last-image"_s, u"/theirs.png"_s);
        QVERIFY(changed.wait(5000));
        QCOMPARE(restarted.picture(screens[1]), u"/theirs.png"_s);
    }
};

QTEST_MAIN(XfceBackendTest)
#include "test_xfce_backend.moc"
