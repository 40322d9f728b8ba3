#include "shop_content.h"

#include "test_support.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace {
QString randomId(char prefix)
{
    return QLatin1Char(prefix) + u'_'
        + QString::number(QRandomGenerator::global()->generate64(), 16).rightJustified(16, u'0');
}

QByteArray randomBytes(qint64 size)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(bytes.data()), size / 4);
    return bytes;
}

// Writes bytes at a path below dir; returns their SHA-256.
QString put(const QString &dir, const QString &path, const QByteArray &bytes)
{
    if (bytes.isEmpty() || !writeFile(QDir(dir).filePath(path), bytes))
        qFatal("Cannot write %s", qPrintable(path));
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}
} // namespace

QList<ContentPack> writeContent(const QString &dir, QList<ContentPack> packs)
{
    if (packs.isEmpty()) // the shop serves no content without a pack
        packs = { { .slug = u"aurora"_s, .files = { { u"emerald"_s, u"light"_s, 1000 } } } };
    QJsonArray packArray;
    QJsonArray owned;
    for (ContentPack &pack : packs) {
        QMap<QString, QJsonArray> byColourway;
        for (ContentFile &file : pack.files) {
            if (file.id.isEmpty())
                file.id = randomId('f');
            const QString path = u"files/%1/%2.heic"_s.arg(pack.slug, file.id);
            const QByteArray bytes =
                file.copyOf.isEmpty() ? randomBytes(file.bytes) : readAll(file.copyOf);
            file.bytes = bytes.size();
            file.sha256 = put(dir, path, bytes);
            byColourway[file.colourway].append(QJsonObject {
                { u"id"_s, file.id },
                { u"edition"_s, file.edition },
                { u"bytes"_s, file.bytes },
                { u"path"_s, path },
                { u"sha256"_s, file.sha256 },
            });
        }
        QJsonArray colourways;
        for (auto it = byColourway.cbegin(); it != byColourway.cend(); ++it)
            colourways.append(QJsonObject { { u"slug"_s, it.key() },
                                            { u"name"_s, it.key().toUpper() },
                                            { u"art"_s, QJsonObject() },
                                            { u"files"_s, it.value() } });
        QJsonArray archives;
        for (ContentArchive &archive : pack.archives) {
            if (archive.id.isEmpty())
                archive.id = randomId('a');
            const QString path = u"archives/%1/%2.zip"_s.arg(pack.slug, archive.id);
            archive.sha256 = put(dir, path, randomBytes(archive.bytes));
            QJsonObject listed { { u"id"_s, archive.id },
                                 { u"device"_s, archive.device },
                                 { u"filename"_s, archive.filename },
                                 { u"bytes"_s, archive.bytes },
                                 { u"path"_s, path } };
            if (archive.listsDigest)
                listed.insert(u"sha256"_s, archive.sha256);
            archives.append(listed);
        }
        packArray.append(QJsonObject {
            { u"slug"_s, pack.slug },
            { u"name"_s, pack.slug.toUpper() },
            { u"line"_s, u"Made for a test"_s },
            { u"price"_s, u"€1"_s },
            { u"onSale"_s, false },
            { u"free"_s, pack.free },
            { u"released"_s, pack.released },
            { u"updatedAt"_s, u"2025-06-01T12:00:00Z"_s },
            { u"colourways"_s, colourways },
            { u"archives"_s, archives },
        });
        if (pack.owned && !pack.free)
            owned.append(QJsonObject { { u"slug"_s, pack.slug },
                                       { u"since"_s, u"2025-01-01T00:00:00Z"_s } });
    }
    const QJsonObject manifest {
        { u"account"_s,
          QJsonObject { { u"email"_s, u"tess.test@example.com"_s }, { u"packs"_s, owned } } },
        { u"phases"_s, QJsonArray() },
        { u"packs"_s, packArray },
    };
    if (!writeFile(QDir(dir).filePath(u"content.json"_s), QJsonDocument(manifest).toJson()))
        qFatal("Cannot write content.json");
    return packs;
}

ContentShop::ContentShop(QList<ContentPack> packs, DevShop::Options options,
                         const QString &stateDir)
    : m_ownState(stateDir.isEmpty() ? std::optional<QTemporaryDir>(std::in_place) : std::nullopt)
    , m_stateDir(m_ownState ? m_ownState->path() : stateDir)
    , m_options(std::move(options))
    , m_packs(writeContent(m_content.path(), std::move(packs)))
{
    m_options.contentDir = m_content.path();
    m_options.stateDir = m_stateDir;
    m_shop.emplace(m_options);
    m_running = m_shop->start();
}

bool ContentShop::restart(QList<ContentPack> packs)
{
    m_options.port = m_shop->port();
    m_shop.reset();
    m_packs = writeContent(m_content.path(), std::move(packs));
    m_shop.emplace(m_options);
    m_running = m_shop->start();
    return m_running;
}

QString ContentShop::issueToken()
{
    const auto token = m_shop->issueToken();
    recordToken(token);
    return token;
}

QByteArray ContentShop::bytes(const QString &id) const
{
    QDirIterator file(m_content.path(), { id + u".*"_s }, QDir::Files,
                      QDirIterator::Subdirectories);
    return file.hasNext() ? readAll(file.next()) : QByteArray();
}

QUrl ContentShop::publicUrl(const QString &id) const
{
    return QUrl(u"https://127.0.0.1:%1/public/%2"_s.arg(m_shop->port()).arg(id));
}

int ContentShop::requests(const QString &endpoint) const
{
    const auto counts = m_shop->stats().value("requests"_L1).toObject();
    return counts.value(m_shop->baseUrl().path() + u'/' + endpoint).toInt();
}

QJsonArray ContentShop::fileStats(const char *kind, const QString &id) const
{
    const auto stats = m_shop->stats().value(QLatin1StringView(kind)).toObject();
    return { stats.value(u"/files/"_s + id), stats.value(u"/public/"_s + id) };
}

qint64 ContentShop::count(const char *kind, const QString &id) const
{
    const auto counts = fileStats(kind, id);
    return counts[0].toInteger() + counts[1].toInteger();
}

QStringList ContentShop::ranges(const QString &id) const
{
    QStringList result;
    for (const auto &path : fileStats("ranges", id))
        for (const auto &range : path.toArray())
            result.append(range.toString());
    return result;
}

bool ContentShop::setFaults(const char *json)
{
    return m_shop->setFaults(QJsonDocument::fromJson(json).object());
}
