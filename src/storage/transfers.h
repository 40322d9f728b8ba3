#pragma once

#include "api_client.h"
#include "file_fetcher.h"
#include "file_source.h"
#include "shop_session.h"

#include <QHash>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

class CancelToken;
class Clock;
class WorkerReply;

// Gets verified local copies of files: one download per file at a time, whoever asks, through
// signed links that are reused while they last, with one more try after a failure. Publishes the
// progress of what is downloading.
class Transfers : public QObject {
    Q_OBJECT

public:
    // One file to make local: where it comes from, where it goes, what it must be.
    struct Download {
        QString key; // one transfer per key at a time
        QString name; // what the user calls it, in notices and logs
        QString pack; // with id: what a shop link is asked for
        QString id;
        FileSource source = FileSource::shop();
        FileFetcher::Target target;
    };

    // Asked once when a download arrives unlike its digest: the file as the refreshed library
    // describes it now, when that differs (the shop replaced it under the same id).
    using Renew = std::function<QCoro::Task<std::optional<Download>>()>;

    Transfers(FileFetcher fetcher, std::function<APIClient()> api, ShopSession session,
              std::shared_ptr<Clock> clock, QObject *parent = nullptr);
    // Cancels the transfers still running: their partial files stay for next time.
    ~Transfers() override;

    // The destination once it holds the verified file, downloading it first when needed. Joins a
    // transfer of the same key that is running already. Throws what the last try threw.
    [[nodiscard]] QCoro::Task<QString> local(Download download, Renew renew = {});

    [[nodiscard]] bool isRunning() const { return !m_running.isEmpty(); }
    [[nodiscard]] int count() const { return int(m_running.size()); }
    // Each running transfer's fraction, by key.
    [[nodiscard]] QHash<QString, double> progress() const { return m_progress; }
    // All running transfers together, weighted by size.
    [[nodiscard]] double fraction() const;
    // The signed link kept for a key, if any.
    [[nodiscard]] std::optional<APIClient::Link> link(const QString &key) const;

Q_SIGNALS:
    void progressChanged();
    // A transfer ended; the file is in place unless failed() came first.
    void ended(const QString &key);
    // "Couldn't download NAME. REASON"
    void failed(const QString &message);

private:
    static QCoro::Task<QString> local(QPointer<Transfers> self, Download download, Renew renew);
    static QCoro::Task<> run(QPointer<Transfers> self, Download download, Renew renew,
                             std::shared_ptr<WorkerReply> done,
                             std::shared_ptr<CancelToken> cancel);
    static QCoro::Task<> fetch(QPointer<Transfers> self, Download download,
                               std::shared_ptr<CancelToken> cancel);
    static QCoro::Task<QUrl> link(QPointer<Transfers> self, Download download,
                                  std::shared_ptr<CancelToken> cancel);

    void setProgress(const QString &key, double fraction);

    FileFetcher m_fetcher;
    std::function<APIClient()> m_api;
    ShopSession m_session;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<CancelToken> m_cancel;
    QHash<QString, std::shared_ptr<WorkerReply>> m_running;
    QHash<QString, double> m_progress;
    QHash<QString, qint64> m_sizes;
    QHash<QString, APIClient::Link> m_links;
    // Progress reaches the views at most once a frame; a fetcher reports every 512 KiB.
    QTimer m_progressFrame;
};
