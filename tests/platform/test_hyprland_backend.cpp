#include "await_task.h"
#include "desktop_backends.h"
#include "hyprland_backend.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// Hyprland's and hyprpaper's sockets in an instance folder, on the test's own thread, so that a
// backend waiting on a socket would never hear them. They answer a little later: hyprpaper's
// requests are recorded and answered "ok" unless told otherwise, and Hyprland answers
// "j/monitors" and sends events.
class HyprlandStandIn : public QObject {
    Q_OBJECT

public:
    enum class Manner { Answers, Silent, Closes };

    explicit HyprlandStandIn(const QString &folder)
    {
        for (const char *name : { ".hyprpaper.sock", ".socket.sock", ".socket2.sock" }) {
            auto *server = new QLocalServer(this);
            server->listen(folder + u'/' + QString::fromLatin1(name));
            connect(server, &QLocalServer::newConnection, this, [this, server] { accept(server); });
        }
    }

    QStringList requests;
    QString answer = u"ok"_s; // to "wallpaper"
    Manner manner = Manner::Answers; // hyprpaper's
    QByteArray monitors =
        R"([{"name":"DP-1","make":"Dell","model":"U2720Q","serial":"ABC","x":0,"y":0,"width":3840,"height":2160,"focused":false},
        {"name":"HDMI-A-1","make":"LG","model":"27GL","serial":"","x":3840,"y":0,"width":2560,"height":1440,"focused":true},
        {"name":"HEADLESS-2","x":0,"y":0,"width":800,"height":600,"disabled":true}])";

    void sendEvent(const QByteArray &line)
    {
        for (QLocalSocket *events : std::as_const(m_events))
            events->write(line + '\n');
    }

private:
    void accept(QLocalServer *server)
    {
        while (QLocalSocket *socket = server->nextPendingConnection()) {
            if (server->serverName().endsWith(".socket2.sock"_L1)) {
                m_events.append(socket);
                continue;
            }
            const bool paper = server->serverName().endsWith(".hyprpaper.sock"_L1);
            if (paper && manner == Manner::Closes)
                socket->disconnectFromServer();
            if (paper && manner != Manner::Answers)
                continue;
            connect(socket, &QLocalSocket::readyRead, this, [this, socket, paper] {
                const QByteArray request = socket->readAll();
                if (paper)
                    requests.append(QString::fromUtf8(request));
                const QByteArray reply = !paper       ? monitors
                    : request.startsWith("wallpaper") ? answer.toUtf8()
                                                      : "ok";
                QTimer::singleShot(50, socket, [socket, reply] {
                    socket->write(reply);
                    socket->disconnectFromServer();
                });
            });
        }
    }

    QList<QLocalSocket *> m_events;
};

// Against the stand-in: the commands that `hyprctl hyprpaper preload/wallpaper` would send.
class HyprlandBackendTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_runtime;
    QString m_folder;
    std::unique_ptr<HyprlandStandIn> m_standIn;

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = m_runtime.filePath(u"hypr/sig_1234"_s);
        QDir().mkpath(m_folder);
        m_standIn = std::make_unique<HyprlandStandIn>(m_folder);
    }

    void chosenBySignature()
    {
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "sig_1234");
        qunsetenv("SWAYSOCK");
        QCOMPARE(HyprlandBackend::instanceFolder(), m_folder);
        std::unique_ptr<DesktopBackend> backend(
            DesktopBackends::make(u"Hyprland"_s, m_runtime.path()));
        QCOMPARE(backend->name(), u"Hyprland"_s);
        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "gone");
        QCOMPARE(HyprlandBackend::instanceFolder(), QString());
    }

    void monitorsAndPictures()
    {
        const QString state = m_runtime.filePath(u"desktop-hyprland.json"_s);
        HyprlandBackend backend(m_folder, state);
        QSignalSpy screensChanged(&backend, &DesktopBackend::screensChanged);
        QVERIFY(screensChanged.wait(5000));
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0].connector, u"HDMI-A-1"_s); // focused first
        QCOMPARE(screens[1].geometry, QRect(0, 0, 3840, 2160));
        QCOMPARE(screens[1].serial, u"ABC"_s);

        m_standIn->requests.clear();
        awaitTask(backend.setPicture({ .path = u"/w/a picture.png"_s }, { screens[1] }));
        awaitTask(backend.setPicture({ .path = u"/w/b.png"_s }, screens));
        QCOMPARE(m_standIn->requests,
                 QStringList({ u"preload /w/a picture.png"_s, u"wallpaper DP-1,/w/a picture.png"_s,
                               u"unload unused"_s, u"preload /w/b.png"_s,
                               u"wallpaper HDMI-A-1,/w/b.png"_s, u"wallpaper DP-1,/w/b.png"_s,
                               u"unload unused"_s }));
        // hyprpaper cannot tell: what was set, across a restart too.
        QCOMPARE(HyprlandBackend(m_folder, state).picture(screens[1]), u"/w/b.png"_s);
    }

    // A hyprpaper that does not take the commands, or does not answer, is a failure that says
    // so; what was set before stays the answer.
    void hyprpaperFailures_data()
    {
        QTest::addColumn<HyprlandStandIn::Manner>("manner");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("unknown command")
            << HyprlandStandIn::Manner::Answers << u"invalid command"_s
            << u"hyprpaper did not take the picture: it answered “invalid command” to wallpaper. "
               u"Quennet "
               "works with hyprpaper releases that accept the preload and wallpaper commands."_s;
        QTest::newRow("silent") << HyprlandStandIn::Manner::Silent << u"ok"_s
                                << u"hyprpaper did not answer within 0.3 seconds."_s;
        QTest::newRow("closes") << HyprlandStandIn::Manner::Closes << u"ok"_s
                                << u"hyprpaper closed the connection without answering."_s;
    }

    void hyprpaperFailures()
    {
        QFETCH(HyprlandStandIn::Manner, manner);
        QFETCH(QString, answer);
        HyprlandBackend backend(m_folder, m_runtime.filePath(u"failures.json"_s));
        backend.setTimeout(std::chrono::milliseconds(300));
        const DesktopScreen screen { .connector = u"DP-1"_s };
        awaitTask(backend.setPicture({ .path = u"/w/a.png"_s }, { screen }));
        m_standIn->manner = manner;
        m_standIn->answer = answer;
        QTEST(failureText(finish(backend.setPicture({ .path = u"/w/b.png"_s }, { screen }))),
              "sentence");
        m_standIn->manner = HyprlandStandIn::Manner::Answers;
        m_standIn->answer = u"ok"_s;
        QCOMPARE(backend.picture(screen), u"/w/a.png"_s);
    }

    // A workspace switch is told; a new monitor is read.
    void eventsAreFollowed()
    {
        HyprlandBackend backend(m_folder, m_runtime.filePath(u"state.json"_s));
        QSignalSpy workspaces(&backend, &DesktopBackend::workspaceChanged);
        QSignalSpy screensChanged(&backend, &DesktopBackend::screensChanged);
        QVERIFY(screensChanged.wait(5000));
        m_standIn->sendEvent("activewindow>>kitty,~");
        m_standIn->sendEvent("workspacev2>>3,3");
        QVERIFY(workspaces.wait(5000));
        QCOMPARE(workspaces.size(), 1);

        const QByteArray monitors = m_standIn->monitors;
        m_standIn->monitors = R"([{"name":"DP-3","x":0,"y":0,"width":1920,"height":1080}])";
        m_standIn->sendEvent("monitoraddedv2>>1,DP-3,desc");
        QVERIFY(screensChanged.wait(5000));
        m_standIn->monitors = monitors;
        QCOMPARE(backend.screens().size(), 1);
        QCOMPARE(backend.screens()[0].connector, u"DP-3"_s);
    }
};

QTEST_GUILESS_MAIN(HyprlandBackendTest)
#include "test_hyprland_backend.moc"
