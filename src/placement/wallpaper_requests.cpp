#include "wallpaper_requests.h"

#include "clock.h"
#include "desktop_pictures.h"
#include "displays.h"
#include "logging.h"
#include "shop.h"
#include "spaces_helper.h"
#include "wallpaper_setter.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

QString WallpaperRequests::Overtaken::description() const
{
    return QCoreApplication::translate("Intents",
                                       "Another wallpaper was set while this one downloaded.");
}

WallpaperRequests::WallpaperRequests(Services services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
{
}

QCoro::Task<QStringList> WallpaperRequests::setWallpaper(QString pack, QString colourway,
                                                         Edition edition, QStringList displayIds)
{
    const WallpaperFile file = m_services.shop->wallpaperFile(pack, colourway, edition);
    co_return co_await set(this, file, std::move(displayIds), Kind::Change);
}

QCoro::Task<QStringList> WallpaperRequests::set(WallpaperFile file, QStringList displayIds,
                                                Kind kind)
{
    return set(this, std::move(file), std::move(displayIds), kind);
}

QCoro::Task<QStringList> WallpaperRequests::set(QPointer<WallpaperRequests> self,
                                                WallpaperFile file, QStringList displayIds,
                                                Kind kind)
{
    QHash<QString, quint64> started;
    for (const QString &id : std::as_const(displayIds)) {
        if (kind != Kind::Update)
            ++self->m_generations[id];
        started.insert(id, self->m_generations.value(id));
    }
    const QPointer<Shop> shop = self->m_services.shop;

    QString path = co_await shop->localFile(file);
    for (int attempt = 1;; ++attempt) {
        if (!self)
            co_return {};
        const QStringList current = self->current(displayIds, started);
        if (current.isEmpty())
            throw Overtaken();
        const auto before =
            kind == Kind::Change ? self->shownOn(current) : PlacementHistory::Entry();
        const Placement placement {
            .pack = file.pack,
            .colourway = file.colourway,
            .edition = rawValue(file.edition),
            .path = path,
            .setAt = self->m_services.clock->now().toMSecsSinceEpoch(),
        };
        bool unreadable = false;
        try {
            co_await self->m_services.setter->setWallpaper(file, path, placement, current);
        } catch (const DesktopPictures::UnreadableFile &) {
            if (attempt == 2)
                throw;
            unreadable = true;
        }
        if (!self)
            co_return {};
        if (unreadable) {
            // Damaged on disk since its check, and every later set would fail the same way:
            // fetched again once.
            qCWarning(lcShop) << "Downloading again the damaged" << path;
            QFile::remove(path);
            path = co_await shop->localFile(file);
            continue;
        }
        if (kind == Kind::Change) {
            self->m_history.push(before);
            Q_EMIT self->historyChanged();
        }
        if (self->m_services.spaces)
            self->m_services.spaces->wallpaperSet(current);
        co_return current;
    }
}

QStringList WallpaperRequests::current(const QStringList &displayIds,
                                       const QHash<QString, quint64> &started) const
{
    QStringList current;
    for (const QString &id : displayIds) {
        if (m_generations.value(id) == started.value(id))
            current.append(id);
    }
    return current;
}

PlacementHistory::Entry WallpaperRequests::shownOn(const QStringList &displayIds) const
{
    PlacementHistory::Entry shown;
    for (const QString &id : displayIds) {
        if (const auto placement = m_services.displays->placement(id))
            shown.insert(id, *placement);
    }
    return shown;
}

QCoro::Task<> WallpaperRequests::goBack()
{
    return goBack(this);
}

QCoro::Task<> WallpaperRequests::goBack(QPointer<WallpaperRequests> self)
{
    if (self->m_goingBack || self->m_history.isEmpty())
        co_return;
    const auto entry = self->m_history.takeLast();
    Q_EMIT self->historyChanged();
    self->setGoingBack(true);

    // Displays that showed the same wallpaper go back together, as they were set.
    QMap<QString, QStringList> together;
    QHash<QString, Placement> placements;
    for (auto it = entry.cbegin(); it != entry.cend(); ++it) {
        const QString key = it->pack + u'/' + it->colourway + u'/' + it->edition;
        together[key].append(it.key());
        placements.insert(key, it.value());
    }
    std::exception_ptr first;
    for (auto it = together.cbegin(); it != together.cend(); ++it) {
        const auto file = self->m_services.shop->fileFor(placements.value(it.key()));
        if (!file) {
            qCInfo(lcShop) << "Not going back to" << it.key() << ": it is no longer in the packs";
            continue;
        }
        try {
            co_await set(self, *file, it.value(), Kind::GoingBack);
        } catch (...) {
            if (!first)
                first = std::current_exception();
        }
        if (!self)
            co_return;
    }
    self->setGoingBack(false);
    if (first)
        std::rethrow_exception(first);
}

void WallpaperRequests::setGoingBack(bool goingBack)
{
    if (m_goingBack == goingBack)
        return;
    m_goingBack = goingBack;
    Q_EMIT goingBackChanged();
}
