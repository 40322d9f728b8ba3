#pragma once

#include <QColor>
#include <QImage>

// Paints the sample wallpapers: a sky over rolling hills in a colourway's colours, at one
// moment of the day. Everything is drawn, so no picture files need to ship with the shop.
namespace ScenePainter {
struct Palette {
    QColor sky;
    QColor glow; // the sky near the horizon
    QColor land;
};

enum class Moment { Dawn, Day, Dusk, Night };

[[nodiscard]] QImage paint(const Palette &palette, Moment moment, QSize size);
} // namespace ScenePainter
