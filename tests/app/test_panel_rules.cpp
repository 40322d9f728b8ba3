#include "panel_rules.h"
#include "shuffle_view.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Where the tray panel opens, when a click may open it again, and its words for when the next
// shuffle comes.
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

    // The click that took the focus from the panel arrives just after it closed: that click
    // must not reopen it, a later one must. A loss told late, after the panel was hidden and shown
    // again, is no click elsewhere.
    void dismissal()
    {
        PanelRules rules;
        const QDateTime start = QDateTime::fromString(u"2026-03-01T10:00:00Z"_s, Qt::ISODate);
        rules.focusTaken();
        rules.hidden();
        QVERIFY(!rules.focusLost(start));
        QVERIFY(rules.mayOpen(start));
        rules.focusTaken();
        QVERIFY(rules.focusLost(start));
        QVERIFY(!rules.mayOpen(start.addMSecs(250)));
        QVERIFY(rules.mayOpen(start.addMSecs(251)));
        QVERIFY(!rules.focusLost(start.addMSecs(300)));
    }

    void nextShuffleWords_data()
    {
        QTest::addColumn<QString>("next");
        QTest::addColumn<QString>("words");
        QTest::newRow("today") << u"2025-03-12T15:00"_s << u"today at 15:00"_s;
        QTest::newRow("tomorrow") << u"2025-03-13T00:00"_s << u"tomorrow at 00:00"_s;
        QTest::newRow("this week") << u"2025-03-17T00:00"_s << u"Monday at 00:00"_s;
        QTest::newRow("further") << u"2025-03-19T06:00"_s << u"19/03/2025 at 06:00"_s;
    }

    void nextShuffleWords()
    {
        QFETCH(QString, next);
        const QDateTime now(QDate(2025, 3, 12), QTime(9, 30)); // a Wednesday
        QTEST(ShuffleView::describeNext(QDateTime::fromString(next, Qt::ISODate), now,
                                        QLocale(QLocale::English, QLocale::UnitedKingdom)),
              "words");
    }
};

QTEST_GUILESS_MAIN(PanelRulesTest)
#include "test_panel_rules.moc"
