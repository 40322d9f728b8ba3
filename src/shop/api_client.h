#pragma once

#include "catalogue_reply.h"
#include "error.h"
#include "library_reply.h"

#include <QCoroTask>
#include <QPointer>
#include <QUrl>
#include <optional>

class CancelToken;
class QNetworkAccessManager;

// The one place that speaks HTTP to the shop: each operation sends one request, maps the status
// to a Failure and decodes the reply. A value without state of its own: the token, the library's
// entity tag and every retry belong to the callers. Operations read the value only before their
// first suspension, so a temporary APIClient may start one. Transport errors come through as
// NetworkError; a cancelled token aborts the request in flight.
class APIClient {
public:
    // The reply of the device-code request.
    struct DeviceCode {
        QString deviceCode;
        QString userCode;
        QUrl verificationURI;
        std::optional<QUrl> verificationURIComplete;
        qint64 expiresIn = 0;
        std::optional<qint64> interval;

        [[nodiscard]] static DeviceCode fromJson(const simdjson::dom::object &object);
        bool operator==(const DeviceCode &) const = default;
    };

    // A signed download address and when it stops working.
    struct Link {
        QString pack;
        QString id;
        QUrl url;
        std::optional<QDateTime> expiresAt;

        [[nodiscard]] static Link fromJson(const simdjson::dom::object &object);
        bool operator==(const Link &) const = default;
    };

    // One file to get a link for.
    struct WantedFile {
        QString pack;
        QString id;
    };

    // The outcome of one device-token poll.
    struct TokenPoll {
        enum class Outcome { Token, SlowDown, Pending, Denied, Expired, Unknown };

        Outcome outcome = Outcome::Unknown;
        QString token; // with Outcome::Token only

        bool operator==(const TokenPoll &) const = default;
    };

    // A library that changed since the entity tag the caller sent.
    struct LibraryResult {
        LibraryReply reply;
        std::optional<QString> etag;
    };

    // What every operation throws besides NetworkError.
    class Failure : public Error {
    public:
        enum class Kind { Status, SignedOut, SlowDown, InvalidReply, NotHTTPS };

        [[nodiscard]] static Failure status(int code, std::optional<QString> detail = {});
        [[nodiscard]] static Failure signedOut() { return Failure(Kind::SignedOut); }
        [[nodiscard]] static Failure slowDown() { return Failure(Kind::SlowDown); }
        [[nodiscard]] static Failure invalidReply() { return Failure(Kind::InvalidReply); }
        // The shop's address isn't HTTPS: nothing is sent to it, so no token goes in clear.
        [[nodiscard]] static Failure notHTTPS() { return Failure(Kind::NotHTTPS); }

        [[nodiscard]] Kind kind() const { return m_kind; }
        [[nodiscard]] int code() const { return m_code; }
        [[nodiscard]] const std::optional<QString> &detail() const { return m_detail; }
        [[nodiscard]] QString description() const override;

        bool operator==(const Failure &other) const;

    private:
        explicit Failure(Kind kind, int code = 0, std::optional<QString> detail = {});

        Kind m_kind;
        int m_code;
        std::optional<QString> m_detail;
    };

    // The largest reply read: far above any real library (a few hundred KB for hundreds of
    // packs), so that only a broken or hostile shop meets it.
    static constexpr qint64 maxReplyBytes = qint64(16) * 1024 * 1024;

    APIClient(QNetworkAccessManager *manager, QUrl base);

    [[nodiscard]] const QUrl &base() const { return m_base; }

    [[nodiscard]] QCoro::Task<DeviceCode> requestDeviceCode(QString device,
                                                            CancelToken *cancel = nullptr) const;
    [[nodiscard]] QCoro::Task<TokenPoll> pollToken(QString deviceCode,
                                                   CancelToken *cancel = nullptr) const;
    // Returns when the shop accepted the revocation.
    [[nodiscard]] QCoro::Task<> signOut(QString token, CancelToken *cancel = nullptr) const;
    [[nodiscard]] QCoro::Task<CatalogueReply> catalogue(CancelToken *cancel = nullptr) const;
    // Nothing when the library still has the given entity tag (304).
    [[nodiscard]] QCoro::Task<std::optional<LibraryResult>>
    library(QString token, std::optional<QString> etag, CancelToken *cancel = nullptr) const;
    [[nodiscard]] QCoro::Task<QList<Link>> links(QString token, QList<WantedFile> files,
                                                 CancelToken *cancel = nullptr) const;

    // Whether a web page belongs to the shop: https on exactly the base URL's host.
    [[nodiscard]] bool isShopPage(const QUrl &url) const;

private:
    [[nodiscard]] QUrl endpoint(QLatin1StringView path) const;

    QPointer<QNetworkAccessManager> m_manager;
    QUrl m_base;
};
