#include "kde_colours.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
QString data(const QString &name)
{
    return QStringLiteral(QUENNET_TEST_DATA "/platform/") + name;
}
} // namespace

// Plasma's colours as KDE cascades its kdeglobals files: the user's over the system's.
class KdeColoursTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void paletteOfTheCascade()
    {
        const auto palette =
            KdeColours::palette({ data(u"kdeglobals-user"_s), data(u"kdeglobals-system"_s) });
        QVERIFY(palette);
        QCOMPARE(palette->color(QPalette::Window), QColor(42, 46, 50));
        QCOMPARE(palette->color(QPalette::Base), QColor(27, 30, 32));
        QCOMPARE(palette->color(QPalette::Disabled, QPalette::Text), QColor(161, 169, 177));
        // What the user's file lacks, or has in a form KDE never writes, the system's gives.
        QCOMPARE(palette->color(QPalette::Button), QColor(49, 54, 59));
        QCOMPARE(palette->color(QPalette::Link), QColor(41, 128, 185));

        // No palette without the window's colour.
        QVERIFY(!KdeColours::palette({ data(u"missing"_s) }));
        QVERIFY(!KdeColours::palette({ data(u"kdeglobals-no-colours"_s) }));
    }
};

QTEST_GUILESS_MAIN(KdeColoursTest)
#include "test_kde_colours.moc"
