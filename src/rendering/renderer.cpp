#include "renderer.h"

#include "atomic_file.h"
#include "cover_size.h"
#include "heic_decoder.h"
#include "logging.h"
#include "picture_record.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {
QJsonObject stamp(const QString &source)
{
    const QFileInfo info(source);
    return { { u"source"_s, info.absoluteFilePath() },
             { u"bytes"_s, info.size() },
             { u"modified"_s, info.lastModified().toMSecsSinceEpoch() } };
}

// "f_0123-2.jpg", "f_0123-2-1920x1280.jpg", and "f_0123-2.png" from before renderings were JPEG.
// A file id may hold dashes of its own; a size never ends one.
struct RenderingName {
    QString fileId;
    int index = 0;
    QSize size; // empty: the picture's own
    bool jpeg = false;
};

std::optional<RenderingName> renderingName(const QString &fileName)
{
    static const QRegularExpression pattern(u"^(.+)-(\\d+)(?:-(\\d+)x(\\d+))?\\.(jpg|png)$"_s);
    const QRegularExpressionMatch match = pattern.match(fileName);
    if (!match.hasMatch())
        return std::nullopt;
    return RenderingName { .fileId = match.captured(1),
                           .index = match.captured(2).toInt(),
                           .size = match.hasCaptured(3)
                               ? QSize(match.captured(3).toInt(), match.captured(4).toInt())
                               : QSize(),
                           .jpeg = match.captured(5) == "jpg"_L1 };
}

// Every rendering of one picture, by path.
QList<std::pair<QString, RenderingName>> renderingsOf(const QString &folder, const QString &fileId,
                                                      int index)
{
    // The pattern also matches other ids and indexes ("f_x-1" for "f_x-10"): the name decides.
    const QDir dir(folder);
    const QString prefix = fileId + u'-' + QString::number(index);
    QList<std::pair<QString, RenderingName>> found;
    for (const QString &name : dir.entryList({ prefix + u"*.jpg"_s, prefix + u"*.png"_s })) {
        const auto rendering = renderingName(name);
        if (rendering && rendering->fileId == fileId && rendering->index == index)
            found.append({ dir.filePath(name), *rendering });
    }
    return found;
}

// A whole JPEG: the start-of-image marker first and the end-of-image marker last. Enough to catch
// a rendering cut short on disk, and no image plugin is loaded for it: following the desktop at
// login checks every rendering it shows.
bool isWhole(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() < 4 || file.read(3) != "\xff\xd8\xff"
        || !file.seek(file.size() - 2))
        return false;
    return file.read(2) == "\xff\xd9";
}
} // namespace

Renderer::Renderer(QString folder, std::shared_ptr<const HeicDecoder> decoder)
    : m_folder(std::move(folder))
    , m_decoder(std::move(decoder))
{
}

QString Renderer::fileIdOf(const QString &path)
{
    // "f_0123-2.jpg" and "f_0123.xml" belong to "f_0123". Only a rendering carries an index: a
    // dash in a companion's name is the id's own.
    const QFileInfo info(path);
    const auto rendering = renderingName(info.fileName());
    return rendering ? rendering->fileId : info.completeBaseName();
}

QString Renderer::renderingPath(const QString &fileId, int index, QSize size) const
{
    const QString sized =
        size.isEmpty() ? QString() : u"-%1x%2"_s.arg(size.width()).arg(size.height());
    return m_folder + u'/' + fileId + u'-' + QString::number(index) + sized + u".jpg"_s;
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

QJsonObject Renderer::record(const QString &fileId) const
{
    QFile file(recordPath(fileId));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool Renderer::isCurrent(const QString &source, const QString &fileId) const
{
    QJsonObject saved = record(fileId);
    saved.remove("pictures"_L1);
    const QJsonObject now = stamp(source);
    if (saved == now)
        return true;
    QDir dir(m_folder);
    for (const QString &old : dir.entryList({ fileId + u"-*"_s, fileId + u".*"_s }, QDir::Files))
        dir.remove(old);
    // Without its record a rendering is made again next time, never taken for another file's.
    if (!writeAtomically(recordPath(fileId), QJsonDocument(now).toJson(QJsonDocument::Compact)))
        qCWarning(lcRendering) << "Cannot write" << recordPath(fileId);
    return false;
}

std::optional<PictureChoice::Pictures> Renderer::pictures(const QString &source,
                                                          const QString &fileId) const
{
    QJsonObject saved = record(fileId);
    const auto known = PictureRecord::fromJson(saved.take("pictures"_L1));
    if (known && saved == stamp(source))
        return known;
    const auto file = m_decoder ? m_decoder->open(source) : nullptr;
    if (!file)
        return std::nullopt;
    const PictureChoice::Pictures read { file->metadata(), file->pictureCount(),
                                         file->primaryIndex() };
    // The renderings of what the file held before go first.
    if (!isCurrent(source, fileId))
        qCDebug(lcRendering) << "Reading the pictures of" << source;
    QJsonObject updated = stamp(source);
    updated.insert(u"pictures"_s, PictureRecord::toJson(read));
    if (!writeAtomically(recordPath(fileId), QJsonDocument(updated).toJson(QJsonDocument::Compact)))
        qCWarning(lcRendering) << "Cannot write" << recordPath(fileId);
    return read;
}

std::optional<QString> Renderer::covering(const QString &fileId, int index, QSize bounds) const
{
    for (const auto &[path, rendering] : renderingsOf(m_folder, fileId, index)) {
        const bool covers = rendering.size.isEmpty()
            || (!bounds.isEmpty() && rendering.size.width() >= bounds.width()
                && rendering.size.height() >= bounds.height());
        if (!rendering.jpeg || !covers)
            continue;
        if (isWhole(path))
            return path;
        // Cut short or damaged since it was written: made once more.
        qCWarning(lcRendering) << "Rendering again the damaged" << path;
        QFile::remove(path);
    }
    return std::nullopt;
}

void Renderer::removeOthers(const QString &fileId, int index, const QString &keep) const
{
    for (const auto &[path, rendering] : renderingsOf(m_folder, fileId, index)) {
        if (path != keep)
            QFile::remove(path);
    }
}

std::optional<QString> Renderer::render(const QString &source, const QString &fileId, int index,
                                        QSize bounds, bool *undecodable) const
{
    if (isCurrent(source, fileId)) {
        if (auto made = covering(fileId, index, bounds))
            return made;
    }
    const auto file = m_decoder ? m_decoder->open(source) : nullptr;
    const QImage picture = file ? file->picture(index) : QImage();
    if (picture.isNull()) {
        qCWarning(lcRendering) << "Cannot decode picture" << index << "of" << source;
        if (undecodable)
            *undecodable =
                m_decoder && m_decoder->isAvailable() && (!file || index < file->pictureCount());
        return std::nullopt;
    }
    const QSize size = CoverSize::toCover(picture.size(), bounds);
    const QString path = renderingPath(fileId, index, size == picture.size() ? QSize() : size);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(90);
    if (!writer.write(CoverSize::shrunk(picture, size)) || !writeAtomically(path, jpeg)
        || !isWhole(path)) {
        qCWarning(lcRendering) << "Cannot write" << path << writer.errorString();
        return std::nullopt;
    }
    removeOthers(fileId, index, path);
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
    const QString source = record(fileId).value("source"_L1).toString();
    return source.isEmpty() ? std::nullopt : std::optional(source);
}
