#include "pack.h"

#include "value_hashing.h"

#include <algorithm>

std::optional<QUrl> Colourway::artwork(Appearance appearance) const
{
    const Appearance other = appearance == Appearance::Light ? Appearance::Dark : Appearance::Light;
    for (const auto &[map, key] : { std::pair { &desktop, appearance },
                                    { &thumbnails, appearance },
                                    { &desktop, other },
                                    { &thumbnails, other } }) {
        const auto it = map->constFind(key);
        if (it != map->cend())
            return *it;
    }
    return std::nullopt;
}

bool Pack::hasTimeOfDay() const
{
    return std::any_of(colourways.cbegin(), colourways.cend(),
                       [](const Colourway &colourway) { return !colourway.phases.isEmpty(); });
}

size_t qHash(const Phase &phase, size_t seed)
{
    return qHashMulti(seed, phase.id, phase.label);
}

size_t qHash(const Colourway &colourway, size_t seed)
{
    seed = qHashMulti(seed, colourway.slug, colourway.name);
    seed = qHashMapEntries(colourway.thumbnails, seed);
    seed = qHashMapEntries(colourway.desktop, seed);
    return qHashMapEntries(colourway.phases, seed);
}

size_t qHash(const Pack &pack, size_t seed)
{
    seed = qHashMulti(seed, pack.slug, pack.name, pack.line, pack.price, pack.url, pack.onSale,
                      pack.isFree);
    return qHashRange(pack.colourways.cbegin(), pack.colourways.cend(), seed);
}
