#include "shuffle_rig.h"

#include <QTest>
#include <time.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Interval = ShuffleSettings::Interval;
using Screen = ShuffleDisplays::Screen;

namespace {
Placement showing(const QString &colourway, const QString &edition)
{
    return { .pack = u"p"_s, .colourway = colourway, .edition = edition, .path = u"/x.heic"_s };
}

const auto wednesday = utc("2024-05-01T10:00:00Z");
const auto thursday = utc("2024-05-02T00:00:00Z");
const auto network = "The network connection was lost.";
} // namespace

// The shuffle over a fake store and displays, on a simulated clock, in UTC unless a case says.
class ShuffleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom)); // weeks from Monday
        cleanup();
    }

    void cleanup()
    {
        qputenv("TZ", "UTC");
        tzset();
    }

    void switchingOnAndChangingRestart()
    {
        ShuffleRig rig(wednesday,
                       { { u"shuffleIsOn"_s, u"yes"_s }, { u"shuffleAnchor"_s, u"yesterday"_s } });
        auto &shuffle = rig.make();
        QVERIFY(!shuffle.isOn());
        // An anchor that could not be read is replaced by the present moment for good.
        QCOMPARE(rig.defaults.shuffleAnchor(), wednesday);
        rig.clock->advance(1h);
        shuffle.setOn(true);
        QCOMPARE(rig.defaults.shuffleAnchor(), utc("2024-05-01T11:00:00Z"));
        QCOMPARE(shuffle.nextDate(), thursday);
        QCOMPARE(shuffle.upNext().keys(), QStringList { u"one"_s });

        shuffle.setInterval(Interval::SixHours);
        QCOMPARE(shuffle.nextDate(), utc("2024-05-01T12:00:00Z"));
        rig.clock->advanceTo(shuffle.nextDate());
        QCOMPARE(rig.store.sets.size(), 1);
        QCOMPARE(shuffle.nextDate(), utc("2024-05-01T18:00:00Z"));

        // The daily and six-hourly schedules end with the change: nothing more before Monday.
        shuffle.setInterval(Interval::Week);
        QCOMPARE(shuffle.nextDate(), utc("2024-05-06T00:00:00Z"));
        rig.clock->advanceTo(utc("2024-05-05T23:59:59Z"));
        QCOMPARE(rig.store.sets.size(), 1);

        shuffle.setOn(false);
        QVERIFY(!shuffle.nextDate().isValid());
        QVERIFY(shuffle.upNext().isEmpty());
        rig.clock->advance(14 * 24h);
        QCOMPARE(rig.store.sets.size(), 1);
    }

    void aRoundOfFiveThenANewRound()
    {
        ShuffleRig rig(wednesday, { { u"shuffleIsOn"_s, true } }, 5);
        auto &shuffle = rig.make();

        for (int i = 0; i < 6; ++i) {
            const auto next = shuffle.upNext().value(u"one"_s).key();
            QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
            QCOMPARE(rig.store.sets.last().key, next);
        }
        const auto keys = rig.setKeys();
        const auto round = keys.first(5);
        QCOMPARE(QSet<QString>(round.begin(), round.end()).size(), 5);
        // A new round.
        QCOMPARE(rig.defaults.shufflePlayed(), QStringList { keys[5] });
    }

    void neverRepeatsWhatADisplayShows()
    {
        // Everything played; "one" shows c1, "two" a picture of the desktop's over its old c2.
        QSet<QString> picked;
        for (quint32 seed = 1; seed <= 40; ++seed) {
            ShuffleRig rig(
                wednesday,
                { { u"shufflePlayed"_s, QStringList { u"p/c1"_s, u"p/c2"_s, u"p/c3"_s } } }, 3,
                seed);
            rig.store.shows = nullptr;
            rig.displays.setScreens(
                { { .id = u"one"_s,
                    .placement = showing(u"c1"_s, u"light"_s),
                    .showsOwnWallpaper = true },
                  { .id = u"two"_s, .placement = showing(u"c2"_s, u"light"_s) } });
            auto &shuffle = rig.make();
            QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
            QCOMPARE(rig.store.sets.size(), 1);
            QCOMPARE(rig.store.sets[0].displayIds, (QStringList { u"one"_s, u"two"_s }));
            picked.insert(rig.store.sets[0].key);
            QCOMPARE(rig.defaults.shufflePlayed(), QStringList { rig.store.sets[0].key });
        }
        QCOMPARE(picked, (QSet<QString> { u"p/c2"_s, u"p/c3"_s }));
    }

    void editionOfTheFirstTarget_data()
    {
        QTest::addColumn<bool>("different");
        QTest::addColumn<std::optional<Placement>>("first");
        QTest::addColumn<std::optional<Placement>>("second");
        QTest::addColumn<QList<Edition>>("wanted");

        const auto dark = std::optional(showing(u"c1"_s, u"dark"_s));
        const auto light = std::optional(showing(u"c2"_s, u"light"_s));
        QTest::newRow("one pick: the first display's")
            << false << dark << light << QList<Edition> { Edition::Dark };
        QTest::newRow("a pick each: each display's, automatic for what is no edition")
            << true << dark << std::optional(showing(u"c2"_s, u"sepia"_s))
            << QList<Edition> { Edition::Dark, Edition::Automatic };
    }

    void editionOfTheFirstTarget()
    {
        QFETCH(bool, different);
        QFETCH(std::optional<Placement>, first);
        QFETCH(std::optional<Placement>, second);
        QFETCH(QList<Edition>, wanted);

        ShuffleRig rig(wednesday, { { u"shuffleDifferentOnEachDisplay"_s, different } }, 4);
        rig.displays.setScreens(
            { { .id = u"one"_s, .placement = first, .showsOwnWallpaper = true },
              { .id = u"two"_s, .placement = second, .showsOwnWallpaper = true } });
        auto &shuffle = rig.make();
        QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
        QList<Edition> asked;
        for (const auto &set : rig.store.sets)
            asked.append(set.wanted);
        QCOMPARE(asked, wanted);
    }

    void aFailedDownload()
    {
        ShuffleRig rig(utc("2024-05-01T23:00:00Z"), { { u"shuffleIsOn"_s, true } }, 2);
        rig.store.downloadsFail = true;
        auto &shuffle = rig.make();
        QCOMPARE(failureOf(shuffle.shuffleNow()), QString::fromLatin1(network));

        QTest::ignoreMessage(QtCriticalMsg,
                             "Scheduled shuffle failed: The network connection was lost.");
        rig.clock->advanceTo(thursday);
        QCOMPARE(rig.store.attempts, 2);
        QCOMPARE(shuffle.nextDate(), thursday.addSecs(900));
        QVERIFY(rig.defaults.shufflePlayed().isEmpty());

        rig.clock->advanceTo(thursday.addSecs(899));
        QCOMPARE(rig.store.attempts, 2);
        rig.store.downloadsFail = false;
        rig.clock->advanceTo(thursday.addSecs(900));
        QCOMPARE(rig.store.sets.size(), 1);
        QCOMPARE(rig.store.sets[0].at, thursday.addSecs(900));
        QCOMPARE(shuffle.nextDate(), utc("2024-05-03T00:00:00Z"));

        // Only what was played is on disk: the pick is the other, whose download fails.
        const auto played = rig.store.sets[0].key;
        rig.store.downloaded = { played };
        rig.store.downloadsFail = true;
        QTest::ignoreMessage(
            QtInfoMsg, "Using a downloaded wallpaper instead: The network connection was lost.");
        QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
        QCOMPARE(rig.store.attempts, 5);
        QCOMPARE(rig.setKeys().last(), played);
        QCOMPARE(rig.defaults.shufflePlayed(), QStringList { played });
    }

    // Missed while Quennet was not running: at once; while the computer slept: 10 s after it wakes.
    void catchesUpWithAMissedBoundary()
    {
        ShuffleRig rig(
            wednesday,
            { { u"shuffleIsOn"_s, true }, { u"shuffleAnchor"_s, u"2024-04-27T09:00:00Z"_s } });
        auto &shuffle = rig.make();
        QCOMPARE(shuffle.nextDate(), utc("2024-04-28T00:00:00Z"));
        rig.clock->advance(0ms);
        QCOMPARE(rig.store.sets.size(), 1);
        QCOMPARE(shuffle.anchor(), wednesday);
        QCOMPARE(shuffle.nextDate(), thursday);

        rig.clock->advance(13h);
        Q_EMIT rig.sleep.aboutToSleep();
        rig.clock->suspend(9h);
        Q_EMIT rig.sleep.woke();
        const auto woke = utc("2024-05-02T08:00:00Z");
        QCOMPARE(shuffle.nextDate(), woke.addSecs(10));
        rig.clock->advance(9999ms);
        QCOMPARE(rig.store.sets.size(), 1);
        rig.clock->advance(1ms);
        QCOMPARE(rig.store.sets.size(), 2);
        QCOMPARE(rig.store.sets[1].at, woke.addSecs(10));
        QCOMPARE(shuffle.nextDate(), utc("2024-05-03T00:00:00Z"));
    }

    void hourlyInAHalfHourZone()
    {
        // Half an hour off UTC: the boundaries are the user's hours, not UTC's.
        qputenv("TZ", "Asia/Kolkata");
        tzset();
        ShuffleRig rig(wednesday,
                       { { u"shuffleIsOn"_s, true }, { u"shuffleInterval"_s, u"hour"_s } }, 6);
        rig.make();

        rig.clock->advance(3h);
        QCOMPARE(rig.store.sets.size(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(rig.store.sets[i].at, wednesday.addSecs(30 * 60 + i * 3600));
    }

    void nothingToShuffle_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("favourites");
        QTest::addColumn<int>("choices");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QString>("status");

        const auto addFavourites = u"Add favourites to shuffle from them."_s;
        const auto heart = u"Add favourites with the heart on a colourway to shuffle from them."_s;
        QTest::newRow("favourites of packs no longer owned")
            << u"favourites"_s << QStringList { u"gone/c1"_s } << 3 << addFavourites << heart;
        QTest::newRow("no packs") << u"all"_s << QStringList() << 0
                                  << u"There's nothing of yours to shuffle yet."_s << QString();
    }

    void nothingToShuffle()
    {
        QFETCH(QString, source);
        QFETCH(QStringList, favourites);
        QFETCH(int, choices);
        QFETCH(QString, failure);
        QFETCH(QString, status);

        ShuffleRig rig(wednesday, { { u"shuffleIsOn"_s, true }, { u"shuffleSource"_s, source } },
                       choices);
        rig.favourites.setKeys(favourites);
        auto &shuffle = rig.make();
        QCOMPARE(shuffle.status(), status);
        QVERIFY(shuffle.upNext().isEmpty());
        QCOMPARE(failureOf(shuffle.shuffleNow()), failure);
        QVERIFY(rig.store.sets.isEmpty());

        // A favourite that can be had ends the wait.
        rig.favourites.setKeys({ u"p/c1"_s });
        rig.store.setChoices(sampleChoices(1));
        QCOMPARE(shuffle.status(), QString());
        QCOMPARE(shuffle.upNext().value(u"one"_s).key(), u"p/c1"_s);
    }

    // A picture from the desktop's settings on one display holds the scheduled shuffle back until
    // the next boundary, without catching up later; Shuffle now is not held back. Do Not Disturb's
    // wait is test_focus's.
    void aDesktopPictureHoldsTheScheduleBack()
    {
        ShuffleRig rig(wednesday, { { u"shuffleIsOn"_s, true } });
        rig.displays.setScreens({ { .id = u"one"_s, .showsOwnWallpaper = true },
                                  { .id = u"two"_s, .showsOwnWallpaper = false } });
        auto &shuffle = rig.make();
        QCOMPARE(shuffle.status(),
                 u"Paused while you use a wallpaper chosen in your desktop settings."_s);
        rig.clock->advanceTo(thursday);
        QVERIFY(rig.store.sets.isEmpty());
        QCOMPARE(shuffle.anchor(), thursday);
        QCOMPARE(shuffle.nextDate(), utc("2024-05-03T00:00:00Z"));
        QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
        QCOMPARE(rig.store.sets.size(), 1);
    }
};

QTEST_GUILESS_MAIN(ShuffleTest)
#include "test_shuffle.moc"
