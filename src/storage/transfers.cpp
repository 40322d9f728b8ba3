#include "transfers.h"

#include "cancel_token.h"
#include "clock.h"
#include "error.h"
#include "file_error.h"
#include "logging.h"
#include "network_error.h"
#include "worker_reply.h"

#include <QCoroSignal>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int linkMargin = 60; // seconds a reused link must still be valid

// A failed try: what it was, whether it is worth one more try (not a file that arrived wrong, a
// session the shop refused, nor a disk that refused a write: a full disk is still full a moment
// later, and a second try only fetches the same bytes again to throw them away), and whether the
// file arrived unlike its digest.
struct TryFailure {
    QString reason;
    bool retriable = true;
    bool mismatch = false;
};

TryFailure examine(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const FileError &failure) {
        return { failure.description(), false };
    } catch (const FileFetcher::Failure &failure) {
        const bool mismatch = failure.kind() == FileFetcher::Failure::Kind::Mismatch;
        return { failure.description(), !mismatch, mismatch };
    } catch (const APIClient::Failure &failure) {
        return { failure.description(), failure.kind() != APIClient::Failure::Kind::SignedOut };
    } catch (const std::exception &failure) {
        return { describe(failure) };
    } catch (...) {
        return { u"Unknown failure"_s };
    }
}

NetworkError cancelled()
{
    return { QNetworkReply::OperationCanceledError, u"Operation canceled"_s };
}
} // namespace

Transfers::Transfers(FileFetcher fetcher, std::function<APIClient()> api, ShopSession session,
                     std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent)
    , m_fetcher(std::move(fetcher))
    , m_api(std::move(api))
    , m_session(std::move(session))
    , m_clock(std::move(clock))
    , m_cancel(std::make_shared<CancelToken>())
{
    m_progressFrame.setSingleShot(true);
    m_progressFrame.setInterval(16);
    connect(&m_progressFrame, &QTimer::timeout, this, &Transfers::progressChanged);
}

Transfers::~Transfers()
{
    m_cancel->cancel();
}

QCoro::Task<QString> Transfers::local(Download download, Renew renew)
{
    return local(this, std::move(download), std::move(renew));
}

QCoro::Task<QString> Transfers::local(QPointer<Transfers> self, Download download, Renew renew)
{
    if (QFileInfo::exists(download.target.destination))
        co_return download.target.destination;
    auto done = self->m_running.value(download.key);
    if (!done) {
        done = std::make_shared<WorkerReply>();
        self->m_running.insert(download.key, done);
        self->m_sizes.insert(download.key, download.target.size);
        self->m_progress.insert(download.key, 0);
        Q_EMIT self->progressChanged();
        // Held by no one: it ends by itself, through done.
        run(self, download, std::move(renew), done, self->m_cancel);
    }
    if (!done->hasEnded())
        co_await qCoro(done.get(), &WorkerReply::ended);
    done->rethrow();
    co_return download.target.destination;
}

QCoro::Task<> Transfers::run(QPointer<Transfers> self, Download download, Renew renew,
                             std::shared_ptr<WorkerReply> done, std::shared_ptr<CancelToken> cancel)
{
    std::exception_ptr failure;
    bool renewed = false;
    for (int attempt = 1;; ++attempt) {
        std::exception_ptr error;
        try {
            co_await fetch(self, download, cancel);
            break;
        } catch (...) {
            error = std::current_exception();
        }
        const TryFailure tried = examine(error);
        const bool stopped = cancel->isCancelled() || !self;
        if (tried.mismatch && renew && !renewed && !stopped) {
            renewed = true;
            std::optional<Download> changed;
            try {
                auto renewing = renew();
                changed = co_await std::move(renewing);
            } catch (...) {
                // The refresh failed: the mismatch stands.
            }
            if (changed && self && !cancel->isCancelled()) {
                qCInfo(lcDownloads, "The shop changed %s: downloading it again",
                       qUtf8Printable(download.name));
                download = *changed;
                self->m_links.remove(download.key);
                self->m_sizes.insert(download.key, download.target.size);
                continue;
            }
        }
        if (attempt >= 2 || !tried.retriable || stopped) {
            qCWarning(lcDownloads, "Download of %s failed: %s", qUtf8Printable(download.name),
                      qUtf8Printable(tried.reason));
            if (self)
                Q_EMIT self->failed(
                    tr("Couldn't download %1. %2").arg(download.name, tried.reason));
            failure = error;
            break;
        }
        qCInfo(lcDownloads, "Download interrupted, trying again: %s", qUtf8Printable(tried.reason));
        // The next try asks for a new link.
        self->m_links.remove(download.key);
    }
    if (self) {
        self->m_running.remove(download.key);
        self->m_progress.remove(download.key);
        self->m_sizes.remove(download.key);
        self->m_progressFrame.stop();
        Q_EMIT self->progressChanged();
        Q_EMIT self->ended(download.key);
    }
    done->postEnd(failure);
}

QCoro::Task<> Transfers::fetch(QPointer<Transfers> self, Download download,
                               std::shared_ptr<CancelToken> cancel)
{
    const FileFetcher fetcher = self->m_fetcher;
    if (download.source.kind() == FileSource::Kind::Local) {
        co_await fetcher.copy(download.source.url().toLocalFile(), download.target);
        co_return;
    }
    QUrl url = download.source.url();
    if (download.source.kind() == FileSource::Kind::Shop)
        url = co_await link(self, download, cancel);
    if (!self || cancel->isCancelled())
        throw cancelled();
    const FileFetcher::Progress progress = [self, key = download.key](double fraction) {
        if (self)
            self->setProgress(key, fraction);
    };
    co_await fetcher.fetch(url, download.target, progress, cancel);
}

QCoro::Task<QUrl> Transfers::link(QPointer<Transfers> self, Download download,
                                  std::shared_ptr<CancelToken> cancel)
{
    // A link without an expiry is never reused.
    const auto cached = self->m_links.constFind(download.key);
    if (cached != self->m_links.cend() && cached->expiresAt
        && *cached->expiresAt > self->m_clock->now().addSecs(linkMargin))
        co_return cached->url;

    const APIClient api = self->m_api();
    const ShopSession session = self->m_session;
    const auto token = co_await session.token();
    if (!token)
        throw APIClient::Failure::signedOut();
    const QList<APIClient::WantedFile> wanted { { download.pack, download.id } };
    QList<APIClient::Link> links;
    try {
        links = co_await api.links(*token, wanted, cancel.get());
    } catch (const APIClient::Failure &failure) {
        if (failure.kind() == APIClient::Failure::Kind::SignedOut)
            session.rejected();
        throw;
    }
    if (!self || cancel->isCancelled())
        throw cancelled();
    for (const auto &link : std::as_const(links)) {
        if (link.id == download.id) {
            self->m_links.insert(download.key, link);
            co_return link.url;
        }
    }
    throw APIClient::Failure::invalidReply();
}

double Transfers::fraction() const
{
    double done = 0;
    double total = 0;
    for (auto it = m_progress.cbegin(); it != m_progress.cend(); ++it) {
        const double size = double(std::max<qint64>(m_sizes.value(it.key()), 1));
        done += it.value() * size;
        total += size;
    }
    return total > 0 ? done / total : 0;
}

std::optional<APIClient::Link> Transfers::link(const QString &key) const
{
    const auto it = m_links.constFind(key);
    return it == m_links.cend() ? std::nullopt : std::optional(*it);
}

void Transfers::setProgress(const QString &key, double fraction)
{
    if (!m_progress.contains(key))
        return; // a late report from a transfer that has ended
    m_progress.insert(key, fraction);
    if (!m_progressFrame.isActive())
        m_progressFrame.start();
}
