#pragma once

#include "pack.h"

// One colourway the shuffle can pick, with its pack. Its key is the same as a favourite's.
struct ShuffleChoice {
    Pack pack;
    Colourway colourway;

    // Pack slug, "/", colourway slug.
    [[nodiscard]] QString key() const;

    bool operator==(const ShuffleChoice &) const = default;
};

[[nodiscard]] size_t qHash(const ShuffleChoice &choice, size_t seed = 0);
