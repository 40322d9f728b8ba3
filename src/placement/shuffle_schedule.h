#pragma once

#include "shuffle_settings.h"

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <memory>
#include <optional>

class CancelToken;
class Clock;
class Defaults;
class QTimeZone;

// When scheduled shuffles are due: at the first boundary of the user's calendar, in the user's
// time zone, after the anchor, and not while it is quiet around sleep or after a failure. Qt's
// timers stop during sleep, so the due moment is re-armed at every wake and every change.
class ShuffleSchedule : public QObject {
    Q_OBJECT

public:
    // The anchor is read from the settings, or is now when they hold none.
    ShuffleSchedule(Defaults *defaults, std::shared_ptr<Clock> clock, QObject *parent = nullptr);
    ~ShuffleSchedule() override;

    // The first boundary strictly after anchor: minute 0 of an hour; of an hour that is a
    // multiple of six; midnight; midnight starting firstDay. None when the zone cannot tell.
    [[nodiscard]] static std::optional<QDateTime> nextBoundary(ShuffleSettings::Interval interval,
                                                               const QDateTime &anchor,
                                                               const QTimeZone &zone,
                                                               Qt::DayOfWeek firstDay);

    [[nodiscard]] QDateTime anchor() const { return m_anchor; }
    // When the next scheduled shuffle is due; invalid while stopped.
    [[nodiscard]] QDateTime nextDate() const { return m_nextDate; }
    // Whether a shuffle must wait: just before or after sleep, or soon after a failure.
    [[nodiscard]] bool isQuiet(const QDateTime &now) const;

    // Counts towards the interval's boundaries until stopped; starting again re-arms.
    void start(ShuffleSettings::Interval interval);
    void stop();

    // Moves the anchor (and so the next boundary) and stores it.
    void setAnchor(const QDateTime &anchor);
    // After a failed shuffle: back to the anchor before it, and no try before 900 s from now, so
    // the boundary missed is tried again then.
    void retryLater(const QDateTime &anchor);

    // No shuffle while the computer goes to sleep; after waking, none for 10 s so the displays
    // can come back, then one for any boundary missed.
    void sleepStarts();
    void woke();

Q_SIGNALS:
    void anchorChanged();
    void nextDateChanged();
    // The due moment has come. The receiver moves the anchor or retries later, which re-arms.
    void due();
    // The timer ended, at the due moment or to look at the clock again.
    void awoke();

private:
    void saveAnchor();
    static QCoro::Task<> run(QPointer<ShuffleSchedule> self, std::shared_ptr<CancelToken> token,
                             std::shared_ptr<Clock> clock);

    void rearm();
    [[nodiscard]] QDateTime dueDate() const;

    Defaults *m_defaults;
    std::shared_ptr<Clock> m_clock;
    std::optional<ShuffleSettings::Interval> m_interval; // none while stopped
    QDateTime m_anchor;
    QDateTime m_nextDate;
    QDateTime m_retryAt;
    QDateTime m_quietUntil;
    std::shared_ptr<CancelToken> m_token;
    std::optional<QCoro::Task<>> m_task;
};
