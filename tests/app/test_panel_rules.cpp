#include "panel_rules.h"
#include "shuffle_view.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Where the tray panel opens, which resizes it takes, when a click may open it again, and its
// words for when the next shuffle comes.
class PanelRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void frame_data()
    {
        QTest::addColumn<QRect>("icon");
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QRect>("expected");
        // A second monitor at x 1920, with a 32 px tray along the top.
        const QRect second(1920, 32, 1920, 1048);
        QTest::newRow("centred under the icon")
            << QRect(2800, 4, 24, 24) << second << QRect(2812 - 180, 34, 360, 300);
        QTest::newRow("right edge: 8 px inside")
            << QRect(3810, 4, 24, 24) << second << QRect(3840 - 8 - 360, 34, 360, 300);
        QTest::newRow("tray at the bottom: above it")
            << QRect(900, 1050, 24, 24) << QRect(0, 0, 1920, 1044)
            << QRect(912 - 180, 1050 - 6 - 300, 360, 300);
        QTest::newRow("no icon geometry: top-right corner")
            << QRect() << second << QRect(3840 - 8 - 360, 32 + 6, 360, 300);
    }

    void frame()
    {
        QFETCH(QRect, icon);
        QFETCH(QRect, available);
        QFETCH(QRect, expected);
        QCOMPARE(PanelRules::frame(icon, available, 300), expected);
    }

    // Either way by more than half a pixel, never to nothing.
    void resizes()
    {
        QVERIFY(PanelRules::resizes(300, 420));
        QVERIFY(PanelRules::resizes(300, 299.4));
        QVERIFY(!PanelRules::resizes(300, 300.5));
        QVERIFY(!PanelRules::resizes(300, 0));
    }

    // The click that took the focus from the panel arrives just after it closed: that click
    // must not reopen it, a later one must.
    void dismissal()
    {
        PanelRules rules;
        const QDateTime start = QDateTime::fromString(u"2026-03-01T10:00:00Z"_s, Qt::ISODate);
        QVERIFY(rules.mayOpen(start));
        rules.dismissed(start);
        QVERIFY(!rules.mayOpen(start));
        QVERIFY(!rules.mayOpen(start.addMSecs(250)));
        QVERIFY(rules.mayOpen(start.addMSecs(251)));
    }

    void nextShuffleWords_data()
    {
        QTest::addColumn<QDateTime>("next");
        QTest::addColumn<QString>("words");
        QTest::newRow("today") << QDateTime(QDate(2025, 3, 12), QTime(15, 0))
                               << u"today at 15:00"_s;
        QTest::newRow("tomorrow") << QDateTime(QDate(2025, 3, 13), QTime(0, 0))
                                  << u"tomorrow at 00:00"_s;
        QTest::newRow("this week")
            << QDateTime(QDate(2025, 3, 17), QTime(0, 0)) << u"Monday at 00:00"_s;
        QTest::newRow("further") << QDateTime(QDate(2025, 3, 19), QTime(6, 0))
                                 << u"19/03/2025 at 06:00"_s;
    }

    void nextShuffleWords()
    {
        QFETCH(QDateTime, next);
        const QDateTime now(QDate(2025, 3, 12), QTime(9, 30)); // a Wednesday
        QTEST(
            ShuffleView::describeNext(next, now, QLocale(QLocale::English, QLocale::UnitedKingdom)),
            "words");
    }
};

QTEST_GUILESS_MAIN(PanelRulesTest)
#include "test_panel_rules.moc"
