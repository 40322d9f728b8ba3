#include "shuffle_schedule.h"

#include "cancel_token.h"
#include "clock.h"
#include "defaults.h"
#include "logging.h"

#include <QLocale>
#include <QTimeZone>

using ShuffleSettings::Interval;
using namespace std::chrono_literals;

namespace {
constexpr qint64 msecsPerDay = qint64(24) * 60 * 60 * 1000;

QDateTime utc(qint64 msecs)
{
    return QDateTime::fromMSecsSinceEpoch(msecs, QTimeZone::utc());
}

// The wall-clock times of one date that are boundaries, in order.
QList<QTime> boundaries(Interval interval, QDate date, Qt::DayOfWeek firstDay)
{
    QList<QTime> times;
    switch (interval) {
    case Interval::Hour:
        for (int hour = 0; hour < 24; ++hour)
            times.append(QTime(hour, 0));
        break;
    case Interval::SixHours:
        for (int hour = 0; hour < 24; hour += 6)
            times.append(QTime(hour, 0));
        break;
    case Interval::Day:
        times.append(QTime(0, 0));
        break;
    case Interval::Week:
        if (date.dayOfWeek() == firstDay)
            times.append(QTime(0, 0));
        break;
    }
    return times;
}

constexpr auto retryDelay = 900s;
// Long enough for the displays to come back after a wake.
constexpr auto quietAfterWake = 10s;
// Qt's timers cannot wait for weeks; waking now and then also follows a change of the clock.
constexpr std::chrono::milliseconds longestSleep = 1h;

QDateTime distantPast()
{
    return QDateTime::fromMSecsSinceEpoch(0, QTimeZone::utc());
}

QDateTime distantFuture()
{
    return { QDate(9999, 12, 31), QTime(0, 0), QTimeZone::utc() };
}

// The first moment the zone's clocks show this date and time: the earlier of a time shown twice,
// and the end of the jump for a time the clocks skip.
std::optional<QDateTime> firstMoment(const QTimeZone &zone, QDate date, QTime time)
{
    if (!zone.isValid())
        return std::nullopt;
    // The wall-clock reading as if it were UTC; the moment is that minus the offset then in
    // force, which is one of the offsets a day either side.
    const qint64 wall = QDateTime(date, time, QTimeZone::utc()).toMSecsSinceEpoch();
    std::optional<qint64> first;
    qint64 earliest = wall;
    for (const qint64 probe : { wall - msecsPerDay, wall + msecsPerDay }) {
        const int offset = zone.offsetFromUtc(utc(probe));
        const qint64 moment = wall - qint64(offset) * 1000;
        earliest = std::min(earliest, moment);
        if (zone.offsetFromUtc(utc(moment)) == offset && (!first || moment < *first))
            first = moment;
    }
    if (first)
        return utc(*first);
    // Skipped: the clocks jump over it at the transition.
    const auto transition = zone.nextTransition(utc(earliest));
    if (!transition.atUtc.isValid())
        return std::nullopt;
    return transition.atUtc;
}
} // namespace

std::optional<QDateTime> ShuffleSchedule::nextBoundary(Interval interval, const QDateTime &anchor,
                                                       const QTimeZone &zone,
                                                       Qt::DayOfWeek firstDay)
{
    if (!zone.isValid() || !anchor.isValid())
        return std::nullopt;
    // From the day before, in case the offset puts the anchor's date a day out; a week and a
    // bit always holds the next boundary.
    const QDate start = anchor.toTimeZone(zone).date().addDays(-1);
    for (int day = 0; day <= 9; ++day) {
        const QDate date = start.addDays(day);
        for (const QTime time : boundaries(interval, date, firstDay)) {
            auto moment = firstMoment(zone, date, time);
            if (moment && *moment > anchor)
                return moment;
        }
    }
    return std::nullopt;
}

ShuffleSchedule::ShuffleSchedule(Defaults *defaults, std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_clock(std::move(clock))
    , m_retryAt(distantPast())
    , m_quietUntil(distantPast())
{
    const auto anchor = defaults->shuffleAnchor();
    m_anchor = anchor.value_or(m_clock->now());
    if (!anchor)
        saveAnchor();
}

ShuffleSchedule::~ShuffleSchedule()
{
    if (m_token)
        m_token->cancel();
}

void ShuffleSchedule::saveAnchor()
{
    // Unsaved, a relaunch counts from an older anchor; the schedule here goes on from this one.
    if (!m_defaults->setShuffleAnchor(m_anchor))
        qCWarning(lcShuffle) << "Couldn't save the shuffle's anchor" << m_anchor;
}

bool ShuffleSchedule::isQuiet(const QDateTime &now) const
{
    return now < m_quietUntil || now < m_retryAt;
}

void ShuffleSchedule::start(Interval interval)
{
    m_interval = interval;
    rearm();
}

void ShuffleSchedule::stop()
{
    m_interval.reset();
    rearm();
}

void ShuffleSchedule::setAnchor(const QDateTime &anchor)
{
    if (anchor != m_anchor) {
        m_anchor = anchor;
        saveAnchor();
        Q_EMIT anchorChanged();
    }
    rearm();
}

void ShuffleSchedule::retryLater(const QDateTime &anchor)
{
    m_retryAt = m_clock->now().addSecs(retryDelay.count());
    setAnchor(anchor);
}

void ShuffleSchedule::sleepStarts()
{
    m_quietUntil = distantFuture();
    rearm();
}

void ShuffleSchedule::woke()
{
    m_quietUntil = m_clock->now().addSecs(quietAfterWake.count());
    rearm();
}

QDateTime ShuffleSchedule::dueDate() const
{
    const auto boundary = nextBoundary(*m_interval, m_anchor, QTimeZone::systemTimeZone(),
                                       QLocale().firstDayOfWeek());
    const auto length = ShuffleSettings::fallbackLength(*m_interval);
    return std::max(
        { boundary.value_or(m_anchor.addSecs(length.count())), m_retryAt, m_quietUntil });
}

void ShuffleSchedule::rearm()
{
    if (m_token)
        m_token->cancel();
    m_token.reset();
    m_task.reset();
    const QDateTime next = m_interval ? dueDate() : QDateTime();
    if (next != m_nextDate) {
        m_nextDate = next;
        Q_EMIT nextDateChanged();
    }
    if (!m_interval)
        return;
    m_token = std::make_shared<CancelToken>();
    m_task = run(this, m_token, m_clock);
}

QCoro::Task<> ShuffleSchedule::run(QPointer<ShuffleSchedule> self,
                                   std::shared_ptr<CancelToken> token, std::shared_ptr<Clock> clock)
{
    try {
        while (true) {
            const QDateTime due = self->m_nextDate;
            const auto wait =
                std::clamp(std::chrono::milliseconds(clock->now().msecsTo(due)), 0ms, longestSleep);
            // Awaited on its own line: g++ 12 miscompiles a co_await inside "||".
            const bool slept = co_await clock->sleep(token, wait);
            if (!slept || !self)
                co_return;
            Q_EMIT self->awoke();
            if (!self || token->isCancelled())
                co_return;
            if (clock->now() < due)
                continue;
            qCDebug(lcShuffle) << "Shuffle due, anchor" << self->m_anchor;
            Q_EMIT self->due();
            co_return;
        }
    } catch (const std::exception &error) {
        qCCritical(lcShuffle) << "Shuffle schedule stopped:" << error.what();
    }
}
