#include "shop_state.h"

#include <QJsonArray>

ShopState::ShopState(ContentStore content, Settings settings, QString adminSecret)
    : m_content(std::move(content))
    , m_settings(std::move(settings))
    , m_adminSecret(std::move(adminSecret))
    , m_grant(m_clock, m_settings.grant)
{
}

QString ShopState::setFaults(const QJsonObject &document)
{
    const QString problem = m_faults.set(document);
    if (problem.isEmpty() && document.value(QLatin1String("changeLibrary")).toBool())
        ++m_libraryRevision;
    return problem;
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
