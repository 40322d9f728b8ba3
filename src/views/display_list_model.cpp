#include "display_list_model.h"

#include "artwork_urls.h"
#include "displays.h"
#include "edition_labels.h"
#include "shop.h"

using namespace Qt::Literals::StringLiterals;

DisplayListModel::DisplayListModel(QObject *parent)
    : RowListModel(parent)
{
}

Displays *DisplayListModel::displays() const
{
    return m_displays;
}

Shop *DisplayListModel::shop() const
{
    return m_shop;
}

void DisplayListModel::setDisplays(Displays *displays)
{
    const bool replaced = replaceSource(m_displays, displays, [this](Displays *source) {
        connect(source, &Displays::allChanged, this, &DisplayListModel::reload);
        connect(source, &Displays::fileChanged, this, &DisplayListModel::reload);
    });
    if (!replaced)
        return;
    reload();
    Q_EMIT inputsChanged();
}

void DisplayListModel::setShop(Shop *shop)
{
    const bool replaced = replaceSource(m_shop, shop, [this](Shop *source) {
        connect(source, &Shop::contentsChanged, this, &DisplayListModel::reload);
    });
    if (!replaced)
        return;
    reload();
    Q_EMIT inputsChanged();
}

void DisplayListModel::reload()
{
    QList<Row> rows;
    QRectF bounds;
    if (m_displays) {
        const PlacementFile file = m_displays->file();
        const QList<Pack> packs = m_shop ? m_shop->packs() : QList<Pack>();
        for (const Displays::Display &display : m_displays->all()) {
            Row row { .id = display.id,
                      .name = display.name,
                      .frame = display.frame,
                      .main = display.isMain,
                      .thumbnail =
                          display.thumbnail ? QUrl::fromLocalFile(*display.thumbnail) : QUrl(),
                      .thumbnailDark = display.thumbnailDark
                          ? QUrl::fromLocalFile(*display.thumbnailDark)
                          : QUrl(),
                      .own = m_displays->showsOwnWallpaper(display) };
            bounds = bounds.united(display.frame);
            const auto placement = file.placements.constFind(display.id);
            if (row.own && placement != file.placements.cend()) {
                row.pack = placement->pack;
                row.colourway = placement->colourway;
                row.edition = placement->edition;
                row.caption = placement->colourway;
                row.detail = placement->pack;
                for (const Pack &pack : packs) {
                    if (pack.slug != placement->pack)
                        continue;
                    row.detail = pack.name;
                    for (const Colourway &colourway : pack.colourways) {
                        if (colourway.slug != placement->colourway)
                            continue;
                        row.caption = colourway.name;
                        row.artwork = ArtworkUrls::thumbnail(colourway, Appearance::Light);
                        row.artworkDark = ArtworkUrls::thumbnail(colourway, Appearance::Dark);
                    }
                }
                row.detail =
                    tr("%1 · %2").arg(row.detail, EditionLabels::edition(placement->edition));
            } else {
                row.caption = tr("Not from your packs");
            }
            rows.append(std::move(row));
        }
    }
    if (bounds != m_bounds) {
        m_bounds = bounds;
        Q_EMIT boundsChanged();
    }
    replaceRows(m_rows, std::move(rows));
}

QString DisplayListModel::mainId() const
{
    for (const Row &row : m_rows) {
        if (row.main)
            return row.id;
    }
    return m_rows.isEmpty() ? QString() : m_rows.constFirst().id;
}

int DisplayListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant DisplayListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return row.name;
    case IdRole:
        return row.id;
    case FrameRole:
        return row.frame;
    case MainRole:
        return row.main;
    case ThumbnailRole:
        return row.thumbnail;
    case ThumbnailDarkRole:
        return row.thumbnailDark;
    case OwnRole:
        return row.own;
    case CaptionRole:
        return row.caption;
    case DetailRole:
        return row.detail;
    case PackRole:
        return row.pack;
    case ColourwayRole:
        return row.colourway;
    case EditionRole:
        return row.edition;
    case ArtworkRole:
        return row.artwork;
    case ArtworkDarkRole:
        return row.artworkDark;
    default:
        return {};
    }
}

QHash<int, QByteArray> DisplayListModel::roleNames() const
{
    return { { IdRole, "displayId" },
             { NameRole, "name" },
             { FrameRole, "frame" },
             { MainRole, "isMain" },
             { ThumbnailRole, "thumbnail" },
             { ThumbnailDarkRole, "thumbnailDark" },
             { OwnRole, "own" },
             { CaptionRole, "caption" },
             { DetailRole, "detail" },
             { PackRole, "pack" },
             { ColourwayRole, "colourway" },
             { EditionRole, "edition" },
             { ArtworkRole, "artwork" },
             { ArtworkDarkRole, "artworkDark" } };
}

int DisplayListModel::indexOf(const QString &id) const
{
    return find(m_rows, id, [](const Row &row) { return row.id; });
}

QStringList DisplayListModel::ids() const
{
    QStringList ids;
    for (const Row &row : m_rows)
        ids.append(row.id);
    return ids;
}
