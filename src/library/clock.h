#pragma once

#include <QCoroTask>
#include <QDateTime>
#include <chrono>
#include <memory>

class CancelToken;

// Where tasks read the time and sleep. Tests subclass it to move time without waiting. Tasks
// hold it by shared pointer, since a sleeping task may outlive its owner.
class Clock {
public:
    virtual ~Clock() = default;

    // CLOCK_BOOTTIME: unlike Qt's monotonic clock it keeps counting while the computer is
    // suspended, so a deadline on it (the sign-in code's expiry) passes during sleep.
    [[nodiscard]] virtual std::chrono::nanoseconds sinceBoot() const;

    // Wall-clock time in UTC, for expiry times and schedules.
    [[nodiscard]] virtual QDateTime now() const;

    // True when the whole duration passed; false as soon as the token is cancelled. Qt timers
    // stop during suspend, so the sleep may end later than asked.
    [[nodiscard]] virtual QCoro::Task<bool> sleep(std::shared_ptr<CancelToken> token,
                                                  std::chrono::milliseconds duration);
};
