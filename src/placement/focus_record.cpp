#include "focus_record.h"

#include "json_fields.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace {
QJsonObject toJson(const FocusRecord::Entry &entry)
{
    QJsonObject previous;
    if (entry.previous.placement)
        previous.insert("placement"_L1, entry.previous.placement->toJson());
    JsonFields::insertOptional(previous, "path"_L1, entry.previous.path);
    QJsonObject object { { "previous"_L1, previous } };
    if (entry.focusSetAt.isValid())
        object.insert("focusSetAt"_L1, JsonFields::formatTime(entry.focusSetAt));
    return object;
}

FocusRecord::Entry entryFromJson(const simdjson::dom::element &value)
{
    JsonFields::Object object;
    if (value.get(object) != simdjson::SUCCESS)
        throw DecodingError(u"An entry is not an object."_s);
    FocusRecord::Entry entry;
    if (const auto previous = JsonFields::optionalObject(object, "previous")) {
        if (const auto placement = JsonFields::optionalObject(*previous, "placement"))
            entry.previous.placement = Placement::fromJson(*placement);
        entry.previous.path = JsonFields::optionalString(*previous, "path");
    }
    entry.focusSetAt = JsonFields::optionalTime(object, "focusSetAt").value_or(QDateTime());
    return entry;
}

FocusRecord::Entries entriesFromJson(const std::optional<JsonFields::Object> &object)
{
    FocusRecord::Entries entries;
    if (!object)
        return entries;
    for (const auto field : *object)
        entries.insert(JsonFields::toQString(field.key), entryFromJson(field.value));
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
        simdjson::dom::parser parser;
        const auto object = JsonFields::parseObject(parser, json);
        return FocusRecord {
            .wallpaper = JsonFields::string(object, "wallpaper"),
            .edition = JsonFields::optionalString(object, "edition").value_or(QString()),
            .entries = entriesFromJson(JsonFields::optionalObject(object, "entries")),
        };
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
        simdjson::dom::parser parser;
        return entriesFromJson(JsonFields::parseObject(parser, json));
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
