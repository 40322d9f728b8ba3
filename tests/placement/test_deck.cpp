#include "deck.h"
#include "shuffle_rig.h"

#include <QRandomGenerator>
#include <QTest>
#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {
// Pearson's statistic of counts that should all be equal.
double chiSquare(const QList<int> &counts)
{
    const double total = std::accumulate(counts.begin(), counts.end(), 0.0);
    const double expected = total / double(counts.size());
    double sum = 0;
    for (const int count : counts)
        sum += (count - expected) * (count - expected) / expected;
    return sum;
}

QStringList keysOf(const QList<ShuffleChoice> &choices)
{
    QStringList keys;
    for (const auto &choice : choices)
        keys.append(choice.key());
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
        QTest::addColumn<QStringList>("played");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<int>("n");
        QTest::addColumn<bool>("newRound");
        QTest::addColumn<QStringList>("allowed");
        QTest::addColumn<QStringList>("required");
        QTest::addColumn<bool>("distinct");

        const QStringList none;
        QTest::newRow("round ends in the draw: the last unplayed, then not what is shown")
            << 5 << QStringList { u"p/c1"_s, u"p/c2"_s, u"p/c3"_s, u"p/c4"_s }
            << QStringList { u"p/c4"_s } << 3 << true
            << QStringList { u"p/c5"_s, u"p/c1"_s, u"p/c2"_s, u"p/c3"_s }
            << QStringList { u"p/c5"_s } << true;
        QTest::newRow("all played: never what a display shows")
            << 3 << QStringList { u"p/c1"_s, u"p/c2"_s, u"p/c3"_s } << QStringList { u"p/c1"_s }
            << 1 << true << QStringList { u"p/c2"_s, u"p/c3"_s } << none << true;
        QTest::newRow("all played and shown: nothing else is left")
            << 2 << QStringList { u"p/c1"_s, u"p/c2"_s } << QStringList { u"p/c1"_s, u"p/c2"_s }
            << 1 << true << QStringList { u"p/c1"_s, u"p/c2"_s } << none << true;
        QTest::newRow("two candidates, three displays")
            << 2 << none << none << 3 << true << QStringList { u"p/c1"_s, u"p/c2"_s }
            << QStringList { u"p/c1"_s, u"p/c2"_s } << false;
    }

    void draw()
    {
        QFETCH(int, candidates);
        QFETCH(QStringList, played);
        QFETCH(QStringList, shown);
        QFETCH(int, n);
        QFETCH(bool, newRound);
        QFETCH(QStringList, allowed);
        QFETCH(QStringList, required);
        QFETCH(bool, distinct);

        QSet<QString> seen;
        for (quint32 seed = 1; seed <= 200; ++seed) {
            QRandomGenerator random(seed);
            const auto result =
                Deck::draw(sampleChoices(candidates), keySet(played), keySet(shown), n, random);
            const auto keys = keysOf(result.picks);
            QCOMPARE(keys.size(), n);
            QCOMPARE(result.newRound, newRound);
            QVERIFY2(keySet(allowed).contains(keySet(keys)), qPrintable(keys.join(u' ')));
            QVERIFY2(keySet(keys).contains(keySet(required)), qPrintable(keys.join(u' ')));
            if (distinct)
                QCOMPARE(keySet(keys).size(), n);
            seen.unite(keySet(keys));
        }
        // Chance reaches every allowed pick.
        QCOMPARE(seen, keySet(allowed));
    }

    void uniformLeavesNoRemainderBias()
    {
        // Three quarters of the 32-bit range: a plain remainder would make the lowest third of the
        // indexes twice as likely as each other third.
        constexpr quint32 bound = 3u << 30;
        QRandomGenerator random(20240901);
        QList<int> thirds(3, 0);
        for (int i = 0; i < 30000; ++i)
            ++thirds[Deck::uniform(random, bound) >> 30];
        // 2 degrees of freedom: 13.8 is the 0.1% point.
        QVERIFY2(chiSquare(thirds) < 13.8, qPrintable(QString::number(chiSquare(thirds))));
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
        // 23 degrees of freedom: 49.7 is the 0.1% point.
        const double statistic = chiSquare(orders.values());
        QVERIFY2(statistic < 49.7, qPrintable(QString::number(statistic)));
    }
};

QTEST_GUILESS_MAIN(DeckTest)
#include "test_deck.moc"
