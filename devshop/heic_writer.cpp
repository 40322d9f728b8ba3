#include "heic_writer.h"

#include <QImage>
#include <QLoggingCategory>
#include <cstring>
#include <libheif/heif.h>
#include <memory>

Q_LOGGING_CATEGORY(lcHeic, "app.quennet.Quennet.DevShop.Heic")

namespace HeicWriter {
namespace {
using Context = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Encoder = std::unique_ptr<heif_encoder, decltype(&heif_encoder_release)>;
using Image = std::unique_ptr<heif_image, decltype(&heif_image_release)>;
using Handle = std::unique_ptr<heif_image_handle, decltype(&heif_image_handle_release)>;

bool failed(const heif_error &error, const QString &path)
{
    if (error.code == heif_error_Ok)
        return false;
    qCWarning(lcHeic) << "Could not write" << path << ":" << error.message;
    return true;
}

Image toHeif(const QImage &picture)
{
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB888);
    heif_image *raw = nullptr;
    heif_image_create(rgb.width(), rgb.height(), heif_colorspace_RGB, heif_chroma_interleaved_RGB,
                      &raw);
    Image image(raw, heif_image_release);
    heif_image_add_plane(raw, heif_channel_interleaved, rgb.width(), rgb.height(), 8);
    int stride = 0;
    uint8_t *plane = heif_image_get_plane(raw, heif_channel_interleaved, &stride);
    for (int y = 0; y < rgb.height(); ++y)
        std::memcpy(plane + qsizetype(y) * stride, rgb.constScanLine(y), size_t(rgb.width()) * 3);
    return image;
}
} // namespace

bool write(const QString &path, const QList<QImage> &pictures, const QByteArray &xmp)
{
    Context context(heif_context_alloc(), heif_context_free);
    heif_encoder *rawEncoder = nullptr;
    if (failed(
            heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &rawEncoder),
            path))
        return false;
    Encoder encoder(rawEncoder, heif_encoder_release);
    // Sample pictures are smooth gradients: the fastest preset is good enough and many
    // times quicker.
    heif_encoder_set_lossy_quality(encoder.get(), 70);
    heif_encoder_set_parameter_string(encoder.get(), "preset", "ultrafast");

    for (qsizetype index = 0; index < pictures.size(); ++index) {
        const Image image = toHeif(pictures[index]);
        heif_image_handle *rawHandle = nullptr;
        if (failed(heif_context_encode_image(context.get(), image.get(), encoder.get(), nullptr,
                                             &rawHandle),
                   path))
            return false;
        const Handle handle(rawHandle, heif_image_handle_release);
        if (index != 0)
            continue;
        heif_image_handle *thumbnail = nullptr;
        const int longest = std::max(pictures[index].width(), pictures[index].height());
        if (failed(heif_context_encode_thumbnail(context.get(), image.get(), handle.get(),
                                                 encoder.get(), nullptr, std::min(320, longest / 2),
                                                 &thumbnail),
                   path))
            return false;
        heif_image_handle_release(thumbnail);
        if (!xmp.isEmpty()
            && failed(heif_context_add_XMP_metadata(context.get(), handle.get(), xmp.constData(),
                                                    int(xmp.size())),
                      path))
            return false;
    }
    return !failed(heif_context_write_to_file(context.get(), path.toLocal8Bit().constData()), path);
}
} // namespace HeicWriter
