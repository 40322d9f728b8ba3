// The file fetcher against its peers, side by side in one run, over the development shop in a
// process of its own:
//   - a 200 MiB download and verification against `curl -o FILE` and `openssl dgst -sha256 FILE`
//     (wall time and CPU per GB);
//   - the longest stall of the main thread's event loop while 500 MB download, against the same
//     heartbeat with nothing downloading;
//   - the growth of the resident set while they download, against curl's whole resident set.
//
//   bench_downloads [RUNS]

#include "../devshop_process.h"
#include "download_thread.h"
#include "file_fetcher.h"
#include "shop_content.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 MiB = 1024 * 1024;

double cpuSeconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

qint64 residentKiB()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

struct Run {
    double wall = 0; // s
    double cpu = 0; // s
};

// What the main thread saw while something ran: its longest pause between heartbeats, and how
// far the resident set grew.
struct Watch {
    double longestStall = 0; // ms beyond the heartbeat's interval
    qint64 residentGrowth = 0; // KiB
};

class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_watch.longestStall = std::max(m_watch.longestStall, m_since.nsecsElapsed() / 1e6 - 1);
            m_watch.residentGrowth = std::max(m_watch.residentGrowth, residentKiB() - m_resident);
            m_since.restart();
        });
        m_resident = residentKiB();
        m_since.start();
        m_timer.start();
    }
    [[nodiscard]] Watch watch() const { return m_watch; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_resident = 0;
    Watch m_watch;
};

// Deleting a large file takes the file system a while: done before anything is measured.
void clear(const QString &folder)
{
    QFile::remove(folder + u"/fetched"_s);
    QFile::remove(folder + u"/curled"_s);
}

Run fetch(DownloadThread &thread, const QUrl &url, const ContentFile &file, const QString &folder)
{
    const FileFetcher::Target target { .destination = folder + u"/fetched"_s,
                                       .partial = folder + u"/fetched.partial"_s,
                                       .size = file.bytes,
                                       .sha256 = file.sha256 };
    QElapsedTimer wall;
    const double cpu = cpuSeconds(RUSAGE_SELF);
    wall.start();
    QCoro::waitFor(FileFetcher(&thread).fetch(url, target));
    return { wall.nsecsElapsed() / 1e9, cpuSeconds(RUSAGE_SELF) - cpu };
}

Run curlAndOpenssl(const QString &ca, const QUrl &url, const ContentFile &file,
                   const QString &folder)
{
    const QString output = folder + u"/curled"_s;
    QElapsedTimer wall;
    const double cpu = cpuSeconds(RUSAGE_CHILDREN);
    wall.start();
    QProcess::execute(u"curl"_s, { u"-s"_s, u"--cacert"_s, ca, u"-o"_s, output, url.toString() });
    QProcess openssl;
    openssl.start(u"openssl"_s, { u"dgst"_s, u"-sha256"_s, output });
    openssl.waitForFinished(-1);
    const Run run { wall.nsecsElapsed() / 1e9, cpuSeconds(RUSAGE_CHILDREN) - cpu };
    if (!openssl.readAllStandardOutput().trimmed().endsWith(file.sha256.toLatin1()))
        qFatal("curl's copy differs");
    return run;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 5;

    QTemporaryDir work(QDir::currentPath() + u"/bench-downloads-XXXXXX"_s);
    std::printf("Making 200 MiB and 500 MB of content in %s\n", qPrintable(work.path()));
    const auto packs = writeContent(work.filePath(u"content"_s),
                                    { { .slug = u"bench"_s,
                                        .free = true,
                                        .files = { { u"two"_s, u"light"_s, 200 * MiB },
                                                   { u"five"_s, u"dark"_s, 500'000'000 } } } });
    const ContentFile small = packs[0].files[0];
    const ContentFile large = packs[0].files[1];
    QProcess shop;
    const auto port = serveDevShop(shop, work.filePath(u"content"_s), work.filePath(u"state"_s));
    if (!port)
        qFatal("The development shop did not start");
    const QString ca = work.filePath(u"state/ca.pem"_s);
    const auto url = [&](const ContentFile &file) {
        return QUrl(u"https://127.0.0.1:%1/public/%2"_s.arg(*port).arg(file.id));
    };
    DownloadThread thread(ca, QUrl(u"https://127.0.0.1"_s));
    const QString folder = work.filePath(u"out"_s);
    QDir().mkpath(folder);

    // The first download also loads the TLS code and makes the network manager: its memory is
    // reported apart, and it warms the page cache for both sides.
    Watch first;
    {
        Heartbeat heartbeat;
        fetch(thread, url(small), small, folder);
        first = heartbeat.watch();
    }
    curlAndOpenssl(ca, url(small), small, folder);

    QList<double> oursWall, oursCpu, peerWall, peerCpu;
    for (int i = 0; i < runs; ++i) {
        clear(folder);
        const Run ours = fetch(thread, url(small), small, folder);
        const Run peer = curlAndOpenssl(ca, url(small), small, folder);
        oursWall.append(ours.wall);
        oursCpu.append(ours.cpu);
        peerWall.append(peer.wall);
        peerCpu.append(peer.cpu);
    }
    const double gigabytes = double(small.bytes) / 1e9;
    std::printf("\n200 MiB download and verify, median of %d\n", runs);
    std::printf("  Quennet          %6.2f s wall  %6.2f s CPU per GB\n", median(oursWall),
                median(oursCpu) / gigabytes);
    std::printf("  curl + openssl   %6.2f s wall  %6.2f s CPU per GB\n", median(peerWall),
                median(peerCpu) / gigabytes);
    std::printf("  ratio            %6.2fx wall   %6.2fx CPU\n",
                median(oursWall) / median(peerWall), median(oursCpu) / median(peerCpu));

    QList<double> stalls, idleStalls, growths;
    for (int i = 0; i < runs; ++i) {
        Watch busy;
        double seconds = 0;
        clear(folder);
        {
            Heartbeat heartbeat;
            seconds = fetch(thread, url(large), large, folder).wall;
            busy = heartbeat.watch();
        }
        Watch idle;
        {
            Heartbeat heartbeat;
            QEventLoop loop;
            QTimer::singleShot(int(seconds * 1000), &loop, &QEventLoop::quit);
            loop.exec();
            idle = heartbeat.watch();
        }
        stalls.append(busy.longestStall);
        idleStalls.append(idle.longestStall);
        growths.append(double(busy.residentGrowth) / 1024);
    }
    std::printf("\n500 MB download, main thread with a 1 ms heartbeat, median of %d\n", runs);
    std::printf("  longest stall    %6.2f ms downloading, %6.2f ms idle (goal: 16 ms)\n",
                median(stalls), median(idleStalls));
    std::printf("  resident growth  %6.2f MiB (goal: 8 MiB); the first download of the process: "
                "%.2f MiB\n",
                median(growths), double(first.residentGrowth) / 1024);

    rusage children {};
    getrusage(RUSAGE_CHILDREN, &children);
    std::printf("  curl and openssl: largest resident set %.1f MiB\n",
                double(children.ru_maxrss) / 1024);

    shop.terminate();
    shop.waitForFinished();
    return 0;
}
