#pragma once

#include "shuffle_choice.h"

#include <QList>
#include <QSet>

class QRandomGenerator;

// The round-based deck the shuffle draws from: every candidate comes once per round, in an order
// nobody can foresee, before any comes again.
namespace Deck {
// An index below bound, each equally likely: draws whose remainder would favour the low indexes
// are thrown away and drawn again. bound must be at least 1.
[[nodiscard]] quint32 uniform(QRandomGenerator &random, quint32 bound);

// Fisher–Yates over uniform().
template<typename T> void shuffle(QList<T> &list, QRandomGenerator &random)
{
    for (auto i = list.size() - 1; i > 0; --i)
        list.swapItemsAt(i, uniform(random, quint32(i + 1)));
}

struct Draw {
    QList<ShuffleChoice> picks;
    // The round ended during the draw: the played list starts again before the picks join it.
    bool newRound = false;
};

// n picks from the candidates, in their order: first those not played this round; when they run
// out, a new round from the rest that no display shows now; when even that is too few (fewer
// candidates than picks), any candidate, repeats allowed.
[[nodiscard]] Draw draw(const QList<ShuffleChoice> &candidates, const QSet<QString> &played,
                        const QSet<QString> &shown, qsizetype n, QRandomGenerator &random);
} // namespace Deck
