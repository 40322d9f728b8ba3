#include "await_task.h"
#include "clock.h"
#include "defaults.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "favourites.h"
#include "owned_pack.h"
#include "root_pixels.h"
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

namespace
{
// The light file of a sample colourway, handed straight to the displays: the store's own path
// (links, downloads) has tests of its own.
class SampleStore : public ShuffleStore
{
public:
    explicit SampleStore(WallpaperSetter *setter)
        : m_setter(setter)
    {
        for (const auto &[pack, colourway] : { std::pair(u"aurora"_s, u"emerald"_s),
                                               std::pair(u"dunes"_s, u"amber"_s) }) {
            m_choices.append({ .pack = { .slug = pack, .colourways = { { .slug = colourway } } },
                               .colourway = { .slug = colourway } });
            m_ids.insert(m_choices.last().key(), u"f_%1"_s.arg(m_choices.size()));
        }
    }

    [[nodiscard]] QList<ShuffleChoice> choices() const override { return m_choices; }
    [[nodiscard]] bool isDownloaded(const ShuffleChoice &, Edition) const override { return true; }

    QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition, QStringList displayIds) override
    {
        const WallpaperFile file { .id = m_ids.value(choice.key()),
                                   .pack = choice.pack.slug,
                                   .colourway = choice.colourway.slug,
                                   .edition = Edition::Light };
        const Placement placement { .pack = file.pack,
                                    .colourway = file.colourway,
                                    .edition = rawValue(file.edition),
                                    .setAt = QDateTime::currentMSecsSinceEpoch() };
        const QString path = QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/") + file.pack + u'/'
            + file.colourway + u"-light.heic"_s;
        co_await m_setter->setWallpaper(file, path, placement, displayIds);
    }

private:
    WallpaperSetter *m_setter;
    QList<ShuffleChoice> m_choices;
    QHash<QString, QString> m_ids; // by key
};

QColor middleOf(const QString &picture)
{
    const QImage image(picture);
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 24 && qAbs(a.green() - b.green()) < 24
        && qAbs(a.blue() - b.blue()) < 24;
}
} // namespace

// Under Xorg with two dummy monitors: a shuffle with a different wallpaper on each display, as a
// person sees it.
class ShuffleDisplaysTest : public QObject
{
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
    DesktopShuffleDisplays view(&displays);
    SampleStore store(&setter);
    Defaults defaults(folder.filePath(u"defaults.ini"_s));
    defaults.setShuffleDifferentOnEachDisplay(true);
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
        const QColor pixel = rootPixel(int(display.frame.center().x()), int(display.frame.center().y()));
        QVERIFY2(near(pixel, middleOf(placement->path)), qPrintable(pixel.name()));
        seen.append(pixel);
    }
    QCOMPARE(QSet<QString>(colourways.begin(), colourways.end()).size(), 2);
    QVERIFY(!near(seen[0], seen[1]));
    QCOMPARE(defaults.shufflePlayed().size(), 2);
}

QTEST_MAIN(ShuffleDisplaysTest)
#include "test_shuffle_displays.moc"
