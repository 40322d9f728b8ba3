#include "wallpaper_requests.h"

#include "clock.h"
#include "logging.h"
#include "owned_pack.h"
#include "wallpaper_target.h"
#include "workspace_helper.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

QString WallpaperRequests::Overtaken::description() const
{
    return u"Another wallpaper was set while this one downloaded."_s;
}

WallpaperRequests::WallpaperRequests(Local local, WallpaperTarget *target, WorkspaceHelper *helper,
                                     PlacementRecords records, std::shared_ptr<Clock> clock,
                                     QObject *parent)
    : QObject(parent)
    , m_local(std::move(local))
    , m_target(target)
    , m_helper(helper)
    , m_records(std::move(records))
    , m_clock(std::move(clock))
{
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

    QString path = co_await self->m_local(file);
    for (int attempt = 1;; ++attempt) {
        if (!self)
            co_return {};
        QStringList current;
        for (const QString &id : std::as_const(displayIds)) {
            if (self->m_generations.value(id) == started.value(id))
                current.append(id);
        }
        if (current.isEmpty())
            throw Overtaken();

        PlacementHistory::Entry before;
        if (kind == Kind::Change) {
            const auto placements = self->m_records.load().placements;
            for (const QString &id : std::as_const(current)) {
                if (placements.contains(id))
                    before.insert(id, placements.value(id));
            }
        }
        const Placement placement {
            .pack = file.pack,
            .colourway = file.colourway,
            .edition = rawValue(file.edition),
            .path = path,
            .setAt = self->m_clock->now().toMSecsSinceEpoch(),
        };
        WallpaperTarget *target = self->m_target;
        self->pin(path);
        bool unreadable = false;
        try {
            co_await target->setWallpaper(file, path, placement, current);
        } catch (const WallpaperTarget::UnreadableFile &) {
            if (attempt == 2) {
                if (self)
                    self->unpin(path);
                throw;
            }
            unreadable = true;
        } catch (...) {
            if (self)
                self->unpin(path);
            throw;
        }
        if (!self)
            co_return {};
        self->unpin(path);
        if (unreadable) {
            // Damaged on disk since its check, and every later set would fail the same way:
            // fetched again once.
            qCWarning(lcShop) << "Downloading again the damaged" << path;
            QFile::remove(path);
            path = co_await self->m_local(file);
            continue;
        }
        if (kind == Kind::Change) {
            self->m_history.push(before);
            Q_EMIT self->historyChanged();
        }
        if (self->m_helper)
            self->m_helper->wallpaperSet(current);
        co_return current;
    }
}

QCoro::Task<> WallpaperRequests::goBack(Resolve resolve)
{
    return goBack(this, std::move(resolve));
}

QCoro::Task<> WallpaperRequests::goBack(QPointer<WallpaperRequests> self, Resolve resolve)
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
        const auto file = resolve(placements.value(it.key()));
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

void WallpaperRequests::pin(const QString &path)
{
    ++m_pins[path];
}

void WallpaperRequests::unpin(const QString &path)
{
    if (--m_pins[path] <= 0)
        m_pins.remove(path);
}

void WallpaperRequests::setGoingBack(bool goingBack)
{
    if (m_goingBack == goingBack)
        return;
    m_goingBack = goingBack;
    Q_EMIT goingBackChanged();
}
