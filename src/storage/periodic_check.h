#pragma once

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <chrono>
#include <functional>
#include <memory>

class CancelToken;
class Clock;
class Defaults;

// The six-hourly library check, honouring "checksForNewFiles". Qt's timers stop while the
// computer sleeps, so the check keeps its due moment in wall-clock time and looks at it again
// after every wake.
class PeriodicCheck : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds interval { 21'600 };

    PeriodicCheck(Defaults *defaults, std::shared_ptr<Clock> clock, std::function<void()> check,
                  QObject *parent = nullptr);
    ~PeriodicCheck() override;

    // Restarts the schedule: the next check is due one interval from now.
    void start();
    void stop();
    // The computer woke from sleep (logind's PrepareForSleep(false)).
    void woke();

private:
    static QCoro::Task<> loop(QPointer<PeriodicCheck> self, std::shared_ptr<CancelToken> cancel);

    Defaults *m_defaults;
    std::shared_ptr<Clock> m_clock;
    std::function<void()> m_check;
    QDateTime m_due;
    std::shared_ptr<CancelToken> m_cancel;
    std::shared_ptr<CancelToken> m_nap; // the current sleep, cut short by a wake
};
