#include "shop_cache.h"

#include "atomic_file.h"
#include "error.h"
#include "json_fields.h"
#include "logging.h"

#include <QFile>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace Cache {
std::optional<Saved> load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    try {
        simdjson::dom::parser parser;
        const auto object = JsonFields::parseObject(parser, file.readAll());
        Saved saved { .catalogue =
                          CatalogueReply::fromJson(JsonFields::object(object, "catalogue")) };
        if (const auto library = JsonFields::optionalObject(object, "library"))
            saved.library = LibraryReply::fromJson(*library);
        saved.account = JsonFields::optionalString(object, "account");
        if (const auto base = JsonFields::optionalString(object, "base"))
            saved.base = QUrl(*base);
        return saved;
    } catch (const DecodingError &error) {
        qCWarning(lcShop) << "Ignoring a damaged shop copy:" << error.description();
        return std::nullopt;
    }
}

bool save(const QString &path, const Saved &saved)
{
    QJsonObject object { { "catalogue"_L1, saved.catalogue.toJson() } };
    if (saved.library)
        object.insert("library"_L1, saved.library->toJson());
    JsonFields::insertOptional(object, "account"_L1, saved.account);
    if (saved.base)
        object.insert("base"_L1, saved.base->toString());

    return writeAtomically(path, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool update(const QString &path, const std::function<void(Saved &)> &change)
{
    Saved saved = load(path).value_or(Saved {});
    change(saved);
    return save(path, saved);
}
} // namespace Cache
