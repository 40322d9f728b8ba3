#include "deck.h"
#include "shuffle_rig.h"

#include <QRandomGenerator>
#include <QTest>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
// Keys of pack p's colourways, written "c1 c2".
QSet<QString> keys(const QString &colourways)
{
    QSet<QString> keys;
    for (const QString &colourway : colourways.split(u' ', Qt::SkipEmptyParts))
        keys.insert(u"p/"_s + colourway);
    return keys;
}
} // namespace

// The deck's draws, over many seeds where chance decides, and its fairness.
class DeckTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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

    void shuffleMakesEveryOrderEquallyLikely()
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
};

QTEST_GUILESS_MAIN(DeckTest)
#include "test_deck.moc"
