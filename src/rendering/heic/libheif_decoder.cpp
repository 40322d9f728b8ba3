#include "libheif_decoder.h"

#include "heic_xmp.h"

#include <QFile>
#include <QImage>
#include <QString>
#include <libheif/heif.h>
#include <thread>

namespace {
using Handle = std::unique_ptr<heif_image_handle, decltype(&heif_image_handle_release)>;

Handle handle(heif_context *context, heif_item_id id)
{
    heif_image_handle *result = nullptr;
    if (heif_context_get_image_handle(context, id, &result).code != heif_error_Ok)
        return { nullptr, heif_image_handle_release };
    return { result, heif_image_handle_release };
}

// The decoded pixels stay in libheif's buffer; the QImage frees it when it goes.
QImage decode(const heif_image_handle *handle)
{
    heif_image *image = nullptr;
    const bool alpha = heif_image_handle_has_alpha_channel(handle);
    if (heif_decode_image(handle, &image, heif_colorspace_RGB,
                          alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                          nullptr)
            .code
        != heif_error_Ok)
        return {};
    int stride = 0;
    const uint8_t *data = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
    if (!data) {
        heif_image_release(image);
        return {};
    }
    return { data,
             heif_image_get_primary_width(image),
             heif_image_get_primary_height(image),
             stride,
             alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888,
             [](void *image) { heif_image_release(static_cast<heif_image *>(image)); },
             image };
}
} // namespace

LibheifFile::~LibheifFile() = default;

std::unique_ptr<LibheifFile> LibheifFile::open(const QString &path)
{
    std::unique_ptr<LibheifFile> opened(new LibheifFile);
    LibheifFile &file = *opened;
    file.m_context = { heif_context_alloc(), heif_context_free };
    if (heif_context_read_from_file(file.m_context.get(), QFile::encodeName(path).constData(),
                                    nullptr)
            .code
        != heif_error_Ok)
        return nullptr;
    // Large pictures are grids of tiles, decoded in parallel.
    heif_context_set_max_decoding_threads(file.m_context.get(),
                                          int(std::max(1U, std::thread::hardware_concurrency())));
    const int count = heif_context_get_number_of_top_level_images(file.m_context.get());
    if (count <= 0)
        return nullptr;
    file.m_pictures.resize(count);
    heif_context_get_list_of_top_level_image_IDs(file.m_context.get(), file.m_pictures.data(),
                                                 count);
    heif_item_id primary = 0;
    if (heif_context_get_primary_image_ID(file.m_context.get(), &primary).code == heif_error_Ok)
        file.m_primary = int(std::max<qsizetype>(0, file.m_pictures.indexOf(primary)));
    return opened;
}

HeicMetadata LibheifFile::metadata() const
{
    return HeicXmp::metadata(xmp());
}

QByteArray LibheifFile::xmp() const
{
    const Handle primary = handle(m_context.get(), m_pictures.value(m_primary));
    if (!primary)
        return {};
    const int count = heif_image_handle_get_number_of_metadata_blocks(primary.get(), "mime");
    QList<heif_item_id> ids(count);
    heif_image_handle_get_list_of_metadata_block_IDs(primary.get(), "mime", ids.data(), count);
    for (const heif_item_id id : std::as_const(ids)) {
        if (qstrcmp(heif_image_handle_get_metadata_content_type(primary.get(), id),
                    "application/rdf+xml")
            != 0)
            continue;
        QByteArray packet(qsizetype(heif_image_handle_get_metadata_size(primary.get(), id)),
                          Qt::Uninitialized);
        if (heif_image_handle_get_metadata(primary.get(), id, packet.data()).code == heif_error_Ok)
            return packet;
    }
    return {};
}

QImage LibheifFile::picture(int index) const
{
    if (index < 0 || index >= pictureCount())
        return {};
    const Handle picture = handle(m_context.get(), m_pictures[index]);
    return picture ? decode(picture.get()) : QImage();
}

QImage LibheifFile::thumbnail(int index) const
{
    if (index < 0 || index >= pictureCount())
        return {};
    const Handle picture = handle(m_context.get(), m_pictures[index]);
    if (!picture || heif_image_handle_get_number_of_thumbnails(picture.get()) < 1)
        return {};
    heif_item_id id = 0;
    heif_image_handle_get_list_of_thumbnail_IDs(picture.get(), &id, 1);
    heif_image_handle *thumbnail = nullptr;
    if (heif_image_handle_get_thumbnail(picture.get(), id, &thumbnail).code != heif_error_Ok)
        return {};
    const Handle owned(thumbnail, heif_image_handle_release);
    return decode(owned.get());
}
