#include "focus_wallpaper.h"

#include "async_mutex.h"
#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "error.h"
#include "logging.h"
#include "shuffle_displays.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"

#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// Long enough for the screens to settle after a change or a wake.
constexpr auto screensSettle = 2s;
// A failed restore of a display is not tried again sooner.
constexpr auto retryDelay = 300s;

// Whether the display still shows what the Do Not Disturb wallpaper put there: one of the
// user's wallpapers, set no later than it. Anything chosen since is the user's newer choice.
bool stillShowsFocus(const ShuffleDisplays::Screen &screen, const FocusRecord::Entry &entry)
{
    return entry.focusSetAt.isValid() && screen.showsOwnWallpaper && screen.placement
        && screen.placement->setAt <= entry.focusSetAt.toMSecsSinceEpoch();
}
} // namespace

FocusWallpaper::FocusWallpaper(Services services, QObject *parent)
    : DisplayTurn(parent)
    , m_services(std::move(services))
    // A relaunch carries on with the Do Not Disturb state it left.
    , m_record(FocusRecord::decode(m_services.defaults->focusWallpaper()))
    , m_pending(FocusRecord::decodeEntries(m_services.defaults->focusRestores()))
    , m_turn(std::make_shared<AsyncMutex>())
{
    connect(m_services.store, &ShuffleStore::choicesChanged, this, &FocusWallpaper::choicesChanged);
    connect(m_services.displays, &ShuffleDisplays::screensChanged, this,
            &FocusWallpaper::restoreWhenSettled);
    connect(m_services.sleep, &SleepWatcher::woke, this, &FocusWallpaper::restoreWhenSettled);
    connect(this, &FocusWallpaper::restoresDue, this, &FocusWallpaper::restorePending);
}

FocusWallpaper::~FocusWallpaper()
{
    if (m_settling)
        m_settling->cancel();
    if (m_retry)
        m_retry->cancel();
}

void FocusWallpaper::start()
{
    restorePending();
}

void FocusWallpaper::setWallpaper(const std::optional<QString> &wallpaper, Edition edition)
{
    if (!wallpaper || wallpaper->isEmpty()) {
        end();
        return;
    }
    const QString raw = rawValue(edition);
    if (m_record && m_record->wallpaper == *wallpaper && m_record->edition == raw
        && !m_awaitsChoices) {
        const auto screens = m_services.displays->screens();
        const bool everywhere =
            std::all_of(screens.begin(), screens.end(), [&](const auto &screen) {
                return m_record->entries.value(screen.id).focusSetAt.isValid();
            });
        // Already on, or still being put on.
        if (everywhere || m_change)
            return;
    }

    // A newer change: whatever an older one finds when it ends is discarded.
    ++m_generation;
    m_awaitsChoices = false;
    const bool wasOn = m_record.has_value();
    if (!m_record)
        m_record = FocusRecord();
    m_record->wallpaper = *wallpaper;
    m_record->edition = raw;
    // What still waits to be put back is what the displays showed before Do Not Disturb: it
    // stays the thing to put back when this one ends.
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        if (!m_record->entries.contains(it.key()))
            m_record->entries.insert(it.key(), it.value());
    }
    m_pending.clear();
    m_retryRestore.clear();
    savePending();
    if (!wasOn)
        Q_EMIT heldChanged();
    m_change = change(this, m_generation, *wallpaper, edition);
}

QCoro::Task<> FocusWallpaper::change(QPointer<FocusWallpaper> self, quint64 generation,
                                     QString wallpaper, Edition edition)
{
    QStringList ids;
    {
        // After a restore step that is under way: the display then shows what is to be kept.
        const auto turn = co_await AsyncMutex::lock(self->m_turn);
        if (!self || generation != self->m_generation || !self->m_record)
            co_return;
        for (const auto &screen : self->m_services.displays->screens()) {
            ids.append(screen.id);
            if (self->m_record->entries.contains(screen.id))
                continue;
            FocusRecord::Previous previous;
            if (screen.showsOwnWallpaper && screen.placement)
                previous.placement = screen.placement;
            else
                previous.path = screen.picture;
            self->m_record->entries.insert(screen.id, { .previous = previous });
        }
    }
    // Restores wait until every change has ended, so that none lands after them.
    ++self->m_changesRunning;
    const auto done = qScopeGuard([self, generation] {
        if (!self)
            return;
        if (generation == self->m_generation)
            self->m_change.reset();
        if (--self->m_changesRunning == 0)
            self->restorePending();
    });

    const auto choice = self->choiceFor(wallpaper);
    if (!choice) {
        if (self->m_services.store->choices().isEmpty()) {
            // The library is not loaded yet.
            self->m_awaitsChoices = true;
        } else {
            const QString reason = tr("That wallpaper isn't in your packs.");
            qCCritical(lcDoNotDisturb, "Couldn't set the Do Not Disturb wallpaper: %s",
                       qUtf8Printable(reason));
            Q_EMIT self->focusWallpaperFailed(reason);
        }
        self->saveRecord();
        co_return;
    }

    std::optional<QString> failure;
    try {
        co_await self->m_services.store->setWallpaper(*choice, edition, ids);
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self)
        co_return;
    const QDateTime now = self->m_services.clock->now();
    if (generation != self->m_generation) {
        // Discarded. If Do Not Disturb ended meanwhile, what this put on the displays must go
        // as well: the restores, which wait for this turn, then find it there.
        if (!failure && !self->m_record) {
            for (const QString &id : std::as_const(ids)) {
                if (self->m_pending.contains(id))
                    self->m_pending[id].focusSetAt = now;
            }
            self->savePending();
        }
        co_return;
    }
    if (failure) {
        qCCritical(lcDoNotDisturb, "Couldn't set the Do Not Disturb wallpaper: %s",
                   qUtf8Printable(*failure));
        Q_EMIT self->focusWallpaperFailed(*failure);
    } else {
        for (const QString &id : std::as_const(ids))
            self->m_record->entries[id].focusSetAt = now;
    }
    self->saveRecord();
}

void FocusWallpaper::end()
{
    ++m_generation;
    m_change.reset();
    m_awaitsChoices = false;
    if (!m_record)
        return;
    for (auto it = m_record->entries.cbegin(); it != m_record->entries.cend(); ++it)
        m_pending.insert(it.key(), it.value());
    m_record.reset();
    saveRecord();
    savePending();
    Q_EMIT heldChanged();
    restorePending();
}

void FocusWallpaper::choicesChanged()
{
    if (m_awaitsChoices && m_record) {
        m_awaitsChoices = false;
        ++m_generation;
        m_change = change(this, m_generation, m_record->wallpaper,
                          editionFromRawValue(m_record->edition).value_or(Edition::Automatic));
    }
    restorePending();
}

void FocusWallpaper::restoreWhenSettled()
{
    if (m_settling)
        m_settling->cancel();
    m_settling = std::make_shared<CancelToken>();
    m_settlingTask = settled(this, m_settling, m_services.clock);
}

QCoro::Task<> FocusWallpaper::settled(QPointer<FocusWallpaper> self,
                                      std::shared_ptr<CancelToken> token,
                                      std::shared_ptr<Clock> clock)
{
    // Awaited on its own line: g++ 12 miscompiles a co_await inside "||".
    const bool slept = co_await clock->sleep(token, screensSettle);
    if (!slept || !self)
        co_return;
    if (!self->m_pending.isEmpty())
        Q_EMIT self->restoresDue();
}

void FocusWallpaper::restorePending()
{
    if (m_pending.isEmpty() || m_record)
        return;
    if (m_isRestoring) {
        m_restoreAgain = true;
        return;
    }
    m_restoring = restore(this);
}

QCoro::Task<> FocusWallpaper::restore(QPointer<FocusWallpaper> self)
{
    self->m_isRestoring = true;
    const auto done = qScopeGuard([self] {
        if (!self)
            return;
        self->m_isRestoring = false;
        self->armRetry();
    });
    do {
        self->m_restoreAgain = false;
        for (const QString &id : self->m_pending.keys()) {
            // One display at a time, and not while a change puts a wallpaper on: the end of the
            // change asks again.
            const auto turn = co_await AsyncMutex::lock(self->m_turn);
            if (!self || self->m_record || self->m_changesRunning > 0)
                co_return;
            const QStringList ids = self->dueWith(id);
            if (ids.isEmpty())
                continue;
            std::optional<QString> failure;
            try {
                co_await restoreOne(self, ids, self->m_pending.value(id));
            } catch (const std::exception &error) {
                failure = describe(error);
            }
            if (!self)
                co_return;
            self->restored(ids, failure);
        }
    } while (self->m_restoreAgain && !self->m_record);
}

QStringList FocusWallpaper::dueWith(const QString &id)
{
    if (!m_pending.contains(id))
        return {};
    const auto screens = m_services.displays->screens();
    const QDateTime now = m_services.clock->now();
    // Attached (a display that is not waits for its return) and past its retry moment.
    const auto due = [&](const QString &displayId) -> const ShuffleDisplays::Screen * {
        for (const auto &screen : screens) {
            if (screen.id == displayId)
                return now < m_retryRestore.value(displayId) ? nullptr : &screen;
        }
        return nullptr;
    };
    const auto *screen = due(id);
    if (!screen)
        return {};
    const FocusRecord::Entry entry = m_pending.value(id);
    if (!stillShowsFocus(*screen, entry)) {
        m_pending.remove(id);
        m_retryRestore.remove(id);
        savePending();
        return {};
    }
    // Displays that showed the same go back together, as it was set: a desktop with one picture
    // for all displays gets it whole again, a slideshow included.
    QStringList ids { id };
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        const auto *other = it.key() == id ? nullptr : due(it.key());
        if (other && it->previous == entry.previous && stillShowsFocus(*other, *it))
            ids.append(it.key());
    }
    const auto &previous = entry.previous;
    // One of the user's wallpapers not on disk needs the library, which is not loaded.
    const bool onDisk = m_services.displays->canRestore(
        previous.placement ? previous.placement->path : previous.path.value_or(QString()),
        previous.placement);
    if (!onDisk && previous.placement && m_services.store->choices().isEmpty())
        return {};
    return ids;
}

void FocusWallpaper::restored(QStringList ids, const std::optional<QString> &failure)
{
    // A new Do Not Disturb wallpaper took the entries back meanwhile.
    ids.removeIf([&](const QString &id) { return !m_pending.contains(id); });
    if (m_record || ids.isEmpty())
        return;
    if (failure) {
        qCCritical(lcDoNotDisturb,
                   "Couldn't put back the wallpaper from before the Do Not Disturb: %s",
                   qUtf8Printable(*failure));
        const QDateTime retry =
            m_services.clock->now().addSecs(std::chrono::seconds(retryDelay).count());
        for (const QString &id : std::as_const(ids))
            m_retryRestore.insert(id, retry);
        return;
    }
    for (const QString &id : std::as_const(ids)) {
        m_pending.remove(id);
        m_retryRestore.remove(id);
    }
    savePending();
}

QCoro::Task<> FocusWallpaper::restoreOne(QPointer<FocusWallpaper> self, QStringList displayIds,
                                         FocusRecord::Entry entry)
{
    const auto &previous = entry.previous;
    const QString path =
        previous.placement ? previous.placement->path : previous.path.value_or(QString());
    if (self->m_services.displays->canRestore(path, previous.placement)) {
        std::optional<Placement> placement = previous.placement;
        // Set anew: a release or a user's choice of before must not count against it.
        if (placement)
            placement->setAt = self->m_services.clock->now().toMSecsSinceEpoch();
        co_await self->m_services.displays->restore(displayIds, path, placement);
        co_return;
    }
    if (previous.placement) {
        const auto choice =
            self->choiceFor(previous.placement->pack + u'/' + previous.placement->colourway);
        if (!choice)
            throw FocusRecord::CannotRestore(tr("That wallpaper isn't in your packs."));
        const Edition edition =
            editionFromRawValue(previous.placement->edition).value_or(Edition::Automatic);
        co_await self->m_services.store->setWallpaper(*choice, edition, displayIds);
        co_return;
    }
    if (!path.isEmpty())
        throw FocusRecord::CannotRestore(
            tr("The picture \u201c%1\u201d is no longer there.").arg(path));
    // Nothing is known to put back: the entry simply goes.
}

void FocusWallpaper::armRetry()
{
    if (m_retry)
        m_retry->cancel();
    m_retry.reset();
    QDateTime next;
    for (auto it = m_retryRestore.cbegin(); it != m_retryRestore.cend(); ++it) {
        if (m_pending.contains(it.key()) && (!next.isValid() || it.value() < next))
            next = it.value();
    }
    if (!next.isValid() || m_record)
        return;
    const auto wait = std::max<qint64>(0, m_services.clock->now().msecsTo(next));
    m_retry = std::make_shared<CancelToken>();
    m_retryTask = retryAt(this, m_retry, m_services.clock, std::chrono::milliseconds(wait));
}

QCoro::Task<> FocusWallpaper::retryAt(QPointer<FocusWallpaper> self,
                                      std::shared_ptr<CancelToken> token,
                                      std::shared_ptr<Clock> clock, std::chrono::milliseconds wait)
{
    const bool slept = co_await clock->sleep(token, wait);
    if (!slept || !self)
        co_return;
    Q_EMIT self->restoresDue();
}

// Unsaved, the record is written whole again with the next change; a relaunch before then
// finds the previous one.
void FocusWallpaper::saveRecord()
{
    if (!m_services.defaults->setFocusWallpaper(m_record ? m_record->encode() : QByteArray()))
        qCCritical(lcDoNotDisturb) << "Couldn't save the Do Not Disturb wallpaper's record";
}

void FocusWallpaper::savePending()
{
    if (!m_services.defaults->setFocusRestores(FocusRecord::encode(m_pending)))
        qCCritical(lcDoNotDisturb) << "Couldn't save the wallpapers still to put back";
}

std::optional<ShuffleChoice> FocusWallpaper::choiceFor(const QString &key) const
{
    for (const ShuffleChoice &choice : m_services.store->choices()) {
        if (choice.key() == key)
            return choice;
    }
    return std::nullopt;
}
