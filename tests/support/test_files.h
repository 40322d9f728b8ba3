#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

// The bytes of a file; none when it cannot be read.
inline QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes a whole file, making its folder first.
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// A key of org.gnome.desktop.background as another program reads it, or sets it.
inline QString gsettings(const QString &key, const QString &value = {})
{
    QStringList arguments { value.isEmpty() ? QStringLiteral("get") : QStringLiteral("set"),
                            QStringLiteral("org.gnome.desktop.background"), key };
    if (!value.isEmpty())
        arguments.append(value);
    QProcess process;
    process.start(QStringLiteral("gsettings"), arguments);
    process.waitForFinished(30000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed().remove(u'\'');
}
