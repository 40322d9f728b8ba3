#pragma once

#include "file_fetcher.h"
#include "sha256.h"

#include <QFile>
#include <QObject>
#include <QPointer>
#include <memory>

class DownloadThread;
class QNetworkReply;
class WorkerReply;

// One attempt of the file fetcher, carried out on the download thread: the ranged request, the
// response's status, streaming into the partial file, and the verification. It reports to a
// reply on the main thread and deletes itself when it is done.
class FetchAttempt : public QObject {
    Q_OBJECT

public:
    FetchAttempt(DownloadThread *thread, QUrl source, FileFetcher::Target target,
                 WorkerReply *reply);
    ~FetchAttempt() override;

    // Both on the download thread.
    void start();
    void cancel();

private:
    // A reply still running when dropped is aborted; nothing awaits it any more.
    struct Discard {
        void operator()(QNetworkReply *reply) const;
    };
    using Reply = std::unique_ptr<QNetworkReply, Discard>;

    QCoro::Task<> run();
    QCoro::Task<> fetch();
    // Sends the request, following redirects that stay on the scheme and host, and returns once
    // the response's status is known.
    QCoro::Task<Reply> send(qint64 offset, std::optional<QByteArray> validator);
    // Reads the body of a response that is not used, up to a limit.
    QCoro::Task<> drain(QNetworkReply *reply);
    QCoro::Task<> stream(Reply reply, qint64 offset);

    void openPartial(qint64 offset);
    void writeValidator(const QByteArray &etag) const;
    void write(QByteArray &buffer, qint64 &written);
    [[noreturn]] void throwTransportError(const QNetworkReply &reply) const;

    QPointer<DownloadThread> m_thread;
    QUrl m_source;
    FileFetcher::Target m_target;
    WorkerReply *m_reply; // on the main thread; alive until the end has been posted
    QFile m_partial;
    std::optional<Sha256> m_hash; // of the partial file's bytes so far
    QPointer<QNetworkReply> m_current;
    bool m_cancelled = false; // cancelled by the caller, not timed out
    std::optional<QCoro::Task<>> m_task;
};
