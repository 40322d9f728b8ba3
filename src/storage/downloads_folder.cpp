#include "downloads_folder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace DownloadsFolder
{
std::optional<QString> safeName(const QString &shopName)
{
    // Both separators count: a name is never a path, whatever the shop sent.
    QString name = shopName.section(u'/', -1).section(u'\\', -1).trimmed();
    name.remove(QChar(u'\0'));
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1)
        return std::nullopt;
    return name;
}

QString uniquePath(const QString &folder, const QString &name)
{
    const QDir dir(folder);
    if (!QFileInfo::exists(dir.filePath(name)))
        return dir.filePath(name);

    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot starts a hidden name, not an extension.
    const bool hasExtension = dot > 0;
    const QString base = hasExtension ? name.left(dot) : name;
    const QString extension = hasExtension ? name.mid(dot) : QString();
    for (int counter = 2;; ++counter) {
        const QString candidate = dir.filePath(base + u' ' + QString::number(counter) + extension);
        if (!QFileInfo::exists(candidate))
            return candidate;
    }
}
} // namespace DownloadsFolder
