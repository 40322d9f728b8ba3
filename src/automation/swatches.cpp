#include "swatches.h"

#include "heic_decoder.h"
#include "shop.h"

#include <QBuffer>
#include <QImage>

Swatches::Swatches(Shop *shop, std::shared_ptr<const HeicDecoder> heic)
    : m_shop(shop)
    , m_heic(std::move(heic))
{
}

std::optional<QByteArray> Swatches::operator()(const QString &pack, const QString &colourway)
{
    if (!m_shop)
        return std::nullopt;
    const auto edition = m_shop->editionFor(pack, colourway, Edition::Automatic);
    if (!edition)
        return std::nullopt;
    const auto file = m_shop->owned().value(pack).file(colourway, *edition);
    if (!file || !m_shop->downloaded().contains(DownloadCache::fileKey(*file)))
        return std::nullopt;
    const QString path = m_shop->cache().localPath(*file);
    auto made = m_made.constFind(path);
    if (made == m_made.cend())
        made = m_made.insert(path, fromFile(*m_heic, path));
    return *made;
}

std::optional<QByteArray> Swatches::fromFile(const HeicDecoder &heic, const QString &path)
{
    const auto file = heic.open(path);
    if (!file)
        return std::nullopt;
    const QImage thumbnail = file->thumbnail(file->primaryIndex());
    if (thumbnail.isNull())
        return std::nullopt;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!thumbnail.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)
             .save(&buffer, "PNG"))
        return std::nullopt;
    return png;
}
