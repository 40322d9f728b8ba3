#include "reconciler.h"

#include "download_thread.h"
#include "error.h"
#include "logging.h"
#include "wallpaper_requests.h"
#include "wallpaper_target.h"

#include <QFile>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

Reconciler::Reconciler(DownloadCache cache, WallpaperTarget *target, PlacementRecords records,
                       WallpaperRequests *requests, DownloadThread *thread, Keep keep,
                       QObject *parent)
    : QObject(parent)
    , m_cache(std::move(cache))
    , m_target(target)
    , m_records(std::move(records))
    , m_requests(requests)
    , m_thread(thread)
    , m_keep(std::move(keep))
{
}

void Reconciler::request(QMap<QString, OwnedPack> owned)
{
    if (m_running) {
        m_requested = std::move(owned);
        return;
    }
    m_running = true;
    run(this, std::move(owned));
}

QCoro::Task<> Reconciler::run(QPointer<Reconciler> self, QMap<QString, OwnedPack> owned)
{
    try {
        for (;;) {
            for (const auto &replacement : self->replacements(owned)) {
                co_await update(self, replacement);
                if (!self)
                    co_return;
            }
            if (!self->m_requested)
                break;
            owned = *std::exchange(self->m_requested, std::nullopt);
        }
    } catch (const std::exception &error) {
        qCWarning(lcShop) << "Updating installed files stopped:" << describe(error);
    }
    if (!self)
        co_return;
    self->m_running = false;
    Q_EMIT self->settled();
}

QList<Reconciler::Replacement> Reconciler::replacements(const QMap<QString, OwnedPack> &owned) const
{
    // Installed names are "COLOURWAY-EDITION-ID.heic", and colourway slugs may hold hyphens: an
    // old file is one whose name starts like the current file's and ends with an id.
    static const QRegularExpression id(
        QRegularExpression::anchoredPattern(u"f_[0-9a-f]+\\.heic"_s));
    QList<Replacement> result;
    const auto installed = m_cache.installedFiles();
    for (const auto &pack : owned) {
        for (const auto &current : pack.allFiles()) {
            const QString currentKey = DownloadCache::fileKey(current);
            const QString stem = currentKey.left(currentKey.size() - current.id.size() - 5);
            for (const auto &file : installed) {
                if (file.key != currentKey && file.key.startsWith(stem)
                    && id.match(file.key.mid(stem.size())).hasMatch()
                    && m_target->isShown(file.path))
                    result.append({ file, current });
            }
        }
    }
    return result;
}

QCoro::Task<> Reconciler::update(QPointer<Reconciler> self, Replacement replacement)
{
    const auto &[old, current] = replacement;
    try {
        // The displays that show the old file by their records.
        const QStringList attached = self->m_target->displayIds();
        QStringList displays;
        const auto placements = self->m_records.load().placements;
        for (auto it = placements.cbegin(); it != placements.cend(); ++it) {
            if (it->pack == current.pack && it->colourway == current.colourway
                && it->edition == rawValue(current.edition) && attached.contains(it.key()))
                displays.append(it.key());
        }
        if (!displays.isEmpty())
            co_await self->m_requests->set(current, displays, WallpaperRequests::Kind::Update);
        if (!self || self->m_keep(old.path))
            co_return;
        qCInfo(lcShop) << "Updated" << old.key << "to" << current.id;
        auto remove = [path = old.path] { QFile::remove(path); };
        co_await self->m_thread->run(std::move(remove));
    } catch (const std::exception &error) {
        qCWarning(lcShop, "Couldn't update %s: %s", qUtf8Printable(old.key),
                  qUtf8Printable(describe(error)));
    }
}
