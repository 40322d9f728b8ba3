#include "shuffle_schedule.h"

#include <QTest>
#include <QTimeZone>
#include <time.h>

using namespace Qt::Literals::StringLiterals;
using Interval = ShuffleSettings::Interval;

// Calendar boundaries in the zone the TZ variable names, as the user's would be, across the days
// the clocks change: London changes at 01:00, Santiago at midnight itself.
class ShuffleScheduleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        qunsetenv("TZ");
        tzset();
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
        row("Santiago, the skipped midnight comes as the jump", santiago, Interval::Day,
            u"2024-09-07T16:00"_s, u"2024-09-08T04:00"_s);
        row("Santiago, the week from Sunday starts at the jump", santiago, Interval::Week,
            u"2024-09-05T12:00"_s, u"2024-09-08T04:00"_s, Qt::Sunday);
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

QTEST_GUILESS_MAIN(ShuffleScheduleTest)
#include "test_shuffle_schedule.moc"
