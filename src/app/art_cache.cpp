#include "art_cache.h"

#include "heic_decoder.h"
#include "logging.h"
#include "network_access_manager.h"
#include "network_error.h"

#include <QBuffer>
#include <QCoroFuture>
#include <QCoroNetworkReply>
#include <QFuture>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPromise>
#include <QTemporaryFile>
#include <QThreadPool>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {
// ISO base media files of the HEIF family: "ftyp" at byte 4, then the brand.
bool isHeif(const QByteArray &head)
{
    if (head.size() < 12 || head.mid(4, 4) != "ftyp")
        return false;
    static const QList<QByteArray> brands { "heic", "heix", "heim", "heis",
                                            "hevc", "hevx", "mif1", "msf1" };
    return brands.contains(head.mid(8, 4));
}

QImage fitted(QImage image, int maxPixels)
{
    if (image.isNull() || maxPixels <= 0 || std::max(image.width(), image.height()) <= maxPixels)
        return image;
    return image.scaled(maxPixels, maxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage decodeHeic(const HeicDecoder &heic, const QString &path, int maxPixels, bool dark)
{
    const auto file = heic.open(path);
    if (!file)
        return {};
    // Fewer than two pictures, or no metadata: the primary one.
    int index = file->primaryIndex();
    if (file->pictureCount() >= 2) {
        const auto chosen = file->metadata().pictureFor(dark, file->pictureCount());
        index = chosen.value_or(index);
    }
    // The embedded thumbnail costs a hundredth of the picture; it does when it is big enough.
    const QImage thumbnail = file->thumbnail(index);
    if (!thumbnail.isNull() && std::max(thumbnail.width(), thumbnail.height()) >= maxPixels)
        return fitted(thumbnail, maxPixels);
    return fitted(file->picture(index), maxPixels);
}

QImage decodeWithQt(QImageReader &reader, int maxPixels)
{
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && maxPixels > 0 && std::max(size.width(), size.height()) > maxPixels)
        reader.setScaledSize(size.scaled(maxPixels, maxPixels, Qt::KeepAspectRatio));
    QImage image = reader.read();
    // Readers without scaling of their own scale coarsely, or not at all.
    return fitted(std::move(image), maxPixels);
}

// Runs work on the shared thread pool and resumes the caller with its result.
QFuture<QImage> inPool(std::function<QImage()> work)
{
    auto promise = std::make_shared<QPromise<QImage>>();
    QFuture<QImage> future = promise->future();
    promise->start();
    QThreadPool::globalInstance()->start([promise, work = std::move(work)] {
        promise->addResult(work());
        promise->finish();
    });
    return future;
}
} // namespace

ArtCache::ArtCache(QNetworkAccessManager *network, QUrl shop,
                   std::shared_ptr<const HeicDecoder> heic, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_shop(std::move(shop))
    , m_heic(std::move(heic))
{
    m_images.setMaxCost(costLimit);
}

ArtCache::~ArtCache() = default;

QString ArtCache::key(const QUrl &url, int maxPixels, bool dark)
{
    return url.toString(QUrl::FullyEncoded) + u'|' + QString::number(maxPixels) + u'|'
        + (dark ? u"dark"_s : u"light"_s);
}

void ArtCache::setDark(bool dark)
{
    if (m_dark == dark)
        return;
    m_dark = dark;
    Q_EMIT darkChanged();
}

QImage ArtCache::decodeFile(const HeicDecoder &heic, const QString &path, int maxPixels, bool dark)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (isHeif(file.peek(12)))
        return decodeHeic(heic, path, maxPixels, dark);
    QImageReader reader(&file);
    return decodeWithQt(reader, maxPixels);
}

QImage ArtCache::decodeData(const HeicDecoder &heic, const QByteArray &data, int maxPixels,
                            bool dark)
{
    if (isHeif(data.left(12))) {
        // libheif reads files; the fetched bytes go through one for a moment.
        QTemporaryFile file;
        if (!file.open() || file.write(data) != data.size() || !file.flush())
            return {};
        return decodeHeic(heic, file.fileName(), maxPixels, dark);
    }
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    return decodeWithQt(reader, maxPixels);
}

QCoro::Task<std::optional<QImage>> ArtCache::image(QUrl url, int maxPixels, bool dark)
{
    if (url.isEmpty())
        co_return std::nullopt;
    const QString key = ArtCache::key(url, maxPixels, dark);
    if (const QImage *cached = m_images.object(key))
        co_return *cached;
    const QPointer<ArtCache> self = this;
    // Taken now: this may be gone once the fetch is done.
    const std::shared_ptr<const HeicDecoder> heic = m_heic;
    // Lambdas are named before a co_await: g++ 12 misplaces one written inside it.
    std::function<QImage()> decode;
    if (url.isLocalFile()) {
        const QString path = url.toLocalFile();
        decode = [heic, path, maxPixels, dark] { return decodeFile(*heic, path, maxPixels, dark); };
    } else {
        auto fetching = fetch(url);
        const auto data = co_await std::move(fetching);
        if (!data)
            co_return std::nullopt;
        const QByteArray &bytes = *data;
        decode = [heic, bytes, maxPixels, dark] {
            return decodeData(*heic, bytes, maxPixels, dark);
        };
    }
    QFuture<QImage> decoding = inPool(std::move(decode));
    const QImage image = co_await decoding;
    if (image.isNull()) {
        qCDebug(lcArt) << "Couldn't read" << url.toDisplayString(QUrl::RemoveQuery);
        co_return std::nullopt;
    }
    // Two views may have decoded the same key at once; the later simply replaces the earlier.
    if (self)
        self->m_images.insert(key, new QImage(image), std::max<qsizetype>(1, image.sizeInBytes()));
    co_return image;
}

QCoro::Task<std::optional<QByteArray>> ArtCache::fetch(QUrl url)
{
    if (!m_network)
        co_return std::nullopt;
    if (url.scheme() != "https"_L1 || url.host() != m_shop.host()
        || url.port(443) != m_shop.port(443)) {
        qCDebug(lcArt) << "Not the shop's art:" << url.toDisplayString(QUrl::RemoveQuery);
        co_return std::nullopt;
    }
    qCDebug(lcArt) << "GET" << url.toDisplayString(QUrl::RemoveQuery);
    QNetworkReply *reply = m_network->get(QNetworkRequest(url));
    const auto tooLarge = NetworkAccessManager::limitBody(reply, maxFetchBytes);
    co_await reply;
    reply->deleteLater();
    if (*tooLarge) {
        qCWarning(lcArt).noquote() << "Not showing" << url.toDisplayString(QUrl::RemoveQuery) << ":"
                                   << NetworkError::tooLarge(maxFetchBytes).description();
        co_return std::nullopt;
    }
    if (reply->error() != QNetworkReply::NoError
        || reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != 200) {
        qCDebug(lcArt) << "Couldn't fetch" << url.toDisplayString(QUrl::RemoveQuery)
                       << reply->errorString();
        co_return std::nullopt;
    }
    co_return reply->readAll();
}
