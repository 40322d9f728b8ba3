#include "atomic_file.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

bool writeAtomically(const QString &path, const QByteArray &bytes,
                     QFileDevice::Permissions permissions)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    if (permissions && !file.setPermissions(permissions))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
