#include "json_fields.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;
using simdjson::dom::element;
using simdjson::dom::element_type;

namespace JsonFields {
namespace {
QLatin1StringView name(std::string_view key)
{
    return QLatin1StringView(key.data(), qsizetype(key.size()));
}

[[noreturn]] void fail(std::string_view key, QLatin1StringView expected)
{
    throw DecodingError(u"The value of \"%1\" is not %2."_s.arg(name(key), expected));
}

// Missing and null are the same: absent.
std::optional<element> present(const Object &object, std::string_view key)
{
    element value;
    if (object.at_key(key).get(value) != simdjson::SUCCESS || value.is_null())
        return std::nullopt;
    return value;
}

element required(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    if (!value)
        throw DecodingError(u"The key \"%1\" is missing."_s.arg(name(key)));
    return *value;
}

QString asString(const element &value, std::string_view key)
{
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        fail(key, "a string"_L1);
    return toQString(text);
}

// A fraction, or a number beyond 64 bits, is not an integer; 2.0 is.
qint64 asInteger(const element &value, std::string_view key)
{
    int64_t integer = 0;
    if (value.get(integer) == simdjson::SUCCESS)
        return integer;
    double number = 0;
    // 2^63 itself is beyond qint64; every whole double below it converts exactly.
    if (value.type() == element_type::DOUBLE && value.get(number) == simdjson::SUCCESS
        && std::trunc(number) == number && number >= -0x1p63 && number < 0x1p63)
        return qint64(number);
    fail(key, "an integer"_L1);
}

bool asBoolean(const element &value, std::string_view key)
{
    bool result = false;
    if (value.get(result) != simdjson::SUCCESS)
        fail(key, "true or false"_L1);
    return result;
}

Array asArray(const element &value, std::string_view key)
{
    Array result;
    if (value.get(result) != simdjson::SUCCESS)
        fail(key, "an array"_L1);
    return result;
}

Object asObject(const element &value, std::string_view key)
{
    Object result;
    if (value.get(result) != simdjson::SUCCESS)
        fail(key, "an object"_L1);
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

Object parseObject(simdjson::dom::parser &parser, const QByteArray &json)
{
    element root;
    if (const auto error = parser.parse(json.constData(), size_t(json.size())).get(root))
        throw DecodingError(
            u"Not JSON: %1."_s.arg(QLatin1StringView(simdjson::error_message(error))));
    Object object;
    if (root.get(object) != simdjson::SUCCESS)
        throw DecodingError(u"The document is not a JSON object."_s);
    return object;
}

QString string(const Object &object, std::string_view key)
{
    return asString(required(object, key), key);
}

std::optional<QString> optionalString(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    return value ? std::optional(asString(*value, key)) : std::nullopt;
}

qint64 integer(const Object &object, std::string_view key)
{
    return asInteger(required(object, key), key);
}

std::optional<qint64> optionalInteger(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    return value ? std::optional(asInteger(*value, key)) : std::nullopt;
}

qint64 integerValue(const element &value, std::string_view key)
{
    return asInteger(value, key);
}

bool boolean(const Object &object, std::string_view key)
{
    return asBoolean(required(object, key), key);
}

std::optional<bool> optionalBoolean(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    return value ? std::optional(asBoolean(*value, key)) : std::nullopt;
}

Array array(const Object &object, std::string_view key)
{
    return asArray(required(object, key), key);
}

std::optional<Array> optionalArray(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    return value ? std::optional(asArray(*value, key)) : std::nullopt;
}

Object object(const Object &object, std::string_view key)
{
    return asObject(required(object, key), key);
}

std::optional<Object> optionalObject(const Object &object, std::string_view key)
{
    const auto value = present(object, key);
    return value ? std::optional(asObject(*value, key)) : std::nullopt;
}

std::optional<QDateTime> optionalTime(const Object &object, std::string_view key)
{
    const auto text = optionalString(object, key);
    return text ? std::optional(parseTime(*text)) : std::nullopt;
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

void throwNotObjects(std::string_view key)
{
    throw DecodingError(u"An element of \"%1\" is not an object."_s.arg(name(key)));
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
