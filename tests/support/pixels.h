#pragma once

#include <QColor>
#include <QImage>

// The colour in the middle of a picture the desktop was given.
inline QColor middleOf(const QString &picture)
{
    const QImage image(picture);
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

// Close enough for a picture scaled to the screen.
inline bool near(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) < 24 && qAbs(a.green() - b.green()) < 24
        && qAbs(a.blue() - b.blue()) < 24;
}

// Saves a picture of one colour as a PNG file; gives its path.
inline QString solidPicture(const QString &path, const QColor &colour, QSize size = { 64, 40 })
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    image.save(path);
    return path;
}
