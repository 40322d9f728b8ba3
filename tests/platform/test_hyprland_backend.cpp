#include "await_task.h"
#include "desktop_backends.h"
#include "hyprland_backend.h"
#include "socket_stand_in.h"

#include <QDir>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Against stand-ins for Hyprland's and hyprpaper's sockets in an instance folder: the commands
// that `hyprctl hyprpaper preload/wallpaper` would send.
class HyprlandBackendTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_runtime;
    QString m_folder = m_runtime.filePath(u"hypr/sig_1234"_s);
    // hyprpaper's, recorded and answered "ok" unless told otherwise.
    QStringList m_requests;
    QString m_answer = u"ok"_s; // to "wallpaper"
    // Hyprland's answer to "j/monitors".
    QByteArray m_monitors =
        R"([{"name":"DP-1","make":"Dell","model":"U2720Q","serial":"ABC","x":0,"y":0,"width":3840,"height":2160,"focused":false},
        {"name":"HDMI-A-1","make":"LG","model":"27GL","serial":"","x":3840,"y":0,"width":2560,"height":1440,"focused":true},
        {"name":"HEADLESS-2","x":0,"y":0,"width":800,"height":600,"disabled":true}])";
    std::optional<SocketStandIn> m_hyprpaper;
    std::optional<SocketStandIn> m_hyprland;
    std::optional<SocketStandIn> m_events;

private Q_SLOTS:
    void initTestCase()
    {
        QDir().mkpath(m_folder);
        const auto hyprpaper = [this](QLocalSocket &socket) {
            const QByteArray request = socket.readAll();
            m_requests.append(QString::fromUtf8(request));
            return std::optional(request.startsWith("wallpaper") ? m_answer.toUtf8() : "ok"_ba);
        };
        const auto monitors = [this](QLocalSocket &socket) {
            socket.readAll();
            return std::optional(m_monitors);
        };
        m_hyprpaper.emplace(m_folder + u"/.hyprpaper.sock"_s, hyprpaper, true);
        m_hyprland.emplace(m_folder + u"/.socket.sock"_s, monitors, true);
        m_events.emplace(m_folder + u"/.socket2.sock"_s, nullptr);
    }

    // Chosen where Hyprland's signature names an instance folder, as the program starts.
    void monitorsPicturesAndEvents()
    {
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "sig_1234");
        qunsetenv("SWAYSOCK");
        const std::unique_ptr<DesktopBackend> made(
            DesktopBackends::make(u"Hyprland"_s, m_runtime.path()));
        QCOMPARE(made->name(), u"Hyprland"_s);
        DesktopBackend &backend = *made;
        QSignalSpy screensChanged(&backend, &DesktopBackend::screensChanged);
        QVERIFY(screensChanged.wait(5000));
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0].connector, u"HDMI-A-1"_s); // focused first
        QCOMPARE(screens[1].geometry, QRect(0, 0, 3840, 2160));
        QCOMPARE(screens[1].serial, u"ABC"_s);

        awaitTask(backend.setPicture({ .path = u"/w/a picture.png"_s }, { screens[1] }));
        awaitTask(backend.setPicture({ .path = u"/w/b.png"_s }, screens));
        QCOMPARE(m_requests,
                 QStringList({ u"preload /w/a picture.png"_s, u"wallpaper DP-1,/w/a picture.png"_s,
                               u"unload unused"_s, u"preload /w/b.png"_s,
                               u"wallpaper HDMI-A-1,/w/b.png"_s, u"wallpaper DP-1,/w/b.png"_s,
                               u"unload unused"_s }));
        QCOMPARE(backend.picture(screens[1]), u"/w/b.png"_s); // hyprpaper cannot tell

        // A workspace switch is told, and nothing else; a new monitor is read.
        QSignalSpy workspaces(&backend, &DesktopBackend::workspaceChanged);
        m_events->sendToAll("workspacev2>>3,3\n");
        QVERIFY(workspaces.wait(5000));
        m_events->sendToAll("activewindow>>kitty,~\n");
        m_events->sendToAll("workspacev2>>4,4\n");
        QVERIFY(workspaces.wait(5000));
        QCOMPARE(workspaces.size(), 2);
        m_monitors = R"([{"name":"DP-3","x":0,"y":0,"width":1920,"height":1080}])";
        m_events->sendToAll("monitoraddedv2>>1,DP-3,desc\n");
        QVERIFY(screensChanged.wait(5000));
        QCOMPARE(backend.screens().size(), 1);
        QCOMPARE(backend.screens()[0].connector, u"DP-3"_s);

        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "gone");
        QCOMPARE(HyprlandBackend::instanceFolder(), QString());
    }

    // A hyprpaper that does not take the commands, or closes without an answer, is a failure that
    // says so; what was set before stays the answer.
    void hyprpaperFailures()
    {
        HyprlandBackend backend(m_folder, m_runtime.filePath(u"failures.json"_s));
        const DesktopScreen screen { .connector = u"DP-1"_s };
        awaitTask(backend.setPicture({ .path = u"/w/a.png"_s }, { screen }));
        const auto failure = [&] {
            return failureText(finish(backend.setPicture({ .path = u"/w/b.png"_s }, { screen })));
        };
        m_answer = u"invalid command"_s;
        QCOMPARE(failure(),
                 u"hyprpaper did not take the picture: it answered “invalid command” to wallpaper. "
                 u"Quennet works with hyprpaper releases that accept the preload and wallpaper "
                 u"commands."_s);
        m_hyprpaper->manner = SocketStandIn::Manner::Closes;
        QCOMPARE(failure(), u"hyprpaper closed the connection without answering."_s);
        QCOMPARE(backend.picture(screen), u"/w/a.png"_s);
    }
};

QTEST_GUILESS_MAIN(HyprlandBackendTest)
#include "test_hyprland_backend.moc"
