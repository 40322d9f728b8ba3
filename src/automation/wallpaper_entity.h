#pragma once

#include "owned_pack.h"
#include "pack.h"

#include <QMetaType>
#include <QStringList>
#include <optional>

class QDBusArgument;

// A wallpaper (one colourway of one pack) as automation names it to scripts and other programs.
struct WallpaperEntity {
    QString id; // the colourway key: pack slug, "/", colourway slug
    QString name; // the colourway's name
    QString packName;

    bool operator==(const WallpaperEntity &) const = default;
};
Q_DECLARE_METATYPE(WallpaperEntity)

// On the bus an entity is (id, name, packName).
QDBusArgument &operator<<(QDBusArgument &argument, const WallpaperEntity &entity);
const QDBusArgument &operator>>(const QDBusArgument &argument, WallpaperEntity &entity);

// A colourway key taken apart.
struct ColourwayKey {
    QString pack;
    QString colourway;

    // None unless the text is two slugs joined by one "/".
    [[nodiscard]] static std::optional<ColourwayKey> parse(QStringView text);
    [[nodiscard]] QString text() const { return pack + u'/' + colourway; }
};

// Finds the wallpapers of the user's packs: every colourway of a pack in the library that the
// user owns, bought or free. Everything it answers is ordered the same way: favourites first,
// newest favourite first, then the rest in library order (the packs as the shop lists them, each
// pack's colourways in its own order).
class WallpaperQuery {
public:
    WallpaperQuery(const QList<Pack> &packs, const QMap<QString, OwnedPack> &owned,
                   const QStringList &favourites);

    // Exact keys; unknown ones are left out.
    [[nodiscard]] std::optional<WallpaperEntity> entity(const QString &id) const;
    // The wallpapers whose colourway name, pack name or key holds every word of the text,
    // regardless of case; every one when the text has no words.
    [[nodiscard]] QList<WallpaperEntity> entities(const QString &matching) const;
    [[nodiscard]] QList<WallpaperEntity> suggestedEntities() const;

private:
    QList<WallpaperEntity> m_ordered;
};
