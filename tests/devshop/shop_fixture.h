#pragma once

#include "dev_shop.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>
#include <optional>

// One answer as curl saw it.
struct CurlReply {
    int exitCode = -1; // curl's own: 0, or 18 for a short body, 28 for a time-out, …
    int status = 0;
    QHash<QString, QString> headers; // of the last response, names in lower case
    QByteArray body;

    [[nodiscard]] QString header(const QString &name) const { return headers[name.toLower()]; }
    [[nodiscard]] QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

// A development shop on port 0 over the build's sample content, for one test case, and the curl
// program as an independent client of it: one that trusts the shop's authority and nothing else.
class ShopFixture {
    QTemporaryDir m_state;

public:
    explicit ShopFixture(DevShop::Options options = {});

    DevShop shop;
    bool setFaults(const QByteArray &json)
    {
        return shop.setFaults(QJsonDocument::fromJson(json).object());
    }

    // An address on the shop: "/activate", or an API endpoint such as "library".
    [[nodiscard]] QString url(const QString &path) const;
    [[nodiscard]] QString api(const QString &endpoint) const;
    [[nodiscard]] static QString bearer(const QString &token);

    // curl with these options and headers, then the address.
    [[nodiscard]] CurlReply get(const QString &url, const QStringList &headers = {},
                                QStringList options = {}) const;
    [[nodiscard]] CurlReply post(const QString &url, const QJsonObject &body,
                                 const QStringList &headers = {}) const;

    // One request to an endpoint as a client makes it, with the token given or a fresh one;
    // "files" downloads the sample file below, "art" one of the pictures.
    [[nodiscard]] CurlReply request(const QString &endpoint,
                                    std::optional<QString> token = std::nullopt);
    // A signed link to the first file of the sample account's first pack, and its bytes.
    [[nodiscard]] QString sampleLink();
    [[nodiscard]] static QByteArray sampleBytes();
    // The device-code sign-in as the app makes it: a code, then a poll for its token.
    [[nodiscard]] CurlReply requestCode(const QString &device = QStringLiteral("Test Box")) const;
    CurlReply poll(const QString &deviceCode) const;
};
