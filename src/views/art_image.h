#pragma once

#include <QColor>
#include <QCoroTask>
#include <QImage>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QUrl>
#include <QtQmlIntegration>

class ArtCache;

// One picture of artwork for a URL, decoded at a bounded size in the light or dark variant that
// matches the colour scheme (or the appearance asked for), filling its box with rounded corners.
// A calm placeholder shows while it loads and when it cannot be read.
class ArtImage : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_MOC_INCLUDE("art_cache.h")
    // Where pictures are decoded and kept, shared by every view.
    Q_PROPERTY(ArtCache *cache READ cache WRITE setCache NOTIFY cacheChanged)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    // The largest width or height decoded; 0: the item's size, rounded up to a step.
    Q_PROPERTY(int maxPixels READ maxPixels WRITE setMaxPixels NOTIFY maxPixelsChanged)
    // "auto" follows the colour scheme; "light" or "dark" fix it.
    Q_PROPERTY(QString appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)
    // Crop to fill the box (the default), or fit inside it.
    Q_PROPERTY(bool crop READ crop WRITE setCrop NOTIFY cropChanged)
    Q_PROPERTY(QColor placeholderColor READ placeholderColor WRITE setPlaceholderColor NOTIFY
                   placeholderColorChanged)
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    explicit ArtImage(QQuickItem *parent = nullptr);

    [[nodiscard]] ArtCache *cache() const { return m_cache; }
    void setCache(ArtCache *cache);
    [[nodiscard]] QUrl url() const { return m_url; }
    void setUrl(const QUrl &url);
    [[nodiscard]] int maxPixels() const { return m_maxPixels; }
    void setMaxPixels(int maxPixels);
    [[nodiscard]] QString appearance() const { return m_appearance; }
    void setAppearance(const QString &appearance);
    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    [[nodiscard]] bool crop() const { return m_crop; }
    void setCrop(bool crop);
    [[nodiscard]] QColor placeholderColor() const { return m_placeholder; }
    void setPlaceholderColor(const QColor &color);
    [[nodiscard]] bool isReady() const { return !m_image.isNull(); }

    void paint(QPainter *painter) override;

    // The step a size is rounded up to, so that views of nearly one size share a decoding.
    [[nodiscard]] static int step(int pixels);

Q_SIGNALS:
    void cacheChanged();
    void urlChanged();
    void maxPixelsChanged();
    void appearanceChanged();
    void radiusChanged();
    void cropChanged();
    void placeholderColorChanged();
    void readyChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    // What the running load is for: a new one replaces it when any of these changes.
    struct TaskKey {
        QUrl url;
        int maxPixels = 0;
        bool dark = false;

        bool operator==(const TaskKey &) const = default;
    };

    static QCoro::Task<> load(QPointer<ArtImage> self, QPointer<ArtCache> cache, TaskKey key);
    void reload();
    [[nodiscard]] TaskKey wanted() const;

    QUrl m_url;
    int m_maxPixels = 0;
    QString m_appearance = QStringLiteral("auto");
    qreal m_radius = 0;
    bool m_crop = true;
    QColor m_placeholder = QColor(128, 128, 128, 40);
    QPointer<ArtCache> m_cache;
    std::optional<TaskKey> m_loading;
    std::optional<TaskKey> m_shown;
    QImage m_image;
};
