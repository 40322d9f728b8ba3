#include "wallpaper_entity.h"

#include "content_rules.h"

#include <QDBusArgument>
#include <QRegularExpression>

QDBusArgument &operator<<(QDBusArgument &argument, const WallpaperEntity &entity)
{
    argument.beginStructure();
    argument << entity.id << entity.name << entity.packName;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, WallpaperEntity &entity)
{
    argument.beginStructure();
    argument >> entity.id >> entity.name >> entity.packName;
    argument.endStructure();
    return argument;
}

std::optional<ColourwayKey> ColourwayKey::parse(QStringView text)
{
    const auto parts = text.split(u'/');
    if (parts.size() != 2 || !ContentRules::isValidSlug(parts[0])
        || !ContentRules::isValidSlug(parts[1]))
        return std::nullopt;
    return ColourwayKey { parts[0].toString(), parts[1].toString() };
}

WallpaperQuery::WallpaperQuery(const QList<Pack> &packs, const QMap<QString, OwnedPack> &owned,
                               const QStringList &favourites)
{
    QList<WallpaperEntity> library;
    for (const Pack &pack : packs) {
        if (!owned.contains(pack.slug))
            continue;
        for (const Colourway &colourway : pack.colourways)
            library.append({ .id = pack.slug + u'/' + colourway.slug,
                             .name = colourway.name,
                             .packName = pack.name });
    }
    for (const QString &key : favourites) {
        const auto found =
            std::find_if(library.begin(), library.end(),
                         [&](const WallpaperEntity &entity) { return entity.id == key; });
        if (found != library.end()) {
            m_ordered.append(*found);
            library.erase(found);
        }
    }
    m_ordered.append(library);
}

std::optional<WallpaperEntity> WallpaperQuery::entity(const QString &id) const
{
    for (const WallpaperEntity &entity : m_ordered) {
        if (entity.id == id)
            return entity;
    }
    return std::nullopt;
}

QList<WallpaperEntity> WallpaperQuery::entities(const QString &matching) const
{
    static const QRegularExpression spaces(QStringLiteral("\\s+"));
    const QStringList words = matching.split(spaces, Qt::SkipEmptyParts);
    QList<WallpaperEntity> found;
    for (const WallpaperEntity &entity : m_ordered) {
        const bool matches = std::all_of(words.cbegin(), words.cend(), [&](const QString &word) {
            return entity.name.contains(word, Qt::CaseInsensitive)
                || entity.packName.contains(word, Qt::CaseInsensitive)
                || entity.id.contains(word, Qt::CaseInsensitive);
        });
        if (matches)
            found.append(entity);
    }
    return found;
}

QList<WallpaperEntity> WallpaperQuery::suggestedEntities() const
{
    return entities(QString());
}
