#include "await_task.h"
#include "displays.h"
#include "fake_desktop.h"
#include "owned_pack.h"
#include "wallpaper_setter.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>

using namespace Qt::Literals::StringLiterals;

// A time-of-day wallpaper on a desktop that cannot follow it by itself, set and put back.
class WallpaperSetterTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("TZ", "UTC");
        tzset();
    }

    // The sample's pictures: Day 0, Dawn 1, Dusk 2, Night 3; it changes at 06:00, 09:00, 18:00
    // and 21:00.
    void switchesAtThePhaseTime()
    {
        FakeDesktop desktop;
        desktop.shownScreens = { { .connector = u"DP-1"_s, .geometry = QRect(0, 0, 1920, 1080) },
                                 { .connector = u"DP-2"_s, .geometry = QRect(1920, 0, 1920, 1080) } };
        const auto clock = std::make_shared<FakeClock>();
        clock->allowed = 0;
        Displays displays(&desktop, PlacementRecords(m_dir.path()), clock);
        const Renderer renderer(m_dir.filePath(u"Rendered"_s));
        auto setter = std::make_unique<WallpaperSetter>(&displays, renderer, nullptr, clock);
        const auto rendering = [&](int index) { return renderer.renderingPath(u"f_td"_s, index); };
        const auto onFirst = [&](int index) -> QString { return rendering(index) + u" on DP-1"_s; };
        const auto last = [&]() -> QString {
            return desktop.requests.last().first.path + u" on "_s + desktop.requests.last().second.join(u' ');
        };

        const QString source = m_dir.filePath(u"f_td.heic"_s);
        QVERIFY(QFile::copy(QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/emerald-time-of-day.heic"), source));
        const WallpaperFile file { .id = u"f_td"_s, .pack = u"aurora"_s, .colourway = u"emerald"_s,
                                   .edition = Edition::TimeOfDay };
        const Placement placement { .pack = u"aurora"_s, .colourway = u"emerald"_s, .edition = u"time-of-day"_s,
                                    .setAt = 42 };
        const QStringList ids = setter->displayIds();
        awaitTask(setter->setWallpaper(file, source, placement, { ids[0] }));
        QCOMPARE(last(), onFirst(0));
        // A wallpaper without phases on the other display leaves the wait for 18:00 be.
        const QString violet = QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/violet-light.heic");
        const WallpaperFile light { .id = u"f_vl"_s, .edition = Edition::Light };
        const Placement lightPlacement { .edition = u"light"_s };
        awaitTask(setter->setWallpaper(light, violet, lightPlacement, { ids[1] }));

        // The settle loop's one look, then the wait for 18:00.
        clock->allowed = 2;
        QTRY_COMPARE(desktop.requests.size(), 3);
        QCOMPARE(clock->time.time().hour(), 18);
        QCOMPARE(last(), onFirst(2));
        const auto recorded = displays.placement(ids[0]);
        QCOMPARE(recorded->path, rendering(2));
        QCOMPARE(recorded->setAt, 42); // the same placement, showing its next picture
        QVERIFY(setter->isShown(source));

        // Another wallpaper over both displays until after 21:00, as Do Not Disturb puts one. Put
        // back as recorded, the display shows the picture due now, not the one the record names,
        // and goes on following.
        awaitTask(setter->setWallpaper(light, violet, lightPlacement, ids));
        clock->allowed = 2;
        QTRY_COMPARE(clock->time.time().hour(), 21);
        QVERIFY(setter->canRestore(recorded->path, recorded));
        awaitTask(setter->restore({ ids[0] }, recorded->path, recorded));
        QCOMPARE(last(), onFirst(3));
        clock->allowed = 2;
        QTRY_COMPARE(last(), onFirst(1));
        QCOMPARE(clock->time.time().hour(), 6);

        // Without its wallpaper file it cannot be made again; a picture of its own needs only itself.
        QVERIFY(QFile::remove(source));
        QVERIFY(!setter->canRestore(recorded->path, recorded));
        QVERIFY(setter->canRestore(recorded->path, std::nullopt));
        const auto made = desktop.requests.size();
        setter.reset();
        clock->allowed = 100;
        QTest::qWait(20);
        QCOMPARE(desktop.requests.size(), made);
    }
};

QTEST_GUILESS_MAIN(WallpaperSetterTest)
#include "test_wallpaper_setter.moc"
