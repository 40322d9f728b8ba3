#include "network_access_manager.h"

#include <QLoggingCategory>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QSslCertificate>

Q_LOGGING_CATEGORY(lcNetwork, "app.quennet.Quennet.Network")

namespace
{
// Cookies are neither sent nor stored, whatever a request says.
class NoCookieJar : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::QNetworkCookieJar;

    QList<QNetworkCookie> cookiesForUrl(const QUrl &) const override { return {}; }
    bool setCookiesFromUrl(const QList<QNetworkCookie> &, const QUrl &) override { return false; }
};
} // namespace

NetworkAccessManager::NetworkAccessManager(const std::optional<QString> &extraCertificates,
                                           QObject *parent)
    : QNetworkAccessManager(parent)
    , m_tls(QSslConfiguration::defaultConfiguration())
{
    setCookieJar(new NoCookieJar(this));
    setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    setTransferTimeout(60'000); // ms without a byte moving

    if (extraCertificates) {
        const auto certificates = QSslCertificate::fromPath(*extraCertificates, QSsl::Pem);
        if (certificates.isEmpty())
            qCWarning(lcNetwork) << "No certificates in" << *extraCertificates;
        m_tls.addCaCertificates(certificates);
    }
}

QByteArray NetworkAccessManager::userAgent()
{
    return QByteArrayLiteral("Quennet/" QUENNET_VERSION);
}

QNetworkReply *NetworkAccessManager::createRequest(Operation operation,
                                                   const QNetworkRequest &request,
                                                   QIODevice *outgoingData)
{
    // Trust is per connection, and connections are shared within the manager: every request
    // carries the same TLS configuration so that none is set up without the extra certificates.
    QNetworkRequest prepared(request);
    prepared.setSslConfiguration(m_tls);
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
