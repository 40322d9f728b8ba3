#pragma once

#include "error.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <optional>

// Strict readers of JSON fields for the shop's replies and Quennet's own files. A required key
// must be present and not null; an optional one may be missing or null; either way a value of
// the wrong JSON type throws DecodingError, failing the whole document.
namespace JsonFields {
[[nodiscard]] QJsonObject parseObject(const QByteArray &json);

[[nodiscard]] QString string(const QJsonObject &object, QLatin1StringView key);
[[nodiscard]] std::optional<QString> optionalString(const QJsonObject &object,
                                                    QLatin1StringView key);
[[nodiscard]] qint64 integer(const QJsonObject &object, QLatin1StringView key);
// A value already taken out of its object; key names it in the error.
[[nodiscard]] qint64 integerValue(const QJsonValue &value, QLatin1StringView key);
[[nodiscard]] bool boolean(const QJsonObject &object, QLatin1StringView key);
[[nodiscard]] std::optional<bool> optionalBoolean(const QJsonObject &object, QLatin1StringView key);
[[nodiscard]] QJsonArray array(const QJsonObject &object, QLatin1StringView key);
[[nodiscard]] std::optional<QJsonArray> optionalArray(const QJsonObject &object,
                                                      QLatin1StringView key);
[[nodiscard]] std::optional<QJsonObject> optionalObject(const QJsonObject &object,
                                                        QLatin1StringView key);
[[nodiscard]] QJsonObject object(const QJsonObject &object, QLatin1StringView key);
[[nodiscard]] std::optional<QDateTime> optionalTime(const QJsonObject &object,
                                                    QLatin1StringView key);

// ISO 8601 in UTC, with or without fractional seconds ("2025-03-01T09:30:00.250Z").
[[nodiscard]] QDateTime parseTime(const QString &text);
[[nodiscard]] QString formatTime(const QDateTime &time);

// Every element of an array of objects, decoded by T::fromJson.
template<typename T> [[nodiscard]] QList<T> objects(const QJsonArray &array, QLatin1StringView key)
{
    QList<T> result;
    result.reserve(array.size());
    for (const auto &element : array) {
        if (!element.isObject())
            throw DecodingError(QStringLiteral("An element of \"%1\" is not an object.").arg(key));
        result.append(T::fromJson(element.toObject()));
    }
    return result;
}

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
