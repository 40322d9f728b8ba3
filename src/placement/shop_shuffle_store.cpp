#include "shop_shuffle_store.h"

#include "download_cache.h"
#include "edition_choice.h"
#include "shop.h"
#include "wallpaper_requests.h"

ShopShuffleStore::ShopShuffleStore(Shop *shop, WallpaperRequests *requests, QObject *parent)
    : ShuffleStore(parent)
    , m_shop(shop)
    , m_requests(requests)
{
    connect(shop, &Shop::contentsChanged, this, &ShuffleStore::choicesChanged);
}

QList<ShuffleChoice> ShopShuffleStore::choices() const
{
    QList<ShuffleChoice> choices;
    const OwnedPacks owned = m_shop->owned();
    for (const Pack &pack : m_shop->packs()) {
        const auto ownedPack = owned.constFind(pack.slug);
        if (ownedPack == owned.cend())
            continue;
        for (const Colourway &colourway : pack.colourways) {
            // A colourway without any file yet cannot be shown.
            if (chooseEdition(*ownedPack, colourway.slug, Edition::Automatic))
                choices.append({ pack, colourway });
        }
    }
    return choices;
}

std::optional<WallpaperFile> ShopShuffleStore::file(const ShuffleChoice &choice,
                                                    Edition wanted) const
{
    const auto edition = m_shop->editionFor(choice.pack.slug, choice.colourway.slug, wanted);
    if (!edition)
        return std::nullopt;
    return m_shop->owned().value(choice.pack.slug).file(choice.colourway.slug, *edition);
}

bool ShopShuffleStore::isDownloaded(const ShuffleChoice &choice, Edition wanted) const
{
    const auto wallpaper = file(choice, wanted);
    return wallpaper && m_shop->downloaded().contains(DownloadCache::fileKey(*wallpaper));
}

QCoro::Task<> ShopShuffleStore::setWallpaper(ShuffleChoice choice, Edition wanted,
                                             QStringList displayIds)
{
    const QPointer<Shop> shop = m_shop;
    const QPointer<WallpaperRequests> requests = m_requests;
    const auto wallpaper = file(choice, wanted);
    if (!wallpaper)
        throw DownloadFailed(Shop::Unavailable().description());
    // The download first, on its own: the shuffle falls back to a file on disk only when this
    // part fails, never when the desktop refuses the picture.
    try {
        co_await shop->localFile(*wallpaper);
    } catch (const Error &error) {
        throw DownloadFailed(error.description());
    }
    if (!requests)
        co_return;
    co_await requests->setWallpaper(choice.pack.slug, choice.colourway.slug, wanted, displayIds);
}
