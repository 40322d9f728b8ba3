#include "clock.h"

#include "cancel_token.h"

#include <QCoroSignal>
#include <ctime>

std::chrono::nanoseconds Clock::sinceBoot() const
{
    timespec time {};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

QDateTime Clock::now() const
{
    return QDateTime::currentDateTimeUtc();
}

QCoro::Task<bool> Clock::sleep(std::shared_ptr<CancelToken> token,
                               std::chrono::milliseconds duration)
{
    if (token->isCancelled())
        co_return false;
    co_await qCoro(token.get(), &CancelToken::cancelled, duration);
    co_return !token->isCancelled();
}
