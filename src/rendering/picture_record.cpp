#include "picture_record.h"

#include <QJsonArray>

using namespace Qt::Literals::StringLiterals;

namespace PictureRecord {
namespace {
QJsonValue index(const std::optional<int> &value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

QJsonObject lightAndDark(const HeicMetadata::LightAndDark &pair)
{
    return { { u"light"_s, index(pair.light) }, { u"dark"_s, index(pair.dark) } };
}

bool isIndex(double number)
{
    return number >= 0 && number <= 65535 && number == int(number);
}

// A picture's index, or null for none; anything else is not read.
bool readIndex(const QJsonValue &value, std::optional<int> &to)
{
    if (value.isNull())
        return true;
    if (!value.isDouble() || !isIndex(value.toDouble()))
        return false;
    to = value.toInt();
    return true;
}

bool readLightAndDark(const QJsonValue &value, HeicMetadata::LightAndDark &to)
{
    const QJsonObject pair = value.toObject();
    return value.isObject() && readIndex(pair.value("light"_L1), to.light)
        && readIndex(pair.value("dark"_L1), to.dark);
}

// Each entry an array of numbers of the given length, the last a picture's index.
std::optional<QList<QList<double>>> rows(const QJsonValue &value, qsizetype length)
{
    if (!value.isArray())
        return std::nullopt;
    QList<QList<double>> read;
    for (const QJsonValue &entry : value.toArray()) {
        const QJsonArray numbers = entry.toArray();
        if (numbers.size() != length)
            return std::nullopt;
        QList<double> row;
        for (const QJsonValue &number : numbers) {
            if (!number.isDouble())
                return std::nullopt;
            row.append(number.toDouble());
        }
        if (!isIndex(row.back()))
            return std::nullopt;
        read.append(row);
    }
    return read;
}
} // namespace

QJsonObject toJson(const PictureChoice::Pictures &pictures)
{
    const HeicMetadata &metadata = pictures.metadata;
    QJsonArray times;
    for (const HeicMetadata::TimedPicture &time : metadata.times())
        times.append(QJsonArray { time.dayFraction, time.index });
    QJsonArray solar;
    for (const HeicMetadata::SolarPicture &position : metadata.solarPositions())
        solar.append(QJsonArray { position.altitude, position.azimuth, position.index });
    return { { u"count"_s, pictures.count },
             { u"primary"_s, pictures.primary },
             { u"appearance"_s, lightAndDark(metadata.appearance()) },
             { u"solarAppearance"_s, lightAndDark(metadata.solarAppearance()) },
             { u"timeAppearance"_s, lightAndDark(metadata.timeAppearance()) },
             { u"times"_s, times },
             { u"solar"_s, solar } };
}

std::optional<PictureChoice::Pictures> fromJson(const QJsonValue &value)
{
    const QJsonObject record = value.toObject();
    std::optional<int> count;
    std::optional<int> primary;
    HeicMetadata::LightAndDark appearance;
    HeicMetadata::LightAndDark solarAppearance;
    HeicMetadata::LightAndDark timeAppearance;
    const auto timeRows = rows(record.value("times"_L1), 2);
    const auto solarRows = rows(record.value("solar"_L1), 3);
    if (!readIndex(record.value("count"_L1), count)
        || !readIndex(record.value("primary"_L1), primary) || !count || !primary || *count < 1
        || *primary >= *count || !readLightAndDark(record.value("appearance"_L1), appearance)
        || !readLightAndDark(record.value("solarAppearance"_L1), solarAppearance)
        || !readLightAndDark(record.value("timeAppearance"_L1), timeAppearance) || !timeRows
        || !solarRows)
        return std::nullopt;
    QList<HeicMetadata::TimedPicture> times;
    for (const QList<double> &row : *timeRows)
        times.append({ .dayFraction = row[0], .index = int(row[1]) });
    QList<HeicMetadata::SolarPicture> solar;
    for (const QList<double> &row : *solarRows)
        solar.append({ .altitude = row[0], .azimuth = row[1], .index = int(row[2]) });
    return PictureChoice::Pictures { .metadata = HeicMetadata(appearance, solarAppearance,
                                                              timeAppearance, times, solar),
                                     .count = *count,
                                     .primary = *primary };
}
} // namespace PictureRecord
