#pragma once

#include <QObject>

// Cancels a task cooperatively, since a QCoro task cannot be cancelled from outside. The owner
// keeps the token beside the task's handle and cancels it before replacing or dropping the task.
//
// The task passes the token to every awaited operation: an awaited reply is aborted through a
// queued connection (a direct one would resume the coroutine inside cancel()), and a sleep is
// `co_await qCoro(token, &CancelToken::cancelled, duration)`. After every co_await the task
// checks the token and a QPointer to its owner, and returns when either fails.
class CancelToken : public QObject {
    Q_OBJECT

public:
    explicit CancelToken(QObject *parent = nullptr);

    [[nodiscard]] bool isCancelled() const { return m_cancelled; }

    // Idempotent: cancelled() is emitted once.
    void cancel();

Q_SIGNALS:
    void cancelled();

private:
    bool m_cancelled = false;
};
