#include "shuffle.h"

#include "async_mutex.h"
#include "clock.h"
#include "defaults.h"
#include "display_turn.h"
#include "favourites.h"
#include "logging.h"
#include "shuffle_schedule.h"
#include "shuffle_store.h"
#include "sleep_watcher.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

Shuffle::NothingToShuffle::NothingToShuffle(Source source)
    : m_source(source)
{
}

QString Shuffle::NothingToShuffle::description() const
{
    return m_source == Source::Favourites
        ? QCoreApplication::translate("Shuffle", "Add favourites to shuffle from them.")
        : QCoreApplication::translate("Shuffle", "There's nothing of yours to shuffle yet.");
}

Shuffle::Shuffle(Services services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_schedule(new ShuffleSchedule(m_services.defaults, m_services.clock, this))
    , m_carryingOut(std::make_shared<AsyncMutex>())
{
    const Defaults &defaults = *m_services.defaults;
    m_isOn = defaults.shuffleIsOn();
    m_interval = ShuffleSettings::intervalFromRawValue(defaults.shuffleInterval());
    m_source = ShuffleSettings::sourceFromRawValue(defaults.shuffleSource());
    m_differentOnEachDisplay = defaults.shuffleDifferentOnEachDisplay();

    connect(m_services.store, &ShuffleStore::choicesChanged, this, &Shuffle::refresh);
    connect(m_services.favourites, &Favourites::keysChanged, this, &Shuffle::refresh);
    connect(m_services.displays, &ShuffleDisplays::changed, this, &Shuffle::refresh);
    connect(m_services.turn, &DisplayTurn::heldChanged, this, &Shuffle::refresh);
    connect(m_services.sleep, &SleepWatcher::aboutToSleep, m_schedule,
            &ShuffleSchedule::sleepStarts);
    connect(m_services.sleep, &SleepWatcher::woke, m_schedule, &ShuffleSchedule::woke);
    connect(m_schedule, &ShuffleSchedule::anchorChanged, this, &Shuffle::anchorChanged);
    connect(m_schedule, &ShuffleSchedule::nextDateChanged, this, &Shuffle::nextDateChanged);
    connect(m_schedule, &ShuffleSchedule::due, this, &Shuffle::tick);
}

Shuffle::~Shuffle() = default;

void Shuffle::start()
{
    settingsChanged();
}

QDateTime Shuffle::anchor() const
{
    return m_schedule->anchor();
}

QDateTime Shuffle::nextDate() const
{
    return m_schedule->nextDate();
}

bool Shuffle::setOn(bool on)
{
    if (on == m_isOn)
        return true;
    if (!m_services.defaults->setShuffleIsOn(on))
        return notSaved("on");
    m_isOn = on;
    if (on)
        m_schedule->setAnchor(m_services.clock->now());
    Q_EMIT isOnChanged();
    settingsChanged();
    return true;
}

bool Shuffle::setInterval(Interval interval)
{
    if (interval == m_interval)
        return true;
    if (!m_services.defaults->setShuffleInterval(ShuffleSettings::rawValue(interval)))
        return notSaved("interval");
    m_interval = interval;
    Q_EMIT intervalChanged();
    settingsChanged();
    return true;
}

bool Shuffle::setSource(Source source)
{
    if (source == m_source)
        return true;
    if (!m_services.defaults->setShuffleSource(ShuffleSettings::rawValue(source)))
        return notSaved("source");
    m_source = source;
    Q_EMIT sourceChanged();
    settingsChanged();
    return true;
}

bool Shuffle::setDifferentOnEachDisplay(bool different)
{
    if (different == m_differentOnEachDisplay)
        return true;
    if (!m_services.defaults->setShuffleDifferentOnEachDisplay(different))
        return notSaved("different on each display");
    m_differentOnEachDisplay = different;
    Q_EMIT differentOnEachDisplayChanged();
    settingsChanged();
    return true;
}

bool Shuffle::notSaved(const char *setting)
{
    qCWarning(lcShuffle, "Couldn't save the shuffle's setting (%s); it stays as it was", setting);
    return false;
}

void Shuffle::settingsChanged()
{
    if (m_isOn)
        m_schedule->start(m_interval);
    else
        m_schedule->stop();
    refresh();
}

QList<Shuffle::Choice> Shuffle::candidates() const
{
    auto choices = m_services.store->choices();
    if (m_source == Source::Favourites) {
        const auto keys = m_services.favourites->keys();
        const QSet<QString> favourites(keys.begin(), keys.end());
        choices.removeIf([&](const Choice &choice) { return !favourites.contains(choice.key()); });
    }
    return choices;
}

QCoro::Task<> Shuffle::shuffleNow()
{
    return carryOut(this, m_carryingOut);
}

void Shuffle::tick()
{
    m_tick = scheduledShuffle(this);
}

QCoro::Task<> Shuffle::scheduledShuffle(QPointer<Shuffle> self)
{
    ShuffleSchedule *schedule = self->m_schedule;
    const QDateTime now = self->m_services.clock->now();
    const QDateTime before = schedule->anchor();
    if (!self->m_isOn)
        co_return;
    if (schedule->isQuiet(now)) {
        // Keeps the boundary for when the quiet ends.
        schedule->setAnchor(before);
        co_return;
    }
    // The boundary is taken whatever comes of it: a missed one gives one shuffle, not one each.
    schedule->setAnchor(now);
    if (self->m_services.turn->isHeld() || self->showsDesktopPicture()) {
        qCInfo(lcShuffle) << "Scheduled shuffle left out:" << self->m_status;
        co_return;
    }
    std::optional<QString> failure;
    try {
        co_await carryOut(self, self->m_carryingOut);
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self || !failure)
        co_return;
    qCCritical(lcShuffle, "Scheduled shuffle failed: %s", qUtf8Printable(*failure));
    self->m_schedule->retryLater(before);
    Q_EMIT self->scheduledShuffleFailed(*failure);
}

QCoro::Task<> Shuffle::carryOut(QPointer<Shuffle> self, std::shared_ptr<AsyncMutex> mutex)
{
    // One shuffle at a time: each draws from the played list the one before wrote.
    const auto lock = co_await AsyncMutex::lock(mutex);
    if (!self)
        co_return;
    const Prepared prepared = self->prepare();
    if (prepared.candidates.isEmpty())
        throw NothingToShuffle(self->m_source);

    self->setShuffling(true);
    const auto done = qScopeGuard([self] {
        if (self)
            self->setShuffling(false);
    });
    QStringList played = prepared.draw.newRound ? QStringList() : prepared.played;
    for (const Target &target : self->targets(prepared)) {
        const QString key = co_await setPick(self, target);
        if (!self)
            co_return;
        if (!played.contains(key))
            played.append(key);
        // Lost, the round starts over at the next launch; nothing else depends on it.
        if (!self->m_services.defaults->setShufflePlayed(played))
            qCWarning(lcShuffle) << "Couldn't save the wallpapers played this round";
    }
}

QCoro::Task<QString> Shuffle::setPick(QPointer<Shuffle> self, Target target)
{
    std::optional<ShuffleStore::DownloadFailed> failure;
    try {
        co_await self->m_services.store->setWallpaper(target.choice, target.wanted,
                                                      target.displayIds);
        co_return target.choice.key();
    } catch (const ShuffleStore::DownloadFailed &error) {
        failure = error;
    }
    const auto standIn = self ? self->downloadedStandIn(target.wanted) : std::nullopt;
    if (!standIn)
        throw *failure;
    qCInfo(lcShuffle, "Using a downloaded wallpaper instead: %s",
           qUtf8Printable(failure->description()));
    co_await self->m_services.store->setWallpaper(*standIn, target.wanted, target.displayIds);
    co_return standIn->key();
}

std::optional<Shuffle::Choice> Shuffle::downloadedStandIn(Edition wanted)
{
    auto onDisk = candidates();
    onDisk.removeIf(
        [&](const Choice &choice) { return !m_services.store->isDownloaded(choice, wanted); });
    if (onDisk.isEmpty())
        return std::nullopt;
    return onDisk.at(Deck::uniform(*m_services.random, quint32(onDisk.size())));
}

Shuffle::Prepared Shuffle::prepare() const
{
    Prepared next;
    next.candidates = candidates();
    next.screens = m_services.displays->screens();
    next.played = played(next.candidates);
    next.differentOnEachDisplay = m_differentOnEachDisplay;
    if (m_prepared && m_prepared->candidates == next.candidates
        && m_prepared->screens == next.screens && m_prepared->played == next.played
        && m_prepared->differentOnEachDisplay == next.differentOnEachDisplay)
        return *m_prepared;

    QSet<QString> shown;
    for (const auto &screen : next.screens) {
        if (screen.showsOwnWallpaper && screen.placement)
            shown.insert(screen.placement->pack + u'/' + screen.placement->colourway);
    }
    const qsizetype wanted = next.screens.isEmpty() ? 0
        : m_differentOnEachDisplay                  ? next.screens.size()
                                                    : 1;
    next.draw = Deck::draw(next.candidates, QSet<QString>(next.played.begin(), next.played.end()),
                           shown, wanted, *m_services.random);
    return next;
}

QList<Shuffle::Target> Shuffle::targets(const Prepared &prepared) const
{
    // The edition the display shows now, so that a user who chose dark keeps getting dark.
    const auto wantedOn = [](const ShuffleDisplays::Screen &screen) {
        if (!screen.placement)
            return Edition::Automatic;
        return editionFromRawValue(screen.placement->edition).value_or(Edition::Automatic);
    };
    const auto &picks = prepared.draw.picks;
    const auto &screens = prepared.screens;
    QList<Target> targets;
    if (prepared.differentOnEachDisplay) {
        for (qsizetype i = 0; i < picks.size() && i < screens.size(); ++i)
            targets.append({ picks[i], wantedOn(screens[i]), { screens[i].id } });
    } else if (!picks.isEmpty() && !screens.isEmpty()) {
        QStringList ids;
        for (const auto &screen : screens)
            ids.append(screen.id);
        targets.append({ picks.first(), wantedOn(screens.first()), ids });
    }
    return targets;
}

QStringList Shuffle::played(const QList<Choice> &candidates) const
{
    QSet<QString> keys;
    for (const auto &choice : candidates)
        keys.insert(choice.key());
    auto played = m_services.defaults->shufflePlayed();
    played.removeIf([&](const QString &key) { return !keys.contains(key); });
    return played;
}

void Shuffle::refresh()
{
    UpNext upNext;
    if (m_isOn) {
        m_prepared = prepare();
        for (const auto &target : targets(*m_prepared)) {
            for (const auto &id : target.displayIds)
                upNext.insert(id, target.choice);
        }
    } else {
        m_prepared.reset();
    }
    if (upNext != m_upNext) {
        m_upNext = upNext;
        Q_EMIT upNextChanged();
    }
    if (const auto status = currentStatus(); status != m_status) {
        m_status = status;
        Q_EMIT statusChanged();
    }
}

QString Shuffle::currentStatus() const
{
    if (!m_isOn)
        return {};
    if (showsDesktopPicture())
        return tr("Paused while you use a wallpaper chosen in your desktop settings.");
    if (m_services.turn->isHeld())
        return tr("Waiting while your Do Not Disturb wallpaper is on.");
    if (m_source == Source::Favourites && candidates().isEmpty())
        return tr("Add favourites with the heart on a colourway to shuffle from them.");
    return {};
}

bool Shuffle::showsDesktopPicture() const
{
    // Every display is one the shuffle would change, in either mode.
    const auto screens = m_services.displays->screens();
    return std::any_of(screens.begin(), screens.end(),
                       [](const auto &screen) { return !screen.showsOwnWallpaper; });
}

void Shuffle::setShuffling(bool shuffling)
{
    if (shuffling == m_isShuffling)
        return;
    m_isShuffling = shuffling;
    Q_EMIT isShufflingChanged();
    if (!shuffling)
        refresh();
}
