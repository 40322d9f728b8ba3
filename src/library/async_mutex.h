#pragma once

#include <QCoroTask>
#include <QObject>
#include <memory>

// Lets one task at a time through a section that spans co_awaits, such as reading, changing and
// writing a keychain item. Tasks hold the mutex by shared pointer, so it outlives every waiter
// even when its owner goes first.
class AsyncMutex : public QObject {
    Q_OBJECT

public:
    // Holds the mutex until destroyed.
    class Lock {
    public:
        explicit Lock(std::shared_ptr<AsyncMutex> mutex);
        Lock(Lock &&) noexcept = default;
        Lock &operator=(Lock &&) = delete;
        ~Lock();

    private:
        std::shared_ptr<AsyncMutex> m_mutex;
    };

    explicit AsyncMutex(QObject *parent = nullptr);

    [[nodiscard]] static QCoro::Task<Lock> lock(std::shared_ptr<AsyncMutex> mutex);

Q_SIGNALS:
    void released();

private:
    bool m_locked = false;
};
