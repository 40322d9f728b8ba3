#include "json_fields.h"

#include "error.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace JsonFields {
namespace {
[[noreturn]] void fail(QLatin1StringView key, QLatin1StringView expected)
{
    throw DecodingError(u"The value of \"%1\" is not %2."_s.arg(key, expected));
}

// Missing and null are the same: absent.
std::optional<QJsonValue> present(const QJsonObject &object, QLatin1StringView key)
{
    QJsonValue value = object.value(key);
    if (value.isNull() || value.isUndefined())
        return std::nullopt;
    return value;
}

QJsonValue required(const QJsonObject &object, QLatin1StringView key)
{
    auto value = present(object, key);
    if (!value)
        throw DecodingError(u"The key \"%1\" is missing."_s.arg(key));
    return *value;
}

QString asString(const QJsonValue &value, QLatin1StringView key)
{
    if (!value.isString())
        fail(key, "a string"_L1);
    return value.toString();
}

// A fraction, or a number beyond 64 bits, is not an integer; 2.0 is.
qint64 asInteger(const QJsonValue &value, QLatin1StringView key)
{
    if (!value.isDouble())
        fail(key, "an integer"_L1);
    const qint64 result = value.toInteger(0);
    if (result == 0 && value.toInteger(1) != 0)
        fail(key, "an integer"_L1);
    return result;
}

bool parseDigits(QStringView text, int &out)
{
    out = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return false;
        out = out * 10 + (c.unicode() - u'0');
    }
    return true;
}
} // namespace

QJsonObject parseObject(const QByteArray &json)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw DecodingError(
            u"Not JSON: %1 at offset %2."_s.arg(error.errorString()).arg(error.offset));
    if (!document.isObject())
        throw DecodingError(u"The document is not a JSON object."_s);
    return document.object();
}

QString string(const QJsonObject &object, QLatin1StringView key)
{
    return asString(required(object, key), key);
}

std::optional<QString> optionalString(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = present(object, key);
    return value ? std::optional(asString(*value, key)) : std::nullopt;
}

qint64 integer(const QJsonObject &object, QLatin1StringView key)
{
    return asInteger(required(object, key), key);
}

qint64 integerValue(const QJsonValue &value, QLatin1StringView key)
{
    return asInteger(value, key);
}

bool boolean(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = required(object, key);
    if (!value.isBool())
        fail(key, "true or false"_L1);
    return value.toBool();
}

std::optional<bool> optionalBoolean(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = present(object, key);
    if (!value)
        return std::nullopt;
    if (!value->isBool())
        fail(key, "true or false"_L1);
    return value->toBool();
}

QJsonArray array(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = required(object, key);
    if (!value.isArray())
        fail(key, "an array"_L1);
    return value.toArray();
}

std::optional<QJsonArray> optionalArray(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = present(object, key);
    if (!value)
        return std::nullopt;
    if (!value->isArray())
        fail(key, "an array"_L1);
    return value->toArray();
}

QJsonObject object(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = required(object, key);
    if (!value.isObject())
        fail(key, "an object"_L1);
    return value.toObject();
}

std::optional<QJsonObject> optionalObject(const QJsonObject &object, QLatin1StringView key)
{
    const auto value = present(object, key);
    if (!value)
        return std::nullopt;
    if (!value->isObject())
        fail(key, "an object"_L1);
    return value->toObject();
}

std::optional<QDateTime> optionalTime(const QJsonObject &object, QLatin1StringView key)
{
    const auto text = optionalString(object, key);
    return text ? std::optional(parseTime(*text)) : std::nullopt;
}

QDateTime parseTime(const QString &text)
{
    // YYYY-MM-DDTHH:MM:SS, then an optional fraction, then Z or an offset.
    const auto bad = [&text] { return DecodingError(u"Not an ISO 8601 time: "_s + text); };
    const QStringView view(text);
    if (view.size() < 20 || view[4] != u'-' || view[7] != u'-' || view[10] != u'T'
        || view[13] != u':' || view[16] != u':')
        throw bad();
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!parseDigits(view.sliced(0, 4), year) || !parseDigits(view.sliced(5, 2), month)
        || !parseDigits(view.sliced(8, 2), day) || !parseDigits(view.sliced(11, 2), hour)
        || !parseDigits(view.sliced(14, 2), minute) || !parseDigits(view.sliced(17, 2), second))
        throw bad();

    qsizetype at = 19;
    int milliseconds = 0;
    if (view[at] == u'.') {
        const qsizetype start = ++at;
        while (at < view.size() && view[at].isDigit() && view[at].unicode() < 128)
            ++at;
        if (at == start)
            throw bad();
        // Finer than a millisecond is dropped.
        for (qsizetype i = start; i < start + 3; ++i)
            milliseconds = milliseconds * 10 + (i < at ? view[i].unicode() - u'0' : 0);
    }

    int offsetSeconds = 0;
    const QStringView zone = view.sliced(at);
    if (zone != u"Z") {
        int offsetHours = 0;
        int offsetMinutes = 0;
        if (zone.size() != 6 || (zone[0] != u'+' && zone[0] != u'-') || zone[3] != u':'
            || !parseDigits(zone.sliced(1, 2), offsetHours)
            || !parseDigits(zone.sliced(4, 2), offsetMinutes) || offsetHours > 23
            || offsetMinutes > 59)
            throw bad();
        offsetSeconds = (offsetHours * 3600 + offsetMinutes * 60) * (zone[0] == u'-' ? -1 : 1);
    }

    const QDate date(year, month, day);
    const QTime time(hour, minute, second, milliseconds);
    if (!date.isValid() || !time.isValid())
        throw bad();
    return QDateTime(date, time, Qt::UTC).addSecs(-offsetSeconds);
}

QString formatTime(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

void insertOptional(QJsonObject &object, QLatin1StringView key, const std::optional<QString> &value)
{
    if (value)
        object.insert(key, *value);
}

void insertOptional(QJsonObject &object, QLatin1StringView key,
                    const std::optional<QDateTime> &value)
{
    if (value)
        object.insert(key, formatTime(*value));
}
} // namespace JsonFields
