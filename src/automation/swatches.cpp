#include "swatches.h"

#include "heic_file.h"
#include "shop.h"

#include <QBuffer>
#include <QImage>

Swatches::Swatches(Shop *shop)
    : m_shop(shop)
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
        made = m_made.insert(path, fromFile(path));
    return *made;
}

std::optional<QByteArray> Swatches::fromFile(const QString &path)
{
    const auto heic = HeicFile::open(path);
    if (!heic)
        return std::nullopt;
    const QImage thumbnail = heic->thumbnail(heic->primaryIndex());
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
