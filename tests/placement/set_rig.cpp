#include "set_rig.h"

#include "clock.h"
#include "download_cache.h"
#include "libheif_decoder.h"
#include "renderer.h"

using namespace Qt::Literals::StringLiterals;

SetRig::SetRig(QList<ContentPack> packs, QString folder)
    : m_root(folder.isEmpty() ? m_folder.path() : std::move(folder))
    , m_clock(std::make_shared<Clock>())
{
    m_displays = std::make_unique<Displays>(&m_desktop, PlacementRecords(m_root), m_clock);
    m_setter = std::make_unique<WallpaperSetter>(
        m_displays.get(),
        Renderer(DownloadCache(m_root).renderingFolder(), std::make_shared<LibheifDecoder>()),
        nullptr, m_clock);
    m_store = std::make_unique<StoreRig>(std::move(packs), true, m_root, m_setter.get());
    m_requests = std::make_unique<WallpaperRequests>(
        WallpaperRequests::Services { .shop = &m_store->store(),
                                      .displays = m_displays.get(),
                                      .setter = m_setter.get(),
                                      .clock = m_clock });
    m_reconciler =
        std::make_unique<Reconciler>(Reconciler::Services { .shop = &m_store->store(),
                                                            .displays = m_displays.get(),
                                                            .setter = m_setter.get(),
                                                            .requests = m_requests.get(),
                                                            .thread = &m_store->downloads() });
}

QString SetRig::shownFile(const QString &displayId) const
{
    const auto placement = m_displays->placement(displayId);
    if (!placement)
        return {};
    const Renderer renderer(DownloadCache(m_root).renderingFolder());
    return renderer.sourceOf(placement->path).value_or(placement->path);
}

QString SetRig::localPath(const QString &pack, const QString &colourway, Edition edition) const
{
    return m_store->store().cache().localPath(m_store->file(pack, colourway, edition));
}

QCoro::Task<QStringList> SetRig::set(const QString &colourway, Edition edition,
                                     const QStringList &displayIds)
{
    return m_requests->setWallpaper(u"aurora"_s, colourway, edition, displayIds);
}

ContentFile sampleFile(const QString &pack, const QString &colourway, const QString &edition)
{
    return { .colourway = colourway,
             .edition = edition,
             .copyOf = u"" QUENNET_DEVSHOP_CONTENT
                       "/files/%1/%2-%3.heic"_s.arg(pack, colourway, edition) };
}
