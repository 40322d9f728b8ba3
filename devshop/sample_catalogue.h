#pragma once

#include "scene_painter.h"

#include <QList>
#include <QString>

// What the sample shop sells and what its sample account owns.
namespace SampleCatalogue {
struct Colourway {
    QString slug;
    QString name;
    ScenePainter::Palette palette;
};

struct Pack {
    QString slug;
    QString name;
    QString line;
    QString price;
    bool onSale = false;
    bool free = false;
    bool released = true;
    QString ownedSince; // empty when the sample account does not own it
    // Pictures at a camera's size, several megabytes a file: in the desktop-sized content only.
    bool camera = false;
    QList<Colourway> colourways;
};

// A phase of the day of the time-of-day pictures.
struct Phase {
    QString id;
    QString label;
    ScenePainter::Moment moment;
    double dayFraction; // when it starts
    double altitude; // of the sun, degrees
    double azimuth;
};

[[nodiscard]] const QList<Pack> &packs();
[[nodiscard]] const QList<Phase> &phases();
// "pack/colourway" of the one time-of-day file that follows the sun rather than the clock.
[[nodiscard]] const QString &solarColourway();
[[nodiscard]] QString email();
[[nodiscard]] QString updatedAt();
} // namespace SampleCatalogue
