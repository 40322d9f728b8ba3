#include "reconciler.h"

#include "displays.h"
#include "download_thread.h"
#include "error.h"
#include "logging.h"
#include "shop.h"
#include "wallpaper_requests.h"
#include "wallpaper_setter.h"

#include <QFile>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

Reconciler::Reconciler(Services services, QObject *parent)
    : QObject(parent)
    , m_services(services)
{
    // Only a check that went well can name newer files.
    connect(m_services.shop, &Shop::libraryChecked, this,
            [this] { request(m_services.shop->owned()); });
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
    const auto installed = m_services.shop->cache().installedFiles();
    for (const auto &pack : owned) {
        for (const auto &current : pack.allFiles()) {
            const QString currentKey = DownloadCache::fileKey(current);
            const QString stem = currentKey.left(currentKey.size() - current.id.size() - 5);
            for (const auto &file : installed) {
                if (file.key != currentKey && file.key.startsWith(stem)
                    && id.match(file.key.mid(stem.size())).hasMatch()
                    && m_services.setter->isShown(file.path))
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
        const QStringList displays = self->showing(current);
        if (!displays.isEmpty())
            co_await self->m_services.requests->set(current, displays,
                                                    WallpaperRequests::Kind::Update);
        if (!self || self->m_services.setter->isShown(old.path))
            co_return;
        qCInfo(lcShop) << "Updated" << old.key << "to" << current.id;
        auto remove = [path = old.path] { QFile::remove(path); };
        co_await self->m_services.thread->run(std::move(remove));
    } catch (const std::exception &error) {
        qCWarning(lcShop, "Couldn't update %s: %s", qUtf8Printable(old.key),
                  qUtf8Printable(describe(error)));
    }
}

QStringList Reconciler::showing(const WallpaperFile &file) const
{
    QStringList displays;
    for (const QString &id : m_services.displays->ids()) {
        const auto placement = m_services.displays->placement(id);
        if (placement && placement->pack == file.pack && placement->colourway == file.colourway
            && placement->edition == rawValue(file.edition))
            displays.append(id);
    }
    return displays;
}
