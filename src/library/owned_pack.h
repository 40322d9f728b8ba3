#pragma once

#include "edition.h"
#include "file_source.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <optional>

// One downloadable picture: a colourway of a pack in one edition.
struct WallpaperFile {
    QString id; // "f_" and lowercase hex
    QString pack;
    QString colourway;
    Edition edition = Edition::Automatic;
    qint64 bytes = 0;
    std::optional<QString> sha256;
    FileSource source = FileSource::shop();

    bool operator==(const WallpaperFile &) const = default;
};

// A zip of a whole pack made for one kind of device.
struct Archive {
    QString id; // "a_" and lowercase hex
    QString pack;
    QString device; // "mac", "ipad", ... or any other key, kept as given
    QString filename;
    qint64 bytes = 0;
    std::optional<QString> sha256;
    FileSource source = FileSource::shop();

    [[nodiscard]] QString deviceLabel() const;

    bool operator==(const Archive &) const = default;
};

// A pack whose files the user may download, bought or free.
struct OwnedPack {
    QString slug;
    std::optional<QDateTime> since;
    std::optional<QDateTime> updatedAt;
    QMap<QString, QMap<Edition, WallpaperFile>> files; // colourway slug, then edition
    QList<Archive> archives;

    [[nodiscard]] QList<WallpaperFile> allFiles() const;
    [[nodiscard]] std::optional<WallpaperFile> file(const QString &colourway,
                                                    Edition edition) const;

    bool operator==(const OwnedPack &) const = default;
};

[[nodiscard]] size_t qHash(const WallpaperFile &file, size_t seed = 0);
[[nodiscard]] size_t qHash(const Archive &archive, size_t seed = 0);
[[nodiscard]] size_t qHash(const OwnedPack &pack, size_t seed = 0);
