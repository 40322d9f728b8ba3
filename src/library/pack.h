#pragma once

#include "edition.h"

#include <QList>
#include <QMap>
#include <QUrl>
#include <optional>

// One named point of the day of a time-of-day wallpaper.
struct Phase {
    QString id;
    QString label;

    bool operator==(const Phase &) const = default;
};

// One colour variant of a pack, as the catalogue shows it: artwork only.
struct Colourway {
    QString slug;
    QString name;
    QMap<Appearance, QUrl> thumbnails;
    QMap<Appearance, QUrl> desktop;
    QMap<QString, QUrl> phases; // by Phase::id

    // The best picture to show for an appearance: full size before thumbnail, and the other
    // appearance's art rather than none.
    [[nodiscard]] std::optional<QUrl> artwork(Appearance appearance) const;

    bool operator==(const Colourway &) const = default;
};

// One product of the shop catalogue.
struct Pack {
    QString slug;
    QString name;
    QString line;
    QString price; // display text from the shop, never computed on
    QUrl url;
    bool onSale = false;
    bool isFree = false;
    QList<Colourway> colourways; // in display order

    [[nodiscard]] bool hasTimeOfDay() const;

    bool operator==(const Pack &) const = default;
};

[[nodiscard]] size_t qHash(const Phase &phase, size_t seed = 0);
[[nodiscard]] size_t qHash(const Colourway &colourway, size_t seed = 0);
[[nodiscard]] size_t qHash(const Pack &pack, size_t seed = 0);
