#include "placement.h"

#include "json_fields.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace JsonFields;

Placement Placement::fromJson(const QJsonObject &object)
{
    return {
        .pack = string(object, "pack"_L1),
        .colourway = string(object, "colourway"_L1),
        .edition = string(object, "edition"_L1),
        .path = string(object, "path"_L1),
        .setAt = integer(object, "setAt"_L1),
    };
}

QJsonObject Placement::toJson() const
{
    return { { "pack"_L1, pack },
             { "colourway"_L1, colourway },
             { "edition"_L1, edition },
             { "path"_L1, path },
             { "setAt"_L1, setAt } };
}

size_t qHash(const Placement &placement, size_t seed)
{
    return qHashMulti(seed, placement.pack, placement.colourway, placement.edition, placement.path,
                      placement.setAt);
}

PlacementFile PlacementFile::decode(const QByteArray &json)
{
    const QJsonObject object = parseObject(json);
    PlacementFile file;
    file.useOnAllSpaces = optionalBoolean(object, "useOnAllSpaces"_L1).value_or(true);

    if (const auto placements = optionalObject(object, "placements"_L1)) {
        for (auto it = placements->constBegin(); it != placements->constEnd(); ++it) {
            if (!it->isObject())
                throw DecodingError(u"A placement is not an object."_s);
            file.placements.insert(it.key(), Placement::fromJson(it->toObject()));
        }
    }

    if (const auto applied = optionalArray(object, "applied"_L1)) {
        for (const auto &path : *applied) {
            if (!path.isString())
                throw DecodingError(u"An applied path is not a string."_s);
            file.applied.insert(path.toString());
        }
    } else {
        // Written before "applied" existed: everything recorded was applied.
        for (const auto &placement : std::as_const(file.placements))
            file.applied.insert(placement.path);
    }
    return file;
}

QByteArray PlacementFile::encode() const
{
    QJsonObject map;
    for (auto it = placements.cbegin(); it != placements.cend(); ++it)
        map.insert(it.key(), it->toJson());
    QJsonArray paths;
    for (const auto &path : applied)
        paths.append(path);
    const QJsonObject object { { "useOnAllSpaces"_L1, useOnAllSpaces },
                               { "placements"_L1, map },
                               { "applied"_L1, paths } };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

ReleasedFile ReleasedFile::decode(const QByteArray &json)
{
    const QJsonObject released = object(parseObject(json), "released"_L1);
    ReleasedFile file;
    for (auto it = released.constBegin(); it != released.constEnd(); ++it)
        file.released.insert(it.key(), integerValue(*it, "released"_L1));
    return file;
}
