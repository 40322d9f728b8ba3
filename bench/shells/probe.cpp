// The stopwatch of bench/shells/run. It talks to Quennet, the shell and the development shop
// only as a desktop and a browser would: over D-Bus and through the shop's admin call.
//
//   bench_shells_probe start TIMEOUT COMMAND...
//       (GNOME Shell or Plasma) starts COMMAND and prints "PID REGISTERED READ SHOWN", seconds
//       from exec until: the item registered with the StatusNotifierWatcher; the tray's GetAll
//       of the item's properties answered (as dbus-monitor saw it); on GNOME, the end of the
//       first frame the shell painted with the item's button shown and its icon set ("-"
//       elsewhere). COMMAND keeps running.
//   bench_shells_probe sign-in SHOP-STATE DATA-FOLDER TIMEOUT
//       calls Session.SignIn, approves the code through the shop's admin call, and prints
//       "CODE SIGNED-IN LIBRARY", seconds until the code was offered, the session was signed in,
//       and the library loaded (shop-cache.json has it and FindWallpapers returns entries)
//   bench_shells_probe set WALLPAPER EDITION TIMEOUT
//       prints the seconds Automation.SetWallpaper took to return

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const auto quennet = u"app.quennet.Quennet"_s;
const auto quennetPath = u"/app/quennet/Quennet"_s;
const auto watcher = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

// Wall-clock seconds: dbus-monitor and GNOME Shell stamp their events with this clock.
double realNow()
{
    timespec time {};
    clock_gettime(CLOCK_REALTIME, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

[[noreturn]] void fail(const QString &message)
{
    std::fprintf(stderr, "bench_shells_probe: %s\n", qPrintable(message));
    std::exit(2);
}

QPointer<QEventLoop> waiting;

// Ends the current wait early, when something the condition reads has changed.
void wake()
{
    if (waiting)
        waiting->quit();
}

// Runs the event loop until `done` holds, checking on every wake() and at least every 5 ms.
bool spinUntil(const std::function<bool()> &done, double timeout)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (double(clock.elapsed()) > timeout * 1000)
            return false;
        QEventLoop loop;
        waiting = &loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

void pause(double seconds)
{
    spinUntil([] { return false; }, seconds);
}

QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                  const QString &method, const QVariantList &arguments = {}, int timeout = -1)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, timeout);
}

QVariant property(const QString &service, const QString &path, const QString &interface,
                  const QString &name)
{
    const QDBusMessage reply =
        call(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, { interface, name });
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()
        ? qvariant_cast<QDBusVariant>(reply.arguments().first()).variant()
        : QVariant();
}

QString shellEval(const QString &script)
{
    const QDBusMessage reply = call(u"app.quennet.ShellTest"_s, u"/app/quennet/ShellTest"_s,
                                    u"app.quennet.ShellTest"_s, u"Eval"_s, { script });
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()
        ? reply.arguments().first().toString()
        : QString();
}

// GNOME Shell notes the time at the end of the first frame it paints with an appindicator
// button shown and its icon set. The probe asks for it afterwards, so that no polling of ours
// runs inside the shell while the icon is on its way.
const auto gnomeHook = uR"((() => {
    const { GLib } = imports.gi;
    globalThis.quennetBenchShown = 0;
    const id = global.stage.connect('after-paint', () => {
        const button = Object.entries(imports.ui.main.panel.statusArea)
            .filter(([key]) => key.startsWith('appindicator-')).map(([, value]) => value)[0];
        if (button && button.visible && button.mapped && button._icon && button._icon.gicon) {
            globalThis.quennetBenchShown = GLib.get_real_time() / 1e6;
            global.stage.disconnect(id);
        }
    });
    return true;
})())"_s;

pid_t spawn(char **command)
{
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(STDERR_FILENO, STDOUT_FILENO); // our standard output is the answer
        execvp(command[0], command);
        std::fprintf(stderr, "bench_shells_probe: cannot run %s: %s\n", command[0],
                     std::strerror(errno));
        _exit(127);
    }
    return pid;
}

// What the session bus tells the probe.
class Listener : public QObject {
    Q_OBJECT
public:
    double registered = 0;
    QVariantMap session;

public Q_SLOTS:
    void itemRegistered()
    {
        if (registered == 0)
            registered = realNow();
        wake();
    }
    void propertiesChanged(const QString &, const QVariantMap &values, const QStringList &)
    {
        session.insert(values);
        wake();
    }
};

// The tray reading the item: a GetAll of org.kde.StatusNotifierItem's properties and its answer,
// as dbus-monitor sees them, with its own time stamps.
class TrayReads : public QObject {
public:
    TrayReads()
    {
        m_monitor.setReadChannel(QProcess::StandardOutput);
        connect(&m_monitor, &QProcess::readyReadStandardOutput, this, &TrayReads::read);
        m_monitor.start(
            u"dbus-monitor"_s,
            { u"--session"_s, u"type='method_call',member='GetAll'"_s, u"type='method_return'"_s });
        if (!m_monitor.waitForStarted())
            fail(u"cannot run dbus-monitor"_s);
        // A call of our own that it must show, so that nothing after this goes unseen.
        for (int i = 0; i < 50 && !m_synced; ++i) {
            QDBusMessage sync = QDBusMessage::createMethodCall(
                u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s);
            sync << u"app.quennet.bench.sync"_s;
            QDBusConnection::sessionBus().asyncCall(sync);
            spinUntil([this] { return m_synced; }, 0.2);
        }
        if (!m_synced)
            fail(u"dbus-monitor shows nothing"_s);
    }
    ~TrayReads() override
    {
        m_monitor.kill();
        m_monitor.waitForFinished();
    }
    TrayReads(const TrayReads &) = delete;
    TrayReads &operator=(const TrayReads &) = delete;

    [[nodiscard]] double answered() const { return m_answered; }

private:
    void read()
    {
        static const QRegularExpression header(
            uR"(^(method call|method return) time=([0-9.]+) sender=(\S+) -> destination=(\S+) serial=(\d+)(?: reply_serial=(\d+))?)"_s);
        while (m_monitor.canReadLine()) {
            const QString line = QString::fromUtf8(m_monitor.readLine()).trimmed();
            const auto match = header.match(line);
            if (match.hasMatch()) {
                m_call.clear();
                if (match.captured(1) == "method call"_L1) {
                    m_call = match.captured(3) + u' ' + match.captured(5);
                } else if (m_answered == 0
                           && m_calls.contains(match.captured(4) + u' ' + match.captured(6))) {
                    m_answered = match.captured(2).toDouble();
                    wake();
                }
                continue;
            }
            if (line.contains("app.quennet.bench.sync"_L1))
                m_synced = true;
            else if (!m_call.isEmpty() && line == "string \"org.kde.StatusNotifierItem\""_L1)
                m_calls.insert(m_call);
            m_call.clear();
        }
    }

    QProcess m_monitor;
    QSet<QString> m_calls; // "SENDER SERIAL" of the tray's GetAll calls
    QString m_call; // the call whose first argument comes next
    double m_answered = 0;
    bool m_synced = false;
};

int start(double timeout, char **command)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool gnome = bus.interface()->isServiceRegistered(u"app.quennet.ShellTest"_s);
    if (!property(watcher, watcherPath, watcher, u"RegisteredStatusNotifierItems"_s)
             .toStringList()
             .isEmpty())
        fail(u"an item is registered already"_s);
    Listener listener;
    bus.connect(watcher, watcherPath, watcher, u"StatusNotifierItemRegistered"_s, &listener,
                SLOT(itemRegistered()));
    TrayReads reads;
    if (gnome && shellEval(gnomeHook) != "true"_L1)
        fail(u"GNOME Shell took no hook"_s);

    const double began = realNow();
    const pid_t pid = spawn(command);
    const bool ok =
        spinUntil([&] { return listener.registered > 0 && reads.answered() > 0; }, timeout);
    double shown = 0;
    if (ok && gnome) {
        spinUntil(
            [&] {
                shown = shellEval(u"globalThis.quennetBenchShown"_s).toDouble();
                if (shown == 0)
                    pause(0.05);
                return shown > 0;
            },
            timeout);
    }
    if (!ok || (gnome && shown == 0)) {
        std::printf("%d timeout\n", int(pid));
        return 1;
    }
    std::printf("%d %.4f %.4f %s\n", int(pid), listener.registered - began,
                reads.answered() - began,
                gnome ? qPrintable(QString::number(shown - began, 'f', 4)) : "-");
    return 0;
}

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

bool hasEntries(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return false;
    const auto list = qvariant_cast<QDBusArgument>(reply.arguments().first());
    list.beginArray();
    const bool any = !list.atEnd();
    return any;
}

int signIn(const QString &shopState, const QString &dataFolder, double timeout)
{
    const QString port = readText(shopState + u"/port"_s);
    const QByteArray secret = readText(shopState + u"/admin-secret"_s).toUtf8();
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(shopState + u"/ca.pem"_s));
    QNetworkAccessManager network;
    auto admin = [&](const QString &path, const QByteArray &body) {
        QNetworkRequest request(QUrl(u"https://127.0.0.1:%1/_devshop/%2"_s.arg(port, path)));
        request.setSslConfiguration(tls);
        request.setRawHeader("X-Devshop-Secret", secret);
        request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
        QNetworkReply *reply = body.isNull() ? network.get(request) : network.post(request, body);
        QObject::connect(reply, &QNetworkReply::finished, wake);
        spinUntil([reply] { return reply->isFinished(); }, 10);
        const bool ok = reply->isFinished() && reply->error() == QNetworkReply::NoError;
        reply->deleteLater();
        return ok;
    };
    // The connection to the shop is made before the clock runs, as a browser has it open.
    if (!admin(u"stats"_s, QByteArray()))
        fail(u"the shop's admin call failed"_s);

    Listener listener;
    QDBusConnection::sessionBus().connect(
        quennet, quennetPath, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
        &listener, SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    const QString cache = dataFolder + u"/shop-cache.json"_s;
    QDateTime cacheRead;
    bool libraryOnDisk = false;

    QElapsedTimer clock;
    clock.start();
    const QDBusMessage asked =
        call(quennet, quennetPath, u"app.quennet.Quennet.Session"_s, u"SignIn"_s);
    if (asked.type() != QDBusMessage::ReplyMessage)
        fail(u"SignIn: "_s + asked.errorMessage());
    if (!spinUntil([&] { return !listener.session.value(u"UserCode"_s).toString().isEmpty(); },
                   timeout))
        fail(u"no code was offered"_s);
    const double code = double(clock.nsecsElapsed()) / 1e9;
    const QJsonObject approval { { u"user_code"_s,
                                   listener.session.value(u"UserCode"_s).toString() } };
    if (!admin(u"approve"_s, QJsonDocument(approval).toJson(QJsonDocument::Compact)))
        fail(u"the shop did not approve the code"_s);
    double signedIn = 0;
    const bool loaded = spinUntil(
        [&] {
            if (signedIn == 0 && listener.session.value(u"State"_s) == "signedIn"_L1)
                signedIn = double(clock.nsecsElapsed()) / 1e9;
            if (!libraryOnDisk) {
                // The copy is read again only when it has changed.
                const QDateTime modified = QFileInfo(cache).lastModified();
                if (!modified.isValid() || modified == cacheRead)
                    return false;
                cacheRead = modified;
                QFile file(cache);
                libraryOnDisk = file.open(QIODevice::ReadOnly)
                    && QJsonDocument::fromJson(file.readAll())["library"_L1].isObject();
                if (!libraryOnDisk)
                    return false;
            }
            return hasEntries(call(quennet, quennetPath, u"app.quennet.Quennet.Automation"_s,
                                   u"FindWallpapers"_s, { QString() }));
        },
        timeout);
    if (!loaded)
        fail(u"the library did not load; the session is "_s
             + listener.session.value(u"State"_s).toString());
    const double library = double(clock.nsecsElapsed()) / 1e9;
    if (signedIn == 0)
        signedIn = library;
    std::printf("%.4f %.4f %.4f\n", code, signedIn, library);
    return 0;
}

int set(const QString &wallpaper, const QString &edition, double timeout)
{
    QElapsedTimer clock;
    clock.start();
    const QDBusMessage reply = call(quennet, quennetPath, u"app.quennet.Quennet.Automation"_s,
                                    u"SetWallpaper"_s, { wallpaper, edition }, int(timeout * 1000));
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    if (reply.type() != QDBusMessage::ReplyMessage)
        fail(u"SetWallpaper: "_s + reply.errorMessage());
    std::printf("%.4f\n", seconds);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const QCoreApplication app(argc, argv);
    const QString mode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (mode == "start"_L1 && argc > 3)
        return start(std::atof(argv[2]), argv + 3);
    if (mode == "sign-in"_L1 && argc == 5)
        return signIn(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                      std::atof(argv[4]));
    if (mode == "set"_L1 && argc == 5)
        return set(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                   std::atof(argv[4]));
    std::fprintf(stderr,
                 "usage: bench_shells_probe start TIMEOUT COMMAND...\n"
                 "       bench_shells_probe sign-in SHOP-STATE DATA-FOLDER TIMEOUT\n"
                 "       bench_shells_probe set WALLPAPER EDITION TIMEOUT\n");
    return 2;
}

#include "probe.moc"
