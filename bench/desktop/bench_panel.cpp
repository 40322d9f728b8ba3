// The GUI thread's responsiveness with the panel open while a 500 MB wallpaper downloads: the
// application's own objects (AppDelegate, its QML engine, the panel), signed in to a development
// shop in a process of its own, and a 1 ms heartbeat on the main thread. The same heartbeat with
// the panel open and nothing downloading is the baseline.
//
//   bench_panel [RUNS]        under X with a tray; writes 500 MB into the current folder

#include "../devshop_process.h"
#include "app_delegate.h"
#include "shop.h"
#include "shop_content.h"
#include "status_item_controller.h"

#include <QApplication>
#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QQuickStyle>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QtQml/QQmlExtensionPlugin>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 largeBytes = 500'000'000;

// CPU seconds the calling thread has used.
double threadCpu()
{
    timespec time{};
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
    [[nodiscard]] double longestStall() const { return m_longest; }
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

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// An access token for the shop's sample account, through its admin call.
QString issueToken(const QString &state, quint16 port)
{
    QFile secret(state + u"/admin-secret"_s);
    if (!secret.open(QIODevice::ReadOnly))
        return {};
    QProcess curl;
    curl.start(u"curl"_s, {u"-s"_s, u"--cacert"_s, state + u"/ca.pem"_s, u"-H"_s,
                           u"X-Devshop-Secret: "_s + QString::fromLatin1(secret.readAll().trimmed()),
                           u"-d"_s, u""_s,
                           u"https://127.0.0.1:%1/_devshop/token"_s.arg(port)});
    curl.waitForFinished(-1);
    return QJsonDocument::fromJson(curl.readAllStandardOutput())
        .object()
        .value("access_token"_L1)
        .toString();
}
} // namespace

int main(int argc, char *argv[])
{
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 3;
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

    std::printf("Making 500 MB of content in %s\n", qPrintable(work.path()));
    const QString content = work.filePath(u"content"_s);
    const QString state = work.filePath(u"state"_s);
    const auto packs = writeContent(
        content, {{.slug = u"bench"_s,
                   .files = {{u"large"_s, u"light"_s, largeBytes}, {u"large"_s, u"dark"_s, 4096}}}});
    QProcess shop;
    const auto port = serveDevShop(shop, content, state);
    if (!port)
        qFatal("The development shop did not start");
    const QString token = issueToken(state, *port);
    if (token.isEmpty())
        qFatal("The development shop gave no token");
    const QString folder = data + u"/app.quennet.Quennet"_s;
    const QByteArray secrets = QJsonDocument(QJsonObject{{u"session-token"_s, token}}).toJson();
    const QByteArray defaults = u"[General]\nshopBaseURL=https://127.0.0.1:%1/api/app/v1\n"
                                "shopCertificates=%2/ca.pem\n"_s.arg(*port)
                                    .arg(state)
                                    .toUtf8();
    if (!writeFile(folder + u"/secrets.json"_s, secrets)
        || !QFile::setPermissions(folder + u"/secrets.json"_s,
                                  QFile::ReadOwner | QFile::WriteOwner)
        || !writeFile(config + u"/app.quennet.Quennet/defaults.ini"_s, defaults))
        qFatal("Cannot write the profile");

    AppDelegate delegate({.atLogin = true, .program = QApplication::applicationFilePath()});
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
    std::printf("\nPanel open, 500 MB download (%.1f s), 1 ms heartbeat on the GUI thread, median of "
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
