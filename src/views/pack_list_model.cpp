#include "pack_list_model.h"

#include "archive_saver.h"
#include "artwork_urls.h"
#include "shop.h"

using namespace Qt::Literals::StringLiterals;

PackListModel::PackListModel(QObject *parent)
    : RowListModel(parent)
{
}

Shop *PackListModel::shop() const
{
    return m_shop;
}

void PackListModel::setShop(Shop *shop)
{
    const bool replaced = replaceSource(m_shop, shop, [this](Shop *source) {
        connect(source, &Shop::contentsChanged, this, &PackListModel::reload);
        connect(source, &Shop::seenChanged, this, &PackListModel::reload);
    });
    if (!replaced)
        return;
    reload();
    Q_EMIT shopChanged();
}

void PackListModel::setOwnedOnly(bool ownedOnly)
{
    if (m_ownedOnly == ownedOnly)
        return;
    m_ownedOnly = ownedOnly;
    reload();
    Q_EMIT ownedOnlyChanged();
}

void PackListModel::reload()
{
    QList<Row> owned;
    QList<Row> others;
    if (m_shop) {
        const OwnedPacks ownedPacks = m_shop->owned();
        const SeenColourways seen = m_shop->seen();
        for (const Pack &pack : m_shop->packs()) {
            const auto mine = ownedPacks.constFind(pack.slug);
            Row row { .slug = pack.slug,
                      .name = pack.name,
                      .line = pack.line,
                      .price = pack.price,
                      .url = pack.url,
                      .owned = mine != ownedPacks.cend(),
                      .free = pack.isFree,
                      .onSale = pack.onSale,
                      .colourways = int(pack.colourways.size()),
                      .timeOfDay = pack.hasTimeOfDay() };
            if (!pack.colourways.isEmpty()) {
                row.artwork =
                    ArtworkUrls::thumbnail(pack.colourways.constFirst(), Appearance::Light);
                row.artworkDark =
                    ArtworkUrls::thumbnail(pack.colourways.constFirst(), Appearance::Dark);
            }
            // A pack never looked at has no record: it is new as a whole, not colourway by
            // colourway, so it carries no count.
            if (row.owned && seen.contains(pack.slug)) {
                const QSet<QString> shown = seen.value(pack.slug);
                for (const Colourway &colourway : pack.colourways)
                    row.fresh += shown.contains(colourway.slug) ? 0 : 1;
            }
            if (row.owned) {
                for (const Archive &archive : mine->archives)
                    row.desktopFiles = row.desktopFiles
                        || archive.device == QLatin1StringView(ArchiveSaver::desktopDevice);
                row.desktopFiles = row.desktopFiles || !mine->files.isEmpty();
            }
            (row.owned ? owned : others).append(row);
        }
    }
    if (!m_ownedOnly)
        owned.append(others);
    replaceRows(m_rows, std::move(owned));
}

int PackListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant PackListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case SlugRole:
        return row.slug;
    case LineRole:
        return row.line;
    case PriceRole:
        return row.price;
    case UrlRole:
        return row.url;
    case OwnedRole:
        return row.owned;
    case FreeRole:
        return row.free;
    case OnSaleRole:
        return row.onSale;
    case SectionRole:
        return row.owned ? tr("Your Packs") : tr("In the Shop");
    case ColourwayCountRole:
        return row.colourways;
    case NewCountRole:
        return row.fresh;
    case ArtworkRole:
        return row.artwork;
    case ArtworkDarkRole:
        return row.artworkDark;
    case HasTimeOfDayRole:
        return row.timeOfDay;
    case HasDesktopFilesRole:
        return row.desktopFiles;
    default:
        return {};
    }
}

QHash<int, QByteArray> PackListModel::roleNames() const
{
    return { { SlugRole, "slug" },
             { NameRole, "name" },
             { LineRole, "line" },
             { PriceRole, "price" },
             { UrlRole, "url" },
             { OwnedRole, "owned" },
             { FreeRole, "free" },
             { OnSaleRole, "onSale" },
             { SectionRole, "section" },
             { ColourwayCountRole, "colourwayCount" },
             { NewCountRole, "newCount" },
             { ArtworkRole, "artwork" },
             { ArtworkDarkRole, "artworkDark" },
             { HasTimeOfDayRole, "hasTimeOfDay" },
             { HasDesktopFilesRole, "hasDesktopFiles" } };
}

int PackListModel::indexOf(const QString &slug) const
{
    return find(m_rows, slug, [](const Row &row) { return row.slug; });
}
