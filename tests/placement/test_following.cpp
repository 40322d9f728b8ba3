#include "await_task.h"
#include "displays.h"
#include "fake_desktop.h"
#include "following.h"
#include "libheif_decoder.h"
#include "owned_pack.h"
#include "sleep_watcher.h"
#include "test_clock.h"
#include "wallpaper_setter.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace {
// The sample's pictures: Day 0, Dawn 1, Dusk 2, Night 3; it changes at 06:00, 09:00, 18:00 and
// 21:00.
const WallpaperFile timeOfDay {
    .id = u"f_td"_s, .pack = u"aurora"_s, .colourway = u"emerald"_s, .edition = Edition::TimeOfDay
};
const Placement timeOfDayPlacement {
    .pack = u"aurora"_s, .colourway = u"emerald"_s, .edition = u"time-of-day"_s, .setAt = 42
};

// Quennet's placement side on a desktop that cannot switch pictures itself, over one folder.
struct Rig {
    // Its clock stands at that time of day; no sleep ends before the test allows it.
    Rig(const QString &folder, QTime time, QHash<QString, QString> shown = {})
        : clock(std::make_shared<TestClock>(QDateTime(QDate(2026, 3, 1), time, Qt::UTC), false))
        , desktop(std::move(shown))
        , displays(&desktop, PlacementRecords(folder), this->clock)
        , renderer(folder + u"/Rendered"_s, std::make_shared<LibheifDecoder>())
        , setter(&displays, renderer, nullptr, this->clock)
        , following(
              { .setter = &setter, .backend = &desktop, .sleep = &sleep, .clock = this->clock })
    {
        clock->allowed = 0;
    }

    [[nodiscard]] QString rendering(int index) const
    {
        return renderer.renderingPath(u"f_td"_s, index);
    }
    [[nodiscard]] QString onFirst(int index) const { return rendering(index) + u" on A"_s; }
    [[nodiscard]] QString last() const
    {
        return desktop.requests.last().first.path + u" on "_s
            + desktop.requests.last().second.join(u' ');
    }

    std::shared_ptr<TestClock> clock;
    FakeDesktop desktop;
    Displays displays;
    Renderer renderer;
    WallpaperSetter setter;
    SleepWatcher sleep;
    Following following;
};
} // namespace

// Light/dark and time-of-day wallpapers on a desktop that cannot switch them itself: the picture
// due now goes up at each phase time, when put back, from start-up and after a wake.
class FollowingTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_source;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("TZ", "UTC");
        tzset();
        m_source = m_dir.filePath(u"f_td.heic"_s);
        QVERIFY(QFile::copy(
            QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/emerald-time-of-day.heic"),
            m_source));
    }

    // Sleeps cancelled with their rig end at the next turns of the event loop.
    void cleanup() { QTest::qWait(20); }

    // Set at noon, the picture due then goes up and changes at each phase time, also when put
    // back; started again at noon, as after a login, the day's picture goes up at once and the wait
    // for dusk begins. A computer that slept through dusk shows it on waking.
    void followsFromASetAStartAndAWake()
    {
        QTemporaryDir folder;
        QHash<QString, QString> shown;
        {
            Rig rig(folder.path(), QTime(12, 0));
            rig.following.start();
            const QStringList ids = rig.displays.ids();
            awaitTask(rig.setter.setWallpaper(timeOfDay, m_source, timeOfDayPlacement, { ids[0] }));
            QCOMPARE(rig.last(), rig.onFirst(0));
            // A wallpaper without phases on the other display leaves the wait for 18:00 be.
            const QString violet =
                QStringLiteral(QUENNET_DEVSHOP_CONTENT "/files/aurora/violet-light.heic");
            const WallpaperFile light { .id = u"f_vl"_s, .edition = Edition::Light };
            const Placement lightPlacement { .edition = u"light"_s };
            awaitTask(rig.setter.setWallpaper(light, violet, lightPlacement, { ids[1] }));

            // The settle loop's one look, then the wait for 18:00.
            rig.clock->allowed = 2;
            QTRY_COMPARE(rig.desktop.requests.size(), 3);
            QCOMPARE(rig.clock->now().time().hour(), 18);
            QCOMPARE(rig.last(), rig.onFirst(2));
            const auto recorded = rig.displays.placement(ids[0]);
            QCOMPARE(recorded->path, rig.rendering(2));
            QCOMPARE(recorded->setAt, 42); // the same placement, showing its next picture
            QVERIFY(rig.setter.isShown(m_source));

            // Another wallpaper over both displays until after 21:00, as Do Not Disturb puts one.
            // Put back as recorded, the display shows the picture due now, not the one the record
            // names, and goes on following.
            awaitTask(rig.setter.setWallpaper(light, violet, lightPlacement, ids));
            // Renderings stay while their file does, so that showing it again needs no decoding.
            const QDir rendered(rig.renderer.folder());
            QVERIFY(rendered.entryList({ u"f_td*"_s }, QDir::Files)
                        .contains(QFileInfo(rig.rendering(2)).fileName()));
            QVERIFY(!rendered.entryList({ u"f_vl*"_s }, QDir::Files).isEmpty());
            rig.clock->allowed = 2;
            QTRY_COMPARE(rig.clock->now().time().hour(), 21);
            QVERIFY(rig.setter.canRestore(recorded->path, recorded));
            awaitTask(rig.setter.restore({ ids[0] }, recorded->path, recorded));
            QCOMPARE(rig.last(), rig.onFirst(3));
            rig.clock->allowed = 2;
            QTRY_COMPARE(rig.last(), rig.onFirst(1));
            QCOMPARE(rig.clock->now().time().hour(), 6);

            // Without its wallpaper file it cannot be made again; a picture of its own needs only
            // itself.
            QVERIFY(QFile::rename(m_source, m_source + u".away"_s));
            QVERIFY(!rig.setter.canRestore(recorded->path, recorded));
            QVERIFY(rig.setter.canRestore(rig.rendering(1), std::nullopt));
            QVERIFY(QFile::rename(m_source + u".away"_s, m_source));
            shown = rig.desktop.shown;
        }

        {
            Rig rig(folder.path(), QTime(12, 0), shown);
            QVERIFY(rig.desktop.requests.isEmpty());
            rig.following.start();
            QTRY_COMPARE(rig.desktop.requests.size(), 1);
            QCOMPARE(rig.last(), rig.onFirst(0));

            // Qt's timers stood still while the computer slept: only the wake says time has passed.
            rig.clock->setNow(QDateTime(rig.clock->now().date(), QTime(19, 30), Qt::UTC));
            Q_EMIT rig.sleep.woke();
            QTRY_COMPARE(rig.desktop.requests.size(), 2);
            QCOMPARE(rig.last(), rig.onFirst(2));
            QCOMPARE(rig.clock->sleeps().size(), 0);
            // And the wait for night counts from now.
            rig.clock->allowed = 10;
            QTRY_COMPARE(rig.last(), rig.onFirst(3));
            QCOMPARE(rig.clock->now().time().hour(), 21);
            shown = rig.desktop.shown;
        }

        // A desktop that tells what it shows only after the start (Plasma, XFCE read it back):
        // followed from its answer.
        Rig late(folder.path(), QTime(12, 0));
        late.following.start();
        late.desktop.shown = shown;
        Q_EMIT late.desktop.picturesChanged();
        QTRY_COMPARE(late.desktop.requests.size(), 1);
        QCOMPARE(late.last(), late.onFirst(0));
    }
};

QTEST_GUILESS_MAIN(FollowingTest)
#include "test_following.moc"
