#pragma once

#include <QByteArray>
#include <QHash>
#include <QPointer>
#include <QString>
#include <memory>
#include <optional>

class HeicDecoder;
class Shop;

// Swatches for the wallpaper query, taken from the thumbnail that each wallpaper file carries
// inside it: the picture itself, small. Only downloaded files are read, and a file's swatch is
// kept once made, so asking costs a few milliseconds the first time and nothing after. A
// colourway with no file on disk has no swatch: the catalogue's artwork comes over the network,
// which a query must not wait for.
class Swatches {
public:
    static constexpr int size = 64; // pixels along the longer side

    Swatches(Shop *shop, std::shared_ptr<const HeicDecoder> heic);

    // A PNG of the colourway's automatic edition (or the nearest one there is).
    [[nodiscard]] std::optional<QByteArray> operator()(const QString &pack,
                                                       const QString &colourway);

    // A PNG of the embedded thumbnail of the HEIC file's main picture, at most size pixels wide
    // and high; none when the file cannot be read or has no thumbnail.
    [[nodiscard]] static std::optional<QByteArray> fromFile(const HeicDecoder &heic,
                                                            const QString &path);

private:
    QPointer<Shop> m_shop;
    std::shared_ptr<const HeicDecoder> m_heic;
    QHash<QString, std::optional<QByteArray>> m_made; // by local path
};
