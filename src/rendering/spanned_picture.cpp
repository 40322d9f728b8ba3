#include "spanned_picture.h"

#include "atomic_file.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace SpannedPicture {
QString compose(const QList<Part> &parts, const QString &folder, const QString &stem)
{
    QRect bounds;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const Part &part : parts) {
        bounds = bounds.united(part.geometry);
        hash.addData(u"%1,%2,%3,%4 %5\n"_s.arg(part.geometry.x())
                         .arg(part.geometry.y())
                         .arg(part.geometry.width())
                         .arg(part.geometry.height())
                         .arg(part.path)
                         .toUtf8());
    }
    if (bounds.isEmpty())
        return {};
    QString path = folder + u'/' + stem + u'-' + QString::fromLatin1(hash.result().toHex().left(16))
        + u".png"_s;
    if (QFile::exists(path))
        return path;

    QImage canvas(bounds.size(), QImage::Format_RGB32);
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const Part &part : parts) {
        const QImage picture(part.path);
        if (picture.isNull())
            continue;
        const QSize size =
            picture.size().scaled(part.geometry.size(), Qt::KeepAspectRatioByExpanding);
        QRect source({}, part.geometry.size() * picture.width() / qMax(1, size.width()));
        source.moveCenter(picture.rect().center());
        painter.drawImage(part.geometry.translated(-bounds.topLeft()), picture, source);
    }
    painter.end();

    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(90); // little compression: the file is made again at every change
    if (!writer.write(canvas) || !writeAtomically(path, png))
        return {};
    // The earlier arrangements are not needed any more.
    const QDir dir(folder);
    for (const QString &old : dir.entryList({ stem + u"-*.png"_s }, QDir::Files)) {
        if (dir.filePath(old) != path)
            QFile::remove(dir.filePath(old));
    }
    return path;
}
} // namespace SpannedPicture
