#include "await_task.h"
#include "clock.h"
#include "defaults.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "favourites.h"
#include "owned_pack.h"
#include "root_pixels.h"
#include "sample_store.h"
#include "shuffle.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"
#include "wallpaper_setter.h"
#include "x11_backend.h"

#include <QDateTime>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Under Xorg with two dummy monitors: a shuffle with a different wallpaper on each display, as a
// person sees it.
class ShuffleDisplaysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDifferentColourwayOnEachDisplay();
};

void ShuffleDisplaysTest::aDifferentColourwayOnEachDisplay()
{
    QTemporaryDir folder;
    const auto clock = std::make_shared<Clock>();
    Displays displays(new X11Backend(folder.filePath(u"desktop-x11.json"_s)),
                      PlacementRecords(folder.path()), clock);
    WallpaperSetter setter(&displays, Renderer(folder.filePath(u"Rendered"_s)), nullptr, clock);
    DesktopShuffleDisplays view(&displays, &setter);
    SampleStore store(&setter, { { u"aurora"_s, u"emerald"_s }, { u"dunes"_s, u"amber"_s } });
    Defaults defaults(folder.filePath(u"defaults.ini"_s));
    QVERIFY(defaults.setShuffleDifferentOnEachDisplay(true));
    Favourites favourites(&defaults);
    SleepWatcher sleep;
    Shuffle shuffle({ .store = &store,
                      .displays = &view,
                      .favourites = &favourites,
                      .defaults = &defaults,
                      .sleep = &sleep,
                      .clock = clock,
                      .random = QRandomGenerator::system() });
    shuffle.start();
    QCOMPARE(displays.all().size(), 2);

    awaitTask(shuffle.shuffleNow());

    QStringList colourways;
    QList<QColor> seen;
    for (const auto &display : displays.all()) {
        QVERIFY(displays.showsOwnWallpaper(display));
        const auto placement = displays.placement(display.id);
        colourways.append(placement->colourway);
        const QColor pixel =
            rootPixel(int(display.frame.center().x()), int(display.frame.center().y()));
        QVERIFY2(near(pixel, middleOf(placement->path)), qPrintable(pixel.name()));
        seen.append(pixel);
    }
    QCOMPARE(QSet<QString>(colourways.begin(), colourways.end()).size(), 2);
    QVERIFY(!near(seen[0], seen[1]));
    QCOMPARE(defaults.shufflePlayed().size(), 2);
}

QTEST_MAIN(ShuffleDisplaysTest)
#include "test_shuffle_displays.moc"
