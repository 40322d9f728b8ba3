#include "shop_state.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>

using namespace Qt::Literals::StringLiterals;

namespace {
// The digest of a file's bytes as "changeFile" serves them: every byte inverted.
std::optional<QString> invertedDigest(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    for (char &byte : bytes)
        byte = char(~byte);
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}
} // namespace

ShopState::ShopState(ContentStore content, Settings settings, QString adminSecret)
    : m_content(std::move(content))
    , m_settings(std::move(settings))
    , m_adminSecret(std::move(adminSecret))
    , m_grant(m_clock, m_settings.grant)
{
}

QString ShopState::setFaults(const QJsonObject &document)
{
    std::optional<QString> digest;
    const QString changed = document.value("changeFile"_L1).toString();
    if (document.contains("changeFile"_L1)) {
        const StoredFile *file = m_content.file(changed);
        if (file && file->id.startsWith(u'f'))
            digest = invertedDigest(file->path);
        if (!digest)
            return u"\"changeFile\" names a wallpaper file by its id"_s;
    }
    const QString problem = m_faults.set(document);
    if (!problem.isEmpty())
        return problem;
    if (digest) {
        const std::lock_guard lock(m_changedMutex);
        m_changed.insert(changed, *digest);
    }
    if (digest || document.value("changeLibrary"_L1).toBool())
        ++m_libraryRevision;
    return {};
}

QHash<QString, QString> ShopState::changedFiles() const
{
    const std::lock_guard lock(m_changedMutex);
    return m_changed;
}

bool ShopState::isChanged(const QString &id) const
{
    const std::lock_guard lock(m_changedMutex);
    return m_changed.contains(id);
}

void ShopState::count(const QString &path, const QString &range)
{
    const std::lock_guard lock(m_statsMutex);
    ++m_requests[path];
    if (!range.isEmpty())
        m_ranges[path].append(range);
}

void ShopState::countSent(const QString &path, qint64 bytes)
{
    const std::lock_guard lock(m_statsMutex);
    m_sent[path] += bytes;
}

QJsonObject ShopState::stats() const
{
    const std::lock_guard lock(m_statsMutex);
    QJsonObject requests;
    for (auto it = m_requests.cbegin(); it != m_requests.cend(); ++it)
        requests.insert(it.key(), it.value());
    QJsonObject ranges;
    for (auto it = m_ranges.cbegin(); it != m_ranges.cend(); ++it)
        ranges.insert(it.key(), QJsonArray::fromStringList(it.value()));
    QJsonObject sent;
    for (auto it = m_sent.cbegin(); it != m_sent.cend(); ++it)
        sent.insert(it.key(), it.value());
    return { { QLatin1String("requests"), requests },
             { QLatin1String("ranges"), ranges },
             { QLatin1String("sent"), sent } };
}
