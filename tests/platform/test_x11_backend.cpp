#include "await_task.h"
#include "desktop_backends.h"
#include "pixels.h"
#include "root_pixels.h"
#include "x11_backend.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Under Xorg with two dummy monitors side by side, DUMMY0 at 0,0 and DUMMY1 at 1920,0.
class X11BackendTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_state = m_dir.filePath(u"desktop-x11.json"_s);

    QString picture(const char *name, Qt::GlobalColor colour)
    {
        return solidPicture(m_dir.filePath(QString::fromLatin1(name) + u".png"_s), colour);
    }

    static DesktopScreen screenNamed(const DesktopBackend &backend, const QString &connector)
    {
        const auto screens = backend.screens();
        const auto found = std::ranges::find(screens, connector, &DesktopScreen::connector);
        return found == screens.end() ? DesktopScreen() : *found;
    }

private Q_SLOTS:
    // Chosen for a window manager without a backend of its own. XWayland sets DISPLAY in a
    // Wayland session too, where nobody sees the root window: an unknown compositor gets the
    // portal.
    void differentPicturePerMonitorKeptThroughRestartsAndHotplug()
    {
        QVERIFY(X11Backend::isAvailable());
        qunsetenv("SWAYSOCK");
        qunsetenv("HYPRLAND_INSTANCE_SIGNATURE");
        qputenv("WAYLAND_DISPLAY", "wayland-1");
        const std::unique_ptr<DesktopBackend> portal(
            DesktopBackends::make(u"labwc:wlroots"_s, m_dir.path()));
        QCOMPARE(portal->name(), u"desktop portal"_s);
        qunsetenv("WAYLAND_DISPLAY");
        const std::unique_ptr<DesktopBackend> made(
            DesktopBackends::make(u"openbox"_s, m_dir.path()));
        QCOMPARE(made->name(), u"X11"_s);
        DesktopBackend &backend = *made;
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0].connector, u"DUMMY0"_s);
        const QString red = picture("red", Qt::red);
        const QString blue = picture("blue", Qt::blue);
        awaitTask(backend.setPicture({ .path = red }, { screens[0] }));
        awaitTask(backend.setPicture({ .path = blue }, { screens[1] }));
        QCOMPARE(rootPixel(100, 100), QColor(Qt::red));
        QCOMPARE(rootPixel(1920 + 100, 1000), QColor(Qt::blue));

        // A slideshow's file is no picture for xwallpaper: it draws the still.
        const QString green = picture("green", Qt::green);
        awaitTask(backend.setPicture({ .path = m_dir.filePath(u"f.xml"_s), .still = green },
                                     { screens[1] }));
        QCOMPARE(rootPixel(1920 + 100, 100), QColor(Qt::green));
        awaitTask(backend.setPicture({ .path = blue }, { screens[1] }));

        // A refusal is reported and changes nothing.
        QVERIFY_THROWS_EXCEPTION(
            DesktopError,
            awaitTask(
                backend.setPicture({ .path = m_dir.filePath(u"missing.png"_s) }, { screens[0] })));

        // Known after a restart.
        const X11Backend restarted(m_state);
        QCOMPARE(restarted.picture(screens[0]), red);
        QCOMPARE(restarted.picture(screens[1]), blue);

        // A monitor turned off and on again keeps its picture.
        QSignalSpy screensChanged(&backend, &DesktopBackend::screensChanged);
        QCOMPARE(QProcess::execute(u"xrandr"_s, { u"--output"_s, u"DUMMY1"_s, u"--off"_s }), 0);
        QTRY_VERIFY(!screensChanged.isEmpty());
        QCOMPARE(QProcess::execute(u"xrandr"_s,
                                   { u"--output"_s, u"DUMMY1"_s, u"--mode"_s, u"1920x1080"_s,
                                     u"--right-of"_s, u"DUMMY0"_s }),
                 0);
        const auto dummy1 = [&backend] { return screenNamed(backend, u"DUMMY1"_s); };
        QTRY_COMPARE(dummy1().geometry, QRect(1920, 0, 1920, 1080));
        QCOMPARE(backend.picture(dummy1()), blue);
        QCOMPARE(rootPixel(1920 + 100, 100), QColor(Qt::blue));

        // Another program's picture on it: only that monitor is forgotten, after a restart too.
        QSignalSpy changed(&backend, &DesktopBackend::picturesChanged);
        const QString yellow = picture("yellow", Qt::yellow);
        QProcess::execute(u"xwallpaper"_s, { u"--output"_s, u"DUMMY1"_s, u"--zoom"_s, yellow });
        QVERIFY(changed.wait(5000));
        QCOMPARE(backend.picture(dummy1()), std::nullopt);
        QCOMPARE(backend.picture(screenNamed(backend, u"DUMMY0"_s)), red);
        QCOMPARE(X11Backend(m_state).picture(dummy1()), std::nullopt);
    }
};

QTEST_MAIN(X11BackendTest)
#include "test_x11_backend.moc"
