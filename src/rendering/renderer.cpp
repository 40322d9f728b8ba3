#include "renderer.h"

#include "atomic_file.h"
#include "heic_file.h"
#include "logging.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace {
QJsonObject stamp(const QString &source)
{
    const QFileInfo info(source);
    return { { u"source"_s, info.absoluteFilePath() },
             { u"bytes"_s, info.size() },
             { u"modified"_s, info.lastModified().toMSecsSinceEpoch() } };
}

// A whole PNG: a header Qt can read and the end chunk as its last bytes. Cheap next to decoding
// it, and enough to catch a rendering cut short on disk.
bool isWhole(const QString &path)
{
    static const QByteArray end = QByteArray::fromHex("0000000049454e44ae426082");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() < end.size()
        || !file.seek(file.size() - end.size()) || file.read(end.size()) != end)
        return false;
    file.close();
    QImageReader reader(path, "png");
    return reader.canRead() && reader.size().isValid();
}
} // namespace

Renderer::Renderer(QString folder)
    : m_folder(std::move(folder))
{
}

QString Renderer::fileIdOf(const QString &path)
{
    // "f_0123-2.png" and "f_0123.xml" belong to "f_0123". Only a rendering carries an index: a
    // dash in a companion's name is the id's own.
    const QFileInfo info(path);
    const QString name = info.completeBaseName();
    const qsizetype dash = name.lastIndexOf(u'-');
    return dash > 0 && info.suffix() == "png"_L1 ? name.left(dash) : name;
}

QString Renderer::renderingPath(const QString &fileId, int index) const
{
    return m_folder + u'/' + fileId + u'-' + QString::number(index) + u".png"_s;
}

QString Renderer::companionPath(const QString &fileId, const QString &suffix) const
{
    return m_folder + u'/' + fileId + u'.' + suffix;
}

void Renderer::prune(const std::function<bool(const QString &source)> &keep) const
{
    QDir dir(m_folder);
    struct Fate {
        bool kept = false;
        bool sourceExists = false;
    };
    QHash<QString, Fate> fates; // by file id
    for (const QString &name : dir.entryList(QDir::Files)) {
        const bool record = name.endsWith(".source.json"_L1);
        const QString fileId = fileIdOf(record ? name.chopped(12) : name);
        auto it = fates.find(fileId);
        if (it == fates.end()) {
            const auto source = sourceOfId(fileId);
            it =
                fates.insert(fileId, { source && keep(*source), source && QFile::exists(*source) });
        }
        // A record stays while its file does: it tells what a rendering named in a record of
        // the displays was made of, so that it can be made again.
        if (!it->kept && !(record && it->sourceExists))
            dir.remove(name);
    }
}

QString Renderer::recordPath(const QString &fileId) const
{
    return m_folder + u'/' + fileId + u".source.json"_s;
}

bool Renderer::isCurrent(const QString &source, const QString &fileId) const
{
    QFile record(recordPath(fileId));
    const QJsonObject now = stamp(source);
    if (record.open(QIODevice::ReadOnly)
        && QJsonDocument::fromJson(record.readAll()).object() == now)
        return true;
    record.close();
    QDir dir(m_folder);
    for (const QString &old : dir.entryList({ fileId + u"-*"_s, fileId + u".*"_s }, QDir::Files))
        dir.remove(old);
    // Without its record a rendering is made again next time, never taken for another file's.
    if (!writeAtomically(record.fileName(), QJsonDocument(now).toJson(QJsonDocument::Compact)))
        qCWarning(lcRendering) << "Cannot write" << record.fileName();
    return false;
}

std::optional<QString> Renderer::render(const QString &source, const QString &fileId, int index,
                                        bool *undecodable) const
{
    const QString path = renderingPath(fileId, index);
    if (isCurrent(source, fileId) && QFile::exists(path)) {
        if (isWhole(path))
            return path;
        // Cut short or damaged since it was written: made once more.
        qCWarning(lcRendering) << "Rendering again the damaged" << path;
        QFile::remove(path);
    }
    const auto file = HeicFile::open(source);
    const QImage picture = file ? file->picture(index) : QImage();
    if (picture.isNull()) {
        qCWarning(lcRendering) << "Cannot decode picture" << index << "of" << source;
        if (undecodable)
            *undecodable = !file || index < file->pictureCount();
        return std::nullopt;
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    // The fastest compression: a rendering is written once and read once by the desktop.
    writer.setQuality(90);
    if (!writer.write(picture) || !writeAtomically(path, png) || !isWhole(path)) {
        qCWarning(lcRendering) << "Cannot write" << path << writer.errorString();
        return std::nullopt;
    }
    return path;
}

std::optional<QString> Renderer::sourceOf(const QString &path) const
{
    if (QFileInfo(path).absolutePath() != QFileInfo(m_folder).absoluteFilePath())
        return std::nullopt;
    return sourceOfId(fileIdOf(path));
}

std::optional<QString> Renderer::sourceOfId(const QString &fileId) const
{
    QFile record(recordPath(fileId));
    if (!record.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QString source =
        QJsonDocument::fromJson(record.readAll()).object().value("source"_L1).toString();
    return source.isEmpty() ? std::nullopt : std::optional(source);
}
