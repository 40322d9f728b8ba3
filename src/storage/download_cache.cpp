#include "download_cache.h"

#include "owned_pack.h"
#include "renderer.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {
// colourway slug, edition word, file id
const QRegularExpression &installedName()
{
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        u"(.+)-(appearance|time-of-day|light|dark)-(f_[0-9a-f]+)\\.heic"_s));
    return pattern;
}

QString fileName(const WallpaperFile &file)
{
    return file.colourway + u'-' + rawValue(file.edition) + u'-' + file.id + u".heic"_s;
}
} // namespace

DownloadCache::DownloadCache(QString root)
    : m_root(std::move(root))
{
}

QString DownloadCache::wallpaperFolder() const
{
    return m_root + u"/Quennet"_s;
}

QString DownloadCache::renderingFolder() const
{
    return m_root + u"/Rendered"_s;
}

QString DownloadCache::shopCachePath() const
{
    return m_root + u"/shop-cache.json"_s;
}

QString DownloadCache::localPath(const WallpaperFile &file) const
{
    return wallpaperFolder() + u'/' + fileKey(file);
}

QString DownloadCache::partialPath(const WallpaperFile &file) const
{
    return m_root + u"/Partial/"_s + file.id + u".partial"_s;
}

QString DownloadCache::validatorPath(const QString &partialPath)
{
    return partialPath + u".etag"_s;
}

QString DownloadCache::fileKey(const WallpaperFile &file)
{
    return file.pack + u'/' + fileName(file);
}

QList<DownloadCache::InstalledFile> DownloadCache::installedFiles() const
{
    QList<InstalledFile> result;
    const QDir folder(wallpaperFolder());
    for (const QString &pack : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QDir packFolder(folder.filePath(pack));
        for (const QString &name : packFolder.entryList(QDir::Files, QDir::Name)) {
            const auto match = installedName().match(name);
            if (!match.hasMatch())
                continue;
            result.append({ packFolder.filePath(name), pack + u'/' + name, match.captured(3) });
        }
    }
    return result;
}

qint64 DownloadCache::downloadedSize() const
{
    qint64 total = 0;
    // The renderings made for the desktop take room for the downloads too.
    for (const QString &folder : { wallpaperFolder(), renderingFolder() }) {
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            total += it.fileInfo().size();
        }
    }
    return total;
}

void DownloadCache::removeDownloads(const std::function<bool(const QString &path)> &keep) const
{
    for (const auto &file : installedFiles()) {
        if (!keep(file.path))
            QFile::remove(file.path);
    }
    QDir(m_root + u"/Partial"_s).removeRecursively();
    Renderer(renderingFolder()).prune(keep);

    const QDir folder(wallpaperFolder());
    for (const QString &pack : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        folder.rmdir(pack); // only succeeds when empty
}
