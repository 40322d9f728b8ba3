#include "downloads_folder.h"

#include "file_error.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace DownloadsFolder {
namespace {
QString candidate(const QDir &dir, const QString &name, int counter)
{
    if (counter == 1)
        return dir.filePath(name);
    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot starts a hidden name, not an extension.
    const bool hasExtension = dot > 0;
    const QString base = hasExtension ? name.left(dot) : name;
    const QString extension = hasExtension ? name.mid(dot) : QString();
    return dir.filePath(base + u' ' + QString::number(counter) + extension);
}

QString reason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Copies into a file just created for it; false when the name is taken.
bool copyInto(const QString &source, const QString &path)
{
    const QByteArray target = QFile::encodeName(path);
    const int fd =
        ::open(target.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (fd < 0 && errno == EEXIST)
        return false;
    // A link in the last component fails with ELOOP: a name taken as well.
    if (fd < 0 && errno == ELOOP)
        return false;
    if (fd < 0)
        throw FileError(path, reason());
    QFile in(source);
    QString failure = in.open(QIODevice::ReadOnly) ? QString() : in.errorString();
    while (failure.isEmpty() && !in.atEnd()) {
        const QByteArray chunk = in.read(qint64(1024) * 1024);
        if (chunk.isEmpty() && in.error() != QFileDevice::NoError) {
            failure = in.errorString();
            break;
        }
        for (qsizetype done = 0; done < chunk.size();) {
            const ssize_t written =
                ::write(fd, chunk.constData() + done, size_t(chunk.size() - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                failure = reason();
                break;
            }
            done += written;
        }
    }
    if (::close(fd) != 0 && failure.isEmpty())
        failure = reason();
    if (!failure.isEmpty()) {
        ::unlink(target.constData());
        throw FileError(path, failure);
    }
    return true;
}
} // namespace

std::optional<QString> safeName(const QString &shopName)
{
    // Both separators count: a name is never a path, whatever the shop sent.
    QString name = shopName.section(u'/', -1).section(u'\\', -1).trimmed();
    name.remove(QChar(u'\0'));
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1)
        return std::nullopt;
    return name;
}

QString put(const QString &source, const QString &folder, const QString &name, Source after)
{
    if (!QDir().mkpath(folder))
        throw FileError(
            folder, QCoreApplication::translate("FileError", "The folder could not be created."));
    const QDir dir(folder);
    const QByteArray from = QFile::encodeName(source);
    for (int counter = 1;; ++counter) {
        QString path = candidate(dir, name, counter);
        if (after == Source::Remove) {
            // A rename replaces nothing, a link included; across file systems it is a copy.
            if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD,
                            QFile::encodeName(path).constData(), RENAME_NOREPLACE)
                == 0)
                return path;
            if (errno == EEXIST)
                continue;
            if (errno != EXDEV && errno != EINVAL && errno != ENOSYS)
                throw FileError(path, reason());
        }
        if (!copyInto(source, path))
            continue;
        if (after == Source::Remove)
            QFile::remove(source);
        return path;
    }
}
} // namespace DownloadsFolder
