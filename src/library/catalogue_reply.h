#pragma once

#include "library_reply.h"
#include "pack.h"

// The shop's answer to "what is for sale", as it travels and as it is kept on disk.
struct CatalogueReply {
    struct ArtReply {
        struct Pair {
            std::optional<QString> light;
            std::optional<QString> dark;

            [[nodiscard]] static Pair fromJson(const simdjson::dom::object &object);
            [[nodiscard]] QJsonObject toJson() const;
            bool operator==(const Pair &) const = default;
        };

        std::optional<QString> light;
        std::optional<QString> dark;
        std::optional<Pair> desktop;
        std::optional<QMap<QString, QString>> phases;

        [[nodiscard]] static ArtReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const ArtReply &) const = default;
    };

    struct ColourwayReply {
        QString slug;
        QString name;
        ArtReply art;

        [[nodiscard]] static ColourwayReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const ColourwayReply &) const = default;
    };

    // The downloadable side of a free pack, shaped like a library pack.
    struct FreeReply {
        std::optional<QDateTime> updatedAt;
        QList<LibraryReply::ColourwayReply> colourways;
        QList<LibraryReply::ArchiveReply> archives;

        [[nodiscard]] static FreeReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const FreeReply &) const = default;
    };

    struct PackReply {
        QString slug;
        QString name;
        QString line;
        QString price;
        QString url;
        bool onSale = false;
        QList<ColourwayReply> colourways;
        std::optional<FreeReply> free;
        // Quennet's shop marks a pack it shows before its files are out with "released": false.
        std::optional<bool> released;

        [[nodiscard]] bool isReleased() const { return released.value_or(true); }
        [[nodiscard]] static PackReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const PackReply &) const = default;
    };

    struct PhaseReply {
        QString id;
        QString label;

        [[nodiscard]] static PhaseReply fromJson(const simdjson::dom::object &object);
        [[nodiscard]] QJsonObject toJson() const;
        bool operator==(const PhaseReply &) const = default;
    };

    QList<PackReply> packs;
    QList<PhaseReply> phases;

    // Throws DecodingError when the body does not have the reply's shape.
    [[nodiscard]] static CatalogueReply decode(const QByteArray &json);
    [[nodiscard]] static CatalogueReply fromJson(const simdjson::dom::object &object);
    [[nodiscard]] QJsonObject toJson() const;

    // The packs whose slugs pass the content rules, in catalogue order, their art resolved
    // against the shop's base URL.
    [[nodiscard]] QList<Pack> catalogue(const QUrl &base) const;
    [[nodiscard]] QList<Phase> allPhases() const;
    // The free packs' files, by slug, with the URL rule against the base.
    [[nodiscard]] QMap<QString, OwnedPack> freePacks(const QUrl &base) const;

    bool operator==(const CatalogueReply &) const = default;
};
