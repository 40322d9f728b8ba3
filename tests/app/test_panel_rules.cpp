#include "panel_rules.h"

#include <QTest>

// Where the tray panel opens, which resizes it takes, and when a click may open it again.
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
        const QDateTime start = QDateTime::fromString(u"2026-03-01T10:00:00Z"_qs, Qt::ISODate);
        QVERIFY(rules.mayOpen(start));
        rules.dismissed(start);
        QVERIFY(!rules.mayOpen(start));
        QVERIFY(!rules.mayOpen(start.addMSecs(250)));
        QVERIFY(rules.mayOpen(start.addMSecs(251)));
    }
};

QTEST_GUILESS_MAIN(PanelRulesTest)
#include "test_panel_rules.moc"
