#include "colourway_list_model.h"

#include "artwork_urls.h"
#include "displays.h"
#include "download_cache.h"
#include "favourites.h"
#include "shop.h"

using namespace Qt::Literals::StringLiterals;

ColourwayListModel::ColourwayListModel(QObject *parent)
    : RowListModel(parent)
{
}

Shop *ColourwayListModel::shop() const
{
    return m_shop;
}

Favourites *ColourwayListModel::favourites() const
{
    return m_favourites;
}

Displays *ColourwayListModel::displays() const
{
    return m_displays;
}

void ColourwayListModel::setShop(Shop *shop)
{
    const bool replaced = replaceSource(m_shop, shop, [this](Shop *source) {
        connect(source, &Shop::contentsChanged, this, &ColourwayListModel::reload);
        connect(source, &Shop::seenChanged, this, &ColourwayListModel::refreshStates);
        connect(source, &Shop::progressChanged, this, &ColourwayListModel::refreshStates);
        connect(source, &Shop::downloadedChanged, this, &ColourwayListModel::refreshStates);
    });
    if (!replaced)
        return;
    reload();
    Q_EMIT inputsChanged();
}

void ColourwayListModel::setFavourites(Favourites *favourites)
{
    const bool replaced = replaceSource(m_favourites, favourites, [this](Favourites *source) {
        // Only the favourites shown: the list itself changes.
        connect(source, &Favourites::keysChanged, this, [this] {
            if (m_favouritesOnly)
                reload();
            else
                refreshStates();
        });
    });
    if (!replaced)
        return;
    reload();
    Q_EMIT inputsChanged();
}

void ColourwayListModel::setDisplays(Displays *displays)
{
    const bool replaced = replaceSource(m_displays, displays, [this](Displays *source) {
        connect(source, &Displays::allChanged, this, &ColourwayListModel::refreshStates);
        connect(source, &Displays::fileChanged, this, &ColourwayListModel::refreshStates);
    });
    if (!replaced)
        return;
    refreshStates();
    Q_EMIT inputsChanged();
}

void ColourwayListModel::setPack(const QString &pack)
{
    if (m_pack == pack)
        return;
    m_pack = pack;
    reload();
    Q_EMIT inputsChanged();
}

void ColourwayListModel::setFavouritesOnly(bool only)
{
    if (m_favouritesOnly == only)
        return;
    m_favouritesOnly = only;
    reload();
    Q_EMIT inputsChanged();
}

void ColourwayListModel::reload()
{
    QList<Row> rows;
    if (m_shop) {
        const OwnedPacks owned = m_shop->owned();
        const QList<Phase> phases = m_shop->phases();
        const QStringList favourites = m_favourites ? m_favourites->keys() : QStringList();
        for (const Pack &pack : m_shop->packs()) {
            const auto mine = owned.constFind(pack.slug);
            if (m_pack.isEmpty() ? mine == owned.cend() : pack.slug != m_pack)
                continue;
            for (const Colourway &colourway : pack.colourways) {
                if (m_favouritesOnly && !favourites.contains(pack.slug + u'/' + colourway.slug))
                    continue;
                Row row { .pack = pack.slug,
                          .packName = pack.name,
                          .slug = colourway.slug,
                          .name = colourway.name,
                          .thumbnail = ArtworkUrls::thumbnail(colourway, Appearance::Light),
                          .thumbnailDark = ArtworkUrls::thumbnail(colourway, Appearance::Dark),
                          .preview = ArtworkUrls::preview(colourway, Appearance::Light),
                          .previewDark = ArtworkUrls::preview(colourway, Appearance::Dark),
                          .owned = mine != owned.cend() };
                if (row.owned) {
                    const auto files = mine->files.value(colourway.slug);
                    for (const Edition edition : allEditions) {
                        const auto file = files.constFind(edition);
                        if (file == files.cend())
                            continue;
                        row.editions.append(rawValue(edition));
                        row.fileKeys.append(DownloadCache::fileKey(*file));
                    }
                }
                for (const Phase &phase : phases) {
                    if (const auto url = colourway.phases.constFind(phase.id);
                        url != colourway.phases.cend()) {
                        row.phases.append(QVariantMap { { u"id"_s, phase.id },
                                                        { u"label"_s, phase.label },
                                                        { u"url"_s, *url } });
                    }
                }
                fillStates(row);
                rows.append(std::move(row));
            }
        }
    }
    replaceRows(m_rows, std::move(rows));
}

void ColourwayListModel::fillStates(Row &row) const
{
    row.favourite = m_favourites && m_favourites->keys().contains(row.key());
    row.fresh = false;
    row.downloaded = false;
    row.downloading = false;
    row.progress = 0;
    row.shown = false;
    if (!m_shop)
        return;
    const SeenColourways seen = m_shop->seen();
    // Only a pack looked at before has colourways new to the user.
    row.fresh = row.owned && seen.contains(row.pack) && !seen.value(row.pack).contains(row.slug);
    const QSet<QString> downloaded = m_shop->downloaded();
    const DownloadProgress progress = m_shop->progress();
    for (const QString &fileKey : std::as_const(row.fileKeys)) {
        row.downloaded = row.downloaded || downloaded.contains(fileKey);
        if (const auto it = progress.constFind(fileKey); it != progress.cend()) {
            row.downloading = true;
            row.progress = std::max(row.progress, *it);
        }
    }
    if (m_displays) {
        const PlacementFile file = m_displays->file();
        for (const Displays::Display &display : m_displays->all()) {
            const auto placement = file.placements.constFind(display.id);
            if (placement != file.placements.cend() && placement->pack == row.pack
                && placement->colourway == row.slug && m_displays->showsOwnWallpaper(display)) {
                row.shown = true;
            }
        }
    }
}

void ColourwayListModel::refreshStates()
{
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        Row updated = m_rows.at(i);
        fillStates(updated);
        if (updated == m_rows.at(i))
            continue;
        m_rows[i] = std::move(updated);
        const QModelIndex changed = index(int(i));
        Q_EMIT dataChanged(
            changed, changed,
            { FavouriteRole, NewRole, DownloadedRole, DownloadingRole, ProgressRole, ShownRole });
    }
}

int ColourwayListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ColourwayListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case KeyRole:
        return row.key();
    case PackRole:
        return row.pack;
    case PackNameRole:
        return row.packName;
    case SlugRole:
        return row.slug;
    case ThumbnailRole:
        return row.thumbnail;
    case ThumbnailDarkRole:
        return row.thumbnailDark;
    case PreviewRole:
        return row.preview;
    case PreviewDarkRole:
        return row.previewDark;
    case FavouriteRole:
        return row.favourite;
    case NewRole:
        return row.fresh;
    case OwnedRole:
        return row.owned;
    case EditionsRole:
        return row.editions;
    case DownloadedRole:
        return row.downloaded;
    case DownloadingRole:
        return row.downloading;
    case ProgressRole:
        return row.progress;
    case ShownRole:
        return row.shown;
    case PhasesRole:
        return row.phases;
    default:
        return {};
    }
}

QHash<int, QByteArray> ColourwayListModel::roleNames() const
{
    return { { KeyRole, "key" },
             { PackRole, "pack" },
             { PackNameRole, "packName" },
             { SlugRole, "slug" },
             { NameRole, "name" },
             { ThumbnailRole, "thumbnail" },
             { ThumbnailDarkRole, "thumbnailDark" },
             { PreviewRole, "preview" },
             { PreviewDarkRole, "previewDark" },
             { FavouriteRole, "favourite" },
             { NewRole, "isNew" },
             { OwnedRole, "owned" },
             { EditionsRole, "editions" },
             { DownloadedRole, "downloaded" },
             { DownloadingRole, "downloading" },
             { ProgressRole, "progress" },
             { ShownRole, "shown" },
             { PhasesRole, "phases" } };
}

int ColourwayListModel::indexOf(const QString &key) const
{
    return find(m_rows, key, [](const Row &row) { return row.key(); });
}
