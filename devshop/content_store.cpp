#include "content_store.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcContent, "app.quennet.Quennet.DevShop.Content")

using namespace Qt::Literals::StringLiterals;

namespace {
QString contentType(const QString &path)
{
    static const QHash<QString, QString> types {
        { u"heic"_s, u"image/heic"_s },
        { u"zip"_s, u"application/zip"_s },
        { u"png"_s, u"image/png"_s },
        { u"jpg"_s, u"image/jpeg"_s },
    };
    return types.value(QFileInfo(path).suffix(), u"application/octet-stream"_s);
}

QJsonObject pick(const QJsonObject &from, const QStringList &keys)
{
    QJsonObject result;
    for (const QString &key : keys)
        if (from.contains(key))
            result.insert(key, from.value(key));
    return result;
}

// The downloadable side of a pack, each file located by `locate`.
template<typename Locate> QJsonObject downloads(const QJsonObject &pack, Locate locate)
{
    QJsonArray colourways;
    for (const QJsonValue &colourway : pack.value("colourways"_L1).toArray()) {
        QJsonArray files;
        for (const QJsonValue &file : colourway["files"_L1].toArray()) {
            QJsonObject entry =
                pick(file.toObject(), { u"id"_s, u"edition"_s, u"bytes"_s, u"sha256"_s });
            files.append(locate(entry));
        }
        colourways.append(
            QJsonObject { { u"slug"_s, colourway["slug"_L1] }, { u"files"_s, files } });
    }
    QJsonArray archives;
    for (const QJsonValue &archive : pack.value("archives"_L1).toArray()) {
        QJsonObject entry = pick(archive.toObject(),
                                 { u"id"_s, u"device"_s, u"filename"_s, u"bytes"_s, u"sha256"_s });
        archives.append(locate(entry));
    }
    return { { u"colourways"_s, colourways }, { u"archives"_s, archives } };
}

// Artwork paths of the content folder as addresses on the shop.
QJsonObject artLocations(const QJsonObject &art, const QString &origin)
{
    QJsonObject result;
    for (auto it = art.begin(); it != art.end(); ++it)
        result.insert(it.key(),
                      it->isObject() ? artLocations(it->toObject(), origin)
                                     : QJsonValue(QString(origin + u'/' + it->toString())));
    return result;
}
} // namespace

std::optional<ContentStore> ContentStore::load(const QString &dir)
{
    QFile file(QDir(dir).filePath(u"content.json"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcContent) << "No sample content in" << dir;
        return std::nullopt;
    }
    const QJsonObject manifest = QJsonDocument::fromJson(file.readAll()).object();
    ContentStore store;
    const QJsonObject account = manifest.value("account"_L1).toObject();
    store.m_email = account.value("email"_L1).toString();
    store.m_account = account.value("packs"_L1).toArray();
    store.m_phases = manifest.value("phases"_L1).toArray();
    store.m_packs = manifest.value("packs"_L1).toArray();
    for (const QJsonValue &owned : std::as_const(store.m_account))
        store.m_owned.insert(owned["slug"_L1].toString());

    for (const QJsonValue &value : std::as_const(store.m_packs)) {
        const QJsonObject pack = value.toObject();
        const QString slug = pack.value("slug"_L1).toString();
        if (pack.value("free"_L1).toBool())
            store.m_free.insert(slug);
        bool complete = store.addFiles(dir, slug, pack.value("archives"_L1).toArray());
        for (const QJsonValue &colourway : pack.value("colourways"_L1).toArray()) {
            complete = complete && store.addFiles(dir, slug, colourway["files"_L1].toArray());
            QList<QJsonValue> pictures;
            for (const QJsonValue &location : colourway["art"_L1].toObject()) {
                if (!location.isObject())
                    pictures.append(location);
                for (const QJsonValue &inner : location.toObject())
                    pictures.append(inner);
            }
            for (const QJsonValue &location : std::as_const(pictures)) {
                const QString path = QDir(dir).filePath(location.toString());
                store.m_art.insert(
                    u'/' + location.toString(),
                    { {}, slug, path, contentType(path), QFileInfo(path).size(), {} });
            }
        }
        if (!complete) {
            qCWarning(lcContent) << "The sample content in" << dir << "is incomplete";
            return std::nullopt;
        }
    }
    if (store.m_packs.isEmpty() || store.m_email.isEmpty()) {
        qCWarning(lcContent) << "Unreadable sample content in" << dir;
        return std::nullopt;
    }
    return store;
}

bool ContentStore::addFiles(const QString &dir, const QString &pack, const QJsonArray &entries)
{
    for (const QJsonValue &value : entries) {
        const QJsonObject entry = value.toObject();
        const QString path = QDir(dir).filePath(entry.value("path"_L1).toString());
        const StoredFile file { entry.value("id"_L1).toString(),
                                pack,
                                path,
                                contentType(path),
                                entry.value("bytes"_L1).toInteger(),
                                entry.value("sha256"_L1).toString() };
        if (file.id.isEmpty() || QFileInfo(path).size() != file.bytes)
            return false;
        m_files.insert(file.id, file);
    }
    return true;
}

QJsonObject ContentStore::catalogue(const QString &origin) const
{
    QJsonArray packs;
    for (const QJsonValue &value : m_packs) {
        const QJsonObject source = value.toObject();
        const QString slug = source.value("slug"_L1).toString();
        QJsonObject pack =
            pick(source, { u"slug"_s, u"name"_s, u"line"_s, u"price"_s, u"onSale"_s });
        pack.insert("url"_L1, QString(origin + u"/packs/"_s + slug));
        QJsonArray colourways;
        for (const QJsonValue &colourway : source.value("colourways"_L1).toArray())
            colourways.append(
                QJsonObject { { u"slug"_s, colourway["slug"_L1] },
                              { u"name"_s, colourway["name"_L1] },
                              { u"art"_s, artLocations(colourway["art"_L1].toObject(), origin) } });
        pack.insert("colourways"_L1, colourways);
        if (!source.value("released"_L1).toBool(true))
            pack.insert("released"_L1, false);
        if (m_free.contains(slug)) {
            QJsonObject free = downloads(source, [&](QJsonObject entry) {
                entry.insert("url"_L1,
                             QString(origin + u"/public/"_s + entry.value("id"_L1).toString()));
                return entry;
            });
            free.insert("updatedAt"_L1, source.value("updatedAt"_L1));
            pack.insert("free"_L1, free);
        }
        packs.append(pack);
    }
    return { { u"packs"_s, packs }, { u"phases"_s, m_phases } };
}

QJsonObject ContentStore::library(int revision, const QHash<QString, QString> &digests) const
{
    QJsonArray packs;
    for (const QJsonValue &owned : m_account) {
        const QString slug = owned["slug"_L1].toString();
        const std::optional<QJsonObject> source = pack(slug);
        if (!source)
            continue;
        QJsonObject entry = downloads(*source, [&digests](QJsonObject file) {
            const QString id = file.value("id"_L1).toString();
            // The location of the bytes; clients fetch them through signed links instead.
            file.insert("path"_L1, QString(u"/files/"_s + id));
            if (digests.contains(id))
                file.insert("sha256"_L1, digests.value(id));
            return file;
        });
        const QDateTime updated =
            QDateTime::fromString(source->value("updatedAt"_L1).toString(), Qt::ISODate);
        entry.insert("slug"_L1, slug);
        entry.insert("since"_L1, owned["since"_L1]);
        entry.insert("updatedAt"_L1, updated.addSecs(revision).toString(Qt::ISODate));
        packs.append(entry);
    }
    return { { u"email"_s, m_email }, { u"packs"_s, packs } };
}

std::optional<QJsonObject> ContentStore::pack(const QString &slug) const
{
    for (const QJsonValue &pack : m_packs)
        if (pack["slug"_L1].toString() == slug)
            return pack.toObject();
    return std::nullopt;
}

const StoredFile *ContentStore::file(const QString &id) const
{
    const auto it = m_files.constFind(id);
    return it == m_files.cend() ? nullptr : &*it;
}

const StoredFile *ContentStore::art(const QString &path) const
{
    const auto it = m_art.constFind(path);
    return it == m_art.cend() ? nullptr : &*it;
}
