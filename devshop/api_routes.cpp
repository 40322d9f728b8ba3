#include "api_routes.h"

#include "shop_http.h"
#include "shop_state.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>
#include <httplib.h>

using namespace Qt::Literals::StringLiterals;
using namespace ShopHttp;

namespace {
const auto clientId = "mac-app"_L1;
const auto deviceCodeGrant = "urn:ietf:params:oauth:grant-type:device_code"_L1;

// The fields of a JSON body, or of a form body as RFC 8628 clients send them.
QJsonObject fields(const httplib::Request &request)
{
    const QByteArray body = QByteArray::fromStdString(request.body);
    if (header(request, "Content-Type").startsWith("application/x-www-form-urlencoded"_L1)) {
        QJsonObject object;
        const QUrlQuery query(QString::fromUtf8(body).replace(u'+', u' '));
        for (const auto &[key, value] : query.queryItems(QUrl::FullyDecoded))
            object.insert(key, value);
        return object;
    }
    return QJsonDocument::fromJson(body).object();
}

// Answers 401 unless the request carries a live token.
bool refusedToken(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    if (state.grant().isValid(bearerToken(request)))
        return false;
    response.set_header("WWW-Authenticate", R"(Bearer error="invalid_token")");
    sendError(response, 401, u"invalid_token"_s);
    return true;
}

// If-None-Match holds one of a list of tags, or "*"; weak tags compare by their value.
bool matchesAny(const QString &ifNoneMatch, const QString &etag)
{
    for (QString tag : ifNoneMatch.split(u',')) {
        tag = tag.trimmed();
        if (tag == "*"_L1 || tag == etag || tag == "W/"_L1 + etag)
            return true;
    }
    return false;
}

void deviceCode(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString endpoint = u"device/code"_s;
    if (answeredByFault(state, endpoint, response))
        return;
    const QJsonObject body = fields(request);
    if (body.value("client_id"_L1).toString() != clientId)
        return sendError(response, 400, u"invalid_client"_s);
    const DeviceGrant::Code code = state.grant().start(body.value("device"_L1).toString());
    const QString page = origin(request, state.port()) + u"/activate"_s;
    reply(state, endpoint, response, 200,
          { { u"device_code"_s, code.deviceCode },
            { u"user_code"_s, code.userCode },
            { u"verification_uri"_s, page },
            { u"verification_uri_complete"_s, QString(page + u"?user_code="_s + code.userCode) },
            { u"expires_in"_s, code.expiresIn },
            { u"interval"_s, code.interval } });
}

void deviceToken(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString endpoint = u"device/token"_s;
    if (answeredByFault(state, endpoint, response))
        return;
    const QJsonObject body = fields(request);
    if (body.value("client_id"_L1).toString() != clientId)
        return sendError(response, 400, u"invalid_client"_s);
    if (body.value("grant_type"_L1).toString() != deviceCodeGrant)
        return sendError(response, 400, u"unsupported_grant_type"_s);

    using Outcome = DeviceGrant::Outcome;
    const DeviceGrant::Poll poll = state.grant().poll(body.value("device_code"_L1).toString());
    static const QHash<Outcome, QString> errors {
        { Outcome::Pending, u"authorization_pending"_s }, { Outcome::SlowDown, u"slow_down"_s },
        { Outcome::Denied, u"access_denied"_s },          { Outcome::Expired, u"expired_token"_s },
        { Outcome::Invalid, u"invalid_grant"_s },
    };
    if (poll.outcome == Outcome::Token)
        reply(state, endpoint, response, 200,
              { { u"access_token"_s, poll.token }, { u"token_type"_s, u"Bearer"_s } });
    else
        reply(state, endpoint, response, 400, { { u"error"_s, errors.value(poll.outcome) } });
}

void signOut(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString endpoint = u"sign-out"_s;
    if (answeredByFault(state, endpoint, response) || refusedToken(state, request, response))
        return;
    state.grant().revoke(bearerToken(request));
    reply(state, endpoint, response, 200, {});
}

void library(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString endpoint = u"library"_s;
    if (answeredByFault(state, endpoint, response) || refusedToken(state, request, response))
        return;
    QByteArray body =
        QJsonDocument(state.content().library(state.libraryRevision(), state.changedFiles()))
            .toJson(QJsonDocument::Compact);
    if (state.faults().isMalformed(endpoint))
        body.truncate(body.size() / 2);
    // A strong tag: it changes with every byte of the body.
    const QString etag = u'"'
        + QString::fromLatin1(QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex())
        + u'"';
    response.set_header("ETag", etag.toStdString());
    // An oversized reply comes whatever the client has.
    const auto fault = state.faults().takeOversize(endpoint);
    if (!fault && matchesAny(header(request, "If-None-Match"), etag)) {
        response.status = 304;
        return;
    }
    send(response, 200, body, "application/json");
    if (fault)
        oversize(response, *fault);
}

void downloads(ShopState &state, const httplib::Request &request, httplib::Response &response)
{
    const QString endpoint = u"downloads"_s;
    if (answeredByFault(state, endpoint, response) || refusedToken(state, request, response))
        return;
    const QJsonValue wanted =
        QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object().value("files"_L1);
    if (!wanted.isArray())
        return sendError(response, 400, u"invalid_request"_s);

    const QDateTime expires = state.clock().now().addSecs(state.linkLifetime());
    QJsonArray links;
    for (const QJsonValue &entry : wanted.toArray()) {
        const QString pack = entry["pack"_L1].toString();
        const QString id = entry["id"_L1].toString();
        const StoredFile *file = state.content().file(id);
        // Files of packs the account does not own get no link; the rest of the answer stands.
        if (!file || file->pack != pack || !state.content().isOwned(*file))
            continue;
        const QString query = state.signer().query(id, expires.toSecsSinceEpoch());
        links.append(QJsonObject {
            { u"pack"_s, pack },
            { u"id"_s, id },
            { u"url"_s, QString(origin(request, state.port()) + u"/files/"_s + id + u'?' + query) },
            { u"expiresAt"_s, expires.toString(Qt::ISODate) },
        });
    }
    reply(state, endpoint, response, 200, { { u"links"_s, links } });
}
} // namespace

void installApiRoutes(httplib::Server &server, ShopState &state)
{
    const auto route = [&state](auto handler) { return bound(state, handler); };
    server.Post("/api/app/v1/device/code", route(deviceCode));
    server.Post("/api/app/v1/device/token", route(deviceToken));
    server.Post("/api/app/v1/sign-out", route(signOut));
    server.Get(
        "/api/app/v1/catalogue",
        route([](ShopState &state, const httplib::Request &request, httplib::Response &response) {
            if (!answeredByFault(state, u"catalogue"_s, response))
                reply(state, u"catalogue"_s, response, 200,
                      state.content().catalogue(origin(request, state.port())));
        }));
    server.Get("/api/app/v1/library", route(library));
    server.Post("/api/app/v1/downloads", route(downloads));
}
