#include "await_task.h"
#include "clock.h"
#include "defaults.h"
#include "desktop_shuffle_displays.h"
#include "displays.h"
#include "focus_filter.h"
#include "focus_wallpaper.h"
#include "gnome_backend.h"
#include "gsettings_do_not_disturb.h"
#include "libheif_decoder.h"
#include "owned_pack.h"
#include "pixels.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"
#include "test_files.h"
#include "wallpaper_setter.h"

#include <QDateTime>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {
bool setBanners(bool shown)
{
    return QProcess::execute(u"gsettings"_s,
                             { u"set"_s, u"org.gnome.desktop.notifications"_s, u"show-banners"_s,
                               shown ? u"true"_s : u"false"_s })
        == 0;
}

// The sample files of aurora's emerald and violet in the edition asked for, handed straight to
// the displays: the store's own path (links, downloads) has tests of its own.
class SampleStore : public ShuffleStore {
public:
    explicit SampleStore(WallpaperSetter *setter)
        : m_setter(setter)
    {
    }

    [[nodiscard]] QList<ShuffleChoice> choices() const override
    {
        QList<ShuffleChoice> choices;
        for (const QString &slug : { u"emerald"_s, u"violet"_s }) {
            const Colourway colourway { .slug = slug, .name = slug };
            choices.append({ .pack = { .slug = u"aurora"_s, .colourways = { colourway } },
                             .colourway = colourway });
        }
        return choices;
    }

    [[nodiscard]] bool isDownloaded(const ShuffleChoice &, Edition) const override { return true; }

    QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition edition,
                               QStringList displayIds) override
    {
        const QString colourway = choice.colourway.slug;
        const WallpaperFile file { .id = u"f_"_s + colourway + u'_' + rawValue(edition),
                                   .pack = u"aurora"_s,
                                   .colourway = colourway,
                                   .edition = edition };
        const Placement placement { .pack = file.pack,
                                    .colourway = colourway,
                                    .edition = rawValue(edition),
                                    .setAt = QDateTime::currentMSecsSinceEpoch() };
        co_await m_setter->setWallpaper(file, path(colourway, edition), placement, displayIds);
    }

    static QString path(const QString &colourway, Edition edition)
    {
        return QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/") + colourway + u'-'
            + rawValue(edition) + QStringLiteral(".heic");
    }

private:
    WallpaperSetter *m_setter;
};

// Quennet's objects over GNOME, with "aurora/violet" (light) as the Do Not Disturb
// wallpaper and Do Not Disturb off.
struct Session {
    Session()
        : backend(new GnomeBackend(GnomeBackend::Family::Gnome, folder.path()))
        , displays(backend.get(), PlacementRecords(folder.path()), clock)
        , setter(&displays,
                 Renderer(folder.filePath(u"Rendered"_s), std::make_shared<LibheifDecoder>()),
                 nullptr, clock)
    {
        focus.start();
        filter.setEdition(u"light"_s);
        filter.setWallpaper(u"aurora/violet"_s);
        filter.start();
    }

    QTemporaryDir folder;
    std::shared_ptr<Clock> clock = std::make_shared<Clock>();
    std::unique_ptr<DesktopBackend> backend;
    Displays displays;
    WallpaperSetter setter;
    DesktopShuffleDisplays view { &displays, &setter };
    SampleStore store { &setter };
    Defaults defaults { folder.filePath(u"defaults.ini"_s) };
    SleepWatcher sleep;
    FocusWallpaper focus { { .store = &store,
                             .displays = &view,
                             .defaults = &defaults,
                             .sleep = &sleep,
                             .clock = clock } };
    GSettingsDoNotDisturb watcher { GSettingsDoNotDisturb::Family::Gnome };
    FocusFilter filter { &defaults, &watcher, &focus, &store };
};
} // namespace

// Under Xorg with two dummy monitors and the GNOME keys in dconf: Do Not Disturb puts its
// wallpaper on both displays and gives GNOME back what it had, as the desktop's settings hold it.
class DoNotDisturbDisplaysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setBanners(true)); }

    void gnomeGetsTheEditionBack_data()
    {
        QTest::addColumn<Edition>("edition");
        QTest::newRow("light and dark") << Edition::Automatic;
        QTest::newRow("time of day") << Edition::TimeOfDay;
    }

    // What GNOME is given back is what setting the wallpaper gave it: the light and dark pictures
    // of an automatic wallpaper, the timed slideshow of a time-of-day one.
    void gnomeGetsTheEditionBack()
    {
        QFETCH(Edition, edition);
        Session session;
        SampleStore &store = session.store;
        const QStringList ids = session.displays.ids();
        QCOMPARE(ids.size(), 2);
        awaitTask(store.setWallpaper(store.choices().first(), edition, ids));
        const QString light = gsettings(u"picture-uri"_s);
        const QString dark = gsettings(u"picture-uri-dark"_s);
        if (edition == Edition::Automatic) {
            const auto heic = LibheifFile::open(SampleStore::path(u"emerald"_s, edition));
            const auto middle = [](const QString &uri) {
                return middleOf(QUrl(uri).toLocalFile());
            };
            const auto middleOfPicture = [&](int index) {
                const QImage picture = heic->picture(index);
                return picture.pixelColor(picture.width() / 2, picture.height() / 2);
            };
            QVERIFY(near(middle(light), middleOfPicture(0)));
            QVERIFY(near(middle(dark), middleOfPicture(1)));
            QVERIFY(!near(middle(light), middle(dark)));
        } else {
            // A slideshow that GNOME follows by itself: four phases, and the night again from
            // midnight.
            QVERIFY2(light.endsWith(u".xml"_s), qPrintable(light));
            QCOMPARE(readAll(QUrl(light).toLocalFile()).count("<file>"), 5);
        }

        QVERIFY(setBanners(false));
        QTRY_VERIFY_WITH_TIMEOUT(session.focus.isHeld(), 10000);
        const QString violet = QUrl::fromLocalFile(Renderer(session.folder.filePath(u"Rendered"_s))
                                                       .renderingPath(u"f_violet_light"_s, 0))
                                   .toString();
        QTRY_COMPARE_WITH_TIMEOUT(gsettings(u"picture-uri"_s), violet, 20000);
        QCOMPARE(gsettings(u"picture-uri-dark"_s), violet);

        QVERIFY(setBanners(true));
        QTRY_VERIFY_WITH_TIMEOUT(
            !session.focus.isHeld() && session.focus.pendingRestores().isEmpty(), 20000);
        QCOMPARE(gsettings(u"picture-uri"_s), light);
        QCOMPARE(gsettings(u"picture-uri-dark"_s), dark);
        QCOMPARE(gsettings(u"picture-options"_s), u"zoom"_s);
        for (const QString &id : ids)
            QCOMPARE(session.displays.placement(id)->edition, rawValue(edition));
    }
};

QTEST_MAIN(DoNotDisturbDisplaysTest)
#include "test_do_not_disturb_displays.moc"
