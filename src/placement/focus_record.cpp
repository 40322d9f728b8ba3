#include "focus_record.h"

#include "json_fields.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace JsonFields;

namespace {
QJsonObject toJson(const FocusRecord::Entry &entry)
{
    QJsonObject previous;
    if (entry.previous.placement)
        previous.insert("placement"_L1, entry.previous.placement->toJson());
    insertOptional(previous, "path"_L1, entry.previous.path);
    QJsonObject object { { "previous"_L1, previous } };
    if (entry.focusSetAt.isValid())
        object.insert("focusSetAt"_L1, formatTime(entry.focusSetAt));
    return object;
}

FocusRecord::Entry entryFromJson(const QJsonValue &value)
{
    if (!value.isObject())
        throw DecodingError(u"An entry is not an object."_s);
    const QJsonObject object = value.toObject();
    const QJsonObject previous = optionalObject(object, "previous"_L1).value_or(QJsonObject());
    FocusRecord::Entry entry;
    if (const auto placement = optionalObject(previous, "placement"_L1))
        entry.previous.placement = Placement::fromJson(*placement);
    entry.previous.path = optionalString(previous, "path"_L1);
    entry.focusSetAt = optionalTime(object, "focusSetAt"_L1).value_or(QDateTime());
    return entry;
}

FocusRecord::Entries entriesFromJson(const QJsonObject &object)
{
    FocusRecord::Entries entries;
    for (auto it = object.begin(); it != object.end(); ++it)
        entries.insert(it.key(), entryFromJson(it.value()));
    return entries;
}

QJsonObject toJson(const FocusRecord::Entries &entries)
{
    QJsonObject object;
    for (auto it = entries.begin(); it != entries.end(); ++it)
        object.insert(it.key(), toJson(it.value()));
    return object;
}
} // namespace

FocusRecord::CannotRestore::CannotRestore(QString description)
    : m_description(std::move(description))
{
}

std::optional<FocusRecord> FocusRecord::decode(const QByteArray &json)
{
    if (json.isEmpty())
        return std::nullopt;
    try {
        const QJsonObject object = parseObject(json);
        FocusRecord record { .wallpaper = string(object, "wallpaper"_L1),
                             .edition = optionalString(object, "edition"_L1).value_or(QString()),
                             .entries = entriesFromJson(
                                 optionalObject(object, "entries"_L1).value_or(QJsonObject())) };
        return record;
    } catch (const DecodingError &) {
        return std::nullopt;
    }
}

QByteArray FocusRecord::encode() const
{
    QJsonObject object { { "wallpaper"_L1, wallpaper }, { "entries"_L1, toJson(entries) } };
    if (!edition.isEmpty())
        object.insert("edition"_L1, edition);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

FocusRecord::Entries FocusRecord::decodeEntries(const QByteArray &json)
{
    if (json.isEmpty())
        return {};
    try {
        return entriesFromJson(parseObject(json));
    } catch (const DecodingError &) {
        return {};
    }
}

QByteArray FocusRecord::encode(const Entries &entries)
{
    if (entries.isEmpty())
        return {};
    return QJsonDocument(toJson(entries)).toJson(QJsonDocument::Compact);
}
