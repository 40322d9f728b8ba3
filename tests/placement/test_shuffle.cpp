#include "deck.h"
#include "shuffle_rig.h"
#include "shuffle_schedule.h"

#include <QTest>
#include <QTimeZone>
#include <time.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Interval = ShuffleSettings::Interval;
using Screen = ShuffleDisplays::Screen;

namespace {
// A display that shows p's colourway in the edition, set by the shuffle unless `own` says not.
Screen showing(const QString &id, const QString &colourway, const QString &edition, bool own = true)
{
    const Placement placement {
        .pack = u"p"_s, .colourway = colourway, .edition = edition, .path = u"/x.heic"_s
    };
    return { .id = id, .placement = placement, .showsOwnWallpaper = own };
}

const auto wednesday = utc("2024-05-01T10:00:00Z");
const auto thursday = utc("2024-05-02T00:00:00Z");
const auto network = "The network connection was lost.";

// Keys of pack p's colourways, written "c1 c2".
QSet<QString> keys(const QString &colourways)
{
    QSet<QString> keys;
    for (const QString &colourway : colourways.split(u' ', Qt::SkipEmptyParts))
        keys.insert(u"p/"_s + colourway);
    return keys;
}
} // namespace

// The shuffle over a fake store and displays, on a simulated clock, in UTC unless a case says; its
// deck's draws over many seeds where chance decides; its calendar boundaries across the days the
// clocks change (London changes at 01:00, Santiago at midnight itself).
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
        // The new round's played list is neverRepeatsWhatADisplayShows' to check.
        const auto round = rig.setKeys().first(5);
        QCOMPARE(QSet<QString>(round.begin(), round.end()).size(), 5);
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
            rig.displays.setScreens({ showing(u"one"_s, u"c1"_s, u"light"_s),
                                      showing(u"two"_s, u"c2"_s, u"dark"_s, false) });
            auto &shuffle = rig.make();
            QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
            QCOMPARE(rig.store.sets.size(), 1);
            // One pick for both, in the first display's edition.
            QCOMPARE(rig.store.sets[0].displayIds, (QStringList { u"one"_s, u"two"_s }));
            QCOMPARE(rig.store.sets[0].wanted, Edition::Light);
            picked.insert(rig.store.sets[0].key);
            QCOMPARE(rig.defaults.shufflePlayed(), QStringList { rig.store.sets[0].key });
        }
        QCOMPARE(picked, (QSet<QString> { u"p/c2"_s, u"p/c3"_s }));
    }

    // A pick for each display, in the edition it shows; automatic for what is no edition.
    void aPickEachInItsDisplaysEdition()
    {
        ShuffleRig rig(wednesday, { { u"shuffleDifferentOnEachDisplay"_s, true } }, 4);
        rig.displays.setScreens(
            { showing(u"one"_s, u"c1"_s, u"dark"_s), showing(u"two"_s, u"c2"_s, u"sepia"_s) });
        QCOMPARE(failureOf(rig.make().shuffleNow()), std::nullopt);
        QCOMPARE(rig.store.sets.size(), 2);
        QCOMPARE(rig.store.sets[0].wanted, Edition::Dark);
        QCOMPARE(rig.store.sets[1].wanted, Edition::Automatic);
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
        const auto friday = utc("2024-05-03T00:00:00Z");
        QCOMPARE(shuffle.nextDate(), friday);

        // A picture from the desktop's settings holds the next boundary back, without catching up
        // later; Shuffle now is not held back. Do Not Disturb's wait is test_focus's.
        rig.displays.showPicture(u"one"_s, u"/theirs.png"_s);
        QCOMPARE(shuffle.status(),
                 u"Paused while you use a wallpaper chosen in your desktop settings."_s);
        rig.clock->advanceTo(friday);
        QCOMPARE(rig.store.sets.size(), 2);
        QCOMPARE(shuffle.anchor(), friday);
        QCOMPARE(shuffle.nextDate(), utc("2024-05-04T00:00:00Z"));
        QCOMPARE(failureOf(shuffle.shuffleNow()), std::nullopt);
        QCOMPARE(rig.store.sets.size(), 3);
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

    // Favourites only of packs no longer owned, then no packs at all: each says why there is
    // nothing to shuffle; a favourite that can be had, or a pack, ends the wait.
    void nothingToShuffle()
    {
        ShuffleRig rig(wednesday,
                       { { u"shuffleIsOn"_s, true }, { u"shuffleSource"_s, u"favourites"_s } });
        rig.favourites.setKeys({ u"gone/c1"_s });
        auto &shuffle = rig.make();
        QCOMPARE(shuffle.status(),
                 u"Add favourites with the heart on a colourway to shuffle from them."_s);
        QVERIFY(shuffle.upNext().isEmpty());
        QCOMPARE(failureOf(shuffle.shuffleNow()), u"Add favourites to shuffle from them."_s);
        rig.favourites.setKeys({ u"p/c1"_s });
        QCOMPARE(shuffle.status(), QString());
        QCOMPARE(shuffle.upNext().value(u"one"_s).key(), u"p/c1"_s);

        shuffle.setSource(ShuffleSettings::Source::All);
        rig.store.setChoices({});
        QVERIFY(shuffle.upNext().isEmpty());
        QCOMPARE(failureOf(shuffle.shuffleNow()), u"There's nothing of yours to shuffle yet."_s);
        QVERIFY(rig.store.sets.isEmpty());
        rig.store.setChoices(sampleChoices(1));
        QCOMPARE(shuffle.upNext().value(u"one"_s).key(), u"p/c1"_s);
    }

    void draw_data()
    {
        QTest::addColumn<int>("candidates");
        QTest::addColumn<QString>("played");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<int>("n");
        QTest::addColumn<QString>("allowed");
        QTest::addColumn<QString>("required");

        QTest::newRow("round ends in the draw: the last unplayed, then not what is shown")
            << 5 << u"c1 c2 c3 c4"_s << u"c4"_s << 3 << u"c5 c1 c2 c3"_s << u"c5"_s;
        QTest::newRow("two candidates, three displays")
            << 2 << QString() << QString() << 3 << u"c1 c2"_s << u"c1 c2"_s;
    }

    // Every row starts a new round; the picks differ while there are enough candidates.
    void draw()
    {
        QFETCH(int, candidates);
        QFETCH(QString, played);
        QFETCH(QString, shown);
        QFETCH(int, n);
        QFETCH(QString, allowed);
        QFETCH(QString, required);

        QSet<QString> seen;
        for (quint32 seed = 1; seed <= 200; ++seed) {
            QRandomGenerator random(seed);
            const auto result =
                Deck::draw(sampleChoices(candidates), keys(played), keys(shown), n, random);
            QCOMPARE(result.picks.size(), n);
            QVERIFY(result.newRound);
            QSet<QString> picked;
            for (const auto &choice : result.picks)
                picked.insert(choice.key());
            const auto picks = QStringList(picked.begin(), picked.end()).join(u' ');
            QVERIFY2(keys(allowed).contains(picked), qPrintable(picks));
            QVERIFY2(picked.contains(keys(required)), qPrintable(picks));
            QCOMPARE(picked.size(), std::min(n, candidates));
            seen.unite(picked);
        }
        // Chance reaches every allowed pick.
        QCOMPARE(seen, keys(allowed));
    }

    void deckShuffleMakesEveryOrderEquallyLikely()
    {
        QRandomGenerator random(7);
        QHash<QString, int> orders;
        for (int i = 0; i < 48000; ++i) {
            QStringList letters { u"a"_s, u"b"_s, u"c"_s, u"d"_s };
            Deck::shuffle(letters, random);
            ++orders[letters.join(QString())];
        }
        QCOMPARE(orders.size(), 24);
        // Pearson's statistic against 2000 each: with 23 degrees of freedom, 49.7 is the 0.1%
        // point.
        double statistic = 0;
        for (const int count : std::as_const(orders))
            statistic += (count - 2000.0) * (count - 2000.0) / 2000.0;
        QVERIFY2(statistic < 49.7, qPrintable(QString::number(statistic)));
    }

    // Anchors and boundaries in UTC, to the minute.
    void nextBoundary_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<Interval>("interval");
        QTest::addColumn<Qt::DayOfWeek>("firstDay");
        QTest::addColumn<QString>("anchor");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *zone, Interval interval,
                            const QString &anchor, const QString &expected,
                            Qt::DayOfWeek firstDay = Qt::Monday) {
            QTest::newRow(name) << QByteArray(zone) << interval << firstDay << anchor << expected;
        };

        // London: 2024-03-31 01:00 GMT becomes 02:00 BST.
        const auto london = "Europe/London";
        row("London, a day of 23 hours", london, Interval::Day, u"2024-03-31T00:00"_s,
            u"2024-03-31T23:00"_s);
        row("London, the skipped hour comes as the jump", london, Interval::Hour,
            u"2024-03-31T00:30"_s, u"2024-03-31T01:00"_s);

        // Santiago: 2024-04-06 24:00 -03 becomes 23:00 -04; 2024-09-08 00:00 -04 becomes 01:00 -03.
        const auto santiago = "America/Santiago";
        row("Santiago, midnight after the repeated hour", santiago, Interval::Day,
            u"2024-04-06T15:00"_s, u"2024-04-07T04:00"_s);
        row("Santiago, inside the repeated hour", santiago, Interval::Day, u"2024-04-07T03:30"_s,
            u"2024-04-07T04:00"_s);
        row("Santiago, the week from Sunday starts at the skipped midnight", santiago,
            Interval::Week, u"2024-09-05T12:00"_s, u"2024-09-08T04:00"_s, Qt::Sunday);
    }

    void nextBoundary()
    {
        QFETCH(QByteArray, zone);
        QFETCH(Interval, interval);
        QFETCH(Qt::DayOfWeek, firstDay);
        QFETCH(QString, anchor);
        QFETCH(QString, expected);

        qputenv("TZ", zone);
        tzset();
        const auto utc = [](const QString &minute) {
            return QDateTime::fromString(minute + u":00Z"_s, Qt::ISODate);
        };
        const auto next = ShuffleSchedule::nextBoundary(interval, utc(anchor),
                                                        QTimeZone::systemTimeZone(), firstDay);
        QVERIFY(next);
        QCOMPARE(next->toUTC(), utc(expected));
    }
};

QTEST_GUILESS_MAIN(ShuffleTest)
#include "test_shuffle.moc"
