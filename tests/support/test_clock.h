#pragma once

#include "cancel_token.h"
#include "clock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QCoroSignal>
#include <QCoroTimer>
#include <QDateTime>
#include <QTimer>
#include <algorithm>
#include <functional>

// Time that moves only when a test moves it. A sleep moves it on by its own length at once while
// `allowed` lasts, and waits for more after that. A held sleep waits instead for advance() to
// reach its deadline, and held sleepers wake one at a time in the order of their deadlines, as a
// schedule's would.
class TestClock : public Clock {
public:
    TestClock() = default;
    TestClock(const QDateTime &now, bool hold)
        : holdSleeps(hold)
        , m_now(now)
    {
    }

    [[nodiscard]] QDateTime now() const override { return m_now; }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return m_sinceBoot; }
    QCoro::Task<bool> sleep(std::shared_ptr<CancelToken> token,
                            std::chrono::milliseconds duration) override;

    void setNow(const QDateTime &now) { m_now = now; }
    // Moves time on, waking each held sleeper whose deadline comes; advance(0ms) runs what is due.
    void advance(std::chrono::milliseconds by) { advanceTo(m_now.addMSecs(by.count())); }
    void advanceTo(const QDateTime &moment);
    // The computer sleeps: wall time moves but sleepers' timers stand still, as Qt's do.
    void suspend(std::chrono::milliseconds by);
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

    void moveTo(const QDateTime &moment);

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
        m_sleepers.removeIf([&wake](const Sleeper &sleeper) { return sleeper.wake == wake; });
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
    moveTo(m_now.addMSecs(duration.count()));
    if (onSleep)
        onSleep(duration);
    co_return true;
}

inline void TestClock::moveTo(const QDateTime &moment)
{
    if (moment <= m_now)
        return;
    m_sinceBoot += std::chrono::milliseconds(m_now.msecsTo(moment));
    m_now = moment;
}

inline void TestClock::advanceTo(const QDateTime &moment)
{
    while (true) {
        const auto next = std::min_element(
            m_sleepers.begin(), m_sleepers.end(),
            [](const Sleeper &a, const Sleeper &b) { return a.deadline < b.deadline; });
        if (next == m_sleepers.end() || next->deadline > moment)
            break;
        moveTo(next->deadline);
        const auto wake = next->wake;
        m_sleepers.erase(next);
        wake->cancel();
        // A woken sleeper resumes through a queued call; so may whatever it wakes in turn.
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) { }
    }
    moveTo(moment);
}

inline void TestClock::suspend(std::chrono::milliseconds by)
{
    moveTo(m_now.addMSecs(by.count()));
    for (auto &sleeper : m_sleepers)
        sleeper.deadline = sleeper.deadline.addMSecs(by.count());
}
