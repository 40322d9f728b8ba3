#pragma once

#include "error.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <optional>
#include <simdjson.h>
#include <string_view>

// Strict readers of JSON fields for the shop's replies and Quennet's own files, over simdjson's
// one-pass parse (the library of a large account is megabytes), and the writers of the same
// fields. A required key must be present and not null; an optional one may be missing or null;
// either way a value of the wrong JSON type throws DecodingError, failing the whole document.
namespace JsonFields {
using Object = simdjson::dom::object;
using Array = simdjson::dom::array;

// The document's top-level object, valid until the parser parses again or is destroyed.
[[nodiscard]] Object parseObject(simdjson::dom::parser &parser, const QByteArray &json);

[[nodiscard]] QString string(const Object &object, std::string_view key);
[[nodiscard]] std::optional<QString> optionalString(const Object &object, std::string_view key);
[[nodiscard]] qint64 integer(const Object &object, std::string_view key);
[[nodiscard]] std::optional<qint64> optionalInteger(const Object &object, std::string_view key);
// A value already taken out of its object; key names it in the error.
[[nodiscard]] qint64 integerValue(const simdjson::dom::element &value, std::string_view key);
[[nodiscard]] bool boolean(const Object &object, std::string_view key);
[[nodiscard]] std::optional<bool> optionalBoolean(const Object &object, std::string_view key);
[[nodiscard]] Array array(const Object &object, std::string_view key);
[[nodiscard]] std::optional<Array> optionalArray(const Object &object, std::string_view key);
[[nodiscard]] Object object(const Object &object, std::string_view key);
[[nodiscard]] std::optional<Object> optionalObject(const Object &object, std::string_view key);
[[nodiscard]] std::optional<QDateTime> optionalTime(const Object &object, std::string_view key);

[[nodiscard]] QString toQString(std::string_view text);
[[noreturn]] void throwNotObjects(std::string_view key);

// Every element of an array of objects, decoded by T::fromJson; a missing optional array is
// empty.
template<typename T>
[[nodiscard]] QList<T> objects(const std::optional<Array> &array, std::string_view key)
{
    QList<T> result;
    if (!array)
        return result;
    result.reserve(qsizetype(array->size()));
    for (const simdjson::dom::element element : *array) {
        Object object;
        if (element.get(object) != simdjson::SUCCESS)
            throwNotObjects(key);
        result.append(T::fromJson(object));
    }
    return result;
}

// ISO 8601 in UTC, with or without fractional seconds ("2025-03-01T09:30:00.250Z").
[[nodiscard]] QDateTime parseTime(const QString &text);
[[nodiscard]] QString formatTime(const QDateTime &time);

template<typename T> [[nodiscard]] QJsonArray toArray(const QList<T> &values)
{
    QJsonArray result;
    for (const auto &value : values)
        result.append(value.toJson());
    return result;
}

void insertOptional(QJsonObject &object, QLatin1StringView key,
                    const std::optional<QString> &value);
void insertOptional(QJsonObject &object, QLatin1StringView key,
                    const std::optional<QDateTime> &value);
} // namespace JsonFields
