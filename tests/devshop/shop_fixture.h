#pragma once

#include "curl.h"
#include "dev_shop.h"

#include <QTemporaryDir>

// A development shop on port 0 over the build's sample content, for one test case, with curl
// pointed at it.
class ShopFixture {
public:
    explicit ShopFixture(DevShop::Options options = {});

    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] DevShop &shop() { return m_shop; }
    [[nodiscard]] const Curl &curl() const { return m_curl; }

    // An address on the shop: "/_devshop/stats", or an API endpoint such as "library".
    [[nodiscard]] QString url(const QString &path) const;
    [[nodiscard]] QString api(const QString &endpoint) const;
    [[nodiscard]] static QString bearer(const QString &token);

    // The reply to the links request for the given (pack, id) pairs.
    [[nodiscard]] CurlReply links(const QString &token,
                                  const QList<QPair<QString, QString>> &files) const;
    // The link of one owned file, fetched with a fresh token.
    [[nodiscard]] QString linkTo(const QString &pack, const QString &id);
    // The device-code sign-in as the app makes it: a code, then a poll for its token.
    [[nodiscard]] QJsonObject requestCode(const QString &device = QStringLiteral("Test Box")) const;
    CurlReply poll(const QString &deviceCode) const;

private:
    QTemporaryDir m_state;
    DevShop m_shop;
    Curl m_curl;
    bool m_running = false;
};

// The pack and id of one file of the sample content, picked by pack, colourway and edition.
[[nodiscard]] QString sampleFileId(const QString &pack, const QString &colourway,
                                   const QString &edition);
