#pragma once

#include <QCache>
#include <QCoroTask>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <memory>
#include <optional>

class HeicDecoder;
class QNetworkAccessManager;

// The one in-memory cache of decoded artwork: each picture at each size and appearance is decoded
// once per run, off the main thread, straight to the size it is shown at. Wallpaper files may
// hold several pictures; the one for the appearance comes from the file's own metadata.
class ArtCache : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY darkChanged)

public:
    // network: the shop's manager, which trusts the shop's certificates. shop: the service root;
    // art is fetched over HTTPS from its host and port alone. heic: reads wallpaper files.
    explicit ArtCache(QNetworkAccessManager *network, QUrl shop,
                      std::shared_ptr<const HeicDecoder> heic, QObject *parent = nullptr);
    ~ArtCache() override;

    // url|maxPixels|dark or url|maxPixels|light.
    [[nodiscard]] static QString key(const QUrl &url, int maxPixels, bool dark);

    // The picture, from the cache or decoded now; none when it cannot be had (not cached, so the
    // next view asks again).
    [[nodiscard]] QCoro::Task<std::optional<QImage>> image(QUrl url, int maxPixels, bool dark);
    [[nodiscard]] bool contains(const QString &key) const { return m_images.contains(key); }
    // Drops every decoded picture, once the views that showed them are gone.
    void clear() { m_images.clear(); }

    // Decoding, safe on any thread: HEIC through heic (its embedded thumbnail when that is large
    // enough), everything else through Qt. Null when it cannot be read.
    [[nodiscard]] static QImage decodeFile(const HeicDecoder &heic, const QString &path,
                                           int maxPixels, bool dark);
    [[nodiscard]] static QImage decodeData(const HeicDecoder &heic, const QByteArray &data,
                                           int maxPixels, bool dark);

    // The desktop's colour scheme, which views without an appearance of their own follow.
    [[nodiscard]] bool isDark() const { return m_dark; }
    void setDark(bool dark);

    // Bytes the cached images may take before the least recently used go.
    static constexpr qsizetype costLimit = qsizetype(96) * 1024 * 1024;
    // The largest picture fetched: well above any artwork, even a full-size wallpaper file.
    static constexpr qint64 maxFetchBytes = qint64(64) * 1024 * 1024;

Q_SIGNALS:
    void darkChanged();

private:
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> fetch(QUrl url);

    QPointer<QNetworkAccessManager> m_network;
    QUrl m_shop;
    std::shared_ptr<const HeicDecoder> m_heic;
    QCache<QString, QImage> m_images;
    bool m_dark = false;
};
