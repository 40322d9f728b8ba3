#include "cover_size.h"

#include <algorithm>
#include <vector>

namespace CoverSize {
QSize toCover(QSize picture, QSize bounds)
{
    if (bounds.isEmpty() || picture.isEmpty())
        return picture;
    const QSize covering = picture.scaled(bounds, Qt::KeepAspectRatioByExpanding);
    return covering.width() >= picture.width() || covering.height() >= picture.height() ? picture
                                                                                        : covering;
}

QImage shrunk(const QImage &picture, QSize size)
{
    if (size == picture.size())
        return picture;
    if (size.isEmpty() || size.width() > picture.width() || size.height() > picture.height())
        return {};
    const QImage source = picture.format() == QImage::Format_RGB888
        ? picture
        : picture.convertToFormat(QImage::Format_RGB888);
    QImage result(size, QImage::Format_RGB888);
    if (result.isNull())
        return {};
    const int width = size.width();
    const int height = size.height();
    // Output column x is the mean of source columns [columns[x], columns[x + 1]).
    std::vector<int> columns(size_t(width) + 1);
    for (int x = 0; x <= width; ++x)
        columns[x] = int(qint64(x) * source.width() / width);
    std::vector<quint32> sums(size_t(width) * 3);
    for (int y = 0; y < height; ++y) {
        const int top = int(qint64(y) * source.height() / height);
        const int bottom = int(qint64(y + 1) * source.height() / height);
        std::ranges::fill(sums, 0);
        for (int row = top; row < bottom; ++row) {
            const uchar *in = source.constScanLine(row);
            for (int x = 0; x < width; ++x) {
                quint32 *sum = &sums[size_t(x) * 3];
                for (const uchar *pixel = in + columns[x] * 3; pixel < in + columns[x + 1] * 3;
                     pixel += 3) {
                    sum[0] += pixel[0];
                    sum[1] += pixel[1];
                    sum[2] += pixel[2];
                }
            }
        }
        uchar *out = result.scanLine(y);
        for (int x = 0; x < width; ++x) {
            const quint32 count = quint32(bottom - top) * quint32(columns[x + 1] - columns[x]);
            for (int channel = 0; channel < 3; ++channel)
                out[x * 3 + channel] = uchar((sums[size_t(x) * 3 + channel] + count / 2) / count);
        }
    }
    return result;
}
} // namespace CoverSize
