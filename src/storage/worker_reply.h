#pragma once

#include <QObject>
#include <exception>

// The main-thread end of one job on the download thread: the job posts its progress and, last,
// its end here. The awaiting task holds it until ended() has been emitted, so the job may post
// to it without checking.
class WorkerReply : public QObject {
    Q_OBJECT

public:
    explicit WorkerReply(QObject *parent = nullptr);

    [[nodiscard]] bool hasEnded() const { return m_ended; }
    // Rethrows what the job threw, if anything.
    void rethrow() const;

    // Both may be called from any thread; they reach the main thread queued, in order.
    void postProgress(double fraction);
    void postEnd(std::exception_ptr error);

Q_SIGNALS:
    void progressed(double fraction);
    void ended();

private:
    bool m_ended = false;
    std::exception_ptr m_error;
};
