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
    void cleanup();
    void nextBoundary_data();
    void nextBoundary();
};

void ShuffleScheduleTest::cleanup()
{
    qunsetenv("TZ");
    tzset();
}

void ShuffleScheduleTest::nextBoundary_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<Qt::DayOfWeek>("firstDay");
    QTest::addColumn<QString>("anchor"); // UTC, to the minute
    QTest::addColumn<QString>("expected");

    const QByteArray london = "Europe/London";
    const QByteArray santiago = "America/Santiago";
    const auto monday = Qt::Monday;
    const auto sunday = Qt::Sunday;

    // London: 2024-03-31 01:00 GMT becomes 02:00 BST; 2024-10-27 02:00 BST becomes 01:00 GMT.
    QTest::newRow("London, a day of 23 hours")
        << london << Interval::Day << monday << u"2024-03-31T00:00"_s << u"2024-03-31T23:00"_s;
    QTest::newRow("London, a day of 25 hours")
        << london << Interval::Day << monday << u"2024-10-26T23:30"_s << u"2024-10-28T00:00"_s;
    QTest::newRow("London, the skipped hour comes as the jump")
        << london << Interval::Hour << monday << u"2024-03-31T00:30"_s << u"2024-03-31T01:00"_s;
    QTest::newRow("London, the hour after the jump")
        << london << Interval::Hour << monday << u"2024-03-31T01:00"_s << u"2024-03-31T02:00"_s;

    // Santiago: 2024-04-06 24:00 -03 becomes 23:00 -04; 2024-09-08 00:00 -04 becomes 01:00 -03.
    QTest::newRow("Santiago, midnight after the repeated hour")
        << santiago << Interval::Day << monday << u"2024-04-06T15:00"_s << u"2024-04-07T04:00"_s;
    QTest::newRow("Santiago, inside the repeated hour")
        << santiago << Interval::Day << monday << u"2024-04-07T03:30"_s << u"2024-04-07T04:00"_s;
    QTest::newRow("Santiago, the skipped midnight comes as the jump")
        << santiago << Interval::Day << monday << u"2024-09-07T16:00"_s << u"2024-09-08T04:00"_s;
    QTest::newRow("Santiago, the week from Sunday starts at the jump")
        << santiago << Interval::Week << sunday << u"2024-09-05T12:00"_s << u"2024-09-08T04:00"_s;
    QTest::newRow("Santiago, the week from Monday")
        << santiago << Interval::Week << monday << u"2024-09-05T12:00"_s << u"2024-09-09T03:00"_s;
    QTest::newRow("Santiago, six hours after the jump")
        << santiago << Interval::SixHours << monday << u"2024-09-08T04:00"_s
        << u"2024-09-08T09:00"_s;
}

void ShuffleScheduleTest::nextBoundary()
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
    const auto next =
        ShuffleSchedule::nextBoundary(interval, utc(anchor), QTimeZone::systemTimeZone(), firstDay);
    QVERIFY(next);
    QCOMPARE(next->toUTC(), utc(expected));
}

QTEST_GUILESS_MAIN(ShuffleScheduleTest)
#include "test_shuffle_schedule.moc"
