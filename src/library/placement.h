#pragma once

#include <QJsonObject>
#include <QMap>
#include <QSet>

namespace simdjson::dom {
class object;
}

// What one display shows, as recorded in "placements.json".
struct Placement {
    QString pack;
    QString colourway;
    QString edition; // the edition's raw value, kept as text
    QString path; // the picture handed to the desktop
    qint64 setAt = 0; // milliseconds since the epoch

    [[nodiscard]] static Placement fromJson(const simdjson::dom::object &object);
    [[nodiscard]] QJsonObject toJson() const;

    bool operator==(const Placement &) const = default;
};

[[nodiscard]] size_t qHash(const Placement &placement, size_t seed = 0);

// The whole of "placements.json".
struct PlacementFile {
    bool useOnAllSpaces = true;
    QMap<QString, Placement> placements; // by display id
    QSet<QString> applied; // paths actually handed to the desktop

    // Throws DecodingError; a missing "applied" is every placement's path.
    [[nodiscard]] static PlacementFile decode(const QByteArray &json);
    [[nodiscard]] QByteArray encode() const;

    bool operator==(const PlacementFile &) const = default;
};

// The whole of "released.json": for a display, the setAt of the placement let go of.
struct ReleasedFile {
    QHash<QString, qint64> released;

    // Throws DecodingError.
    [[nodiscard]] static ReleasedFile decode(const QByteArray &json);
};
