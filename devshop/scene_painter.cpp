#include "scene_painter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <cmath>
#include <numbers>

namespace ScenePainter {
namespace {
QColor mix(const QColor &a, const QColor &b, double t)
{
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * t),
                            float(a.greenF() + (b.greenF() - a.greenF()) * t),
                            float(a.blueF() + (b.blueF() - a.blueF()) * t));
}

struct Light {
    QColor top;
    QColor horizon;
    QPointF body; // sun or moon, as fractions of the picture
    QColor bodyColour;
    double brightness = 1;
};

Light lightAt(const Palette &palette, Moment moment)
{
    const QColor night(12, 16, 38);
    const QColor ember(240, 140, 80);
    switch (moment) {
    case Moment::Dawn:
        return { mix(palette.sky, night, 0.45),
                 mix(palette.glow, ember, 0.5),
                 { 0.22, 0.62 },
                 QColor(255, 214, 170),
                 0.7 };
    case Moment::Day:
        return { palette.sky, palette.glow, { 0.68, 0.2 }, QColor(255, 250, 225), 1.0 };
    case Moment::Dusk:
        return { mix(palette.sky, QColor(70, 40, 110), 0.55),
                 mix(palette.glow, ember, 0.7),
                 { 0.8, 0.6 },
                 QColor(255, 160, 110),
                 0.6 };
    case Moment::Night:
        return { night, mix(palette.sky, night, 0.7), { 0.28, 0.18 }, QColor(226, 232, 245), 0.28 };
    }
    return {};
}

void paintStars(QPainter &painter, QSize size)
{
    quint32 seed = 20250101;
    const auto next = [&seed] {
        seed = seed * 1664525u + 1013904223u;
        return double(seed >> 8) / double(1u << 24);
    };
    const double radius = std::max(0.6, size.width() / 900.0);
    for (int i = 0; i < 160; ++i) {
        const QPointF at(next() * size.width(), next() * size.height() * 0.55);
        painter.setBrush(QColor(255, 255, 255, int(90 + next() * 150)));
        painter.drawEllipse(at, radius, radius);
    }
}

void paintHills(QPainter &painter, const Palette &palette, const Light &light, QSize size)
{
    const double w = size.width();
    const double h = size.height();
    for (int layer = 0; layer < 3; ++layer) {
        const double base = h * (0.62 + 0.11 * layer);
        const double amplitude = h * (0.06 - 0.012 * layer);
        QPainterPath hills(QPointF(0, h));
        for (int step = 0; step <= 64; ++step) {
            const double x = w * step / 64.0;
            const double phase = x / w * std::numbers::pi * (2.0 + layer);
            hills.lineTo(
                x,
                base
                    - amplitude
                        * (std::sin(phase + layer * 1.7) + 0.4 * std::sin(phase * 2.3 + layer)));
        }
        hills.lineTo(w, h);
        hills.closeSubpath();
        const QColor near = palette.land.darker(100 + 45 * layer);
        const QColor lit = mix(near, light.top, 0.25 - 0.07 * layer);
        painter.setBrush(mix(QColor(5, 6, 12), lit, light.brightness));
        painter.drawPath(hills);
    }
}
} // namespace

QImage paint(const Palette &palette, Moment moment, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    const Light light = lightAt(palette, moment);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    QLinearGradient sky(0, 0, 0, size.height() * 0.75);
    sky.setColorAt(0, light.top);
    sky.setColorAt(1, light.horizon);
    painter.fillRect(image.rect(), sky);
    if (moment == Moment::Night)
        paintStars(painter, size);

    const QPointF centre(light.body.x() * size.width(), light.body.y() * size.height());
    const double radius = size.height() * 0.07;
    QRadialGradient halo(centre, radius * 4);
    QColor glow = light.bodyColour;
    glow.setAlpha(110);
    halo.setColorAt(0, glow);
    halo.setColorAt(1, Qt::transparent);
    painter.setBrush(halo);
    painter.drawEllipse(centre, radius * 4, radius * 4);
    painter.setBrush(light.bodyColour);
    painter.drawEllipse(centre, radius, radius);

    paintHills(painter, palette, light, size);
    return image;
}
} // namespace ScenePainter
