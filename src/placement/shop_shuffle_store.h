#pragma once

#include "owned_pack.h"
#include "shuffle_store.h"

#include <QPointer>

class Shop;
class WallpaperRequests;

// The library store as the shuffle sees it: the colourways of the user's packs in library
// order, and a set that downloads first so that a failed download is told apart.
class ShopShuffleStore : public ShuffleStore {
    Q_OBJECT

public:
    ShopShuffleStore(Shop *shop, WallpaperRequests *requests, QObject *parent = nullptr);

    [[nodiscard]] QList<ShuffleChoice> choices() const override;
    [[nodiscard]] bool isDownloaded(const ShuffleChoice &choice, Edition wanted) const override;
    [[nodiscard]] QCoro::Task<> setWallpaper(ShuffleChoice choice, Edition wanted,
                                             QStringList displayIds) override;

private:
    [[nodiscard]] std::optional<WallpaperFile> file(const ShuffleChoice &choice,
                                                    Edition wanted) const;

    QPointer<Shop> m_shop;
    QPointer<WallpaperRequests> m_requests;
};
