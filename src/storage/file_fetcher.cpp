#include "file_fetcher.h"

#include "cancel_token.h"
#include "download_cache.h"
#include "download_thread.h"
#include "fetch_attempt.h"
#include "file_error.h"
#include "sha256.h"
#include "worker_reply.h"

#include <QCoreApplication>
#include <QCoroSignal>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace {
void ensureFolder(const QString &path)
{
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        throw FileError(
            folder, QCoreApplication::translate("FileError", "The folder could not be created."));
}
} // namespace

QString FileFetcher::Failure::description() const
{
    switch (m_kind) {
    case Kind::Status:
        return QCoreApplication::translate("FileFetcher", "The shop replied %1.").arg(m_code);
    case Kind::LinkRejected:
        return QCoreApplication::translate("FileFetcher", "The download link had expired.");
    case Kind::Mismatch:
        break;
    }
    return QCoreApplication::translate("FileFetcher",
                                       "The download didn't match the shop's copy. Try again.");
}

FileFetcher::FileFetcher(DownloadThread *thread)
    : m_thread(thread)
{
}

QCoro::Task<> FileFetcher::fetch(QUrl source, Target target, Progress progress,
                                 std::shared_ptr<CancelToken> cancel) const
{
    const auto reply = std::make_shared<WorkerReply>();
    if (progress)
        QObject::connect(reply.get(), &WorkerReply::progressed, reply.get(), progress);

    // Made here, run there: the attempt reports to the reply, then deletes itself.
    auto *attempt = new FetchAttempt(m_thread, std::move(source), std::move(target), reply.get());
    attempt->moveToThread(m_thread->workerThread());
    if (cancel) {
        QObject::connect(cancel.get(), &CancelToken::cancelled, attempt, &FetchAttempt::cancel);
        if (cancel->isCancelled())
            QMetaObject::invokeMethod(attempt, &FetchAttempt::cancel, Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(attempt, &FetchAttempt::start, Qt::QueuedConnection);

    co_await qCoro(reply.get(), &WorkerReply::ended);
    reply->rethrow();
}

QCoro::Task<> FileFetcher::copy(QString source, Target target) const
{
    // Lambdas are named before a co_await: g++ 12 misplaces one written inside it.
    auto work = [source = std::move(source), target = std::move(target)] {
        ensureFolder(target.partial);
        QFile::remove(target.partial);
        QFile original(source);
        if (!original.copy(target.partial))
            throw FileError(target.partial, original.errorString());
        finish(target);
    };
    co_await m_thread->run(std::move(work));
}

void FileFetcher::finish(const Target &target, std::optional<QString> digest)
{
    const QString validator = DownloadCache::validatorPath(target.partial);
    const QFileInfo partial(target.partial);
    const qint64 size = partial.exists() ? partial.size() : -1;
    bool matches = size == target.size;
    if (matches && target.sha256 && !digest) {
        Sha256 hash;
        if (hash.addFile(target.partial))
            digest = hash.hex();
    }
    if (matches && target.sha256)
        matches = digest == target.sha256->toLower();
    if (!matches) {
        // The next attempt starts from nothing.
        QFile::remove(target.partial);
        QFile::remove(validator);
        throw Failure::mismatch();
    }

    ensureFolder(target.destination);
    // rename(2) replaces a file at the destination in one step.
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(target.partial).constData(),
                            QFile::encodeName(target.destination).constData(), error);
    if (error)
        throw FileError(target.destination, QString::fromStdString(error.message()));
    QFile::remove(validator);
}

bool FileFetcher::allowsRedirect(const QUrl &original, const QUrl &target)
{
    return original.scheme() == target.scheme()
        && original.host(QUrl::FullyEncoded) == target.host(QUrl::FullyEncoded);
}
