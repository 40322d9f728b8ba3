#include "fetch_attempt.h"

#include "atomic_file.h"
#include "content_range.h"
#include "download_cache.h"
#include "download_thread.h"
#include "file_error.h"
#include "logging.h"
#include "network_error.h"
#include "worker_reply.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <array>
#include <coroutine>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr qint64 readChunk = qint64(64) * 1024;
constexpr qint64 writeBlock = qint64(1024) * 1024;
constexpr qint64 progressStep = qint64(512) * 1024;
constexpr int maxRedirects = 5;

// Resumes the awaiting coroutine at the reply's next sign of life: its headers, more bytes, or
// its end. Only await it while the reply has not finished.
class NextActivity {
public:
    explicit NextActivity(QNetworkReply *reply)
        : m_reply(reply)
    {
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter)
    {
        const auto wake = [this, waiter] {
            for (const auto &connection : m_connections)
                QObject::disconnect(connection);
            waiter.resume();
        };
        m_connections = {
            QObject::connect(m_reply, &QNetworkReply::metaDataChanged, m_reply, wake),
            QObject::connect(m_reply, &QNetworkReply::readyRead, m_reply, wake),
            QObject::connect(m_reply, &QNetworkReply::finished, m_reply, wake),
        };
    }
    void await_resume() const noexcept { }

private:
    QNetworkReply *m_reply;
    std::array<QMetaObject::Connection, 3> m_connections;
};

bool hasStatus(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
}

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

std::optional<QByteArray> readValidator(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray validator = file.readAll().trimmed();
    return validator.isEmpty() ? std::nullopt : std::optional(validator);
}
} // namespace

FetchAttempt::FetchAttempt(DownloadThread *thread, QUrl source, FileFetcher::Target target,
                           WorkerReply *reply)
    : m_thread(thread)
    , m_source(std::move(source))
    , m_target(std::move(target))
    , m_reply(reply)
    , m_partial(m_target.partial)
{
}

FetchAttempt::~FetchAttempt() = default;

void FetchAttempt::Discard::operator()(QNetworkReply *reply) const
{
    // Aborting a reply that has reported an error already makes Qt complain.
    if (!reply->isFinished() && reply->error() == QNetworkReply::NoError)
        reply->abort();
    reply->deleteLater();
}

void FetchAttempt::start()
{
    m_task = run();
}

void FetchAttempt::cancel()
{
    m_cancelled = true;
    if (m_current)
        m_current->abort();
}

QCoro::Task<> FetchAttempt::run()
{
    std::exception_ptr error;
    try {
        co_await fetch();
    } catch (...) {
        error = std::current_exception();
    }
    m_reply->postEnd(error);
    deleteLater();
}

QCoro::Task<> FetchAttempt::fetch()
{
    const QString folder = QFileInfo(m_target.partial).path();
    if (!QDir().mkpath(folder))
        throw FileError(
            folder, QCoreApplication::translate("FileError", "The folder could not be created."));

    // A partial file that is already complete needs no request.
    const QFileInfo partial(m_target.partial);
    const qint64 size = partial.exists() ? partial.size() : 0;
    if (size >= 1 && size >= m_target.size) {
        FileFetcher::finish(m_target);
        co_return;
    }

    // Bytes are resumed only when the validator they came with is known.
    std::optional<QByteArray> validator =
        readValidator(DownloadCache::validatorPath(m_target.partial));
    qint64 offset = validator ? size : 0;
    bool restarted = false;
    for (;;) {
        Reply reply = co_await send(offset, validator);
        const int status = statusOf(*reply);
        // A part is of use where it was asked for, or from the first byte as the whole file.
        const qint64 start = ContentRange::start(reply->rawHeader("Content-Range")).value_or(0);
        const bool misplaced = status == 206 && start != offset && start != 0;
        // Once, from the first byte and without a range.
        const bool restart = (status == 416 || misplaced) && !restarted;
        if (restart || (status != 200 && status != 206))
            co_await drain(reply.get());
        if (restart) {
            restarted = true;
            offset = 0;
            validator.reset();
            continue;
        }
        if (status == 200) {
            offset = 0;
        } else if (status == 206) {
            // Asked for without a range, a misplaced part is taken as the whole file, which its
            // digest then rejects.
            offset = start == offset ? offset : 0;
        } else if (status == 401 || status == 403 || status == 410) {
            throw FileFetcher::Failure::linkRejected();
        } else {
            throw FileFetcher::Failure::status(status);
        }

        if (reply->hasRawHeader("ETag"))
            writeValidator(reply->rawHeader("ETag"));
        co_await stream(std::move(reply), offset);
        co_return;
    }
}

QCoro::Task<FetchAttempt::Reply> FetchAttempt::send(qint64 offset,
                                                    std::optional<QByteArray> validator)
{
    QUrl url = m_source;
    for (int hop = 0;; ++hop) {
        if (m_cancelled)
            throw NetworkError(QNetworkReply::OperationCanceledError, u"Operation canceled"_s);
        QNetworkRequest request(url);
        request.setTransferTimeout(60'000); // ms without a byte moving
        // Ranges count the bytes as stored, so nothing may be compressed on the way.
        request.setRawHeader("Accept-Encoding", "identity");
        // Qt's read buffer limit, which keeps memory bounded, holds for HTTP/1 only.
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        if (offset >= 1 && validator) {
            request.setRawHeader("Range", "bytes=" + QByteArray::number(offset) + '-');
            request.setRawHeader("If-Range", *validator);
        }
        // A signed link's query is its signature: never logged.
        const QString from = offset >= 1 && validator ? u" from byte %1"_s.arg(offset) : QString();
        qCDebug(lcDownloads).noquote() << "GET" << url.toString(QUrl::RemoveQuery) + from;

        Reply reply(m_thread->manager()->get(request));
        // Bounds what Qt holds for us. When the connection breaks Qt drops what is still queued
        // below it, so a resume may ask again for a few kilobytes that once arrived.
        reply->setReadBufferSize(readChunk);
        m_current = reply.get();
        while (!reply->isFinished() && !hasStatus(*reply))
            co_await NextActivity(reply.get());
        if (!hasStatus(*reply)) {
            if (reply->error() != QNetworkReply::NoError)
                throwTransportError(*reply);
            co_return reply; // not HTTP: status 0
        }

        const int status = statusOf(*reply);
        if (!isRedirect(status) || !reply->hasRawHeader("Location"))
            co_return reply;
        // Qt's parsed Location header drops relative references.
        const QUrl target = url.resolved(QUrl::fromEncoded(reply->rawHeader("Location")));
        // A signed link must not travel to another host.
        if (hop == maxRedirects || !FileFetcher::allowsRedirect(m_source, target)) {
            qCWarning(lcDownloads).noquote()
                << "Refused a redirect to" << target.scheme() + u"://"_s + target.host();
            co_return reply;
        }
        url = target;
    }
}

QCoro::Task<> FetchAttempt::drain(QNetworkReply *reply)
{
    // Qt complains about a reply dropped while it is still reporting an HTTP error.
    qint64 skipped = 0;
    while (!reply->isFinished() && skipped < writeBlock) {
        skipped += reply->skip(reply->bytesAvailable());
        co_await NextActivity(reply);
    }
}

QCoro::Task<> FetchAttempt::stream(Reply reply, qint64 offset)
{
    // Each block is hashed as it is written, after the bytes already there.
    if (m_target.sha256) {
        m_hash.emplace();
        if (offset > 0 && !m_hash->addFile(m_target.partial, offset))
            m_hash.reset();
    }
    openPartial(offset);
    const qint64 total = std::max<qint64>(m_target.size, 1);
    qint64 written = offset;
    qint64 reported = offset;
    QByteArray buffer;
    buffer.reserve(writeBlock);
    for (;;) {
        while (reply->bytesAvailable() > 0) {
            const qsizetype used = buffer.size();
            const qint64 wanted = std::min(readChunk, writeBlock - used);
            buffer.resize(used + wanted);
            const qint64 got = reply->read(buffer.data() + used, wanted);
            buffer.resize(used + std::max<qint64>(got, 0));
            if (written + buffer.size() > m_target.size) {
                // More than the file holds: it cannot match, however it ends.
                m_partial.close();
                QFile::remove(m_target.partial);
                QFile::remove(DownloadCache::validatorPath(m_target.partial));
                throw FileFetcher::Failure::mismatch();
            }
            if (buffer.size() >= writeBlock) {
                write(buffer, written);
                if (written - reported >= progressStep) {
                    m_reply->postProgress(std::min(1.0, double(written) / double(total)));
                    reported = written;
                }
            }
        }
        if (reply->isFinished())
            break;
        co_await NextActivity(reply.get());
    }

    // Whatever arrived stays in the partial file, so that the next attempt resumes after it.
    const bool broken = reply->error() != QNetworkReply::NoError;
    try {
        write(buffer, written);
        if (!m_partial.flush())
            throw FileError(m_target.partial, m_partial.errorString());
    } catch (const FileError &) {
        if (!broken)
            throw;
    }
    m_partial.close();
    if (broken)
        throwTransportError(*reply);

    m_reply->postProgress(1.0);
    FileFetcher::finish(m_target, m_hash ? std::optional(m_hash->hex()) : std::nullopt);
}

void FetchAttempt::openPartial(qint64 offset)
{
    QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    if (offset == 0)
        QFile::remove(m_target.partial);
    else
        mode |= QIODevice::Append;
    if (!m_partial.open(mode))
        throw FileError(m_target.partial, m_partial.errorString());
}

void FetchAttempt::writeValidator(const QByteArray &etag) const
{
    const QString path = DownloadCache::validatorPath(m_target.partial);
    if (!writeAtomically(path, etag))
        throw FileError(path, QCoreApplication::translate("FileError", "It could not be written."));
}

void FetchAttempt::write(QByteArray &buffer, qint64 &written)
{
    if (buffer.isEmpty())
        return;
    // An unbuffered write may be short without an error; writing the rest is what tells why
    // (a full disk), which the notice then says instead of "Unknown error".
    for (qint64 done = 0; done < buffer.size();) {
        const qint64 wrote = m_partial.write(buffer.constData() + done, buffer.size() - done);
        if (wrote <= 0)
            throw FileError(m_target.partial, m_partial.errorString());
        done += wrote;
    }
    if (m_hash)
        m_hash->add(buffer.constData(), buffer.size());
    written += buffer.size();
    buffer.resize(0); // keeps the reservation
}

void FetchAttempt::throwTransportError(const QNetworkReply &reply) const
{
    // Qt reports its transfer time-out as a cancellation too.
    if (reply.error() == QNetworkReply::OperationCanceledError && !m_cancelled)
        throw NetworkError::timedOut();
    throw NetworkError::fromReply(reply);
}
