#pragma once

#include "cancel_token.h"
#include "clock.h"

#include <QCoroSignal>
#include <QCoroTimer>
#include <QDateTime>
#include <QTimer>
#include <functional>

// Time that moves only when a test moves it. A sleep moves it on by its own length at once while
// `allowed` lasts, and waits for more after that; a held sleep waits instead for advance() to
// pass its deadline, as a schedule's would.
class TestClock : public Clock {
public:
    [[nodiscard]] QDateTime now() const override { return m_now; }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return m_sinceBoot; }
    QCoro::Task<bool> sleep(std::shared_ptr<CancelToken> token,
                            std::chrono::milliseconds duration) override;

    void setNow(const QDateTime &now) { m_now = now; }
    // Moves time on and wakes the held sleepers it passes, unless it moves as a suspend would,
    // with the timers stopped.
    void advance(std::chrono::milliseconds by, bool wakeSleepers = true);
    // Sleeps that ended, in order.
    [[nodiscard]] const QList<std::chrono::milliseconds> &sleeps() const { return m_sleeps; }

    bool holdSleeps = false;
    int allowed = 1000;
    // Called with each sleep, to move a server's clock along.
    std::function<void(std::chrono::milliseconds)> onSleep;

private:
    struct Sleeper {
        QDateTime deadline;
        std::shared_ptr<CancelToken> wake;
    };

    QDateTime m_now = QDateTime(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC);
    std::chrono::nanoseconds m_sinceBoot = std::chrono::hours(1);
    QList<std::chrono::milliseconds> m_sleeps;
    QList<Sleeper> m_sleepers;
};

inline QCoro::Task<bool> TestClock::sleep(std::shared_ptr<CancelToken> token,
                                          std::chrono::milliseconds duration)
{
    if (holdSleeps) {
        if (token->isCancelled())
            co_return false;
        const auto wake = std::make_shared<CancelToken>();
        QObject::connect(token.get(), &CancelToken::cancelled, wake.get(), &CancelToken::cancel);
        m_sleepers.append({ m_now.addMSecs(duration.count()), wake });
        co_await qCoro(wake.get(), &CancelToken::cancelled);
        co_return !token->isCancelled();
    }
    while (allowed <= 0 && !token->isCancelled()) {
        QTimer timer;
        timer.setSingleShot(true);
        timer.start(1);
        co_await timer;
    }
    if (token->isCancelled())
        co_return false;
    --allowed;
    m_sleeps.append(duration);
    m_now = m_now.addMSecs(duration.count());
    m_sinceBoot += duration;
    if (onSleep)
        onSleep(duration);
    co_return true;
}

inline void TestClock::advance(std::chrono::milliseconds by, bool wakeSleepers)
{
    m_now = m_now.addMSecs(by.count());
    if (!wakeSleepers)
        return;
    // Woken sleepers may sleep again at once: only those due now are taken.
    QList<Sleeper> due;
    m_sleepers.removeIf([&](const Sleeper &sleeper) {
        if (sleeper.wake->isCancelled())
            return true;
        if (sleeper.deadline > m_now)
            return false;
        due.append(sleeper);
        return true;
    });
    for (const auto &sleeper : std::as_const(due))
        sleeper.wake->cancel();
}
