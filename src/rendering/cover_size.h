#pragma once

#include <QImage>
#include <QSize>

// Pictures for the desktop are made no larger than the largest display needs: a 6000×4000
// picture on a 1920×1080 display needs a ninth of its pixels.
namespace CoverSize {
// The smallest size of a picture of this size that still covers bounds when scaled to fill it,
// and never larger than the picture itself; the picture's own size when bounds is empty.
[[nodiscard]] QSize toCover(QSize picture, QSize bounds);

// picture shrunk to size (no larger than picture), each pixel the mean of those it covers. Works
// on the decoder's 24-bit pixels as they are: Qt's smooth scaling wants a 32-bit copy, a third
// more than the decoded picture again.
[[nodiscard]] QImage shrunk(const QImage &picture, QSize size);
} // namespace CoverSize
