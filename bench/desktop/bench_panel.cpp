// The GUI thread's responsiveness with the panel open while a 500 MB wallpaper downloads: the
// application's own objects (AppDelegate, its QML engine, the panel), signed in to a development
// shop in a process of its own, and a 1 ms heartbeat on the main thread. The same heartbeat with
// the panel open and nothing downloading is the baseline.
//
// With --slow-desktop, the desktop is a sway that answers every request of its IPC socket only
// after 2 s (a stand-in on a thread of its own, as another process would be), and each run sets a
// picture on its outputs while the panel is open, timed the same way.
//
//   bench_panel [RUNS]                    under X with a tray; writes 500 MB into the current
//   folder bench_panel --slow-desktop [RUNS]     under X with a tray

#include "../devshop_process.h"
#include "app_delegate.h"
#include "displays.h"
#include "quick_views.h"
#include "shop.h"
#include "shop_content.h"
#include "status_item_controller.h"

#include <QApplication>
#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QQuickStyle>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QtEndian>
#include <QtQml/QQmlExtensionPlugin>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 largeBytes = 500'000'000;
constexpr int slowAnswerMs = 2000;

// CPU seconds the calling thread has used.
double threadCpu()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

// The main thread's pauses between 1 ms heartbeats, beyond the interval: the longest, and when
// the long ones (over 8 ms) came, in seconds from the start.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const double stall = double(m_since.nsecsElapsed()) / 1e6 - 1;
            m_longest = std::max(m_longest, stall);
            if (stall > 8)
                m_long.append(u"%1 ms at %2 s"_s.arg(stall, 0, 'f', 1)
                                  .arg(double(m_start.elapsed()) / 1000, 0, 'f', 2));
            m_since.restart();
        });
        m_start.start();
        m_since.start();
        m_timer.start();
    }
    // The pause still running counts too: a thread blocked to the end never ticks again.
    [[nodiscard]] double longestStall() const
    {
        return std::max(m_longest, double(m_since.nsecsElapsed()) / 1e6 - 1);
    }
    [[nodiscard]] QStringList longStalls() const { return m_long; }

private:
    QTimer m_timer;
    QElapsedTimer m_start;
    QElapsedTimer m_since;
    double m_longest = 0;
    QStringList m_long;
};

void spin(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitUntil(const std::function<bool()> &done, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > ms)
            return false;
        spin(20);
    }
    return true;
}

// sway's IPC socket, answering every message slowAnswerMs after it arrives: two outputs, success
// for every command and subscription. Lives on a thread of its own.
class SlowSway : public QLocalServer {
public:
    void answer(QLocalSocket *socket)
    {
        while (socket->bytesAvailable() >= 14) {
            const QByteArray header = socket->peek(14);
            const auto length = qFromLittleEndian<quint32>(header.constData() + 6);
            const auto type = qFromLittleEndian<quint32>(header.constData() + 10);
            if (socket->bytesAvailable() < 14 + qint64(length))
                return;
            socket->skip(14);
            const QByteArray payload = socket->read(length);
            QByteArray reply = R"({"success":true})";
            if (type == 3)
                reply = R"([{"name":"HEADLESS-1","make":"headless","active":true,"focused":true,
                             "rect":{"x":0,"y":0,"width":1920,"height":1080}},
                            {"name":"HEADLESS-2","make":"headless","active":true,
                             "rect":{"x":1920,"y":0,"width":1920,"height":1080}}])";
            else if (type == 0)
                reply = "[" + QByteArray(R"({"success":true},)").repeated(int(payload.count(';')))
                    + R"({"success":true}])";
            QByteArray message = header;
            qToLittleEndian<quint32>(quint32(reply.size()), message.data() + 6);
            message += reply;
            QTimer::singleShot(slowAnswerMs, socket, [socket, message] { socket->write(message); });
        }
    }
};

// An access token for the shop's sample account, through its admin call.
QString issueToken(const QString &state, quint16 port)
{
    QFile secret(state + u"/admin-secret"_s);
    if (!secret.open(QIODevice::ReadOnly))
        return {};
    QProcess curl;
    curl.start(u"curl"_s,
               { u"-s"_s, u"--cacert"_s, state + u"/ca.pem"_s, u"-H"_s,
                 u"X-Devshop-Secret: "_s + QString::fromLatin1(secret.readAll().trimmed()), u"-d"_s,
                 u""_s, u"https://127.0.0.1:%1/_devshop/token"_s.arg(port) });
    curl.waitForFinished(-1);
    return QJsonDocument::fromJson(curl.readAllStandardOutput())
        .object()
        .value("access_token"_L1)
        .toString();
}
// Runs a task to its end in a nested event loop; its failure as a sentence.
QString finish(QCoro::Task<> task)
{
    QString failure;
    QCoro::waitFor([](QCoro::Task<> task, QString *failure) -> QCoro::Task<> {
        try {
            co_await std::move(task);
        } catch (const std::exception &error) {
            *failure = QString::fromUtf8(error.what());
        } catch (...) {
            *failure = u"failed"_s;
        }
    }(std::move(task), &failure));
    return failure;
}

// Sets a picture on every display of the slow sway, RUNS times, with the panel open.
int setOnSlowDesktop(AppDelegate &delegate, const QString &folder, int runs)
{
    Displays *displays = delegate.displays();
    if (!waitUntil([displays] { return displays->all().size() == 2; }, 4 * slowAnswerMs + 10'000))
        qFatal("The displays did not come from the stand-in sway");
    QStringList ids;
    for (const auto &display : displays->all())
        ids.append(display.id);
    QStringList pictures;
    for (const auto colour : { Qt::darkCyan, Qt::darkMagenta }) {
        QImage image(64, 36, QImage::Format_RGB32);
        image.fill(colour);
        pictures.append(folder + u"/picture-%1.png"_s.arg(pictures.size()));
        image.save(pictures.last());
    }
    QList<double> busy, idle, seconds, cpu;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer wall;
        double stall = 0;
        QStringList stalls;
        {
            Heartbeat heartbeat;
            const double cpuBefore = threadCpu();
            wall.start();
            const QString failure = finish(displays->restore(ids, pictures[i % 2]));
            if (!failure.isEmpty())
                qFatal("The set failed: %s", qPrintable(failure));
            stall = heartbeat.longestStall();
            stalls = heartbeat.longStalls();
            cpu.append(threadCpu() - cpuBefore);
        }
        seconds.append(double(wall.elapsed()) / 1000);
        busy.append(stall);
        Heartbeat heartbeat;
        spin(int(wall.elapsed()));
        idle.append(heartbeat.longestStall());
        std::printf("  run %d: set in %.2f s (GUI thread busy %.3f s of it), longest stall %.2f ms "
                    "setting, %.2f ms idle\n",
                    i + 1, seconds.last(), cpu.last(), busy.last(), idle.last());
        if (!stalls.isEmpty())
            std::printf("    over 8 ms while setting: %s\n", qPrintable(stalls.join(u", "_s)));
    }
    std::printf(
        "\nPanel open, a picture set on a sway that answers after %d ms (%.2f s), 1 ms heartbeat "
        "on the GUI thread, median of %d\n",
        slowAnswerMs, median(seconds), runs);
    std::printf("  longest stall    %6.2f ms setting, %6.2f ms idle (goal: 16 ms)\n", median(busy),
                median(idle));
    std::printf("RESULT slow-desktop-stall %.3f\n", median(busy));
    return 0;
}
} // namespace

int main(int argc, char *argv[])
{
    const bool slowDesktop = argc > 1 && std::strcmp(argv[1], "--slow-desktop") == 0;
    const int runsArgument = slowDesktop ? 2 : 1;
    const int runs = argc > runsArgument ? std::max(1, atoi(argv[runsArgument])) : 3;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

    // The application's folders are a throwaway profile, set before anything reads them.
    QTemporaryDir work(QDir::currentPath() + u"/bench-panel-XXXXXX"_s);
    const QString config = work.filePath(u"config"_s);
    const QString data = work.filePath(u"data"_s);
    qputenv("XDG_CONFIG_HOME", config.toLocal8Bit());
    qputenv("XDG_DATA_HOME", data.toLocal8Bit());
    qputenv("XDG_CACHE_HOME", work.filePath(u"cache"_s).toLocal8Bit());

    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Quennet"_s);
    QApplication::setDesktopFileName(u"app.quennet.Quennet"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    QQuickStyle::setStyle(u"Fusion"_s);

    QThread swayThread;
    if (slowDesktop) {
        auto *sway = new SlowSway;
        sway->moveToThread(&swayThread);
        QObject::connect(&swayThread, &QThread::finished, sway, &QObject::deleteLater);
        swayThread.start();
        const QString socket = work.filePath(u"sway-ipc.sock"_s);
        bool listening = false;
        QMetaObject::invokeMethod(
            sway,
            [sway, socket, &listening] {
                listening = sway->listen(socket);
                QObject::connect(sway, &QLocalServer::newConnection, sway, [sway] {
                    while (QLocalSocket *connection = sway->nextPendingConnection())
                        QObject::connect(connection, &QLocalSocket::readyRead, sway,
                                         [sway, connection] { sway->answer(connection); });
                });
            },
            Qt::BlockingQueuedConnection);
        if (!listening)
            qFatal("The stand-in sway cannot listen");
        qputenv("SWAYSOCK", socket.toLocal8Bit());
    }

    const qint64 size = slowDesktop ? 4096 : largeBytes;
    std::printf("Making %lld bytes of content in %s\n", size, qPrintable(work.path()));
    const QString content = work.filePath(u"content"_s);
    const QString state = work.filePath(u"state"_s);
    const auto packs = writeContent(
        content,
        { { .slug = u"bench"_s,
            .files = { { u"large"_s, u"light"_s, size }, { u"large"_s, u"dark"_s, 4096 } } } });
    QProcess shop;
    const auto port = serveDevShop(shop, content, state);
    if (!port)
        qFatal("The development shop did not start");
    const QString token = issueToken(state, *port);
    if (token.isEmpty())
        qFatal("The development shop gave no token");
    const QString folder = data + u"/app.quennet.Quennet"_s;
    const QByteArray secrets =
        QJsonDocument(QJsonObject { { u"session-token"_s, token } }).toJson();
    const QByteArray defaults = u"[General]\nshopBaseURL=https://127.0.0.1:%1/api/app/v1\n"
                                "shopCertificates=%2/ca.pem\n"_s.arg(*port)
                                    .arg(state)
                                    .toUtf8();
    if (!writeFile(folder + u"/secrets.json"_s, secrets)
        || !QFile::setPermissions(folder + u"/secrets.json"_s, QFile::ReadOwner | QFile::WriteOwner)
        || !writeFile(config + u"/app.quennet.Quennet/defaults.ini"_s, defaults))
        qFatal("Cannot write the profile");

    AppDelegate delegate({ .atLogin = true,
                           .program = QApplication::applicationFilePath(),
                           .makeViews = [] { return std::make_unique<QuickViews>(); } });
    delegate.start();
    Shop *store = delegate.shop();
    const auto file = [store] {
        return store->owned().value(u"bench"_s).file(u"large"_s, Edition::Light);
    };
    if (!waitUntil([&] { return store->status() == Shop::Status::Ready && file(); }, 60'000))
        qFatal("The store did not load the library");
    delegate.statusItem()->showPanel();
    spin(1000);
    if (!delegate.statusItem()->isShown())
        qFatal("The panel did not open");
    if (slowDesktop) {
        const int result = setOnSlowDesktop(delegate, work.path(), runs);
        delegate.statusItem()->closePanel();
        shop.terminate();
        shop.waitForFinished();
        swayThread.quit();
        swayThread.wait();
        return result;
    }

    QList<double> busy, idle, seconds, cpu;
    for (int i = 0; i < runs; ++i) {
        QCoro::waitFor(store->removeDownloads());
        QElapsedTimer wall;
        double stall = 0;
        QStringList stalls;
        {
            Heartbeat heartbeat;
            const double cpuBefore = threadCpu();
            wall.start();
            try {
                QCoro::waitFor(store->localFile(*file()));
            } catch (const std::exception &error) {
                qFatal("The download failed: %s", error.what());
            }
            stall = heartbeat.longestStall();
            stalls = heartbeat.longStalls();
            cpu.append(threadCpu() - cpuBefore);
        }
        seconds.append(double(wall.elapsed()) / 1000);
        busy.append(stall);
        Heartbeat heartbeat;
        spin(int(wall.elapsed()));
        idle.append(heartbeat.longestStall());
        std::printf("  run %d: %.1f s (GUI thread busy %.2f s of it), longest stall %.2f ms "
                    "downloading, %.2f ms idle\n",
                    i + 1, seconds.last(), cpu.last(), busy.last(), idle.last());
        if (!stalls.isEmpty())
            std::printf("    over 8 ms while downloading: %s\n", qPrintable(stalls.join(u", "_s)));
    }
    std::printf(
        "\nPanel open, 500 MB download (%.1f s), 1 ms heartbeat on the GUI thread, median of "
        "%d\n",
        median(seconds), runs);
    std::printf("  longest stall    %6.2f ms downloading, %6.2f ms idle (goal: 16 ms)\n",
                median(busy), median(idle));
    std::printf("  GUI thread CPU   %6.2f s while downloading\n", median(cpu));
    std::printf("RESULT stall %.3f\n", median(busy));

    delegate.statusItem()->closePanel();
    shop.terminate();
    shop.waitForFinished();
    return 0;
}
