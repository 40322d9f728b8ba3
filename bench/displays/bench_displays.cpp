// Each beside its peer in the same run:
//  - setting a wallpaper whose rendering is already made, until the desktop shows it, against
//    xwallpaper drawing the same rendering by itself;
//  - the first set of a 6000x4000 picture until shown, against heif-convert to PNG and
//    xwallpaper of that PNG; the bytes of the rendering against the HEIC's; and the peak
//    resident memory of rendering it against heif-convert's, each in a process of its own.
// Run it under an X server with two monitors: tests/run-in-session xorg LOG bench_displays
#include "clock.h"
#include "displays.h"
#include "libheif_decoder.h"
#include "owned_pack.h"
#include "renderer.h"
#include "wallpaper_setter.h"
#include "x11_backend.h"

#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QScreen>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {
double median(QList<double> values)
{
    std::ranges::sort(values);
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

QColor shownAt(int x, int y)
{
    return QGuiApplication::primaryScreen()->grabWindow(0, x, y, 1, 1).toImage().pixelColor(0, 0);
}

// HEIC keeps colours as YCbCr: a pure red comes back as 254, 0, 0.
bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 8 && qAbs(a.green() - b.green()) < 8
        && qAbs(a.blue() - b.blue()) < 8;
}

// Milliseconds until the middle of the first monitor shows colour.
double untilShown(QElapsedTimer &timer, const QColor &colour)
{
    while (!near(shownAt(960, 540), colour)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        if (timer.elapsed() > 10000) {
            std::printf("never shown: %s instead of %s\n", qPrintable(shownAt(960, 540).name()),
                        qPrintable(colour.name()));
            return -1;
        }
    }
    return timer.nsecsElapsed() / 1e6;
}

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(600000) && process.exitCode() == 0;
}

// A plain picture in one colour, as a one-picture HEIC.
QString plainHeic(const QString &folder, const QString &name, QColor colour)
{
    QImage image(640, 400, QImage::Format_RGB32);
    image.fill(colour);
    const QString png = folder + u'/' + name + u".png"_s;
    const QString heic = folder + u'/' + name + u".heic"_s;
    image.save(png);
    return run(u"heif-enc"_s, { u"-L"_s, u"-o"_s, heic, png }) ? heic : QString();
}

const QColor largeMiddle(0xc0, 0x30, 0x60);

// A 6000x4000 picture with enough detail that the encoder and decoder have real work.
QString largeHeic(const QString &folder)
{
    const QString heic = folder + u"/large-6000x4000-centred.heic"_s;
    if (QFile::exists(heic))
        return heic;
    QImage image(6000, 4000, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 4000);
    sky.setColorAt(0, QColor(0x22, 0x55, 0x99));
    sky.setColorAt(1, QColor(0xee, 0xbb, 0x88));
    painter.fillRect(image.rect(), sky);
    QRandomGenerator random(7);
    for (int i = 0; i < 4000; ++i) {
        painter.setBrush(QColor::fromRgb(random.generate()));
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(random.bounded(6000), random.bounded(4000)), random.bounded(80),
                            random.bounded(80));
    }
    // A plain middle, so that both sides know when it shows whatever the scaling.
    painter.setBrush(largeMiddle);
    painter.drawEllipse(QPointF(3000, 2000), 900, 900);
    painter.end();
    const QString png = folder + u"/large.png"_s;
    image.save(png);
    return run(u"heif-enc"_s, { u"-q"_s, u"80"_s, u"-o"_s, heic, png }) ? heic : QString();
}

QCoro::Task<> setCached(int rounds)
{
    QTemporaryDir dir;
    auto *backend = new X11Backend(dir.filePath(u"desktop-x11.json"_s));
    const auto clock = std::make_shared<Clock>();
    Displays displays(backend, PlacementRecords(dir.path()), clock);
    const Renderer renderer(dir.filePath(u"Rendered"_s), std::make_shared<LibheifDecoder>());
    WallpaperSetter setter(&displays, renderer, nullptr, clock);
    const QStringList first { displays.ids().first() };

    const QList<std::pair<QString, QColor>> pictures {
        { plainHeic(dir.path(), u"red"_s, Qt::red), Qt::red },
        { plainHeic(dir.path(), u"blue"_s, Qt::blue), Qt::blue }
    };
    // Quennet always shows red over blue, the peer blue over red; the first two sets render.
    const auto set = [&](int which) -> QCoro::Task<double> {
        const QString path = pictures[which].first;
        const QColor colour = pictures[which].second;
        const WallpaperFile file { .id = u"f_"_s + colour.name().mid(1),
                                   .pack = u"p"_s,
                                   .colourway = u"c"_s,
                                   .edition = Edition::Light };
        QElapsedTimer timer;
        timer.start();
        co_await setter.setWallpaper(
            file, path, { .pack = u"p"_s, .colourway = u"c"_s, .edition = u"light"_s }, first);
        co_return untilShown(timer, colour);
    };
    co_await set(1);
    const QString blue = renderer.renderingPath(u"f_0000ff"_s, 0);
    co_await set(0);
    QList<double> quennet;
    QList<double> peer;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        run(u"xwallpaper"_s, { u"--output"_s, u"DUMMY0"_s, u"--zoom"_s, blue });
        peer.append(untilShown(timer, Qt::blue));
        quennet.append(co_await set(0));
    }
    std::printf("set a cached wallpaper until shown (%d rounds): Quennet %.1f ms, xwallpaper alone "
                "%.1f ms, "
                "ratio %.2fx; goal 100 ms\n",
                rounds, median(quennet), median(peer), median(quennet) / median(peer));
}

// A program's peak resident memory in KiB, 0 when it fails. Asked of a fresh process of this
// program (--peak): the kernel records a spawning process's own peak as its child's at the
// exec, so a child of this grown process would report this process's peak instead of its own.
long peakKiB(const QStringList &command)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), QStringList(u"--peak"_s) + command);
    if (!process.waitForFinished(600000) || process.exitCode() != 0)
        return 0;
    return process.readAllStandardOutput().trimmed().split('\n').last().toLong();
}

// --peak: runs argv to its end and prints its peak resident memory in KiB.
int reportPeak(char **argv)
{
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], nullptr, nullptr, argv, environ) != 0)
        return 1;
    int status = 0;
    rusage usage {};
    if (wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return 1;
    std::printf("\n%ld\n", usage.ru_maxrss);
    return 0;
}

// Shows plain blue on the first monitor, so that the next set is seen to change it.
void showBlue(const QString &folder)
{
    QImage picture(64, 40, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    const QString blue = folder + u"/blue.png"_s;
    picture.save(blue);
    run(u"xwallpaper"_s, { u"--output"_s, u"DUMMY0"_s, u"--zoom"_s, blue });
    QElapsedTimer timer;
    timer.start();
    untilShown(timer, Qt::blue);
}

QCoro::Task<> firstSet(const QString &cacheFolder, int rounds)
{
    QDir().mkpath(cacheFolder);
    const QString heic = largeHeic(cacheFolder);
    if (heic.isEmpty()) {
        std::printf("could not make the 6000x4000 picture\n");
        co_return;
    }
    QList<double> quennet;
    QList<double> peer;
    qint64 renderingBytes = 0;
    for (int round = 0; round < rounds; ++round) {
        QTemporaryDir dir;
        showBlue(dir.path());
        {
            auto *backend = new X11Backend(dir.filePath(u"desktop-x11.json"_s));
            const auto clock = std::make_shared<Clock>();
            Displays displays(backend, PlacementRecords(dir.path()), clock);
            WallpaperSetter setter(
                &displays,
                Renderer(dir.filePath(u"Rendered"_s), std::make_shared<LibheifDecoder>()), nullptr,
                clock);
            const WallpaperFile file { .id = u"f_large"_s, .edition = Edition::Light };
            // Named first: g++ 12 destroys a braced temporary inside a co_await twice.
            const Placement placement { .edition = u"light"_s };
            const QStringList first(displays.ids().first());
            QElapsedTimer timer;
            timer.start();
            co_await setter.setWallpaper(file, heic, placement, first);
            quennet.append(untilShown(timer, largeMiddle));
            const QStringList jpeg(u"*.jpg"_s);
            const QFileInfoList made = QDir(dir.filePath(u"Rendered"_s)).entryInfoList(jpeg);
            renderingBytes = made.value(0).size();
        }
        showBlue(dir.path());
        QElapsedTimer timer;
        timer.start();
        const QString png = dir.filePath(u"peer.png"_s);
        run(u"heif-convert"_s, { heic, png });
        run(u"xwallpaper"_s, { u"--output"_s, u"DUMMY0"_s, u"--zoom"_s, png });
        peer.append(untilShown(timer, largeMiddle));
    }
    std::printf("first set of 6000x4000 until shown (%d rounds): Quennet %.0f ms, heif-convert + "
                "xwallpaper %.0f ms, ratio %.2fx; goal 0.6x\n",
                rounds, median(quennet), median(peer), median(quennet) / median(peer));
    const qint64 heicBytes = QFileInfo(heic).size();
    std::printf("bytes of the rendering: %lld, of the HEIC %lld, ratio %.2fx; goal 1x\n",
                qint64(renderingBytes), heicBytes, double(renderingBytes) / double(heicBytes));
}

void peakMemory(const QString &heic, int rounds)
{
    QList<double> quennetPeak;
    QList<double> peerPeak;
    for (int round = 0; round < rounds; ++round) {
        QTemporaryDir dir;
        const long ours = peakKiB({ QCoreApplication::applicationFilePath(), u"--render"_s, heic,
                                    dir.filePath(u"Rendered"_s) });
        const long theirs = peakKiB({ u"heif-convert"_s, heic, dir.filePath(u"peer.png"_s) });
        if (ours == 0 || theirs == 0)
            std::printf("a rendering failed\n");
        quennetPeak.append(ours / 1024.0);
        peerPeak.append(theirs / 1024.0);
    }
    std::printf("peak RSS rendering 6000x4000 for 1920x1080 (%d rounds): Quennet %.1f MiB, "
                "heif-convert %.1f MiB, ratio %.2fx; goal 1.2x\n",
                rounds, median(quennetPeak), median(peerPeak),
                median(quennetPeak) / median(peerPeak));
}
} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc > 2 && qstrcmp(argv[1], "--peak") == 0)
        return reportPeak(argv + 2);
    // The process whose peak memory is measured: one rendering for a 1920x1080 display, and no
    // more than a command-line program would load.
    if (argc == 4 && qstrcmp(argv[1], "--render") == 0) {
        QCoreApplication app(argc, argv);
        const auto made =
            Renderer(QString::fromLocal8Bit(argv[3]), std::make_shared<LibheifDecoder>())
                .render(QString::fromLocal8Bit(argv[2]), u"f_large"_s, 0, QSize(1920, 1080));
        return made ? 0 : 1;
    }
    QGuiApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const QString cache = arguments.value(1, QDir::tempPath() + u"/quennet-bench"_s);
    QCoro::waitFor(setCached(arguments.value(2, u"20"_s).toInt()));
    QCoro::waitFor(firstSet(cache, 3));
    peakMemory(cache + u"/large-6000x4000-centred.heic"_s, 3);
    return 0;
}
