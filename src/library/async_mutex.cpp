#include "async_mutex.h"

#include <QCoroSignal>

AsyncMutex::Lock::Lock(std::shared_ptr<AsyncMutex> mutex)
    : m_mutex(std::move(mutex))
{
}

AsyncMutex::Lock::~Lock()
{
    if (!m_mutex)
        return;
    m_mutex->m_locked = false;
    Q_EMIT m_mutex->released();
}

AsyncMutex::AsyncMutex(QObject *parent)
    : QObject(parent)
{
}

QCoro::Task<AsyncMutex::Lock> AsyncMutex::lock(std::shared_ptr<AsyncMutex> mutex)
{
    // Every waiter wakes on a release; the first in line takes the mutex, the rest wait again.
    while (mutex->m_locked)
        co_await qCoro(mutex.get(), &AsyncMutex::released);
    mutex->m_locked = true;
    co_return Lock(mutex);
}
