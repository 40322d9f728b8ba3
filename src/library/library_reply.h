#pragma once

#include "owned_pack.h"

#include <QJsonObject>

namespace simdjson::dom {
class object;
}

class SourceRule;

// The shop's answer to "what does this account own", as it travels and as it is kept on disk.
struct LibraryReply {
    struct FileReply {
        QString id;
        QString edition;
        qint64 bytes = 0;
        std::optional<QString> sha256;
        std::optional<QString> path;
        std::optional<QString> url;

        [[nodiscard]] static FileReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const FileReply &) const = default;
    };

    struct ColourwayReply {
        QString slug;
        QList<FileReply> files;

        [[nodiscard]] static ColourwayReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const ColourwayReply &) const = default;
    };

    struct ArchiveReply {
        QString id;
        QString device;
        QString filename;
        qint64 bytes = 0;
        std::optional<QString> sha256;
        std::optional<QString> path;
        std::optional<QString> url;

        [[nodiscard]] static ArchiveReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const ArchiveReply &) const = default;
    };

    struct PackReply {
        QString slug;
        std::optional<QDateTime> since;
        std::optional<QDateTime> updatedAt;
        QList<ColourwayReply> colourways;
        QList<ArchiveReply> archives; // missing and null read as empty

        [[nodiscard]] static PackReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const PackReply &) const = default;
    };

    QString email;
    QList<PackReply> packs;

    // Throws DecodingError when the body does not have the reply's shape.
    [[nodiscard]] static LibraryReply decode(const QByteArray &json);
    [[nodiscard]] static LibraryReply fromJson(const simdjson::dom::object &object);
    [[nodiscard]] QJsonObject toJson() const;

    // The packs whose slugs and content pass the content rules, by slug.
    [[nodiscard]] QMap<QString, OwnedPack> ownedPacks(const SourceRule &rule) const;

    // Builds one owned pack from its downloadable side, dropping entries that break the content
    // rules. Shared with the free packs of the catalogue.
    [[nodiscard]] static OwnedPack
    makeOwnedPack(const QString &slug, std::optional<QDateTime> since,
                  std::optional<QDateTime> updatedAt, const QList<ColourwayReply> &colourways,
                  const QList<ArchiveReply> &archives, const SourceRule &rule);

    bool operator==(const LibraryReply &) const = default;
};
