#include "archive_saver.h"

#include "content_rules.h"
#include "download_thread.h"
#include "downloads_folder.h"
#include "file_error.h"
#include "transfers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

ArchiveSaver::ArchiveSaver(Transfers *transfers, DownloadThread *thread, QString root,
                           QString downloadsFolder)
    : m_transfers(transfers)
    , m_thread(thread)
    , m_root(std::move(root))
    , m_downloadsFolder(std::move(downloadsFolder))
{
}

QString ArchiveSaver::Unverifiable::description() const
{
    return QCoreApplication::translate(
        "ArchiveSaver",
        "The shop sent this archive without a checksum, so it wasn't saved. Try again later.");
}

QString ArchiveSaver::fileName(const Archive &archive)
{
    return DownloadsFolder::safeName(archive.filename).value_or(u"Quennet.zip"_s);
}

QCoro::Task<QString> ArchiveSaver::save(Archive archive) const
{
    const QPointer<DownloadThread> thread = m_thread;
    const QString folder = m_downloadsFolder;
    const QString name = fileName(archive);
    // It lands where the user opens files: nothing unchecked goes there.
    if (!archive.sha256 || !ContentRules::isValidHash(*archive.sha256))
        throw Unverifiable();
    Transfers::Download download {
        .key = u"archive/"_s + archive.id,
        .name = name,
        .pack = archive.pack,
        .id = archive.id,
        .source = archive.source,
        .target = { .destination = m_root + u"/Archives/"_s + archive.id,
                    .partial = m_root + u"/Partial/"_s + archive.id + u".partial"_s,
                    .size = archive.bytes,
                    .sha256 = archive.sha256 },
    };
    const QString staged = co_await m_transfers->local(std::move(download));
    auto move = [staged, folder, name] {
        return DownloadsFolder::put(staged, folder, name, DownloadsFolder::Source::Remove);
    };
    co_return co_await thread->run(std::move(move));
}

QCoro::Task<QString> ArchiveSaver::copy(QString localPath, QString name) const
{
    const QString folder = m_downloadsFolder;
    auto copy = [localPath, folder, name] {
        return DownloadsFolder::put(localPath, folder, name, DownloadsFolder::Source::Keep);
    };
    co_return co_await m_thread->run(std::move(copy));
}
