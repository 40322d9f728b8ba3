// The Do Not Disturb wallpaper's part of Shuffle: putting it on, and putting back what it covered.

#include "async_mutex.h"
#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "logging.h"
#include "shuffle.h"
#include "shuffle_store.h"

#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
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

void Shuffle::setFocus(const std::optional<QString> &wallpaper, Edition edition)
{
    if (!wallpaper || wallpaper->isEmpty()) {
        endFocus();
        return;
    }
    const QString raw = rawValue(edition);
    if (m_focus && m_focus->wallpaper == *wallpaper && m_focus->edition == raw
        && !m_focusAwaitsChoices) {
        const auto screens = m_services.displays->screens();
        const bool everywhere =
            std::all_of(screens.begin(), screens.end(), [&](const auto &screen) {
                return m_focus->entries.value(screen.id).focusSetAt.isValid();
            });
        // Already on, or still being put on.
        if (everywhere || m_focusChange)
            return;
    }

    // A newer change: whatever an older one finds when it ends is discarded.
    ++m_focusGeneration;
    m_focusAwaitsChoices = false;
    const bool wasOn = m_focus.has_value();
    if (!m_focus)
        m_focus = FocusRecord();
    m_focus->wallpaper = *wallpaper;
    m_focus->edition = raw;
    // What still waits to be put back is what the displays showed before Do Not Disturb: it
    // stays the thing to put back when this one ends.
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        if (!m_focus->entries.contains(it.key()))
            m_focus->entries.insert(it.key(), it.value());
    }
    m_pending.clear();
    m_retryRestore.clear();
    savePending();
    if (!wasOn) {
        Q_EMIT focusChanged();
        refresh();
    }
    m_focusChange = changeFocus(this, m_focusGeneration, *wallpaper, edition);
}

QCoro::Task<> Shuffle::changeFocus(QPointer<Shuffle> self, quint64 generation, QString wallpaper,
                                   Edition edition)
{
    QStringList ids;
    {
        // After a restore step that is under way: the display then shows what is to be kept.
        const auto turn = co_await AsyncMutex::lock(self->m_focusTurn);
        if (!self || generation != self->m_focusGeneration || !self->m_focus)
            co_return;
        for (const auto &screen : self->m_services.displays->screens()) {
            ids.append(screen.id);
            if (self->m_focus->entries.contains(screen.id))
                continue;
            FocusRecord::Previous previous;
            if (screen.showsOwnWallpaper && screen.placement)
                previous.placement = screen.placement;
            else
                previous.path = screen.picture;
            self->m_focus->entries.insert(screen.id, { .previous = previous });
        }
    }
    // Restores wait until every change has ended, so that none lands after them.
    ++self->m_changesRunning;
    const auto done = qScopeGuard([self, generation] {
        if (!self)
            return;
        if (generation == self->m_focusGeneration)
            self->m_focusChange.reset();
        if (--self->m_changesRunning == 0)
            self->restorePending();
    });

    const auto choice = self->choiceFor(wallpaper);
    if (!choice) {
        if (self->m_services.store->choices().isEmpty()) {
            // The library is not loaded yet.
            self->m_focusAwaitsChoices = true;
        } else {
            const QString reason = u"That wallpaper isn't in your packs."_s;
            qCCritical(lcShuffle, "Couldn't set the Do Not Disturb wallpaper: %s",
                       qUtf8Printable(reason));
            Q_EMIT self->focusWallpaperFailed(reason);
        }
        self->saveFocus();
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
    if (generation != self->m_focusGeneration) {
        // Discarded. If Do Not Disturb ended meanwhile, what this put on the displays must go
        // as well: the restores, which wait for this turn, then find it there.
        if (!failure && !self->m_focus) {
            for (const QString &id : std::as_const(ids)) {
                if (self->m_pending.contains(id))
                    self->m_pending[id].focusSetAt = now;
            }
            self->savePending();
        }
        co_return;
    }
    if (failure) {
        qCCritical(lcShuffle, "Couldn't set the Do Not Disturb wallpaper: %s",
                   qUtf8Printable(*failure));
        Q_EMIT self->focusWallpaperFailed(*failure);
    } else {
        for (const QString &id : std::as_const(ids))
            self->m_focus->entries[id].focusSetAt = now;
    }
    self->saveFocus();
}

void Shuffle::endFocus()
{
    ++m_focusGeneration;
    m_focusChange.reset();
    m_focusAwaitsChoices = false;
    if (!m_focus)
        return;
    for (auto it = m_focus->entries.cbegin(); it != m_focus->entries.cend(); ++it)
        m_pending.insert(it.key(), it.value());
    m_focus.reset();
    saveFocus();
    savePending();
    Q_EMIT focusChanged();
    refresh();
    restorePending();
}

void Shuffle::choicesChanged()
{
    if (m_focusAwaitsChoices && m_focus) {
        m_focusAwaitsChoices = false;
        ++m_focusGeneration;
        m_focusChange =
            changeFocus(this, m_focusGeneration, m_focus->wallpaper,
                        editionFromRawValue(m_focus->edition).value_or(Edition::Automatic));
    }
    restorePending();
}

void Shuffle::restorePending()
{
    if (m_pending.isEmpty() || m_focus)
        return;
    if (m_isRestoring) {
        m_restoreAgain = true;
        return;
    }
    m_restoring = restore(this);
}

QCoro::Task<> Shuffle::restore(QPointer<Shuffle> self)
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
            const auto turn = co_await AsyncMutex::lock(self->m_focusTurn);
            if (!self || self->m_focus || self->m_changesRunning > 0)
                co_return;
            if (!self->m_pending.contains(id))
                continue;
            const auto screens = self->m_services.displays->screens();
            const QDateTime now = self->m_services.clock->now();
            // Attached (a display that is not waits for its return) and past its retry moment.
            const auto due = [&](const QString &displayId) -> const ShuffleDisplays::Screen * {
                for (const auto &screen : screens) {
                    if (screen.id == displayId)
                        return now < self->m_retryRestore.value(displayId) ? nullptr : &screen;
                }
                return nullptr;
            };
            const auto *screen = due(id);
            if (!screen)
                continue;
            const FocusRecord::Entry entry = self->m_pending.value(id);
            if (!stillShowsFocus(*screen, entry)) {
                self->m_pending.remove(id);
                self->m_retryRestore.remove(id);
                self->savePending();
                continue;
            }
            // Displays that showed the same go back together, as it was set: a desktop with one
            // picture for all displays gets it whole again, a slideshow included.
            QStringList ids { id };
            for (auto it = self->m_pending.cbegin(); it != self->m_pending.cend(); ++it) {
                const auto *other = it.key() == id ? nullptr : due(it.key());
                if (other && it->previous == entry.previous && stillShowsFocus(*other, *it))
                    ids.append(it.key());
            }
            const auto &previous = entry.previous;
            // One of the user's wallpapers not on disk needs the library, which is not loaded.
            const bool onDisk = self->m_services.displays->canRestore(
                previous.placement ? previous.placement->path : previous.path.value_or(QString()),
                previous.placement);
            if (!onDisk && previous.placement && self->m_services.store->choices().isEmpty())
                continue;

            std::optional<QString> failure;
            try {
                co_await restoreOne(self, ids, entry);
            } catch (const std::exception &error) {
                failure = describe(error);
            }
            if (!self)
                co_return;
            // A new Do Not Disturb wallpaper took the entries back meanwhile.
            ids.removeIf(
                [&](const QString &restored) { return !self->m_pending.contains(restored); });
            if (self->m_focus || ids.isEmpty())
                continue;
            if (failure) {
                qCCritical(lcShuffle,
                           "Couldn't put back the wallpaper from before the Do Not Disturb: %s",
                           qUtf8Printable(*failure));
                const QDateTime retry =
                    self->m_services.clock->now().addSecs(std::chrono::seconds(retryDelay).count());
                for (const QString &restored : std::as_const(ids))
                    self->m_retryRestore.insert(restored, retry);
            } else {
                for (const QString &restored : std::as_const(ids)) {
                    self->m_pending.remove(restored);
                    self->m_retryRestore.remove(restored);
                }
                self->savePending();
            }
        }
    } while (self->m_restoreAgain && !self->m_focus);
}

QCoro::Task<> Shuffle::restoreOne(QPointer<Shuffle> self, QStringList displayIds,
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
            throw FocusRecord::CannotRestore(u"That wallpaper isn't in your packs."_s);
        const Edition edition =
            editionFromRawValue(previous.placement->edition).value_or(Edition::Automatic);
        co_await self->m_services.store->setWallpaper(*choice, edition, displayIds);
        co_return;
    }
    if (!path.isEmpty())
        throw FocusRecord::CannotRestore(
            u"The picture \u201c%1\u201d is no longer there."_s.arg(path));
    // Nothing is known to put back: the entry simply goes.
}

void Shuffle::armRetry()
{
    if (m_retry)
        m_retry->cancel();
    m_retry.reset();
    QDateTime next;
    for (auto it = m_retryRestore.cbegin(); it != m_retryRestore.cend(); ++it) {
        if (m_pending.contains(it.key()) && (!next.isValid() || it.value() < next))
            next = it.value();
    }
    if (!next.isValid() || m_focus)
        return;
    const auto wait = std::max<qint64>(0, m_services.clock->now().msecsTo(next));
    m_retry = std::make_shared<CancelToken>();
    m_retryTask = retryAt(this, m_retry, m_services.clock, std::chrono::milliseconds(wait));
}

QCoro::Task<> Shuffle::retryAt(QPointer<Shuffle> self, std::shared_ptr<CancelToken> token,
                               std::shared_ptr<Clock> clock, std::chrono::milliseconds wait)
{
    const bool slept = co_await clock->sleep(token, wait);
    if (!slept || !self)
        co_return;
    Q_EMIT self->restoresDue();
}

// Unsaved, the record is written whole again with the next change; a relaunch before then
// finds the previous one.
void Shuffle::saveFocus()
{
    if (!m_services.defaults->setFocusWallpaper(m_focus ? m_focus->encode() : QByteArray()))
        qCCritical(lcShuffle) << "Couldn't save the Do Not Disturb wallpaper's record";
}

void Shuffle::savePending()
{
    if (!m_services.defaults->setFocusRestores(FocusRecord::encode(m_pending)))
        qCCritical(lcShuffle) << "Couldn't save the wallpapers still to put back";
}

std::optional<Shuffle::Choice> Shuffle::choiceFor(const QString &key) const
{
    for (const Choice &choice : m_services.store->choices()) {
        if (choice.key() == key)
            return choice;
    }
    return std::nullopt;
}
