#include "await_task.h"
#include "clock.h"
#include "displays.h"
#include "gnome_backend.h"
#include "heic_file.h"
#include "owned_pack.h"
#include "root_pixels.h"
#include "sample_store.h"
#include "wallpaper_setter.h"
#include "x11_backend.h"

#include <QDateTime>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
QString sample(const QString &name)
{
    return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/") + name;
}

WallpaperFile fileOf(const QString &id, const QString &pack, const QString &colourway,
                     Edition edition)
{
    return { .id = id, .pack = pack, .colourway = colourway, .edition = edition };
}

Placement placementOf(const WallpaperFile &file)
{
    return { .pack = file.pack,
             .colourway = file.colourway,
             .edition = rawValue(file.edition),
             .setAt = QDateTime::currentMSecsSinceEpoch() };
}

// Quennet's objects over one desktop, as the application builds them.
struct Session {
    Session(DesktopBackend *backend, const QString &folder)
        : backend(backend)
        , displays(backend, PlacementRecords(folder), clock)
        , setter(&displays, Renderer(folder + u"/Rendered"_s), nullptr, clock)
    {
    }

    std::shared_ptr<Clock> clock = std::make_shared<Clock>();
    std::unique_ptr<DesktopBackend> backend;
    Displays displays;
    WallpaperSetter setter;
};
} // namespace

// Under Xorg with two dummy monitors and dconf on a private bus: what a person sees.
class TwoDisplaysTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    const WallpaperFile m_emerald = fileOf(u"f_e1"_s, u"aurora"_s, u"emerald"_s, Edition::Light);
    const WallpaperFile m_amber = fileOf(u"f_a2"_s, u"dunes"_s, u"amber"_s, Edition::Dark);

    std::unique_ptr<Session> x11()
    {
        return std::make_unique<Session>(new X11Backend(m_dir.filePath(u"desktop-x11.json"_s)),
                                         m_dir.path());
    }

    static bool xrandr(const QStringList &arguments)
    {
        return QProcess::execute(u"xrandr"_s, arguments) == 0;
    }

private Q_SLOTS:
    void oneColourwayOnEachDisplay()
    {
        const auto session = x11();
        const QStringList ids = session->displays.ids();
        QCOMPARE(ids.size(), 2);
        awaitTask(session->setter.setWallpaper(m_emerald, sample(u"aurora/emerald-light.heic"_s),
                                               placementOf(m_emerald), { ids[0] }));
        awaitTask(session->setter.setWallpaper(m_amber, sample(u"dunes/amber-dark.heic"_s),
                                               placementOf(m_amber), { ids[1] }));

        const QColor left = rootPixel(960, 540);
        const QColor right = rootPixel(1920 + 960, 540);
        QVERIFY2(near(left, middleOf(session->displays.placement(ids[0])->path)),
                 qPrintable(left.name()));
        QVERIFY2(near(right, middleOf(session->displays.placement(ids[1])->path)),
                 qPrintable(right.name()));
        QVERIFY(!near(left, right));
        for (const auto &display : session->displays.all())
            QVERIFY(session->displays.showsOwnWallpaper(display));
        QVERIFY(session->setter.isShown(sample(u"aurora/emerald-light.heic"_s)));
        QVERIFY(!session->setter.isShown(sample(u"aurora/emerald-dark.heic"_s)));
    }

    void bothRecordsOutliveARestart()
    {
        const auto session = x11();
        const QStringList ids = session->displays.ids();
        QCOMPARE(session->displays.placement(ids[0])->colourway, u"emerald"_s);
        QCOMPARE(session->displays.placement(ids[1])->colourway, u"amber"_s);
        QCOMPARE(session->displays.placement(ids[1])->edition, u"dark"_s);
        for (const auto &display : session->displays.all())
            QVERIFY(session->displays.showsOwnWallpaper(display));
    }

    void monitorOffAndOnKeepsItsPlacement()
    {
        const auto session = x11();
        const QString second = session->displays.ids().value(1);
        QVERIFY(xrandr({ u"--output"_s, u"DUMMY1"_s, u"--off"_s }));
        QTRY_COMPARE(session->displays.all().size(), 1);
        QVERIFY(xrandr({ u"--output"_s, u"DUMMY1"_s, u"--mode"_s, u"1920x1080"_s, u"--right-of"_s,
                         u"DUMMY0"_s }));
        QTRY_COMPARE(session->displays.all().size(), 2);
        QTRY_COMPARE(session->displays.all()[1].frame, QRectF(1920, 0, 1920, 1080));
        QCOMPARE(session->displays.all()[1].id, second);
        QCOMPARE(session->displays.placement(second)->colourway, u"amber"_s);
        QVERIFY(session->displays.showsOwnWallpaper(session->displays.all()[1]));
    }

    void appearanceEditionOnGnome()
    {
        const QString folder = m_dir.filePath(u"gnome"_s);
        Session session(new GnomeBackend(GnomeBackend::Family::Gnome, folder + u"/Rendered"_s),
                        folder);
        const WallpaperFile file = fileOf(u"f_ap"_s, u"aurora"_s, u"violet"_s, Edition::Automatic);
        const QString source = sample(u"aurora/violet-appearance.heic"_s);
        awaitTask(session.setter.setWallpaper(file, source, placementOf(file),
                                              session.displays.ids()));

        const QString light = QUrl(gsettings(u"picture-uri"_s)).toLocalFile();
        const QString dark = QUrl(gsettings(u"picture-uri-dark"_s)).toLocalFile();
        QCOMPARE(gsettings(u"picture-options"_s), u"zoom"_s);
        const auto heic = HeicFile::open(source);
        QCOMPARE(QImage(light).convertToFormat(QImage::Format_RGB32),
                 heic->picture(0).convertToFormat(QImage::Format_RGB32));
        QCOMPARE(QImage(dark).convertToFormat(QImage::Format_RGB32),
                 heic->picture(1).convertToFormat(QImage::Format_RGB32));
        const QString id = session.displays.ids().first();
        QCOMPARE(session.displays.placement(id)->path, light);
        QVERIFY(session.displays.showsOwnWallpaper(session.displays.all().first()));

        // Time of day: a slideshow that GNOME follows by itself.
        const WallpaperFile timed = fileOf(u"f_td"_s, u"aurora"_s, u"violet"_s, Edition::TimeOfDay);
        awaitTask(session.setter.setWallpaper(timed, sample(u"aurora/violet-time-of-day.heic"_s),
                                              placementOf(timed), session.displays.ids()));
        const QString slideshow = QUrl(gsettings(u"picture-uri"_s)).toLocalFile();
        QVERIFY(slideshow.endsWith(u".xml"_s));
        QFile xml(slideshow);
        QVERIFY(xml.open(QIODevice::ReadOnly));
        QCOMPARE(xml.readAll().count("<file>"),
                 5); // four phases, and the night again from midnight
        QVERIFY(session.setter.isShown(sample(u"aurora/violet-time-of-day.heic"_s)));
    }
};

QTEST_MAIN(TwoDisplaysTest)
#include "test_two_displays.moc"
