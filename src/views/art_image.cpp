#include "art_image.h"

#include "art_cache.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>

using namespace Qt::Literals::StringLiterals;

ArtImage::ArtImage(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void ArtImage::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    reload();
}

void ArtImage::setCache(ArtCache *cache)
{
    if (m_cache == cache)
        return;
    if (m_cache)
        disconnect(m_cache, nullptr, this, nullptr);
    m_cache = cache;
    if (m_cache)
        connect(m_cache, &ArtCache::darkChanged, this, &ArtImage::reload);
    Q_EMIT cacheChanged();
    reload();
}

void ArtImage::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    Q_EMIT urlChanged();
    reload();
}

void ArtImage::setMaxPixels(int maxPixels)
{
    if (m_maxPixels == maxPixels)
        return;
    m_maxPixels = maxPixels;
    Q_EMIT maxPixelsChanged();
    reload();
}

void ArtImage::setAppearance(const QString &appearance)
{
    if (m_appearance == appearance)
        return;
    m_appearance = appearance;
    Q_EMIT appearanceChanged();
    reload();
}

void ArtImage::setRadius(qreal radius)
{
    if (qFuzzyCompare(m_radius, radius))
        return;
    m_radius = radius;
    Q_EMIT radiusChanged();
    update();
}

void ArtImage::setCrop(bool crop)
{
    if (m_crop == crop)
        return;
    m_crop = crop;
    Q_EMIT cropChanged();
    update();
}

void ArtImage::setPlaceholderColor(const QColor &color)
{
    if (m_placeholder == color)
        return;
    m_placeholder = color;
    Q_EMIT placeholderColorChanged();
    update();
}

void ArtImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (m_maxPixels <= 0 && newGeometry.size() != oldGeometry.size())
        reload();
}

int ArtImage::step(int pixels)
{
    for (const int size : { 64, 128, 192, 256, 384, 512, 768, 1024, 1536, 2048 }) {
        if (pixels <= size)
            return size;
    }
    return 2048;
}

ArtImage::TaskKey ArtImage::wanted() const
{
    int pixels = m_maxPixels;
    if (pixels <= 0) {
        const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
        pixels = step(int(std::ceil(std::max(width(), height()) * ratio)));
    }
    bool dark = m_cache && m_cache->isDark();
    if (m_appearance == "dark"_L1)
        dark = true;
    else if (m_appearance == "light"_L1)
        dark = false;
    return { m_url, pixels, dark };
}

void ArtImage::reload()
{
    if (!isComponentComplete())
        return;
    const TaskKey key = wanted();
    if (key == m_loading || (!m_loading && key == m_shown))
        return;
    if (key.url.isEmpty() || width() <= 0 || height() <= 0 || !m_cache) {
        m_loading.reset();
        if (key.url.isEmpty() && !m_image.isNull()) {
            m_image = {};
            m_shown.reset();
            Q_EMIT readyChanged();
            update();
        }
        return;
    }
    m_loading = key;
    load(this, m_cache, key);
}

QCoro::Task<> ArtImage::load(QPointer<ArtImage> self, QPointer<ArtCache> cache, TaskKey key)
{
    auto loading = cache->image(key.url, key.maxPixels, key.dark);
    const auto image = co_await std::move(loading);
    // A newer load replaced this one while it ran.
    if (!self || self->m_loading != key)
        co_return;
    self->m_loading.reset();
    self->m_shown = key;
    const bool wasReady = self->isReady();
    // The other appearance's picture stays until this one is there; a failure shows the
    // placeholder.
    self->m_image = image.value_or(QImage());
    if (wasReady != self->isReady())
        Q_EMIT self->readyChanged();
    self->update();
}

void ArtImage::paint(QPainter *painter)
{
    const QRectF box = boundingRect();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath shape;
    shape.addRoundedRect(box, m_radius, m_radius);
    if (m_image.isNull()) {
        painter->fillPath(shape, m_placeholder);
        return;
    }
    painter->setClipPath(shape);
    const QSizeF picture = m_image.size();
    QRectF target = box;
    QRectF source(QPointF(0, 0), picture);
    const QSizeF scaled =
        picture.scaled(box.size(), m_crop ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio);
    if (m_crop) {
        // The middle of the picture, as much as fills the box.
        const qreal factor = picture.width() / scaled.width();
        const QSizeF part = box.size() * factor;
        source = QRectF(
            QPointF((picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2),
            part);
    } else {
        target = QRectF(box.center() - QPointF(scaled.width() / 2, scaled.height() / 2), scaled);
    }
    painter->drawImage(target, m_image, source);
}
