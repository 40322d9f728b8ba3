#include "network_access_manager.h"

#include "logging.h"

#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QSslCertificate>

namespace {
// Cookies are neither sent nor stored, whatever a request says.
class NoCookieJar : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;

    [[nodiscard]] QList<QNetworkCookie> cookiesForUrl(const QUrl & /*url*/) const override
    {
        return {};
    }
    bool setCookiesFromUrl(const QList<QNetworkCookie> & /*cookies*/, const QUrl & /*url*/) override
    {
        return false;
    }
};
} // namespace

NetworkAccessManager::NetworkAccessManager(std::optional<QString> extraCertificates,
                                           const QUrl &shop, QObject *parent)
    : QNetworkAccessManager(parent)
    , m_shopHost(shop.host())
    , m_extraCertificates(std::move(extraCertificates))
{
    setCookieJar(new NoCookieJar(this));
    setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    setTransferTimeout(60'000); // ms without a byte moving
}

const QSslConfiguration &NetworkAccessManager::shopTls()
{
    // Made at the first request rather than at start: the TLS backend and the certificates take
    // a while to load, and the tray icon should not wait for them.
    if (m_shopTls)
        return *m_shopTls;
    m_shopTls = QSslConfiguration::defaultConfiguration();
    if (m_extraCertificates) {
        const auto certificates = QSslCertificate::fromPath(*m_extraCertificates, QSsl::Pem);
        if (certificates.isEmpty())
            qCWarning(lcNetwork) << "No certificates in" << *m_extraCertificates;
        m_shopTls->addCaCertificates(certificates);
    }
    return *m_shopTls;
}

QByteArray NetworkAccessManager::userAgent()
{
    return QByteArrayLiteral("Quennet/" QUENNET_VERSION);
}

std::shared_ptr<const bool> NetworkAccessManager::limitBody(QNetworkReply *reply, qint64 maxBytes)
{
    auto tooLarge = std::make_shared<bool>(false);
    // Room for a chunk past the limit, so that passing it is seen before the buffer fills.
    reply->setReadBufferSize(maxBytes + qint64(256) * 1024);
    const auto refuse = [reply, tooLarge, maxBytes](qint64 received, qint64 total) {
        if (*tooLarge || (received <= maxBytes && total <= maxBytes))
            return;
        *tooLarge = true;
        qCWarning(lcNetwork).noquote() << "Refused a body of more than" << maxBytes << "bytes from"
                                       << reply->url().toString(QUrl::RemoveQuery);
        // Queued: aborting here would resume whoever awaits the reply inside Qt's own signal.
        QMetaObject::invokeMethod(reply, &QNetworkReply::abort, Qt::QueuedConnection);
    };
    connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, refuse] {
        const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid())
            refuse(0, length.toLongLong());
    });
    connect(reply, &QNetworkReply::downloadProgress, reply, refuse);
    return tooLarge;
}

QNetworkReply *NetworkAccessManager::createRequest(Operation operation,
                                                   const QNetworkRequest &request,
                                                   QIODevice *outgoingData)
{
    // Trust is per connection, and connections are shared per host: every request to the shop's
    // host carries the extra certificates, and no other request does, so that a certificate
    // meant for a development shop can't vouch for any other site.
    QNetworkRequest prepared(request);
    prepared.setSslConfiguration(
        request.url().host() == m_shopHost ? shopTls() : QSslConfiguration::defaultConfiguration());
    // A followed redirect would carry Authorization to wherever it points.
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                          QNetworkRequest::ManualRedirectPolicy);
    prepared.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    prepared.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                          QNetworkRequest::AlwaysNetwork);
    prepared.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    prepared.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    prepared.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    return QNetworkAccessManager::createRequest(operation, prepared, outgoingData);
}
