#include "catalogue_reply.h"

#include "content_rules.h"
#include "json_fields.h"

#include <QSet>

using namespace Qt::Literals::StringLiterals;
using namespace JsonFields;

namespace {
std::optional<QUrl> resolve(const QUrl &base, const std::optional<QString> &location)
{
    if (!location)
        return std::nullopt;
    const QUrl url = base.resolved(QUrl(*location));
    return url.isValid() && !url.isEmpty() ? std::optional(url) : std::nullopt;
}

void insertResolved(QMap<Appearance, QUrl> &map, Appearance appearance, const QUrl &base,
                    const std::optional<QString> &location)
{
    if (const auto url = resolve(base, location))
        map.insert(appearance, *url);
}

// A pack the slug rule accepts that was not seen before: the first of two equal slugs wins.
bool isNewValidSlug(QSet<QString> &seen, const QString &slug)
{
    if (!ContentRules::isValidSlug(slug) || seen.contains(slug))
        return false;
    seen.insert(slug);
    return true;
}
} // namespace

CatalogueReply::ArtReply::Pair CatalogueReply::ArtReply::Pair::fromJson(const Object &object)
{
    return { optionalString(object, "light"), optionalString(object, "dark") };
}

QJsonObject CatalogueReply::ArtReply::Pair::toJson() const
{
    QJsonObject object;
    insertOptional(object, "light"_L1, light);
    insertOptional(object, "dark"_L1, dark);
    return object;
}

CatalogueReply::ArtReply CatalogueReply::ArtReply::fromJson(const Object &object)
{
    ArtReply art {
        .light = optionalString(object, "light"),
        .dark = optionalString(object, "dark"),
        .desktop = std::nullopt,
        .phases = std::nullopt,
    };
    if (const auto desktop = optionalObject(object, "desktop"))
        art.desktop = Pair::fromJson(*desktop);
    if (const auto phases = optionalObject(object, "phases")) {
        QMap<QString, QString> map;
        for (const auto field : *phases) {
            std::string_view picture;
            if (field.value.get(picture) != simdjson::SUCCESS)
                throw DecodingError(u"A phase picture of \"art\" is not a string."_s);
            map.insert(toQString(field.key), toQString(picture));
        }
        art.phases = std::move(map);
    }
    return art;
}

QJsonObject CatalogueReply::ArtReply::toJson() const
{
    QJsonObject object;
    insertOptional(object, "light"_L1, light);
    insertOptional(object, "dark"_L1, dark);
    if (desktop)
        object.insert("desktop"_L1, desktop->toJson());
    if (phases) {
        QJsonObject map;
        for (auto it = phases->cbegin(); it != phases->cend(); ++it)
            map.insert(it.key(), it.value());
        object.insert("phases"_L1, map);
    }
    return object;
}

CatalogueReply::ColourwayReply CatalogueReply::ColourwayReply::fromJson(const Object &object)
{
    return {
        .slug = string(object, "slug"),
        .name = string(object, "name"),
        .art = ArtReply::fromJson(JsonFields::object(object, "art")),
    };
}

QJsonObject CatalogueReply::ColourwayReply::toJson() const
{
    return { { "slug"_L1, slug }, { "name"_L1, name }, { "art"_L1, art.toJson() } };
}

CatalogueReply::FreeReply CatalogueReply::FreeReply::fromJson(const Object &object)
{
    return {
        .updatedAt = optionalTime(object, "updatedAt"),
        .colourways =
            objects<LibraryReply::ColourwayReply>(array(object, "colourways"), "colourways"),
        .archives =
            objects<LibraryReply::ArchiveReply>(optionalArray(object, "archives"), "archives"),
    };
}

QJsonObject CatalogueReply::FreeReply::toJson() const
{
    QJsonObject object { { "colourways"_L1, toArray(colourways) },
                         { "archives"_L1, toArray(archives) } };
    insertOptional(object, "updatedAt"_L1, updatedAt);
    return object;
}

CatalogueReply::PackReply CatalogueReply::PackReply::fromJson(const Object &object)
{
    PackReply pack {
        .slug = string(object, "slug"),
        .name = string(object, "name"),
        .line = string(object, "line"),
        .price = string(object, "price"),
        .url = string(object, "url"),
        .onSale = boolean(object, "onSale"),
        .colourways = objects<ColourwayReply>(array(object, "colourways"), "colourways"),
        .free = std::nullopt,
        .released = optionalBoolean(object, "released"),
    };
    if (const auto free = optionalObject(object, "free"))
        pack.free = FreeReply::fromJson(*free);
    return pack;
}

QJsonObject CatalogueReply::PackReply::toJson() const
{
    QJsonObject object { { "slug"_L1, slug },
                         { "name"_L1, name },
                         { "line"_L1, line },
                         { "price"_L1, price },
                         { "url"_L1, url },
                         { "onSale"_L1, onSale },
                         { "colourways"_L1, toArray(colourways) } };
    if (free)
        object.insert("free"_L1, free->toJson());
    if (released)
        object.insert("released"_L1, *released);
    return object;
}

CatalogueReply::PhaseReply CatalogueReply::PhaseReply::fromJson(const Object &object)
{
    return { string(object, "id"), string(object, "label") };
}

QJsonObject CatalogueReply::PhaseReply::toJson() const
{
    return { { "id"_L1, id }, { "label"_L1, label } };
}

CatalogueReply CatalogueReply::decode(const QByteArray &json)
{
    simdjson::dom::parser parser;
    return fromJson(parseObject(parser, json));
}

CatalogueReply CatalogueReply::fromJson(const Object &object)
{
    return {
        .packs = objects<PackReply>(array(object, "packs"), "packs"),
        .phases = objects<PhaseReply>(array(object, "phases"), "phases"),
    };
}

QJsonObject CatalogueReply::toJson() const
{
    return { { "packs"_L1, toArray(packs) }, { "phases"_L1, toArray(phases) } };
}

QList<Pack> CatalogueReply::catalogue(const QUrl &base) const
{
    QList<Pack> result;
    QSet<QString> seen;
    for (const auto &reply : packs) {
        if (!isNewValidSlug(seen, reply.slug))
            continue;
        Pack pack {
            .slug = reply.slug,
            .name = reply.name,
            .line = reply.line,
            .price = reply.price,
            .url = QUrl(reply.url),
            .onSale = reply.onSale,
            .isFree = reply.free.has_value(),
            .colourways = {},
        };
        QSet<QString> seenColourways;
        for (const auto &colourwayReply : reply.colourways) {
            // Colourway slugs become favourite and shuffle keys, so they obey the slug rule too.
            if (!isNewValidSlug(seenColourways, colourwayReply.slug))
                continue;
            const ArtReply &art = colourwayReply.art;
            Colourway colourway { .slug = colourwayReply.slug, .name = colourwayReply.name };
            insertResolved(colourway.thumbnails, Appearance::Light, base, art.light);
            insertResolved(colourway.thumbnails, Appearance::Dark, base, art.dark);
            if (art.desktop) {
                insertResolved(colourway.desktop, Appearance::Light, base, art.desktop->light);
                insertResolved(colourway.desktop, Appearance::Dark, base, art.desktop->dark);
            }
            if (art.phases) {
                for (auto it = art.phases->cbegin(); it != art.phases->cend(); ++it) {
                    if (const auto url = resolve(base, it.value()))
                        colourway.phases.insert(it.key(), *url);
                }
            }
            pack.colourways.append(std::move(colourway));
        }
        result.append(std::move(pack));
    }
    return result;
}

QList<Phase> CatalogueReply::allPhases() const
{
    QList<Phase> result;
    result.reserve(phases.size());
    for (const auto &phase : phases)
        result.append({ phase.id, phase.label });
    return result;
}

QMap<QString, OwnedPack> CatalogueReply::freePacks(const QUrl &base) const
{
    QMap<QString, OwnedPack> result;
    QSet<QString> seen;
    const SourceRule rule = SourceRule::urlRule(base);
    for (const auto &pack : packs) {
        if (!isNewValidSlug(seen, pack.slug) || !pack.free)
            continue;
        result.insert(pack.slug,
                      LibraryReply::makeOwnedPack(pack.slug, std::nullopt, pack.free->updatedAt,
                                                  pack.free->colourways, pack.free->archives,
                                                  rule));
    }
    return result;
}
