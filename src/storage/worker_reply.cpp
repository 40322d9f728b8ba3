#include "worker_reply.h"

WorkerReply::WorkerReply(QObject *parent)
    : QObject(parent)
{
}

void WorkerReply::rethrow() const
{
    if (m_error)
        std::rethrow_exception(m_error);
}

void WorkerReply::postProgress(double fraction)
{
    QMetaObject::invokeMethod(
        this, [this, fraction] { Q_EMIT progressed(fraction); }, Qt::QueuedConnection);
}

void WorkerReply::postEnd(std::exception_ptr error)
{
    QMetaObject::invokeMethod(
        this,
        [this, error] {
            m_error = error;
            m_ended = true;
            Q_EMIT ended();
        },
        Qt::QueuedConnection);
}
