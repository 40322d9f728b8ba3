#include "progress_ring.h"

#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace {
// Premultiplied, as the vertex colour material wants it.
QSGGeometry::ColoredPoint2D point(QPointF at, const QColor &colour, qreal opacity)
{
    const qreal alpha = colour.alphaF() * opacity;
    QSGGeometry::ColoredPoint2D p;
    p.set(float(at.x()), float(at.y()), uchar(colour.red() * alpha), uchar(colour.green() * alpha),
          uchar(colour.blue() * alpha), uchar(255 * alpha));
    return p;
}

// An arc of the ring as triangles: the band itself, with a feather of one device pixel fading
// out on either edge in place of multisampling.
void arc(QList<QSGGeometry::ColoredPoint2D> &out, QPointF centre, qreal radius, qreal thickness,
         qreal feather, qreal from, qreal span, const QColor &colour)
{
    const struct {
        qreal inner, outer, innerOpacity, outerOpacity;
    } bands[] = {
        { radius - thickness / 2 - feather, radius - thickness / 2, 0, 1 },
        { radius - thickness / 2, radius + thickness / 2, 1, 1 },
        { radius + thickness / 2, radius + thickness / 2 + feather, 1, 0 },
    };
    const int steps = std::max(2, int(std::ceil(std::abs(span) / (2 * std::numbers::pi) * 48)));
    for (int i = 0; i < steps; ++i) {
        const qreal a0 = from + span * i / steps;
        const qreal a1 = from + span * (i + 1) / steps;
        const QPointF d0(std::cos(a0), std::sin(a0));
        const QPointF d1(std::cos(a1), std::sin(a1));
        for (const auto &band : bands) {
            const auto in0 = point(centre + d0 * band.inner, colour, band.innerOpacity);
            const auto out0 = point(centre + d0 * band.outer, colour, band.outerOpacity);
            const auto in1 = point(centre + d1 * band.inner, colour, band.innerOpacity);
            const auto out1 = point(centre + d1 * band.outer, colour, band.outerOpacity);
            out << in0 << out0 << in1 << in1 << out0 << out1;
        }
    }
}
} // namespace

ProgressRing::ProgressRing(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &ProgressRing::coloursChanged, this, &QQuickItem::update);
}

void ProgressRing::setFraction(qreal fraction)
{
    fraction = std::clamp(fraction, 0.0, 1.0);
    if (fraction == m_fraction)
        return;
    m_fraction = fraction;
    Q_EMIT fractionChanged();
    update();
}

QSGNode *ProgressRing::updatePaintNode(QSGNode *old, UpdatePaintNodeData * /*data*/)
{
    auto *node = static_cast<QSGGeometryNode *>(old);
    if (!node) {
        node = new QSGGeometryNode;
        auto *geometry = new QSGGeometry(QSGGeometry::defaultAttributes_ColoredPoint2D(), 0);
        geometry->setDrawingMode(QSGGeometry::DrawTriangles);
        node->setGeometry(geometry);
        node->setFlag(QSGNode::OwnsGeometry);
        node->setMaterial(new QSGVertexColorMaterial);
        node->setFlag(QSGNode::OwnsMaterial);
    }
    const qreal side = std::min(width(), height());
    const qreal feather = 1 / (window() ? window()->effectiveDevicePixelRatio() : 1.0);
    const qreal thickness = std::max(1.5, side / 7);
    const qreal radius = side / 2 - thickness / 2 - feather;
    const QPointF centre(width() / 2, height() / 2);
    constexpr qreal top = -std::numbers::pi / 2;
    const qreal filled = 2 * std::numbers::pi * std::max(0.02, m_fraction); // a sliver shows at 0

    QList<QSGGeometry::ColoredPoint2D> vertices;
    arc(vertices, centre, radius, thickness, feather, top + filled, 2 * std::numbers::pi - filled,
        m_trackColor);
    arc(vertices, centre, radius, thickness, feather, top, filled, m_fillColor);

    QSGGeometry *geometry = node->geometry();
    geometry->allocate(int(vertices.size()));
    std::copy(vertices.cbegin(), vertices.cend(), geometry->vertexDataAsColoredPoint2D());
    node->markDirty(QSGNode::DirtyGeometry);
    return node;
}
