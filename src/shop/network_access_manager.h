#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QUrl>
#include <memory>
#include <optional>

// The network access manager of one role (the shop API on the main thread, downloads on the
// worker thread), set up the one way Quennet talks to its shop: no cookies, no cache, no
// automatic redirects, a 60 s transfer time-out, its own User-Agent, and the extra trusted
// certificates on every connection to the shop's host.
class NetworkAccessManager : public QNetworkAccessManager {
    Q_OBJECT

public:
    // extraCertificates: a PEM file ("shopCertificates") trusted besides the system's, for
    // connections to the shop's host alone.
    NetworkAccessManager(std::optional<QString> extraCertificates, const QUrl &shop,
                         QObject *parent = nullptr);

    [[nodiscard]] static QByteArray userAgent();

    // Aborts a reply whose body would pass maxBytes: by its Content-Length as soon as the headers
    // are in, else once that much has arrived, whatever the headers said. The read buffer stops
    // the transfer a little past the limit meanwhile. The flag tells this abort from others.
    [[nodiscard]] static std::shared_ptr<const bool> limitBody(QNetworkReply *reply,
                                                               qint64 maxBytes);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    [[nodiscard]] const QSslConfiguration &shopTls();

    QString m_shopHost;
    std::optional<QString> m_extraCertificates;
    std::optional<QSslConfiguration> m_shopTls;
};
