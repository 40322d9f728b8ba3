#include "library_reply.h"

#include "content_rules.h"
#include "json_fields.h"

using namespace Qt::Literals::StringLiterals;
using namespace JsonFields;

LibraryReply::FileReply LibraryReply::FileReply::fromJson(const Object &object)
{
    return {
        .id = string(object, "id"),
        .edition = string(object, "edition"),
        .bytes = integer(object, "bytes"),
        .sha256 = optionalString(object, "sha256"),
        .path = optionalString(object, "path"),
        .url = optionalString(object, "url"),
    };
}

QJsonObject LibraryReply::FileReply::toJson() const
{
    QJsonObject object { { "id"_L1, id }, { "edition"_L1, edition }, { "bytes"_L1, bytes } };
    insertOptional(object, "sha256"_L1, sha256);
    insertOptional(object, "path"_L1, path);
    insertOptional(object, "url"_L1, url);
    return object;
}

LibraryReply::ColourwayReply LibraryReply::ColourwayReply::fromJson(const Object &object)
{
    return {
        .slug = string(object, "slug"),
        .files = objects<FileReply>(array(object, "files"), "files"),
    };
}

QJsonObject LibraryReply::ColourwayReply::toJson() const
{
    return { { "slug"_L1, slug }, { "files"_L1, toArray(files) } };
}

LibraryReply::ArchiveReply LibraryReply::ArchiveReply::fromJson(const Object &object)
{
    return {
        .id = string(object, "id"),
        .device = string(object, "device"),
        .filename = string(object, "filename"),
        .bytes = integer(object, "bytes"),
        .sha256 = optionalString(object, "sha256"),
        .path = optionalString(object, "path"),
        .url = optionalString(object, "url"),
    };
}

QJsonObject LibraryReply::ArchiveReply::toJson() const
{
    QJsonObject object {
        { "id"_L1, id }, { "device"_L1, device }, { "filename"_L1, filename }, { "bytes"_L1, bytes }
    };
    insertOptional(object, "sha256"_L1, sha256);
    insertOptional(object, "path"_L1, path);
    insertOptional(object, "url"_L1, url);
    return object;
}

LibraryReply::PackReply LibraryReply::PackReply::fromJson(const Object &object)
{
    return {
        .slug = string(object, "slug"),
        .since = optionalTime(object, "since"),
        .updatedAt = optionalTime(object, "updatedAt"),
        .colourways = objects<ColourwayReply>(array(object, "colourways"), "colourways"),
        .archives = objects<ArchiveReply>(optionalArray(object, "archives"), "archives"),
    };
}

QJsonObject LibraryReply::PackReply::toJson() const
{
    QJsonObject object { { "slug"_L1, slug },
                         { "colourways"_L1, toArray(colourways) },
                         { "archives"_L1, toArray(archives) } };
    insertOptional(object, "since"_L1, since);
    insertOptional(object, "updatedAt"_L1, updatedAt);
    return object;
}

LibraryReply LibraryReply::decode(const QByteArray &json)
{
    simdjson::dom::parser parser;
    return fromJson(parseObject(parser, json));
}

LibraryReply LibraryReply::fromJson(const Object &object)
{
    return {
        .email = string(object, "email"),
        .packs = objects<PackReply>(array(object, "packs"), "packs"),
    };
}

QJsonObject LibraryReply::toJson() const
{
    return { { "email"_L1, email }, { "packs"_L1, toArray(packs) } };
}

QMap<QString, OwnedPack> LibraryReply::ownedPacks(const SourceRule &rule) const
{
    QMap<QString, OwnedPack> result;
    for (const auto &pack : packs) {
        if (!ContentRules::isValidSlug(pack.slug))
            continue;
        // A later pack with the same slug replaces the earlier one.
        result.insert(pack.slug,
                      makeOwnedPack(pack.slug, pack.since, pack.updatedAt, pack.colourways,
                                    pack.archives, rule));
    }
    return result;
}

OwnedPack LibraryReply::makeOwnedPack(const QString &slug, std::optional<QDateTime> since,
                                      std::optional<QDateTime> updatedAt,
                                      const QList<ColourwayReply> &colourways,
                                      const QList<ArchiveReply> &archives, const SourceRule &rule)
{
    OwnedPack pack { .slug = slug, .since = std::move(since), .updatedAt = std::move(updatedAt) };

    for (const auto &colourway : colourways) {
        if (!ContentRules::isValidSlug(colourway.slug))
            continue;
        QMap<Edition, WallpaperFile> &editions = pack.files[colourway.slug];
        for (const auto &file : colourway.files) {
            const auto edition = editionFromRawValue(file.edition);
            if (!edition || !ContentRules::isValidIdentifier(file.id) || !file.sha256
                || !ContentRules::isValidHash(*file.sha256))
                continue;
            auto source = rule.source(file.path, file.url);
            if (!source)
                continue;
            // Later files of the same edition replace earlier ones.
            editions[*edition] = WallpaperFile {
                .id = file.id,
                .pack = slug,
                .colourway = colourway.slug,
                .edition = *edition,
                .bytes = file.bytes,
                .sha256 = file.sha256,
                .source = std::move(*source),
            };
        }
        if (editions.isEmpty())
            pack.files.remove(colourway.slug);
    }

    for (const auto &archive : archives) {
        if (!ContentRules::isValidIdentifier(archive.id)
            || !ContentRules::isValidSlug(archive.device))
            continue;
        // An archive with nowhere to fetch it from is as useless as such a file.
        const auto source = rule.source(archive.path, archive.url);
        if (!source)
            continue;
        pack.archives.append(Archive {
            .id = archive.id,
            .pack = slug,
            .device = archive.device,
            .filename = archive.filename,
            .bytes = archive.bytes,
            .sha256 = archive.sha256,
            .source = *source,
        });
    }
    return pack;
}
