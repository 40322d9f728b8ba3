#include "await_task.h"
#include "displays.h"
#include "fake_desktop.h"
#include "owned_pack.h"
#include "wallpaper_setter.h"

#include <QTemporaryDir>
#include <QTest>

#include <ctime>

using namespace Qt::Literals::StringLiterals;

// A time-of-day wallpaper on a desktop that cannot follow it by itself.
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
        desktop.shownScreens = { { .connector = u"DP-1"_s, .geometry = QRect(0, 0, 1920, 1080) } };
        const auto clock = std::make_shared<FakeClock>();
        clock->allowed = 0;
        Displays displays(&desktop, PlacementRecords(m_dir.path()), clock);
        const Renderer renderer(m_dir.filePath(u"Rendered"_s));
        auto setter = std::make_unique<WallpaperSetter>(&displays, renderer, nullptr, clock);

        const WallpaperFile file { .id = u"f_td"_s, .pack = u"aurora"_s, .colourway = u"emerald"_s,
                                   .edition = Edition::TimeOfDay };
        const Placement placement { .pack = u"aurora"_s, .colourway = u"emerald"_s, .edition = u"time-of-day"_s,
                                    .setAt = 42 };
        awaitTask(setter->setWallpaper(file, QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/emerald-time-of-day.heic"),
                                       placement, setter->displayIds()));
        QCOMPARE(desktop.requests.size(), 1);
        QCOMPARE(desktop.requests[0].first.path, renderer.renderingPath(u"f_td"_s, 0));

        // The settle loop's one look, then the wait for 18:00.
        clock->allowed = 2;
        QTRY_COMPARE(desktop.requests.size(), 2);
        QCOMPARE(clock->time.time().hour(), 18);
        QCOMPARE(desktop.requests[1].first.path, renderer.renderingPath(u"f_td"_s, 2));
        const auto now = displays.placement(setter->displayIds().constFirst());
        QCOMPARE(now->path, renderer.renderingPath(u"f_td"_s, 2));
        QCOMPARE(now->setAt, 42); // the same placement, showing its next picture
        QVERIFY(setter->isShown(QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/emerald-time-of-day.heic")));
        setter.reset();
        clock->allowed = 100;
        QTest::qWait(20);
        QCOMPARE(desktop.requests.size(), 2);
    }
};

QTEST_GUILESS_MAIN(WallpaperSetterTest)
#include "test_wallpaper_setter.moc"
