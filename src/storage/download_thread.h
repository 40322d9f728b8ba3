#pragma once

#include <QCoroTask>
#include <QObject>
#include <QThread>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

class QNetworkAccessManager;

// The one worker thread of downloads, disk writes and hashing, with its own network access
// manager. The main thread hands work over and is woken, queued, when it ends, so it never waits
// on the network or the disk.
class DownloadThread : public QObject {
    Q_OBJECT

public:
    // extraCertificates: a PEM file trusted besides the system's ("shopCertificates").
    // As NetworkAccessManager: the extra certificates are trusted for the shop's host alone.
    DownloadThread(std::optional<QString> extraCertificates, QUrl shop, QObject *parent = nullptr);
    // Aborts the transfers still running, so that their tasks end, then stops the thread.
    ~DownloadThread() override;

    [[nodiscard]] QThread *workerThread() { return &m_thread; }
    // Made on first use. Only for use on the worker thread.
    [[nodiscard]] QNetworkAccessManager *manager();

    // Runs work on the worker thread and resumes with what it returned or threw.
    template<typename Work> [[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> run(Work work);

private:
    [[nodiscard]] QCoro::Task<> perform(std::function<void()> work);
    template<typename Result>
    [[nodiscard]] static QCoro::Task<Result> collect(QCoro::Task<> done,
                                                     std::shared_ptr<std::optional<Result>> result);

    std::optional<QString> m_extraCertificates;
    QUrl m_shop;
    QThread m_thread;
    QObject *m_context; // lives on the worker thread
    QNetworkAccessManager *m_manager = nullptr; // a child of m_context
};

template<typename Work> QCoro::Task<std::invoke_result_t<Work>> DownloadThread::run(Work work)
{
    using Result = std::invoke_result_t<Work>;
    if constexpr (std::is_void_v<Result>) {
        std::function<void()> job = std::move(work);
        return perform(std::move(job));
    } else {
        auto result = std::make_shared<std::optional<Result>>();
        std::function<void()> job = [work = std::move(work), result]() mutable {
            result->emplace(work());
        };
        auto done = perform(std::move(job));
        return collect<Result>(std::move(done), std::move(result));
    }
}

template<typename Result>
QCoro::Task<Result> DownloadThread::collect(QCoro::Task<> done,
                                            std::shared_ptr<std::optional<Result>> result)
{
    co_await std::move(done);
    co_return std::move(**result);
}
