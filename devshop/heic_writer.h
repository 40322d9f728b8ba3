#pragma once

#include <QByteArray>
#include <QList>

class QImage;
class QString;

// Encodes pictures into one HEIC file with libheif: the first picture is the primary one and
// carries the XMP packet and an embedded thumbnail.
namespace HeicWriter {
bool write(const QString &path, const QList<QImage> &pictures, const QByteArray &xmp);
} // namespace HeicWriter
