#include "intents.h"

#include "defaults.h"
#include "displays.h"
#include "favourites.h"
#include "shop.h"
#include "shuffle.h"
#include "wallpaper_requests.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

QString Intents::Failure::description() const
{
    switch (m_case) {
    case Case::NotReady:
        return QCoreApplication::translate("Intents", "Still starting. Try again in a moment.");
    case Case::NotFound:
        return QCoreApplication::translate("Intents", "That wallpaper isn't in your packs.");
    case Case::NoWallpaper:
        return QCoreApplication::translate(
            "Intents", "The main display isn't showing one of your wallpapers.");
    case Case::Overtaken:
        break;
    }
    return QCoreApplication::translate("Intents",
                                       "Another wallpaper was set while this one downloaded.");
}

Intents::Intents(Services services, QObject *parent)
    : QObject(parent)
    , m_services(services)
{
}

bool Intents::isReady() const
{
    return m_services.shop->status() != Shop::Status::Loading;
}

void Intents::requireReady() const
{
    if (!isReady())
        throw Failure(Failure::Case::NotReady);
}

QCoro::Task<> Intents::shuffleWallpaper()
{
    requireReady();
    try {
        co_await m_services.shuffle->shuffleNow();
    } catch (const WallpaperRequests::Overtaken &) {
        throw Failure(Failure::Case::Overtaken);
    }
}

QCoro::Task<> Intents::setWallpaper(QString id, EditionOption edition)
{
    requireReady();
    const auto key = ColourwayKey::parse(id);
    if (!key || !query().entity(id))
        throw Failure(Failure::Case::NotFound);
    const QStringList displayIds = m_services.displays->ids();
    QStringList set;
    try {
        set = co_await m_services.requests->setWallpaper(key->pack, key->colourway,
                                                         toEdition(edition), displayIds);
    } catch (const WallpaperRequests::Overtaken &) {
        throw Failure(Failure::Case::Overtaken);
    } catch (const Shop::NotInPacks &) {
        // The pack went from the library while the file downloaded.
        throw Failure(Failure::Case::NotFound);
    }
    // The displays a newer wallpaper took while this one downloaded keep it; the caller hears.
    if (set.size() < displayIds.size())
        throw Failure(Failure::Case::Overtaken);
}

WallpaperEntity Intents::currentWallpaper() const
{
    requireReady();
    const auto all = m_services.displays->all();
    const auto main = std::find_if(all.cbegin(), all.cend(),
                                   [](const Displays::Display &display) { return display.isMain; });
    if (main == all.cend() || !m_services.displays->showsOwnWallpaper(*main))
        throw Failure(Failure::Case::NoWallpaper);
    const auto placement = m_services.displays->placement(main->id);
    const auto entity = query().entity(placement->pack + u'/' + placement->colourway);
    if (!entity)
        throw Failure(Failure::Case::NoWallpaper);
    return *entity;
}

void Intents::setShuffle(bool isOn, std::optional<ShuffleIntervalOption> interval,
                         std::optional<ShuffleSourceOption> source)
{
    Shuffle *shuffle = m_services.shuffle;
    const bool saved = (!interval || shuffle->setInterval(toInterval(*interval)))
        && (!source || shuffle->setSource(toSource(*source))) && shuffle->setOn(isOn);
    if (!saved)
        throw Defaults::NotSaved();
}

void Intents::favouriteCurrentWallpaper()
{
    const WallpaperEntity current = currentWallpaper();
    if (m_services.favourites->keys().contains(current.id))
        return;
    const auto key = ColourwayKey::parse(current.id);
    if (!m_services.favourites->toggle(key->pack, key->colourway))
        throw Defaults::NotSaved();
}

WallpaperQuery Intents::query() const
{
    const Shop *shop = m_services.shop;
    return { shop->packs(), shop->owned(), m_services.favourites->keys() };
}
