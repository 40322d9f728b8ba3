#include "desktop_backend.h"
#include "display_id.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
DesktopScreen screen(const QString &connector, const QString &manufacturer = {},
                     const QString &model = {}, const QString &serial = {})
{
    return {
        .connector = connector, .manufacturer = manufacturer, .model = model, .serial = serial
    };
}
} // namespace

class DisplayIdTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sameOrDifferent_data()
    {
        QTest::addColumn<DesktopScreen>("a");
        QTest::addColumn<DesktopScreen>("b");
        QTest::addColumn<bool>("same");
        const auto dell = screen(u"DP-1"_s, u"DEL"_s, u"U2720Q"_s, u"7XK2"_s);
        QTest::newRow("same monitor on another connector")
            << dell << screen(u"HDMI-1"_s, u"DEL"_s, u"U2720Q"_s, u"7XK2"_s) << true;
        QTest::newRow("Qt 6.4's trailing dash")
            << dell << screen(u"DP-1"_s, u"DEL-"_s, u"U2720Q-"_s, u"7XK2-"_s) << true;
        QTest::newRow("another serial")
            << dell << screen(u"DP-1"_s, u"DEL"_s, u"U2720Q"_s, u"7XK3"_s) << false;
        QTest::newRow("no EDID, other connector")
            << screen(u"DUMMY0"_s) << screen(u"DUMMY1"_s) << false;
    }

    void sameOrDifferent()
    {
        QFETCH(DesktopScreen, a);
        QFETCH(DesktopScreen, b);
        QTEST(displayId(a) == displayId(b), "same");
    }

    // Twins get ids of their own; a display with no twin keeps its plain id.
    void twinsWithoutSerialNumbersDiffer()
    {
        const QList screens { screen(u"DP-1"_s, u"ACM"_s, u"View"_s),
                              screen(u"DP-2"_s, u"ACM"_s, u"View"_s), screen(u"eDP-1"_s) };
        const QList<QString> ids = displayIds(screens);
        QVERIFY(ids[0] != ids[1]);
        QCOMPARE(ids[2], displayId(screen(u"eDP-1"_s)));
    }

    void names_data()
    {
        QTest::addColumn<QList<DesktopScreen>>("screens");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("make and model, the maker's legal form and repetition dropped")
            << QList { screen(u"DP-1"_s, u"ACM"_s, u"View"_s),
                       screen(u"DP-2"_s, u"Dell Inc.-"_s, u"DELL U2720Q"_s) }
            << QStringList { u"ACM View"_s, u"DELL U2720Q"_s };
        QTest::newRow("a laptop's own panel; no EDID; twins")
            << QList { screen(u"eDP-1"_s, u"BOE"_s, u"0x0BCA"_s), screen(u"DUMMY0"_s),
                       screen(u"DP-1"_s, u"ACM"_s, u"View"_s),
                       screen(u"HDMI-1"_s, u"ACM"_s, u"View"_s, u"2"_s) }
            << QStringList { u"Built-in display"_s, u"DUMMY0"_s, u"ACM View (DP-1)"_s,
                             u"ACM View (HDMI-1)"_s };
    }

    void names()
    {
        QFETCH(QList<DesktopScreen>, screens);
        QTEST(displayNames(screens), "names");
    }
};

QTEST_GUILESS_MAIN(DisplayIdTest)
#include "test_display_id.moc"
