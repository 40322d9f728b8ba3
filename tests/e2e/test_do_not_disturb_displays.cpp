#include "await_task.h"
#include "clock.h"
#include "defaults.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "favourites.h"
#include "focus_filter.h"
#include "gsettings_do_not_disturb.h"
#include "owned_pack.h"
#include "root_pixels.h"
#include "sample_store.h"
#include "shuffle.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"
#include "wallpaper_setter.h"
#include "x11_backend.h"

#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool setBanners(bool shown)
{
    return QProcess::execute(u"gsettings"_s, { u"set"_s, u"org.gnome.desktop.notifications"_s,
                                               u"show-banners"_s, shown ? u"true"_s : u"false"_s })
        == 0;
}
} // namespace

// Under Xorg with two dummy monitors and the GNOME notification keys in dconf: Do Not Disturb
// puts its wallpaper on both displays and gives each display back what it showed, as a person
// sees it.
class DoNotDisturbDisplaysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wallpaperComesAndGoesWithDoNotDisturb();
};

void DoNotDisturbDisplaysTest::wallpaperComesAndGoesWithDoNotDisturb()
{
    QVERIFY(GSettingsDoNotDisturb::isAvailable(GSettingsDoNotDisturb::Family::Gnome));
    QVERIFY(setBanners(true));
    QTemporaryDir folder;
    const auto clock = std::make_shared<Clock>();
    Displays displays(new X11Backend(folder.filePath(u"desktop-x11.json"_s)),
                      PlacementRecords(folder.path()), clock);
    WallpaperSetter setter(&displays, Renderer(folder.filePath(u"Rendered"_s)), nullptr, clock);
    DesktopShuffleDisplays view(&displays);
    SampleStore store(&setter, { { u"aurora"_s, u"emerald"_s }, { u"dunes"_s, u"amber"_s }, { u"aurora"_s, u"violet"_s } });
    Defaults defaults(folder.filePath(u"defaults.ini"_s));
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
    GSettingsDoNotDisturb watcher(GSettingsDoNotDisturb::Family::Gnome);
    FocusFilter filter(&defaults, &watcher, &shuffle, &store);
    QVERIFY(filter.setFilter(u"aurora/violet"_s, u"light"_s));
    filter.start();

    const QStringList ids = setter.displayIds();
    QCOMPARE(ids.size(), 2);
    awaitTask(store.setWallpaper(store.choice(u"emerald"_s), Edition::Light, { ids[0] }));
    awaitTask(store.setWallpaper(store.choice(u"amber"_s), Edition::Light, { ids[1] }));
    const QPoint left(960, 540);
    const QPoint right(1920 + 960, 540);
    const auto shown = [](QPoint at) { return rootPixel(at.x(), at.y()); };
    const QColor emerald = middleOf(displays.placement(ids[0])->path);
    const QColor amber = middleOf(displays.placement(ids[1])->path);
    QVERIFY(near(shown(left), emerald) && near(shown(right), amber));

    QVERIFY(setBanners(false));
    QTRY_VERIFY_WITH_TIMEOUT(shuffle.isFocusOn(), 10000);
    // The desktop is given the rendering of the Do Not Disturb wallpaper on both displays.
    const QString rendering = Renderer(folder.filePath(u"Rendered"_s)).renderingPath(u"f_violet"_s, 0);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(rendering), 20000);
    const QColor violet = middleOf(rendering);
    QVERIFY(!near(violet, emerald) && !near(violet, amber));
    QTRY_VERIFY_WITH_TIMEOUT(near(shown(left), violet) && near(shown(right), violet), 20000);

    QVERIFY(setBanners(true));
    QTRY_VERIFY_WITH_TIMEOUT(!shuffle.isFocusOn(), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(near(shown(left), emerald) && near(shown(right), amber), 20000);
    // Each restore records once the desktop has the picture.
    QTRY_COMPARE(displays.placement(ids[0])->colourway, u"emerald"_s);
    QTRY_COMPARE(displays.placement(ids[1])->colourway, u"amber"_s);
}

QTEST_MAIN(DoNotDisturbDisplaysTest)
#include "test_do_not_disturb_displays.moc"
