#include "deck.h"

#include <QRandomGenerator>

namespace Deck {
quint32 uniform(QRandomGenerator &random, quint32 bound)
{
    Q_ASSERT(bound > 0);
    constexpr quint64 range = quint64(1) << 32;
    // The largest multiple of bound that 32 bits hold: below it, every remainder is as likely.
    const quint64 limit = range - range % bound;
    while (true) {
        const quint64 value = random.generate();
        if (value < limit)
            return quint32(value % bound);
    }
}

Draw draw(const QList<ShuffleChoice> &candidates, const QSet<QString> &played,
          const QSet<QString> &shown, qsizetype n, QRandomGenerator &random)
{
    Draw result;
    if (candidates.isEmpty())
        return result;

    QList<ShuffleChoice> fresh;
    for (const auto &choice : candidates) {
        if (!played.contains(choice.key()))
            fresh.append(choice);
    }
    shuffle(fresh, random);
    result.picks = fresh.first(std::min(n, fresh.size()));
    if (result.picks.size() == n)
        return result;

    result.newRound = true;
    QList<ShuffleChoice> second;
    for (const auto &choice : candidates) {
        if (!result.picks.contains(choice) && !shown.contains(choice.key()))
            second.append(choice);
    }
    shuffle(second, random);
    result.picks += second.first(std::min(n - result.picks.size(), second.size()));

    while (result.picks.size() < n)
        result.picks.append(candidates.at(uniform(random, quint32(candidates.size()))));
    return result;
}
} // namespace Deck
