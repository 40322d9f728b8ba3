#include "download_thread.h"

#include "network_access_manager.h"
#include "worker_reply.h"

#include <QCoroSignal>
#include <QNetworkReply>

using namespace Qt::Literals::StringLiterals;

DownloadThread::DownloadThread(std::optional<QString> extraCertificates, QUrl shop, QObject *parent)
    : QObject(parent)
    , m_extraCertificates(std::move(extraCertificates))
    , m_shop(std::move(shop))
    , m_context(new QObject)
{
    m_thread.setObjectName(u"Downloads"_s);
    m_context->moveToThread(&m_thread);
    // Deferred deletions still run when the thread finishes.
    connect(&m_thread, &QThread::finished, m_context, &QObject::deleteLater);
    m_thread.start();
}

DownloadThread::~DownloadThread()
{
    // An aborted transfer ends its attempt at once, which reports to its waiting task.
    QMetaObject::invokeMethod(
        m_context,
        [this] {
            if (m_manager) {
                for (auto *reply : m_manager->findChildren<QNetworkReply *>())
                    reply->abort();
            }
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

QNetworkAccessManager *DownloadThread::manager()
{
    Q_ASSERT(QThread::currentThread() == &m_thread);
    // Made here rather than in the constructor: loading certificates takes a while.
    if (!m_manager)
        m_manager = new NetworkAccessManager(m_extraCertificates, m_shop, m_context);
    return m_manager;
}

QCoro::Task<> DownloadThread::perform(std::function<void()> work)
{
    const auto reply = std::make_shared<WorkerReply>();
    QMetaObject::invokeMethod(
        m_context,
        [work = std::move(work), receiver = reply.get()] {
            std::exception_ptr error;
            try {
                work();
            } catch (...) {
                error = std::current_exception();
            }
            receiver->postEnd(error);
        },
        Qt::QueuedConnection);
    co_await qCoro(reply.get(), &WorkerReply::ended);
    reply->rethrow();
}
