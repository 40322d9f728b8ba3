#include "api_client.h"

#include "cancel_token.h"
#include "json_fields.h"
#include "logging.h"
#include "network_access_manager.h"
#include "network_error.h"

#include <QCoreApplication>
#include <QCoroNetworkReply>
#include <QJsonDocument>
#include <QNetworkAccessManager>

using namespace Qt::Literals::StringLiterals;

namespace {
// The wire value predates the Linux build and stays.
constexpr auto clientId = "mac-app"_L1;
constexpr int maxRedirects = 5;

struct Call {
    QNetworkRequest request;
    QByteArray verb;
    QByteArray body;
};

struct Response {
    std::optional<int> status; // absent when the reply was not HTTP
    QByteArray body;
    std::optional<QString> etag;
};

struct DeleteLater {
    void operator()(QObject *object) const { object->deleteLater(); }
};

QNetworkRequest makeRequest(const QUrl &url, const std::optional<QString> &token = {})
{
    QNetworkRequest request(url);
    request.setTransferTimeout(60'000); // ms
    request.setRawHeader("Accept", "application/json");
    if (token)
        request.setRawHeader("Authorization", "Bearer " + token->toUtf8());
    return request;
}

Call get(QNetworkRequest request)
{
    return { request, "GET", {} };
}

Call post(QNetworkRequest request, const QJsonObject &body)
{
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
    return { request, "POST", QJsonDocument(body).toJson(QJsonDocument::Compact) };
}

// Qt reports HTTP statuses as error codes too (400 as ProtocolInvalidOperationError, 404 as
// ContentNotFoundError...). Only these mean that no whole response arrived.
bool isTransportError(QNetworkReply::NetworkError error)
{
    return (error > QNetworkReply::NoError && error < QNetworkReply::ContentAccessDenied)
        || error == QNetworkReply::ProtocolUnknownError || error == QNetworkReply::ProtocolFailure;
}

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && a.port() == b.port();
}

// Sends the call, following redirects only within the shop's scheme, host and port: anywhere
// else the token would go along. A refused redirect comes back as its 3xx response.
QCoro::Task<Response> perform(QPointer<QNetworkAccessManager> manager, Call call,
                              QPointer<CancelToken> cancel)
{
    for (int hop = 0;; ++hop) {
        if (!manager)
            throw NetworkError(QNetworkReply::OperationCanceledError, u"Operation canceled"_s);
        const QUrl url = call.request.url();
        if (url.scheme() != "https"_L1)
            throw APIClient::Failure::notHTTPS();
        qCDebug(lcShop).noquote() << call.verb << url.toString(QUrl::RemoveQuery);

        const std::unique_ptr<QNetworkReply, DeleteLater> reply(
            manager->sendCustomRequest(call.request, call.verb, call.body));
        if (cancel) {
            QObject::connect(cancel, &CancelToken::cancelled, reply.get(), &QNetworkReply::abort,
                             Qt::QueuedConnection);
            if (cancel->isCancelled())
                QMetaObject::invokeMethod(reply.get(), &QNetworkReply::abort, Qt::QueuedConnection);
        }
        const auto tooLarge =
            NetworkAccessManager::limitBody(reply.get(), APIClient::maxReplyBytes);
        co_await reply.get();

        if (*tooLarge)
            throw NetworkError::tooLarge(APIClient::maxReplyBytes);
        // Qt ends a call that moved nothing for its time-out as if it had been cancelled.
        if (reply->error() == QNetworkReply::OperationCanceledError
            && !(cancel && cancel->isCancelled()))
            throw NetworkError::timedOut();
        if (isTransportError(reply->error()))
            throw NetworkError::fromReply(*reply);
        Response response;
        const auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (status.isValid())
            response.status = status.toInt();
        response.body = reply->readAll();
        if (reply->hasRawHeader("ETag"))
            response.etag = QString::fromLatin1(reply->rawHeader("ETag"));

        const int code = response.status.value_or(0);
        const bool redirect =
            code == 301 || code == 302 || code == 303 || code == 307 || code == 308;
        // Qt's parsed Location header drops relative references.
        const auto location = QUrl::fromEncoded(reply->rawHeader("Location"), QUrl::StrictMode);
        if (!redirect || !location.isValid() || hop == maxRedirects)
            co_return response;
        const QUrl target = url.resolved(location);
        if (!sameOrigin(target, url)) {
            const auto origin = target.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath
                                                | QUrl::RemoveQuery | QUrl::RemoveFragment);
            qCWarning(lcShop).noquote() << "Refused a redirect to" << origin.toString();
            co_return response;
        }
        // 303, and 301 and 302 after a POST, continue as a GET, as browsers do.
        if (code == 303 || ((code == 301 || code == 302) && call.verb == "POST")) {
            call.verb = "GET";
            call.body.clear();
            call.request.setHeader(QNetworkRequest::ContentTypeHeader, QVariant());
        }
        call.request.setUrl(target);
    }
}

// The "error" of an error reply, when the body is one.
std::optional<QString> errorDetail(const QByteArray &body)
{
    try {
        simdjson::dom::parser parser;
        return JsonFields::string(JsonFields::parseObject(parser, body), "error");
    } catch (const DecodingError &) {
        return std::nullopt;
    }
}

// The body of a successful HTTP response; a Failure otherwise.
QByteArray checked(const Response &response)
{
    if (!response.status)
        throw APIClient::Failure::invalidReply();
    const int status = *response.status;
    if (status >= 200 && status <= 299)
        return response.body;
    if (status == 429)
        throw APIClient::Failure::slowDown();
    if (status == 401)
        throw APIClient::Failure::signedOut();
    throw APIClient::Failure::status(status, errorDetail(response.body));
}

// A success body that does not decode is an invalid reply; the decoder's own error is dropped.
template<typename Decode> auto decoded(Decode decode) -> decltype(decode())
{
    try {
        return decode();
    } catch (const DecodingError &) {
        throw APIClient::Failure::invalidReply();
    }
}
} // namespace

APIClient::Failure APIClient::Failure::status(int code, std::optional<QString> detail)
{
    return Failure(Kind::Status, code, std::move(detail));
}

APIClient::Failure::Failure(Kind kind, int code, std::optional<QString> detail)
    : m_kind(kind)
    , m_code(code)
    , m_detail(std::move(detail))
{
}

QString APIClient::Failure::description() const
{
    switch (m_kind) {
    case Kind::Status:
        if (m_detail)
            return QCoreApplication::translate("APIClient", "The shop replied %1 (%2).")
                .arg(m_code)
                .arg(*m_detail);
        return QCoreApplication::translate("APIClient", "The shop replied %1.").arg(m_code);
    case Kind::SignedOut:
        return QCoreApplication::translate("APIClient", "You've been signed out.");
    case Kind::SlowDown:
        return QCoreApplication::translate("APIClient", "The shop is busy. Try again in a minute.");
    case Kind::NotHTTPS:
        return QCoreApplication::translate(
            "APIClient",
            "The shop's address doesn't start with https://, so Quennet won't send it anything. "
            "Check the shopBaseURL setting.");
    case Kind::InvalidReply:
        break;
    }
    return QCoreApplication::translate("APIClient",
                                       "The shop sent something the app didn't understand.");
}

bool APIClient::Failure::operator==(const Failure &other) const
{
    return m_kind == other.m_kind && m_code == other.m_code && m_detail == other.m_detail;
}

APIClient::DeviceCode APIClient::DeviceCode::fromJson(const simdjson::dom::object &object)
{
    const auto url = [](const QString &text) {
        QUrl url(text, QUrl::StrictMode);
        if (!url.isValid())
            throw DecodingError(u"Not a URL: %1"_s.arg(text));
        return url;
    };
    const auto complete = JsonFields::optionalString(object, "verification_uri_complete");
    return {
        .deviceCode = JsonFields::string(object, "device_code"),
        .userCode = JsonFields::string(object, "user_code"),
        .verificationURI = url(JsonFields::string(object, "verification_uri")),
        .verificationURIComplete = complete ? std::optional(url(*complete)) : std::nullopt,
        .expiresIn = JsonFields::integer(object, "expires_in"),
        .interval = JsonFields::optionalInteger(object, "interval"),
    };
}

APIClient::Link APIClient::Link::fromJson(const simdjson::dom::object &object)
{
    const auto text = JsonFields::string(object, "url");
    const QUrl url(text, QUrl::StrictMode);
    // Links carry the right to a file: never in clear text.
    if (!url.isValid() || url.scheme() != "https"_L1 || url.host().isEmpty())
        throw DecodingError(u"A link is not an HTTPS address."_s);
    return {
        .pack = JsonFields::string(object, "pack"),
        .id = JsonFields::string(object, "id"),
        .url = url,
        .expiresAt = JsonFields::optionalTime(object, "expiresAt"),
    };
}

APIClient::APIClient(QNetworkAccessManager *manager, QUrl base)
    : m_manager(manager)
    , m_base(std::move(base))
{
}

QUrl APIClient::endpoint(QLatin1StringView path) const
{
    QUrl url = m_base;
    QString root = url.path();
    while (root.endsWith(u'/'))
        root.chop(1);
    url.setPath(root + u'/' + path);
    return url;
}

bool APIClient::isShopPage(const QUrl &url) const
{
    return url.scheme() == "https"_L1
        && url.host(QUrl::FullyEncoded) == m_base.host(QUrl::FullyEncoded)
        && url.port(443) == m_base.port(443);
}

QCoro::Task<APIClient::DeviceCode> APIClient::requestDeviceCode(QString device,
                                                                CancelToken *cancel) const
{
    const QJsonObject body { { u"client_id"_s, clientId }, { u"device"_s, device } };
    const auto response =
        co_await perform(m_manager, post(makeRequest(endpoint("device/code"_L1)), body), cancel);
    const auto json = checked(response);
    co_return decoded([&] {
        simdjson::dom::parser parser;
        return DeviceCode::fromJson(JsonFields::parseObject(parser, json));
    });
}

QCoro::Task<APIClient::TokenPoll> APIClient::pollToken(QString deviceCode,
                                                       CancelToken *cancel) const
{
    // The device-code grant reports its progress through error bodies, so no status check.
    const QJsonObject body {
        { u"grant_type"_s, u"urn:ietf:params:oauth:grant-type:device_code"_s },
        { u"device_code"_s, deviceCode },
        { u"client_id"_s, clientId },
    };
    const auto response =
        co_await perform(m_manager, post(makeRequest(endpoint("device/token"_L1)), body), cancel);

    if (response.status == 200) {
        co_return decoded([&] {
            simdjson::dom::parser parser;
            const auto object = JsonFields::parseObject(parser, response.body);
            return TokenPoll { TokenPoll::Outcome::Token,
                               JsonFields::string(object, "access_token") };
        });
    }
    if (response.status == 429)
        co_return TokenPoll { TokenPoll::Outcome::SlowDown };

    const auto error = errorDetail(response.body).value_or(QString());
    if (error == "authorization_pending"_L1)
        co_return TokenPoll { TokenPoll::Outcome::Pending };
    if (error == "slow_down"_L1)
        co_return TokenPoll { TokenPoll::Outcome::SlowDown };
    if (error == "access_denied"_L1)
        co_return TokenPoll { TokenPoll::Outcome::Denied };
    if (error == "expired_token"_L1)
        co_return TokenPoll { TokenPoll::Outcome::Expired };
    co_return TokenPoll { TokenPoll::Outcome::Unknown };
}

QCoro::Task<> APIClient::signOut(QString token, CancelToken *cancel) const
{
    const auto response = co_await perform(
        m_manager, post(makeRequest(endpoint("sign-out"_L1), token), QJsonObject()), cancel);
    checked(response);
}

QCoro::Task<CatalogueReply> APIClient::catalogue(CancelToken *cancel) const
{
    const auto response =
        co_await perform(m_manager, get(makeRequest(endpoint("catalogue"_L1))), cancel);
    const auto json = checked(response);
    co_return decoded([&] { return CatalogueReply::decode(json); });
}

QCoro::Task<std::optional<APIClient::LibraryResult>>
APIClient::library(QString token, std::optional<QString> etag, CancelToken *cancel) const
{
    auto request = makeRequest(endpoint("library"_L1), token);
    if (etag)
        request.setRawHeader("If-None-Match", etag->toLatin1());
    const auto response = co_await perform(m_manager, get(request), cancel);

    // Not modified comes before any other check, whatever the body.
    if (response.status == 304)
        co_return std::nullopt;
    const auto json = checked(response);
    co_return LibraryResult { decoded([&] { return LibraryReply::decode(json); }), response.etag };
}

QCoro::Task<QList<APIClient::Link>> APIClient::links(QString token, QList<WantedFile> files,
                                                     CancelToken *cancel) const
{
    QJsonArray wanted;
    for (const auto &file : std::as_const(files))
        wanted.append(QJsonObject { { u"pack"_s, file.pack }, { u"id"_s, file.id } });
    const QJsonObject body { { u"files"_s, wanted } };
    const auto response = co_await perform(
        m_manager, post(makeRequest(endpoint("downloads"_L1), token), body), cancel);
    const auto json = checked(response);
    co_return decoded([&] {
        simdjson::dom::parser parser;
        const auto object = JsonFields::parseObject(parser, json);
        return JsonFields::objects<Link>(JsonFields::array(object, "links"), "links");
    });
}
