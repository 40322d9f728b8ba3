#include "placement.h"

#include "json_fields.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace JsonFields;

Placement Placement::fromJson(const simdjson::dom::object &object)
{
    return {
        .pack = string(object, "pack"),
        .colourway = string(object, "colourway"),
        .edition = string(object, "edition"),
        .path = string(object, "path"),
        .setAt = integer(object, "setAt"),
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
    simdjson::dom::parser parser;
    const auto object = parseObject(parser, json);
    PlacementFile file;
    file.useOnAllSpaces = optionalBoolean(object, "useOnAllSpaces").value_or(true);

    if (const auto placements = optionalObject(object, "placements")) {
        for (const auto field : *placements) {
            Object placement;
            if (field.value.get(placement) != simdjson::SUCCESS)
                throw DecodingError(u"A placement is not an object."_s);
            file.placements.insert(toQString(field.key), Placement::fromJson(placement));
        }
    }

    if (const auto applied = optionalArray(object, "applied")) {
        for (const auto element : *applied) {
            std::string_view path;
            if (element.get(path) != simdjson::SUCCESS)
                throw DecodingError(u"An applied path is not a string."_s);
            file.applied.insert(toQString(path));
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
    simdjson::dom::parser parser;
    ReleasedFile file;
    for (const auto field : object(parseObject(parser, json), "released"))
        file.released.insert(toQString(field.key), integerValue(field.value, "released"));
    return file;
}
