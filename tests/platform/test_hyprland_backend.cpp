#include "await_task.h"
#include "desktop_backends.h"
#include "hyprland_backend.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

// Hyprland's and hyprpaper's sockets in an instance folder, on a thread of their own (the backend
// waits for answers): hyprpaper's requests are recorded and answered "ok" unless told otherwise,
// and Hyprland answers "j/monitors" and sends events.
class HyprlandStandIn : public QObject
{
    Q_OBJECT

public:
    explicit HyprlandStandIn(const QString &folder)
        : m_folder(folder)
    {
    }

    QStringList requests() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_requests;
    }

    void refuse(const QString &answer)
    {
        const QMutexLocker lock(&m_mutex);
        m_refusal = answer;
    }

public Q_SLOTS:
    void listen()
    {
        for (const char *name : { ".hyprpaper.sock", ".socket.sock", ".socket2.sock" }) {
            auto *server = new QLocalServer(this);
            server->listen(m_folder + u'/' + QString::fromLatin1(name));
            connect(server, &QLocalServer::newConnection, this, [this, server] { accept(server); });
        }
    }

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
            connect(socket, &QLocalSocket::readyRead, this, [this, socket, paper] {
                const QByteArray request = socket->readAll();
                socket->write(paper ? answer(request) : monitors());
                socket->flush();
                socket->disconnectFromServer();
            });
        }
    }

    QByteArray answer(const QByteArray &request)
    {
        const QMutexLocker lock(&m_mutex);
        m_requests.append(QString::fromUtf8(request));
        if (request.startsWith("wallpaper") && !m_refusal.isEmpty())
            return m_refusal.toUtf8();
        return "ok";
    }

    static QByteArray monitors()
    {
        return R"([{"name":"DP-1","make":"Dell","model":"U2720Q","serial":"ABC","x":0,"y":0,"width":3840,"height":2160,"focused":false},
                   {"name":"HDMI-A-1","make":"LG","model":"27GL","serial":"","x":3840,"y":0,"width":2560,"height":1440,"focused":true},
                   {"name":"HEADLESS-2","x":0,"y":0,"width":800,"height":600,"disabled":true}])";
    }

    QString m_folder;
    mutable QMutex m_mutex;
    QStringList m_requests;
    QString m_refusal;
    QList<QLocalSocket *> m_events;
};

// Against the stand-in: the commands that `hyprctl hyprpaper preload/wallpaper` would send.
class HyprlandBackendTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_runtime;
    QString m_folder;
    QThread m_thread;
    HyprlandStandIn *m_standIn = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = m_runtime.filePath(u"hypr/sig_1234"_s);
        QDir().mkpath(m_folder);
        m_standIn = new HyprlandStandIn(m_folder);
        m_standIn->moveToThread(&m_thread);
        connect(&m_thread, &QThread::finished, m_standIn, &QObject::deleteLater);
        m_thread.start();
        QMetaObject::invokeMethod(m_standIn, &HyprlandStandIn::listen, Qt::BlockingQueuedConnection);
    }

    void cleanupTestCase()
    {
        m_thread.quit();
        m_thread.wait();
    }

    void chosenBySignature()
    {
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "sig_1234");
        qunsetenv("SWAYSOCK");
        QCOMPARE(HyprlandBackend::instanceFolder(), m_folder);
        std::unique_ptr<DesktopBackend> backend(DesktopBackends::make(u"Hyprland"_s, m_runtime.path()));
        QCOMPARE(backend->name(), u"Hyprland"_s);
        qputenv("HYPRLAND_INSTANCE_SIGNATURE", "gone");
        QCOMPARE(HyprlandBackend::instanceFolder(), QString());
    }

    void monitorsAndPictures()
    {
        const QString state = m_runtime.filePath(u"desktop-hyprland.json"_s);
        HyprlandBackend backend(m_folder, state);
        const auto screens = backend.screens();
        QCOMPARE(screens.size(), 2);
        QCOMPARE(screens[0].connector, u"HDMI-A-1"_s); // focused first
        QCOMPARE(screens[1].geometry, QRect(0, 0, 3840, 2160));
        QCOMPARE(screens[1].serial, u"ABC"_s);

        awaitTask(backend.setPicture({ .path = u"/w/a picture.png"_s }, { screens[1] }));
        awaitTask(backend.setPicture({ .path = u"/w/b.png"_s }, screens));
        QCOMPARE(m_standIn->requests(),
                 QStringList({ u"preload /w/a picture.png"_s, u"wallpaper DP-1,/w/a picture.png"_s,
                               u"unload unused"_s, u"preload /w/b.png"_s,
                               u"wallpaper HDMI-A-1,/w/b.png"_s, u"wallpaper DP-1,/w/b.png"_s,
                               u"unload unused"_s }));
        // hyprpaper cannot tell: what was set, across a restart too.
        QCOMPARE(HyprlandBackend(m_folder, state).picture(screens[1]), u"/w/b.png"_s);

        m_standIn->refuse(u"wallpaper failed (not preloaded)"_s);
        try {
            awaitTask(backend.setPicture({ .path = u"/w/c.png"_s }, { screens[0] }));
            QFAIL("A refusal was taken for success.");
        } catch (const DesktopError &error) {
            QCOMPARE(error.description(), u"wallpaper failed (not preloaded)"_s);
        }
        m_standIn->refuse({});
        QCOMPARE(backend.picture(screens[0]), u"/w/b.png"_s);
    }

    void workspaceSwitchIsReported()
    {
        HyprlandBackend backend(m_folder, m_runtime.filePath(u"state.json"_s));
        QSignalSpy workspaces(&backend, &DesktopBackend::workspaceChanged);
        QTest::qWait(200); // the event socket's connection
        QMetaObject::invokeMethod(m_standIn, [this] { m_standIn->sendEvent("activewindow>>kitty,~"); });
        QMetaObject::invokeMethod(m_standIn, [this] { m_standIn->sendEvent("workspacev2>>3,3"); });
        QVERIFY(workspaces.wait(5000));
        QCOMPARE(workspaces.size(), 1);
    }
};

QTEST_GUILESS_MAIN(HyprlandBackendTest)
#include "test_hyprland_backend.moc"
