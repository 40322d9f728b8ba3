#pragma once

#include <QHashFunctions>
#include <QMap>
#include <optional>

// Hashing helpers for the model values, which hash by every field in declaration order.

template<typename T> [[nodiscard]] size_t qHash(const std::optional<T> &value, size_t seed = 0)
{
    return value ? qHashMulti(seed, true, *value) : qHash(false, seed);
}

template<typename K, typename V>
[[nodiscard]] size_t qHashMapEntries(const QMap<K, V> &map, size_t seed)
{
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        seed = qHashMulti(seed, it.key(), it.value());
    return seed;
}
